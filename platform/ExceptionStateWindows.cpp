// Where the C++ runtime keeps a thread's exceptions while they fly, in the module for Windows.
//
// The runtime that is linked in would take a thread-local index of the process for it, and not give that back when the
// module is unloaded: a host that loads and unloads some thousand times ends with an abort, for want of an index. These
// two functions of the C++ ABI stand in front of the runtime's own. They take one index and give it back.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

namespace {

/// The Itanium C++ ABI's record of a thread (Exception Handling, 2.2.2). All zero where nothing flies.
struct ThreadState {
  void* caught;
  unsigned int uncaught;
};

void WINAPI forget(void* state) {
  HeapFree(GetProcessHeap(), 0, state);
}

class Index {
 public:
  Index() : index_(FlsAlloc(forget)) {}
  // Also forgets the states of all threads.
  ~Index() {
    if (index_ != FLS_OUT_OF_INDEXES) FlsFree(index_);
    index_ = FLS_OUT_OF_INDEXES;
  }
  Index(const Index&) = delete;
  Index& operator=(const Index&) = delete;

  ThreadState* state() {
    if (index_ == FLS_OUT_OF_INDEXES) return &shared_;
    void* own = FlsGetValue(index_);
    if (own == nullptr) {
      own = HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(ThreadState));
      if (own == nullptr || FlsSetValue(index_, own) == 0) {
        forget(own);
        return &shared_;
      }
    }
    return static_cast<ThreadState*>(own);
  }

 private:
  DWORD index_;
  // Without an index or memory all threads share this one, which is right as long as exceptions fly on one at a time.
  ThreadState shared_{};
};

// Made when the module is loaded, before anything in it can throw.
Index threadIndex;

}  // namespace

// The names are the ABI's.
extern "C" ThreadState* __cxa_get_globals() noexcept;       // NOLINT(bugprone-reserved-identifier)
extern "C" ThreadState* __cxa_get_globals_fast() noexcept;  // NOLINT(bugprone-reserved-identifier)

extern "C" ThreadState* __cxa_get_globals() noexcept {  // NOLINT(bugprone-reserved-identifier)
  return threadIndex.state();
}

extern "C" ThreadState* __cxa_get_globals_fast() noexcept {  // NOLINT(bugprone-reserved-identifier)
  return threadIndex.state();
}
