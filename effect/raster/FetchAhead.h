// Asks the memory for a small dot's pixels before its scan begins.
//
// A small dot's pixels lie on many rows, each of them far from the last in memory, and waiting for one row after the
// other took a quarter of a star's time and a third of a small circle's. So all are asked for at once. It changes
// nothing that anybody reads: so a compiler would leave a call of these out, and they are inline by force.
#pragma once

#include <algorithm>
#include <cstdint>

#include "effect/pixel/Truncate.h"
#include "effect/raster/CanvasView.h"

namespace vindrel {

/// Of a row on the canvas, the pixels from `begin` to the one before `end`, which lie on it; one at least.
template <class Pixel>
[[gnu::always_inline]] inline void fetchRowAhead(const CanvasView<Pixel>& canvas, int32_t begin, int32_t end,
                                                 int32_t row) {
  constexpr auto pixelsAtOnce = static_cast<int32_t>(64 / sizeof(Pixel));  // a line of the memory
  const Pixel* const pixels = canvas.row(row);
  for (int32_t p = begin; p < end; p += pixelsAtOnce) __builtin_prefetch(pixels + p);
  __builtin_prefetch(pixels + (end - 1));
}

/// @param left, right        of the outline, canvas pixels; any numbers
/// @param firstRow, lastRow  pixel rows that will be painted, both inclusive; any that are off the canvas are left out
template <class Pixel>
[[gnu::always_inline]] inline void fetchPixelsAhead(const CanvasView<Pixel>& canvas, double left, double right,
                                                    int32_t firstRow, int32_t lastRow) {
  constexpr int32_t most = 64;  // pixels either way; a larger dot's rows keep the memory busy enough
  if (int64_t{lastRow} - firstRow >= most || !(right - left < most)) return;
  const int32_t begin = std::max(truncateToInt32(left), 0);
  const auto end = static_cast<int32_t>(std::min(int64_t{truncateToInt32(right)} + 1, int64_t{canvas.width}));
  if (begin >= end) return;
  const int32_t last = std::min(lastRow, canvas.height - 1);
  for (int32_t row = std::max(firstRow, 0); row <= last; ++row) fetchRowAhead(canvas, begin, end, row);
}

}  // namespace vindrel
