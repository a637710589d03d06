// Compares what two hosts recorded of two modules.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/CallLog.h"
#include "host/Control.h"

namespace compare {

/// A progress call, and how many other calls had been recorded when it came.
struct ProgressCall {
  A_long current = 0;
  A_long total = 0;
  size_t callsBefore = 0;
  bool operator==(const ProgressCall&) const = default;
};

/// The first call that differs, as text of several lines; nothing when both modules made the same calls in the same
/// order with the same arguments and got the same answers. Addresses don't count, nor do sizes of handles.
std::optional<std::string> firstDifference(const standin::CallLog& one, const std::vector<ProgressCall>& oneProgress,
                                           const standin::CallLog& other,
                                           const std::vector<ProgressCall>& otherProgress);

/// In what two declarations of a control, or what the host shows of it now, differ.
std::optional<std::string> firstDifference(const standin::Control& one, const standin::Control& other);

/// How many handles were made or resized to another number of bytes, in logs of the same calls.
int64_t blocksOfOtherSize(const standin::CallLog& one, const standin::CallLog& other);

/// A number with as many digits as tell it from every other one.
std::string exactText(double value);

}  // namespace compare
