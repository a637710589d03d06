#include "effect/share/util/LockedHandle.h"

#include "effect/share/util/SuiteCache.h"

namespace AEUtil {

LockedHandle::LockedHandle(PF_Handle handle) : handle_(handle) {
  if (handle_ != nullptr) {
    block_ = requireGlobalSuites().handleSuite().host_lock_handle(handle_);
  }
}

LockedHandle::~LockedHandle() {
  if (block_ != nullptr) {
    // The slot has been filled by the lock, so that this can't fail.
    globalSuites()->handleSuite().host_unlock_handle(handle_);
  }
}

}  // namespace AEUtil
