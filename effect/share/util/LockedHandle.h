// A host handle that is locked for as long as a scope lasts.
#pragma once

#include "ae/Scalars.h"

namespace AEUtil {

/// Locks through the handle suite of the global record, and unlocks on every way out of the scope. A null handle, or
/// one that can't be locked, has no block, and nothing is unlocked for it. Throws the bare long 516 when the host has
/// no handle suite.
class LockedHandle {
 public:
  explicit LockedHandle(PF_Handle handle);
  ~LockedHandle();
  LockedHandle(const LockedHandle&) = delete;
  LockedHandle& operator=(const LockedHandle&) = delete;

  /// The block of the handle, or null.
  void* block() const noexcept { return block_; }

 private:
  PF_Handle handle_;
  void* block_ = nullptr;
};

}  // namespace AEUtil
