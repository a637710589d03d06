// One frame's polygon rasteriser at one depth: it holds the outline in hand, brings it to the canvas's coordinates and
// sends it to the filler that suits it.
//
// It knows no canvas: that comes with each outline, and so do the matrix and the colour. DrawContext holds all of them
// for whoever draws a frame.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "effect/raster/CanvasView.h"
#include "effect/raster/ConvexFiller.h"
#include "effect/raster/GeneralFiller.h"
#include "effect/raster/Path.h"
#include "effect/raster/SpanLists.h"
#include "effect/raster/TurnedFiller.h"
#include "effect/raster/TurnedOutline.h"

namespace vindrel {

/// What a dot's outline follows from, place and turn set aside: equal ones have equal vertices.
struct OutlineKey {
  int32_t shape = 0;    ///< 0 for none
  int32_t corners = 0;  ///< of a circle, whose number hangs on its place by a rounding; otherwise 0
  double width = 0.0;
  double height = 0.0;
  friend bool operator==(const OutlineKey&, const OutlineKey&) = default;
};

/// The sine and cosine of an angle in radians.
struct Turn {
  double angle = 0.0;
  double sine = 0.0;
  double cosine = 1.0;
};

/// Belongs to one render call and needs no lock. Its vectors keep their storage from dot to dot, so an ordinary dot
/// allocates nothing. The members are read by the fillers and the outline builders.
/// @tparam Pixel  Pixel8, Pixel16 or Pixel32.
template <class Pixel>
class PolygonRasterizer {
 public:
  /// Throws std::bad_alloc when there is no memory; whatever was made by then is given back.
  PolygonRasterizer();
  PolygonRasterizer(const PolygonRasterizer&) = delete;
  PolygonRasterizer& operator=(const PolygonRasterizer&) = delete;
  ~PolygonRasterizer() = default;

  /// Empties the outline; the storage stays.
  void resetPath();

  /// Appends a copy of the vertex; only its x and y count.
  void addVertex(const PathVertex& vertex);

  /// Brings the outline to the canvas by the matrix: sets tx and ty.
  void placeOutline(const PathMatrix& matrix);

  /// Brings the outline to the canvas by the matrix and fills it with the colour. Fewer than three vertices draw
  /// nothing.
  void finishPath(const CanvasView<Pixel>& canvas, const PathMatrix& matrix, const Pixel& color);

  /// Whether the outline suits the convex filler: no dent, one top and one bottom. Reads tx and ty.
  bool suitsConvexFiller() const;

  /// How often the closed outline changes between going up and going down; horizontal steps don't count. 2 for an
  /// outline with one top and one bottom, 1 when all vertices lie on one height. Reads tx and ty.
  int32_t countYTurns() const;

  /// Whether all corners turn the same way, straight ones and repeated points set aside. Exact, without tolerance. An
  /// outline that winds around twice passes too. Reads tx and ty.
  bool isConvex() const;

  OutlineKey kept;                         ///< of the dot whose x and y the vertices still hold; resetPath forgets it
  Turn turn;                               ///< of the last dot
  TurnedOutline turned;                    ///< of the vertices under the last matrix
  SideTable sideTable;                     ///< the turned filler's
  std::vector<PathVertex> vertices;        ///< the outline in hand; room for 100 from the start
  std::vector<ScanEdge> edges;             ///< the general filler's; room for 200 from the start
  std::unique_ptr<CoverageRows> coverage;  ///< the general filler's
  std::unique_ptr<ConvexFiller<Pixel>> convexFiller;
};

/// The drawing state of one frame at one depth: the canvas, and what the dot in hand needs.
///
/// Made once per frame, shared by all dots: `DrawContext<Pixel>{.canvas = view, .rasterizer = &rasterizer}`. Owns
/// nothing.
template <class Pixel>
struct DrawContext {
  CanvasView<Pixel> canvas;
  PathMatrix matrix{};                             ///< current outline transform; the identity between two dots
  Pixel color{};                                   ///< colour of the dot being drawn
  PolygonRasterizer<Pixel>* rasterizer = nullptr;  ///< the frame's rasteriser; must not be null when a dot is drawn
};

}  // namespace vindrel
