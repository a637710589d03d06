// The sides of one outline while the general filler scans it from sub-row to sub-row.
//
// One array serves twice: edges 0 to pendingEnd_ wait for their first sub-row, the next to start last; edges
// pendingEnd_ + 1 to activeEnd_ are crossed by the present sub-row, leftmost first. Behind them stand sentinels.
// Starting an edge moves one border and copies nothing.
//
// Leaps. Above the canvas nothing is painted, but x comes from repeated addition and equal edges keep the order that
// the sub-rows before gave them, so sub-rows can't just be left out. As long as a sum stays between two neighbouring
// powers of two, though, all sums are multiples of the same smallest step, and each addition grows it by the same
// rounded slope. While that holds for all active edges at once, each of them is exactly linear. So is the distance of
// any two: it changes its sign once at most, and two edges that are level at the end were never the wrong way round
// before, or were level all along. Sorting once at the end, equals in the order of the start, then gives the order that
// sorting on every sub-row gives. An edge crosses a few dozen powers of two on its way, however long that is.
#pragma once

#include <cstdint>
#include <vector>

#include "effect/raster/Path.h"

namespace vindrel {

/// One side of an outline while it is scanned. All coordinates are canvas pixels times eight.
struct ScanEdge {
  double yTop;      ///< upper end (smaller y), in sub-rows
  double yBottom;   ///< lower end, in sub-rows
  double x;         ///< x at yTop at first, then the running x of the sub-row in hand, in sub-columns
  double dxdy;      ///< change of x per sub-row; infinite or not a number for a horizontal side, which is never used
  int32_t winding;  ///< +1 or -1, by the direction in which the outline runs along this side
};

/// Stands behind the live edges: above all of them when sorting by yTop, right of all of them when sorting by x.
inline constexpr ScanEdge sentinelEdge{-2147483648.0, 1.0, 2147483647.0, 1.0, -1};

/// Canvas pixels. An outline whose coordinates all lie within this is an ordinary one: its rows and columns, an eighth
/// of a pixel each, are far from the ends of the 32-bit range.
inline constexpr double ordinaryReach = 67108864.0;

class EdgeTable {
 public:
  /// Takes the sides of the closed outline, read from tx and ty. The vector is emptied first, and keeps what the scan
  /// makes of it. At least one vertex.
  /// @param dropLevel  leave out the sides whose ends round to one sub-row, which would start and end on it. May only
  ///                   be asked for with an ordinary outline, in which equal edges may stand in any order.
  EdgeTable(std::vector<ScanEdge>& storage, const std::vector<PathVertex>& outline, bool dropLevel);

  /// Lets the edges join whose first sub-row is just y, lets those go whose last one it is, and sorts.
  void enter(int32_t y);

  /// By x, leftmost first; equals keep their order. Nearly sorted from the sub-row before, so insertion costs little.
  /// Returns whether any edge has changed its place.
  bool sortActive();

  /// On to the next sub-row.
  void step();

  /// The first sub-row behind y on which an edge starts or ends, `limit` at most.
  int32_t nextChange(int32_t y, int32_t limit) const;

  /// What entering each sub-row from `y` to the one before `to`, and a step after each, comes to.
  void pass(int32_t y, int32_t to);

  /// Active edges, leftmost first.
  int32_t activeCount() const { return activeEnd_ - pendingEnd_; }
  ScanEdge& active(int32_t i) { return at(pendingEnd_ + 1 + i); }

 private:
  void start(int32_t y);
  void end(int32_t y);
  /// Steps as often as can be done at once, `most` times at most, and returns how often that is; maybe 0. No edge may
  /// start or end on the way, and the active edges must be sorted.
  int32_t leap(int32_t most);
  ScanEdge& at(int32_t i) { return edges_[static_cast<std::size_t>(i)]; }
  const ScanEdge& at(int32_t i) const { return edges_[static_cast<std::size_t>(i)]; }

  std::vector<ScanEdge>& edges_;
  int32_t pendingEnd_;
  int32_t activeEnd_;
};

/// The sub-row or sub-column on which a coordinate in these lies; half-way ones go up. Truncation goes toward zero, so
/// everything from -1.5 to 0.5 is 0.
int32_t nearestSub(double coordinate);

}  // namespace vindrel
