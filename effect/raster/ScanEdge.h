// One side of an outline, as the general filler scans it.
#pragma once

#include <cstdint>

namespace vindrel {

/// All coordinates are canvas pixels times eight.
struct ScanEdge {
  double yTop;      ///< upper end (smaller y), in sub-rows
  double yBottom;   ///< lower end, in sub-rows
  double x;         ///< x at yTop at first, then the running x of the sub-row in hand, in sub-columns
  double dxdy;      ///< change of x per sub-row; infinite or not a number for a horizontal side, which is never used
  int32_t winding;  ///< +1 or -1, by the direction in which the outline runs along this side
};

/// Stands behind the live edges: above all of them when sorting by yTop, right of all of them when sorting by x.
inline constexpr ScanEdge sentinelEdge{-2147483648.0, 1.0, 2147483647.0, 1.0, -1};

}  // namespace vindrel
