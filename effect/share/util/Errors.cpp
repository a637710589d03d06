#include "effect/share/util/Errors.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>

namespace AEUtil {

namespace {
constexpr std::size_t messageBytes = 2048;  // of each of the two steps, the closing zero included
}

AEException::AEException(PF_Err code, const char* file, int line, const char* format, ...) : code_(code) {
  char text[messageBytes];
  std::snprintf(text, sizeof(text), "%s(%d): ", file, line);
  message_ = text;
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof(text), format, arguments);
  va_end(arguments);
  message_ += text;
}

PendingErrors* pendingErrors = nullptr;

void PendingErrors::reserve() {
  entries_ = new PF_Err[room];
}

void PendingErrors::push(PF_Err error) noexcept {
  if (entries_ == nullptr && !making_) {
    // The first call found no memory for the room.
    making_ = true;
    try {
      reserve();
    } catch (...) {  // NOLINT(bugprone-empty-catch): the entry is left out
    }
    making_ = false;
  }
  PF_Err* const entries = entries_;
  const std::size_t at = count_;
  if (entries == nullptr || at >= room) return;
  entries[at] = error;
  count_ = at + 1;
}

std::vector<PF_Err> PendingErrors::entries() const {
  const PF_Err* const first = entries_;
  const std::size_t count = count_;
  return {first, first + count};
}

}  // namespace AEUtil
