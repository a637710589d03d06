// The drawing state of one frame at one depth: the canvas, and what the dot in hand needs.
#pragma once

#include "effect/raster/CanvasView.h"
#include "effect/raster/Path.h"

namespace vindrel {

template <class Pixel>
class PolygonRasterizer;

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
