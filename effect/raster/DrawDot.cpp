#include "effect/raster/DrawDot.h"

#include <bit>
#include <cmath>

#include "effect/pixel/Pixel.h"
#include "effect/raster/DotOutlines.h"
#include "effect/raster/PolygonRasterizer.h"

namespace vindrel {
namespace {

void translate(PathMatrix& m, double x, double y) {
  m.f = x * m.d + y * m.e + m.f;
  m.c = y * m.b + x * m.a + m.c;
}

/// A positive angle turns clockwise on the screen, since y grows downwards.
void rotate(PathMatrix& m, const Turn& turn) {
  const double s = turn.sine;
  const double k = turn.cosine;
  const double b = m.b;
  m.b = b * k - m.a * s;
  m.a = m.a * k + b * s;
  const double e = m.e;
  m.e = e * k - m.d * s;
  m.d = m.d * k + e * s;
}

/// Makes the turn that of the angle. Compared bit by bit: a zero's sign is part of the sine.
void turnTo(Turn& turn, double radians) {
  if (std::bit_cast<uint64_t>(turn.angle) == std::bit_cast<uint64_t>(radians)) return;
  turn = {radians, std::sin(radians), std::cos(radians)};
}

template <class Pixel>
void build(DrawContext<Pixel>& context, const DotRecord<Pixel>& dot) {
  const double w = dot.width;
  const double h = dot.height;
  switch (dot.shape) {
    case circleShape:
      addCircle(context, 0.0, 0.0, w, h);
      break;
    case squareShape:
      addSquare(context, w * -0.5, h * -0.5, w, h);
      break;
    case roundSquareShape:
      addRoundSquare(context, 0.0, 0.0, w, h);
      break;
    case crossShape:
      addCross(context, 0.0, 0.0, w, h);
      break;
    case starShape:
      addStar(context, 0.0, 0.0, w, h);
      break;
    case diamondShape:
      addDiamond(context, 0.0, 0.0, w, h);
      break;
    default:
      break;
  }
}

/// Puts a dot of a known shape under the context's matrix, which has its place.
template <class Pixel>
void draw(DrawContext<Pixel>& context, const DotRecord<Pixel>& dot) {
  PolygonRasterizer<Pixel>& rasterizer = *context.rasterizer;
  turnTo(rasterizer.turn, dot.angle);
  rotate(context.matrix, rasterizer.turn);
  const int32_t corners =
      dot.shape == circleShape ? circleVertexCount(context.matrix, 0.0, 0.0, dot.width, dot.height) : 0;
  const OutlineKey key{dot.shape, corners, dot.width, dot.height};
  // Dots of one size differ by place and turn alone; the vertices before the transform are then those of the last dot.
  if (key == rasterizer.kept) {
    rasterizer.finishPath(context.canvas, context.matrix, context.color);
  } else {
    build(context, dot);
    rasterizer.kept = key;
  }
}

}  // namespace

template <class Pixel>
int32_t drawDot(DrawContext<Pixel>& context, const DotRecord<Pixel>& dot) {
  if (dot.width == 0.0 || dot.height == 0.0) return 0;
  context.color = dot.color;
  translate(context.matrix, dot.x, dot.y);
  if (dot.shape >= circleShape && dot.shape <= diamondShape) draw(context, dot);
  context.matrix = PathMatrix{};
  return 0;
}

template int32_t drawDot(DrawContext<Pixel8>&, const DotRecord<Pixel8>&);
template int32_t drawDot(DrawContext<Pixel16>&, const DotRecord<Pixel16>&);
template int32_t drawDot(DrawContext<Pixel32>&, const DotRecord<Pixel32>&);

}  // namespace vindrel
