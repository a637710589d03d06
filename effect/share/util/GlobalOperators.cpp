// The module's global operator new and delete, over the host's memory; and what the module gives back when it is
// unloaded.
//
// The module alone links this source, and binds to it inside itself: other modules of the process keep their own
// operators. All forms that the standard library calls are replaced together, since a block must never go from one
// memory to the other; the forms for over-aligned types are left alone in pairs, and nothing here uses them.
//
// operator new returns null before the host has lent its memory, which a plain operator new may not do by the
// language's rules: the whole tree is compiled with -fcheck-new, so that a new-expression looks at what it got.
#include <cstddef>
#include <exception>
#include <limits>
#include <new>

#include "effect/share/util/HostMemory.h"

namespace {

/// Blocks have 32-bit sizes. A larger wish becomes the largest size, which no host can serve, and never a small block.
int32_t blockSize(std::size_t size) {
  constexpr int32_t largest = std::numeric_limits<int32_t>::max();
  return size > static_cast<std::size_t>(largest) ? largest : static_cast<int32_t>(size);
}

void* allocateOrNull(std::size_t size) noexcept {
  try {
    return AEUtil::allocate(blockSize(size));
  } catch (...) {
    return nullptr;
  }
}

}  // namespace

void* operator new(std::size_t size) {
  return AEUtil::allocate(blockSize(size));
}
void* operator new[](std::size_t size) {
  return AEUtil::allocate(blockSize(size));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocateOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return allocateOrNull(size);
}

void operator delete(void* block) noexcept {
  AEUtil::release(block);
}
void operator delete[](void* block) noexcept {
  AEUtil::release(block);
}
void operator delete(void* block, std::size_t) noexcept {
  AEUtil::release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  AEUtil::release(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
  AEUtil::release(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
  AEUtil::release(block);
}

#ifdef __GLIBCXX__

// The C++ library's own name for it; memory checkers use it to the same end. No header declares it.
namespace __gnu_cxx {  // NOLINT(bugprone-reserved-identifier)
void __freeres();      // NOLINT(bugprone-reserved-identifier)
}

namespace {

// Gives back, when the module is unloaded, what its own copy of the C++ library took when it was loaded: the pool for
// exceptions that are thrown when no memory is left. The library keeps that pool for the life of a process, which is
// longer than the life of a module: without this each loading would cost another 72 KB.
//
// The pool comes from the C library and not from the host, so that it may go after the set-down.
const struct PoolAtUnload {
  ~PoolAtUnload() { __gnu_cxx::__freeres(); }
} poolAtUnload;

}  // namespace

#endif
