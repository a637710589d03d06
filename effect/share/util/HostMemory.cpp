#include "effect/share/util/HostMemory.h"

#include <cstring>
#include <new>

#include "ae/Constants.h"
#include "effect/share/util/Errors.h"
#include "effect/share/util/SuiteCache.h"

namespace AEUtil {

namespace {

/// A locked block of `bytes` bytes that holds its own handle in front, or null.
char* newLockedHandle(const PF_HandleSuite1& suite, A_HandleSize bytes) {
  PF_Handle handle = suite.host_new_handle(bytes);
  if (handle == nullptr) return nullptr;
  void* const header = suite.host_lock_handle(handle);
  if (header == nullptr) {
    suite.host_dispose_handle(handle);
    return nullptr;
  }
  std::memcpy(header, &handle, sizeof(handle));
  return static_cast<char*>(header);
}

}  // namespace

void* allocate(int32_t size) {
  SuiteCache* const suites = globalSuites();
  if (suites == nullptr) return nullptr;
  // Added in 32 bits, so that a size near the end of the range turns into one that no host can serve.
  const auto withHeader = static_cast<int32_t>(static_cast<uint32_t>(size) + static_cast<uint32_t>(blockHeaderBytes));
  char* const header =
      newLockedHandle(suites->handleSuite(), static_cast<A_HandleSize>(static_cast<int64_t>(withHeader)));
  if (header == nullptr) {
    if (pendingErrors != nullptr) pendingErrors->push(PF_Err_OUT_OF_MEMORY);
    throw std::bad_alloc();
  }
  return header + blockHeaderBytes;
}

void release(void* block) noexcept {
  SuiteCache* const suites = globalSuites();
  if (suites == nullptr || block == nullptr) return;
  try {
    const PF_HandleSuite1& suite = suites->handleSuite();
    PF_Handle handle = nullptr;
    std::memcpy(&handle, static_cast<char*>(block) - blockHeaderBytes, sizeof(handle));
    if (handle != nullptr) {
      suite.host_unlock_handle(handle);
      suite.host_dispose_handle(handle);
    }
  } catch (long) {
    // No handle suite any more, and no way to say so: blocks are released while exceptions are in flight.
  }
}

LockedHandle::LockedHandle(PF_Handle handle) : handle_(handle) {
  if (handle_ != nullptr) block_ = requireGlobalSuites().handleSuite().host_lock_handle(handle_);
}

LockedHandle::~LockedHandle() {
  if (block_ != nullptr) {
    // The slot has been filled by the lock, so that this can't fail.
    globalSuites()->handleSuite().host_unlock_handle(handle_);
  }
}

}  // namespace AEUtil
