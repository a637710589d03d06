// Memory from the host: the heap that the module's global operator new and delete stand on, and handles that are locked
// for a while.
//
// Each block of the heap is a host handle of its own, locked for as long as the block lives. 32 bytes lie in front of
// the block; their first 8 hold the handle, so that it is found again from the block's address alone.
#pragma once

#include <cstdint>

#include "ae/Scalars.h"

namespace AEUtil {

inline constexpr int32_t blockHeaderBytes = 32;

/// A block of `size` bytes; the 32 bytes more that the host is asked for are added in 32 bits.
///
/// Returns null, and throws nothing, while there is no global suite record: the host gave no way to its memory. When
/// the host has no more memory, or can't lock it, pushes 4 to the pending errors and throws std::bad_alloc. Throws the
/// bare long 516 when the host has no handle suite.
void* allocate(int32_t size);

/// Unlocks and disposes of the block's handle. Does nothing for null, and nothing while there is no global suite
/// record or no handle suite; the host's own errors are ignored.
void release(void* block) noexcept;

/// A host handle that is locked for as long as a scope lasts.
///
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
