// Paints one pixel row from a table of runs.
#pragma once

#include <cstdint>

#include "effect/raster/RowPainter.h"
#include "effect/raster/SpanTable.h"

namespace vindrel {

/// Paints the row as flushRow does from lists: the pixels of each joined run once, so a pixel twice where two runs,
/// still apart on the sub-pixel grid, meet in it. The row must be orderly.
/// @param pixels  first pixel of the row
/// @param width   pixels of the row
template <class Pixel>
void paintTable(const SpanTable& table, RowPainter<Pixel>& painter, Pixel* pixels, int32_t width);

}  // namespace vindrel
