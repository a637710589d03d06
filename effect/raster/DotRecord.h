// One dot, as the drawing side is asked to draw it: all that it ever learns about a dot.
#pragma once

#include <cstdint>

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

}  // namespace vindrel
