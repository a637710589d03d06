// Gives back, when the module is unloaded, what its own copy of the C++ library took when it was loaded: the pool for
// exceptions that are thrown when no memory is left. The library keeps that pool for the life of a process, which is
// longer than the life of a module: without this each loading would cost another 72 KB.
//
// The pool comes from the C library and not from the host, so that it may go after the set-down.
#include <exception>

#ifdef __GLIBCXX__

// The C++ library's own name for it; memory checkers use it to the same end. No header declares it.
namespace __gnu_cxx {  // NOLINT(bugprone-reserved-identifier)
void __freeres();      // NOLINT(bugprone-reserved-identifier)
}

namespace {

const struct PoolAtUnload {
  ~PoolAtUnload() { __gnu_cxx::__freeres(); }
} poolAtUnload;

}  // namespace

#endif
