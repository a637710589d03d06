// How failures leave the module: the one exception that brings its own code, and the list of those that were swallowed.
#pragma once

#include <cstddef>
#include <exception>
#include <string>
#include <vector>

#include "ae/Scalars.h"

#if defined(__GNUC__)
#define VINDREL_PRINTF_LIKE(formatIndex, firstArgument) __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define VINDREL_PRINTF_LIKE(formatIndex, firstArgument)
#endif

namespace AEUtil {

/// The one exception that brings a host error code out of the module.
///
/// The message is for whoever catches it under a debugger; it is never shown to the user.
class AEException : public std::exception {
 public:
  /// The message is "file(line): " and the formatted text behind it, each cut to 2,047 bytes.
  AEException(PF_Err code, const char* file, int line, const char* format, ...) VINDREL_PRINTF_LIKE(5, 6);
  const char* what() const noexcept override { return message_.c_str(); }
  PF_Err code() const noexcept { return code_; }

 private:
  PF_Err code_;
  std::string message_;
};

/// Failures that somebody may have swallowed on the way, so that the host still hears of them.
///
/// The list is emptied when a command enters the module. A command that would otherwise succeed returns the oldest
/// entry. There is one list for the module, without a lock: a command on another thread may empty it at any moment, and
/// what it held is then told by nobody. Its memory is safe all the same: the room never moves, and every read and write
/// stays inside it.
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
