// One corner of a dot's outline, in the outline's own space and on the canvas.
#pragma once

#include <cstdint>

namespace vindrel {

/// Every vertex is joined to the one before it by a straight line, the first to the last.
struct PathVertex {
  double x = 0.0;   ///< outline space, set by the outline's builder
  double y = 0.0;   ///< outline space, grows downwards
  double tx = 0.0;  ///< canvas pixels, set by finishPath; sub-columns (eight to a pixel) once fillConvex has begun
  double ty = 0.0;  ///< the same for y
  int32_t iy = 0;   ///< the vertex's sub-row, set by fillConvex
};

}  // namespace vindrel
