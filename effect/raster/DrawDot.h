// Puts one dot on the canvas: the front door of the rasteriser, and the only call that the dot field makes into it.
//
// How a dot becomes pixels
// ------------------------
// A dot is a record: a place, a size, a turn, a colour and one of six shapes. Its shape is a fixed recipe of vertices
// (DotOutlines), joined by straight lines; curves exist nowhere behind it. PolygonRasterizer hands the outline to one
// of three fillers, and each paints from the top down, a pixel row at a time (RowPainter, PaintPixel); no mask of a
// dot's pixels is ever held.
// - TurnedFiller: an outline without a dent, with one top and one bottom, for which TurnedOutline has proved that this
//   is so wherever it is put. The proof is made once for all dots of one size and turn. This is the road of most dots.
// - ConvexFiller: such an outline where the proof fails or the dot is too large for TurnedFiller's table; its form is
//   then judged where it lies.
// - GeneralFiller: all others, which cross themselves or have dents.
//
// Representation. Every pixel is cut into 8 by 8 samples. A sub-row is an eighth of a pixel row, a sub-column an eighth
// of a column; sub-row y belongs to pixel row y >> 3, and column likewise. Fillers work on coordinates times eight. On
// a sub-row an outline is a few runs of sub-columns, both ends inclusive; eight sub-rows of runs make a pixel row; the
// count of covered samples of a pixel, 0 to 64, weighs the dot's opacity. There is no curve of tone: a share of
// coverage is a share of opacity. The runs of the pixel row in hand are kept as numbers of sub-columns, eight sub-rows
// side by side: a convex outline has one on each (lanes::EightRuns, ConvexFiller::rows), others have up to eight in a
// SpanTable, and any number in the lists of CoverageRows.
//
// Invariants. A filler goes from the top down, and paints a pixel row when its last sub-row is known. It writes only
// pixels of the canvas, and changes only those with a count above 0 (but for float opacities that aren't finite, which
// spoil the pixels they visit). The runs of a convex outline never overlap, so it paints each pixel once. Between two
// dots the rasteriser holds storage, and of the last dot its vertices before the transform and what TurnedOutline made
// of them, which an equal dot would get as well: no dot shows in a later one but by the pixels it has painted.
//
// What is exact. The test of the form where an outline lies, without any tolerance, and the proof, whose margins are
// beyond all rounding. Truncation from a double to a sub-column, toward zero and not down; what doesn't fit 32 bits
// becomes the smallest integer. Counts. At 8 and 16 bits the whole of painting, which is integer arithmetic with cut
// divisions. The vector registers (SideLanes, RunLanes, MixLanes, WideLanes) and every short cut: each gives the bytes
// that one pixel after the other would get by paintPixel.
//
// What rounds. The transform of each vertex, which adds the place last. A side's slope, one division. A side's x from
// sub-row to sub-row, by repeated addition: k steps are not k times the slope in the last bits, so the additions are
// all made, or leapt in a way that gives the same sum. Float pixels, in single precision at each operation. All of
// these are part of the look, down to the last bit; they may be computed otherwise only where that bit stays.
//
// Cost. A vertex costs its turn once for all dots of a size and its place for each; where nothing is proved, its
// transform and a cross product. A sub-row on the canvas costs a step of each side it crosses. Above the canvas
// TurnedFiller makes all steps, of which its table bounds the number; the other two leap, a few dozen times a side. A
// pixel row costs its counts, which wholly covered stretches are spared, and a quarter of a vector mix for each pixel;
// under an opaque colour a wholly covered pixel is stored and no more. A dot beside the canvas costs its vertices, and
// on the other two roads its scan.
#pragma once

#include <cstdint>

#include "effect/raster/PolygonRasterizer.h"

namespace vindrel {

/// The six outlines, by the numbers of the shape popup.
enum DotShape : int32_t {
  circleShape = 1,
  squareShape = 2,
  roundSquareShape = 3,
  crossShape = 4,
  starShape = 5,
  diamondShape = 6,
};

/// @tparam Pixel  Pixel8, Pixel16 or Pixel32; the only thing that differs between the depths.
template <class Pixel>
struct DotRecord {
  double frontKey;  ///< squared distance in canvas pixels to the nearest front centre, or -1.0 when not in use
  double x;         ///< centre, canvas pixels, after rotation and jitter
  double y;         ///< centre, canvas pixels; grows downwards
  Pixel color;      ///< the dot's colour; alpha holds the dot's opacity
  double width;     ///< extent in pixels along the dot's own horizontal axis, before its rotation
  double height;    ///< extent in pixels along the dot's own vertical axis, before its rotation
  double angle;     ///< radians, clockwise on the screen
  int32_t shape;    ///< a DotShape; any other value draws nothing
};

/// Draws one dot over what the canvas holds. The context's rasterizer must not be null and its matrix must be the
/// identity, which it is again on return. A dot with a width or height of exactly 0.0 is passed over; a negative one is
/// drawn mirrored; nothing is culled, so a dot off the canvas costs its scan. Centre, size and angle may be any
/// number at all. Returns 0. Throws std::bad_alloc when there is no memory; the matrix then still holds this dot's
/// place and turn, and the context must not draw on.
template <class Pixel>
int32_t drawDot(DrawContext<Pixel>& context, const DotRecord<Pixel>& dot);

}  // namespace vindrel
