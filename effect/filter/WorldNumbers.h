// Widths, heights and origins of the host's worlds, as the frame reads them.
#pragma once

#include <cstdint>

namespace vindrel {

/// The low 16 bits of a 32-bit field, as a signed number. Kept as is: no host makes worlds of more than 30,000 pixels,
/// and an origin beyond that range wraps the way it always has (originsCountByTheirLowSixteenBits,
/// sizesCountByTheirLowSixteenBits).
constexpr int32_t lowHalf(int32_t field) {
  return static_cast<int16_t>(static_cast<uint16_t>(field));
}

}  // namespace vindrel
