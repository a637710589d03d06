#include "effect/raster/PolygonRasterizer.h"

#include <cstddef>

#include "effect/pixel/Pixel.h"
#include "effect/raster/PaintPixel.h"

namespace vindrel {

template <class Pixel>
PolygonRasterizer<Pixel>::PolygonRasterizer() {
  vertices.reserve(100);
  edges.reserve(200);
  coverage = std::make_unique<CoverageRows>();
  convexFiller = std::make_unique<ConvexFiller<Pixel>>();
}

template <class Pixel>
void PolygonRasterizer<Pixel>::resetPath() {
  kept = OutlineKey{};
  turned.forget();
  vertices.clear();
  edges.clear();
}

template <class Pixel>
void PolygonRasterizer<Pixel>::addVertex(const PathVertex& vertex) {
  vertices.push_back(vertex);
}

template <class Pixel>
void PolygonRasterizer<Pixel>::finishPath(const CanvasView<Pixel>& canvas, const PathMatrix& matrix,
                                          const Pixel& color) {
  if (vertices.size() < 3) return;
  turned.take(vertices, matrix);
  if (turned.holdsAt(matrix.c, matrix.f) && emptyCountPaintsNothing(color) &&
      fillTurned(sideTable, turned, matrix.c, matrix.f, canvas, color)) {
    return;
  }
  placeOutline(matrix);
  if (suitsConvexFiller()) {
    fillConvex(*convexFiller, vertices, canvas, color);
  } else {
    fillGeneral(edges, *coverage, vertices, canvas, color);
  }
}

template <class Pixel>
void PolygonRasterizer<Pixel>::placeOutline(const PathMatrix& m) {
  if (m == PathMatrix{}) {
    for (PathVertex& v : vertices) {
      v.tx = v.x;
      v.ty = v.y;
    }
  } else {
    for (PathVertex& v : vertices) {
      v.tx = m.b * v.y + v.x * m.a + m.c;
      v.ty = v.x * m.d + m.e * v.y + m.f;
    }
  }
}

template <class Pixel>
bool PolygonRasterizer<Pixel>::suitsConvexFiller() const {
  // An outline that winds around twice, as a star does, turns one way only; its vertical turns give it away.
  return isConvex() && countYTurns() == 2;
}

template <class Pixel>
int32_t PolygonRasterizer<Pixel>::countYTurns() const {
  const std::size_t n = vertices.size();
  if (n == 0) return 1;
  std::size_t i = 0;
  while (i < n && vertices[i].ty == vertices[i == 0 ? n - 1 : i - 1].ty) ++i;
  if (i == n) return 1;
  const bool first = vertices[i].ty - vertices[i == 0 ? n - 1 : i - 1].ty > 0.0;
  bool current = first;
  int32_t count = 0;
  if (i + 1 >= n) return count;
  for (std::size_t j = i + 1; j < n; ++j) {
    const double from = vertices[j - 1].ty;
    const double to = vertices[j].ty;
    if (to != from && (to - from > 0.0) != current) {
      ++count;
      current = !current;
    }
  }
  if (current != first) ++count;
  return count;
}

template <class Pixel>
bool PolygonRasterizer<Pixel>::isConvex() const {
  const std::size_t n = vertices.size();
  if (n < 3) return false;
  bool turnsLeft = false;
  bool turnsRight = false;
  const PathVertex* q = &vertices[n - 2];
  const PathVertex* p = &vertices[n - 1];
  for (const PathVertex& v : vertices) {
    const double cross = (v.ty - q->ty) * (p->tx - q->tx) - (p->ty - q->ty) * (v.tx - q->tx);
    // Exactly 0 sets nothing: repeated points and straight runs are no corners.
    if (cross < 0.0) turnsLeft = true;
    if (cross > 0.0) turnsRight = true;
    if (turnsLeft && turnsRight) return false;
    q = p;
    p = &v;
  }
  return true;
}

template class PolygonRasterizer<Pixel8>;
template class PolygonRasterizer<Pixel16>;
template class PolygonRasterizer<Pixel32>;

}  // namespace vindrel
