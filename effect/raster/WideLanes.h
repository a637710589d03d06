// Laying a half transparent colour over long stretches of wholly covered pixels, with the wider registers (AVX2) of
// processors that have them. Other processors, and all shorter stretches, go by fours (MixLanes.h), with the same
// bytes.
#pragma once

#include <cstddef>
#include <cstdint>

#include "effect/pixel/Pixel.h"

namespace vindrel::wide_lanes {

/// Whether this processor has the registers. Nothing else here may be called where it hasn't.
bool available();

/// What one colour has made of a register full of pixels. One for each colour.
struct Remembered {
  bool known = false;  ///< whether the next two say anything
  std::byte before[32];
  std::byte after[32];
};

/// Paints some of the n pixels, from the first on, as paintPixel does with a count of 64, and returns how many: all
/// that make whole registers, unless one comes that only paintPixel can do. Where the old pixels are those remembered,
/// which is the rule inside of large dots, the new ones are too.
/// @param color  one that suits the painter of its depth, not 0 in opacity
int32_t paintWhole(Pixel8* pixels, int32_t n, const Pixel8& color, Remembered& last);
int32_t paintWhole(Pixel16* pixels, int32_t n, const Pixel16& color, Remembered& last);
int32_t paintWhole(Pixel32* pixels, int32_t n, const Pixel32& color, Remembered& last);

}  // namespace vindrel::wide_lanes
