// Paints one pixel row from lists of runs.
#pragma once

#include <cstdint>

#include "effect/raster/CanvasView.h"
#include "effect/raster/SpanLists.h"

namespace vindrel {

/// Paints the pixel row of sub-row y from the coverage, and empties that. A row off the canvas is only emptied. A pixel
/// is painted once for each run of touched pixels that holds it, so twice where two runs, still apart on the sub-pixel
/// grid, meet in one pixel. Kept as is: it is the stronger edge at the tips of a star
/// (aPixelWhereTwoRunsMeetIsPaintedTwice).
template <class Pixel>
void flushRow(CoverageRows& coverage, const CanvasView<Pixel>& canvas, const Pixel& color, int32_t y);

}  // namespace vindrel
