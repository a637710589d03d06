// Failures that somebody may have swallowed on the way, so that the host still hears of them.
//
// The list is emptied when a command enters the module. A command that would otherwise succeed returns the oldest
// entry. There is one list for the module, without a lock.
#pragma once

#include <cstddef>
#include <vector>

#include "ae/Scalars.h"

namespace AEUtil {

class PendingErrors {
 public:
  static constexpr std::size_t reservedCount = 256;

  /// Makes room for 256 entries. Throws what the allocator throws.
  void reserve();

  /// Adds an entry at the end. When the list is full and there is no memory to let it grow, the entry is left out:
  /// only the oldest one is ever told, and a failing allocation pushes here itself.
  void push(PF_Err error) noexcept;

  void clear() noexcept { errors_.clear(); }
  const std::vector<PF_Err>& errors() const noexcept { return errors_; }

 private:
  std::vector<PF_Err> errors_;
  bool growing_ = false;
};

/// The module's list; null before the first call and after the set-down. Owned by the module's entry.
extern PendingErrors* pendingErrors;

}  // namespace AEUtil
