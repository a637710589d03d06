/// Weighs each pixel's neighbours by a kernel, a kernel for each channel, exact at all three depths.
#pragma once

#include <array>

#include "ae/Pixels.h"
#include "ae/Worlds.h"
#include "host/Depth.h"

namespace standin {

/// Kernels of whole numbers for alpha, red, green and blue, in this order; a null one leaves its channel as in the
/// source. A square of size x size entries row by row, or size entries of one row or one column.
struct ConvolveKernels {
  std::array<const A_long*, 4> entries{};
  A_long size = 1;  ///< entries along a side, 1 or more
  bool twoDimensions = true;
  bool vertical = false;    ///< of one dimension: a column
  bool normalized = false;  ///< the divisor is the sum of the entries
  bool limited = true;      ///< results are held to 0..full scale
};

/// Writes the pixels of area (null: all), cut to both worlds. source and target must not share pixels.
///
/// With entries e[i] and the channel's values v[i] under them, straight and outside the source 0, the middle entry
/// (size / 2, rounded down) on the pixel itself and nothing mirrored:
// clang-format off
///
///     result = sum(e[i] v[i]) / d       d: 255 times the number of entries; normalized: sum(e[i]), and 1 where that is 0
///
// clang-format on
/// Whole-number depths: sums exact in 64 bits, rounded once to nearest, halves toward plus infinity; without a limit
/// the low bits of the channel's width are kept. Float: summed in doubles, row by row from the left top, rounded once.
void convolveWorld(Depth depth, const PF_EffectWorld& source, const PF_Rect* area, const ConvolveKernels& kernels,
                   const PF_EffectWorld& target);

}  // namespace standin
