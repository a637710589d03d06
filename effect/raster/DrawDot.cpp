#include "effect/raster/DrawDot.h"

#include <cmath>

#include "effect/pixel/Pixel.h"
#include "effect/raster/DotOutlines.h"

namespace vindrel {
namespace {

void translate(PathMatrix& m, double x, double y) {
  m.f = x * m.d + y * m.e + m.f;
  m.c = y * m.b + x * m.a + m.c;
}

/// A positive angle turns clockwise on the screen, since y grows downwards.
void rotate(PathMatrix& m, double radians) {
  const double s = std::sin(radians);
  const double k = std::cos(radians);
  const double b = m.b;
  m.b = b * k - m.a * s;
  m.a = m.a * k + b * s;
  const double e = m.e;
  m.e = e * k - m.d * s;
  m.d = m.d * k + e * s;
}

}  // namespace

template <class Pixel>
int32_t drawDot(DrawContext<Pixel>& context, const DotRecord<Pixel>& dot) {
  if (dot.width == 0.0 || dot.height == 0.0) return 0;
  context.colour = dot.color;
  translate(context.matrix, dot.x, dot.y);
  rotate(context.matrix, dot.angle);
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
  context.matrix = PathMatrix{};
  return 0;
}

template int32_t drawDot(DrawContext<Pixel8>&, const DotRecord<Pixel8>&);
template int32_t drawDot(DrawContext<Pixel16>&, const DotRecord<Pixel16>&);
template int32_t drawDot(DrawContext<Pixel32>&, const DotRecord<Pixel32>&);

}  // namespace vindrel
