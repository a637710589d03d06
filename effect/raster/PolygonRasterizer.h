// One frame's polygon rasteriser at one depth: it holds the outline in hand, brings it to the canvas's coordinates and
// sends it to the filler that suits it.
//
// Anti-aliasing is plain 8 by 8 point sampling: both fillers work on sub-rows and sub-columns, eight to a pixel, and
// count for each pixel how many of its 64 samples are covered. Nothing here knows the host.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "effect/raster/ConvexFiller.h"
#include "effect/raster/CoverageRows.h"
#include "effect/raster/DrawContext.h"
#include "effect/raster/PathMatrix.h"
#include "effect/raster/PathVertex.h"
#include "effect/raster/ScanEdge.h"

namespace vindrel {

/// Belongs to one render call and needs no lock. Its vectors keep their storage from dot to dot, so an ordinary dot
/// allocates nothing. The members are read by the fillers and the outline builders.
/// @tparam Pixel  Pixel8, Pixel16 or Pixel32.
template <class Pixel>
class PolygonRasterizer {
 public:
  /// Copies the target out of the context and keeps pointers to the context, its matrix and its colour: the context
  /// must outlive the rasteriser and must not move. Width and height must lie below 2^28.
  /// Throws std::bad_alloc when there is no memory; whatever was made by then is given back.
  explicit PolygonRasterizer(DrawContext<Pixel>& target);
  PolygonRasterizer(const PolygonRasterizer&) = delete;
  PolygonRasterizer& operator=(const PolygonRasterizer&) = delete;
  ~PolygonRasterizer() = default;

  /// Empties the outline; the storage stays.
  void resetPath();

  /// Appends a copy of the vertex; only its x and y count.
  void addVertex(const PathVertex& vertex);

  /// Brings the outline to canvas coordinates and fills it with the context's colour. Fewer than three vertices draw
  /// nothing.
  void finishPath();

  /// How often the closed outline changes between going up and going down; horizontal steps don't count. 2 for an
  /// outline with one top and one bottom, 1 when all vertices lie on one height. Reads tx and ty.
  int32_t countYTurns() const;

  /// Whether all corners turn the same way, straight ones and repeated points set aside. Exact, without tolerance. An
  /// outline that winds around twice passes too. Reads tx and ty.
  bool isConvex() const;

  std::vector<PathVertex> vertices;  ///< the outline in hand; room for 100 from the start
  std::vector<ScanEdge> edges;       ///< the general filler's; room for 200 from the start
  ScanEdge sentinel;
  bool nonZeroWinding;  ///< always true in the effect; false fills by even and odd
  DrawContext<Pixel>* context;
  Pixel* pixels;          ///< first pixel of the canvas
  int32_t width, height;  ///< pixels
  int32_t rowBytes;
  PathMatrix* matrix;  ///< the context's
  Pixel* colour;       ///< the context's
  std::unique_ptr<ConvexFiller<Pixel>> convexFiller;
  std::unique_ptr<CoverageRows> coverage;
  int32_t subWidth, subHeight;  ///< the canvas in sub-columns and sub-rows
};

}  // namespace vindrel
