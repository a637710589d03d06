// 32-bit sums and products that wrap around, as the processor's do.
//
// Coordinates of a dot far off the canvas may lie at the ends of the 32-bit range. What such a dot paints is then of no
// interest, but it must be the same in every build, and the plain operators would leave it to the compiler.
#pragma once

#include <cstdint>

namespace vindrel {

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
