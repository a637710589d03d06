// Asks the memory for a small dot's pixels before its scan begins.
//
// A small dot's pixels lie on many rows, each of them far from the last in memory, and waiting for one row after the
// other took a quarter of a star's time and a third of a small circle's. So all are asked for at once. It changes
// nothing that anybody reads.
#pragma once

#include <algorithm>
#include <cstdint>

#include "effect/pixel/Truncate.h"
#include "effect/raster/CanvasView.h"
#include "effect/raster/RunVectors.h"

namespace vindrel {

/// @param left, right        of the outline, canvas pixels; any numbers
/// @param firstRow, lastRow  pixel rows that will be painted, both inclusive; any that are off the canvas are left out
template <class Pixel>
VINDREL_ALWAYS_INLINE void fetchPixelsAhead(const CanvasView<Pixel>& canvas, double left, double right,
                                            int32_t firstRow, int32_t lastRow) {
  constexpr int32_t most = 64;  // pixels either way; a larger dot's rows keep the memory busy enough
  constexpr int64_t line = 64;  // bytes that come at once
  if (int64_t{lastRow} - firstRow >= most || !(right - left < most)) return;
  const int64_t begin = std::max(truncateToInt32(left), 0);
  const int64_t end = std::min(int64_t{truncateToInt32(right)} + 1, int64_t{canvas.width});
  if (begin >= end) return;
  const int32_t last = std::min(lastRow, canvas.height - 1);
  for (int32_t row = std::max(firstRow, 0); row <= last; ++row) {
    const Pixel* const pixels = canvas.row(row);
    for (int64_t p = begin; p < end; p += line / int64_t{sizeof(Pixel)}) vectors::fetchAhead(pixels + p);
    vectors::fetchAhead(pixels + (end - 1));
  }
}

}  // namespace vindrel
