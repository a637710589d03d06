// A dot's outline on its way to the canvas: its vertices, and the transform that brings them there.
#pragma once

#include <cstdint>

namespace vindrel {

/// X = a*x + b*y + c and Y = d*x + e*y + f, in canvas pixels. The identity between two dots.
struct PathMatrix {
  double a = 1.0;
  double b = 0.0;
  double c = 0.0;
  double d = 0.0;
  double e = 1.0;
  double f = 0.0;
  friend bool operator==(const PathMatrix&, const PathMatrix&) = default;
};

/// Every vertex is joined to the one before it by a straight line, the first to the last.
struct PathVertex {
  double x = 0.0;   ///< outline space, set by the outline's builder
  double y = 0.0;   ///< outline space, grows downwards
  double tx = 0.0;  ///< canvas pixels, set by finishPath; sub-columns (eight to a pixel) once fillConvex has begun
  double ty = 0.0;  ///< the same for y
  int32_t iy = 0;   ///< the vertex's sub-row, set by fillConvex
};

}  // namespace vindrel
