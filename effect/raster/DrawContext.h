// The drawing state of one frame at one depth: the canvas, and what the dot in hand needs.
#pragma once

#include <cstdint>

#include "effect/raster/PathMatrix.h"

namespace vindrel {

template <class Pixel>
class PolygonRasterizer;

/// Made once per frame, shared by all dots. Owns nothing: the canvas is the host's, the rasteriser the frame's.
template <class Pixel>
struct DrawContext {
  Pixel* pixels = nullptr;                         ///< first pixel of the canvas, straight colour, top row first
  int32_t width = 0;                               ///< pixels
  int32_t height = 0;                              ///< pixels
  int32_t rowBytes = 0;                            ///< bytes from a row to the next; may exceed width * sizeof(Pixel)
  PathMatrix matrix{};                             ///< current outline transform; the identity between two dots
  Pixel colour{};                                  ///< colour of the dot being drawn
  PolygonRasterizer<Pixel>* rasterizer = nullptr;  ///< the frame's rasteriser; must not be null when a dot is drawn
};

}  // namespace vindrel
