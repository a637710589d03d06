// 32-bit integers as the processor makes them of doubles and reckons with them.
//
// Coordinates of a dot far off the canvas may lie beyond 32 bits or at the ends of their range, and 16-bit channels may
// lie beyond full scale. What comes of such numbers is of no interest, but it must be the same in every build, and
// plain casts and operators would leave it to the compiler.
#pragma once

#include <cstdint>
#include <limits>

namespace vindrel {

/// The one way from a double to a 32-bit integer: truncates toward zero. A value beyond 32 bits, or one that is not a
/// number, gives the smallest integer, -2147483648: that is what the processor's conversion instruction answers, and
/// drawings far off the canvas rely on it.
constexpr int32_t truncateToInt32(double value) noexcept {
  if (value > -2147483649.0 && value < 2147483648.0) {
    return static_cast<int32_t>(value);
  }
  return std::numeric_limits<int32_t>::min();
}

// Sums and products that wrap around.

constexpr int32_t wrapAdd(int32_t a, int32_t b) noexcept {
  return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

constexpr int32_t wrapSubtract(int32_t a, int32_t b) noexcept {
  return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

constexpr int32_t wrapMultiply(int32_t a, int32_t b) noexcept {
  return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}

}  // namespace vindrel
