// The one way from a double to a 32-bit integer.
#pragma once

#include <cstdint>
#include <limits>

namespace vindrel {

/// Truncates toward zero. A value beyond 32 bits, or one that is not a number, gives the smallest integer,
/// -2147483648: that is what the processor's conversion instruction answers, and drawings far off the canvas rely
/// on it; a plain cast would leave it to the compiler.
constexpr int32_t truncateToInt32(double value) noexcept {
  if (value > -2147483649.0 && value < 2147483648.0) {
    return static_cast<int32_t>(value);
  }
  return std::numeric_limits<int32_t>::min();
}

}  // namespace vindrel
