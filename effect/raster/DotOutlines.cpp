#include "effect/raster/DotOutlines.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "effect/pixel/Int32.h"
#include "effect/pixel/Pixel.h"
#include "effect/raster/CircleTables.h"
#include "effect/raster/PolygonRasterizer.h"

namespace vindrel {
namespace {

constexpr double fullTurn = 6.283185307179586;
constexpr double threeQuarterTurn = 4.71238898038469;
constexpr double halfTurn = 3.141592653589793;
constexpr double quarterTurn = 1.5707963267948966;
constexpr double arcStep = 0.15707963267948966;  // 9 degrees

template <class Pixel>
void addPoint(DrawContext<Pixel>& context, double x, double y) {
  PathVertex vertex;
  vertex.x = x;
  vertex.y = y;
  context.rasterizer->addVertex(vertex);
}

constexpr double eighteenDegrees = 0.3141592653589793;
constexpr double fiftyFourDegrees = 0.9424777960769379;

/// Brings the outline to the canvas and fills it.
template <class Pixel>
void finish(DrawContext<Pixel>& context) {
  context.rasterizer->finishPath(context.canvas, context.matrix, context.color);
}

}  // namespace

int32_t circleVertexCount(const PathMatrix& m, double x, double y, double w, double h) {
  const double right = x + w;
  const double bottom = y + h;
  const double dx = (m.b * bottom + right * m.a + m.c) - (m.b * y + x * m.a + m.c);
  const double dy = (right * m.d + m.e * bottom + m.f) - (x * m.d + m.e * y + m.f);
  const double diagonal = std::sqrt(dy * dy + dx * dx);
  return std::max(truncateToInt32(diagonal * fullTurn * 0.125), 8);
}

template <class Pixel>
void addCircle(DrawContext<Pixel>& context, double x, double y, double w, double h) {
  context.rasterizer->resetPath();
  const int32_t count = circleVertexCount(context.matrix, x, y, w, h);
  if (count > 2 * circleSteps) {
    // Each entry of the tables would come twice or more in a row. More than two equal vertices in a row are no more to
    // the convex filler than two: a corner between equal vertices is none, and a side between them ends where it
    // begins, before it is used. Circles of ten million pixels so have no more vertices than smaller ones. The general
    // filler, which a circle takes only when rounding has dented it, gets them all.
    for (int32_t i = 0; i < circleSteps; ++i) {
      for (int copy = 0; copy < 2; ++copy) addPoint(context, w * 0.5 * cosTable[i] + x, h * 0.5 * sinTable[i] + y);
    }
    context.rasterizer->placeOutline(context.matrix);
    if (context.rasterizer->suitsConvexFiller()) {
      finish(context);
      return;
    }
    context.rasterizer->resetPath();
  }
  const double step = 720.0 / count;
  // The index keeps its fraction and is cut for each look-up, so the vertices lie on the half-degree grid and are not
  // perfectly even; above 720 vertices some repeat. Kept as is: circles in saved projects have these corners
  // (aCirclesCornersFallOnTheHalfDegreeGrid).
  double index = 0.0;
  for (int32_t n = 0; n < count; ++n) {
    // Only an outline of many millions of vertices lets the sum of the steps creep past the last entry.
    const int32_t i = std::min(truncateToInt32(index), circleSteps - 1);
    addPoint(context, w * 0.5 * cosTable[i] + x, h * 0.5 * sinTable[i] + y);
    index += step;
  }
  finish(context);
}

template <class Pixel>
void addSquare(DrawContext<Pixel>& context, double x, double y, double w, double h) {
  context.rasterizer->resetPath();
  addPoint(context, x, y);
  addPoint(context, x + w, y);
  addPoint(context, x + w, y + h);
  addPoint(context, x, y + h);
  finish(context);
}

template <class Pixel>
void addArc(DrawContext<Pixel>& context, double cx, double cy, double rx, double ry, double startAngle,
            double endAngle) {
  // By adding up: the last bit of each angle is part of the outline.
  double angle = startAngle;
  while (endAngle > angle) {
    addPoint(context, std::cos(angle) * rx + cx, std::sin(angle) * ry + cy);
    angle += arcStep;
  }
}

template <class Pixel>
void addRoundSquare(DrawContext<Pixel>& context, double x, double y, double w, double h) {
  context.rasterizer->resetPath();
  const double left = x - w * 0.5;
  const double top = y - h * 0.5;
  const double rx = w * 0.2;
  const double ry = h * 0.2;
  const double innerLeft = rx + left;
  const double innerRight = 0.8 * w + left;
  const double innerTop = ry + top;
  const double innerBottom = 0.8 * h + top;
  const double right = left + w;
  const double bottom = top + h;
  addPoint(context, innerLeft, top);
  addPoint(context, innerRight, top);
  addArc(context, innerRight, innerTop, rx, ry, threeQuarterTurn, fullTurn);
  addPoint(context, right, innerTop);
  addPoint(context, right, innerBottom);
  addArc(context, innerRight, innerBottom, rx, ry, 0.0, quarterTurn);
  addPoint(context, innerRight, bottom);
  addPoint(context, innerLeft, bottom);
  addArc(context, innerLeft, innerBottom, rx, ry, quarterTurn, halfTurn);
  addPoint(context, left, innerBottom);
  addPoint(context, left, innerTop);
  addArc(context, innerLeft, innerTop, rx, ry, halfTurn, threeQuarterTurn);
  finish(context);
}

template <class Pixel>
void addCross(DrawContext<Pixel>& context, double x, double y, double w, double h) {
  context.rasterizer->resetPath();
  const double left = x - w * 0.5;
  const double top = y - h * 0.5;
  // The far side of an arm stands a hair short of 0.65. Kept as is: the last bit may decide a sub-column
  // (aCrossHasArmsThreeTenthsWideThatTouchTheBox).
  const double armLeft = w * 0.35 + left;
  const double armRight = 0.6499999999999999 * w + left;
  const double armTop = h * 0.35 + top;
  const double armBottom = 0.6499999999999999 * h + top;
  const double right = left + w;
  const double bottom = top + h;
  addPoint(context, armLeft, top);
  addPoint(context, armRight, top);
  addPoint(context, armRight, armTop);
  addPoint(context, right, armTop);
  addPoint(context, right, armBottom);
  addPoint(context, armRight, armBottom);
  addPoint(context, armRight, bottom);
  addPoint(context, armLeft, bottom);
  addPoint(context, armLeft, armBottom);
  addPoint(context, left, armBottom);
  addPoint(context, left, armTop);
  addPoint(context, armLeft, armTop);
  finish(context);
}

template <class Pixel>
void addStar(DrawContext<Pixel>& context, double x, double y, double w, double h) {
  context.rasterizer->resetPath();
  const double hw = w * 0.5;
  const double hh = h * 0.5;
  // Asked of the C library when a star is drawn: a compiler's own constants may have another last bit.
  const double sin18 = std::sin(eighteenDegrees);
  const double cos18 = std::cos(eighteenDegrees);
  const double sin54 = std::sin(fiftyFourDegrees);
  const double cos54 = std::cos(fiftyFourDegrees);
  addPoint(context, x, y - hh);
  addPoint(context, x - cos54 * hw, sin54 * hh + y);
  addPoint(context, cos18 * hw + x, y - sin18 * hh);
  addPoint(context, x - cos18 * hw, y - sin18 * hh);
  addPoint(context, cos54 * hw + x, sin54 * hh + y);
  finish(context);
}

template <class Pixel>
void addDiamond(DrawContext<Pixel>& context, double, double, double w, double h) {
  context.rasterizer->resetPath();
  const double top = -(h * 0.5);
  addPoint(context, 0.0, top);
  addPoint(context, w * 0.5, top + h * 0.5);
  addPoint(context, 0.0, top + h);
  addPoint(context, 0.0 - w * 0.5, top + h * 0.5);
  finish(context);
}

#define VINDREL_OUTLINE(name, Pixel) template void name(DrawContext<Pixel>&, double, double, double, double);
#define VINDREL_OUTLINES(Pixel)          \
  VINDREL_OUTLINE(addCircle, Pixel)      \
  VINDREL_OUTLINE(addSquare, Pixel)      \
  VINDREL_OUTLINE(addRoundSquare, Pixel) \
  VINDREL_OUTLINE(addCross, Pixel)       \
  VINDREL_OUTLINE(addStar, Pixel)        \
  VINDREL_OUTLINE(addDiamond, Pixel)     \
  template void addArc(DrawContext<Pixel>&, double, double, double, double, double, double);

VINDREL_OUTLINES(Pixel8)
VINDREL_OUTLINES(Pixel16)
VINDREL_OUTLINES(Pixel32)

}  // namespace vindrel
