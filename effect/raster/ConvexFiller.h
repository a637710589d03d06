// Fills an outline that has one top, one bottom and no dent: the road of most dots.
//
// The two sides are walked down from the top vertex, each by a running x and a slope, and every sub-row gives exactly
// one span. Eight of them are kept; when the eighth is known, the pixel row is painted. No sorting, no allocation.
// x is exact at the centre of a side's first sub-row and steps by repeated addition from there.
#pragma once

#include <cstdint>

#include "effect/raster/DrawContext.h"
#include "effect/raster/PathVertex.h"

namespace vindrel {

/// The running x of one side of the outline.
struct SideTracker {
  double x = 0.0;      ///< at the centre of the present sub-row, in sub-columns
  double slope = 0.0;  ///< change of x per sub-row
  double yEnd = 0.0;   ///< where this side ends, in sub-rows
};

/// The covered part of one sub-row, in sub-columns, both ends inclusive. (-1, -1) covers nothing.
struct SubRowSpan {
  int32_t start = -1;
  int32_t end = -1;
};

/// One per rasteriser. Owns nothing.
template <class Pixel>
struct ConvexFiller {
  double coverageScale = 0.015625;  ///< 1/64: from a count of covered samples to a share of the pixel
  SubRowSpan rows[8];               ///< one for each sub-row of the present pixel row
  SideTracker left, right;          ///< names only: either may be the one further left
  DrawContext<Pixel>* context = nullptr;
  Pixel* pixels = nullptr;        ///< first pixel of the canvas
  int32_t width = 0, height = 0;  ///< pixels
  int32_t rowBytes = 0;
  Pixel colour{};           ///< of the fill in hand
  bool supersample = true;  ///< always true in the effect; false gives one hard-edged span per pixel row
  const PathVertex* leftCur = nullptr;
  const PathVertex* leftNext = nullptr;
  const PathVertex* rightCur = nullptr;
  const PathVertex* rightNext = nullptr;
  const PathVertex* firstVertex = nullptr;
  const PathVertex* lastVertex = nullptr;
  int32_t minStart = 0, maxStart = 0;  ///< over the spans of the present pixel row
  int32_t minEnd = 0, maxEnd = 0;
  int32_t firstRow = -1, lastRow = -1;  ///< first and last slot of rows set in the present pixel row; -1 if none
};

/// Fills the outline's vertices, read from tx and ty in canvas pixels. Multiplies them by eight in place, which nobody
/// minds: the next outline starts from none. The outline must hold at least three vertices.
template <class Pixel>
void fillConvex(ConvexFiller<Pixel>& filler, PolygonRasterizer<Pixel>& outline, const Pixel& colour);

/// Takes the span from x0 to x1 (sub-columns, x0 not right of x1) of sub-row y, and paints the pixel row once its
/// eighth sub-row has come; a row off the canvas is passed over.
template <class Pixel>
void emitRow(ConvexFiller<Pixel>& filler, double x0, double x1, int32_t y);

}  // namespace vindrel
