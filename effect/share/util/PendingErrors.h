// Failures that somebody may have swallowed on the way, so that the host still hears of them.
//
// The list is emptied when a command enters the module. A command that would otherwise succeed returns the oldest
// entry. There is one list for the module, without a lock: a command on another thread may empty it at any moment, and
// what it held is then told by nobody. Its memory is safe all the same: the room never moves, and every read and write
// stays inside it.
#pragma once

#include <cstddef>
#include <vector>

#include "ae/Scalars.h"

namespace AEUtil {

class PendingErrors {
 public:
  static constexpr std::size_t room = 256;  ///< entries

  PendingErrors() = default;
  ~PendingErrors() { delete[] entries_; }
  PendingErrors(const PendingErrors&) = delete;
  PendingErrors& operator=(const PendingErrors&) = delete;

  /// Makes the room, once for all. Throws what the allocator throws.
  void reserve();

  /// Adds an entry at the end. Beyond the room entries are left out: only the oldest is ever told.
  void push(PF_Err error) noexcept;

  void clear() noexcept { count_ = 0; }

  /// The entries of this moment, the oldest first. Throws what the allocator throws.
  std::vector<PF_Err> entries() const;

  bool empty() const noexcept { return count_ == 0; }

 private:
  // Volatile for threads that enter at once: what has been compared with the room is what is then used, and is not
  // read a second time.
  PF_Err* volatile entries_ = nullptr;
  volatile std::size_t count_ = 0;
  bool making_ = false;  ///< the room is being made: a failure of that pushes here too
};

/// The module's list; null before the first call and after the set-down. Owned by the module's entry.
extern PendingErrors* pendingErrors;

}  // namespace AEUtil
