// The inner loop of the general filler: a few edges, between two sub-rows on which one starts or ends.
//
// While their order holds, the same edges open and close the runs of each sub-row, so winding is looked at once. What
// is left for a sub-row is to truncate, to step and to look whether the order still holds.
//
// Only for ordinary outlines, with all coordinates within ordinaryReach. Their columns are in range: an edge that is
// used for k sub-rows is higher than k - 1 of them, so its x leaves the span between its ends by less than that span.
// And each of their pixel rows fits the table: sides are balanced on every sub-row from the first to the last, so each
// has a run, the eighth one too, and no pixel row is left to pile up on; half as many runs as edges is the most that a
// sub-row can have.
#pragma once

#include <cstdint>

#include "effect/raster/EdgeTable.h"
#include "effect/raster/SideLanes.h"
#include "effect/raster/SpanTable.h"

namespace vindrel {

/// Calls add with the edges that open and close each run of a sub-row, from the left.
template <class Add>
void forEachRun(EdgeTable& edges, Add add) {
  int32_t winding = 0;
  int32_t open = -1;
  for (int32_t i = 0; i < edges.activeCount(); ++i) {
    winding += edges.active(i).winding;
    if (open < 0) {
      open = i;
    } else if (winding == 0) {
      add(open, i);
      open = -1;
    }
  }
}

/// A few active edges of an ordinary outline, from one change to the next.
class Crossings {
 public:
  static constexpr int32_t most = 16;

  /// Copies the active edges; there must not be more than `most`. They must be sorted.
  explicit Crossings(EdgeTable& edges) : count_(edges.activeCount()) {
    for (int32_t i = 0; i < count_; ++i) {
      x_[i] = edges.active(i).x;
      slope_[i] = edges.active(i).dxdy;
    }
    forEachRun(edges, [this](int32_t open, int32_t close) { run_[runs_++] = {open, close}; });
  }

  /// Adds the runs of the sub-rows from y on to the table, until `stop` or until the order no longer holds. Returns the
  /// sub-row behind the last one. The table must have nothing yet for these sub-rows.
  int32_t scan(SpanTable& table, int32_t y, int32_t stop) {
    if (count_ == 2 && runs_ == 1) return scanTwo(table, y, stop);
    if (count_ == 4 && runs_ > 0) return runs_ == 2 ? scanFour<2>(table, y, stop) : scanFour<1>(table, y, stop);
    return scanAny(table, y, stop);
  }

  bool inOrder() const { return inOrder_; }

  /// Brings the edges to the sub-row that scan has returned. They may need sorting.
  void giveBack(EdgeTable& edges) const {
    for (int32_t i = 0; i < count_; ++i) edges.active(i).x = x_[i];
  }

 private:
  int32_t scanTwo(SpanTable& table, int32_t y, int32_t stop) {
    lanes::TwoSides sides(x_, slope_);
    while (y < stop && inOrder_) {
      table.set(y & 7, sides.columns());
      sides.step();
      inOrder_ = sides.inOrder();
      ++y;
    }
    sides.storeTo(x_);
    return y;
  }

  /// With two runs each is between two neighbours; a single one is between the outermost edges.
  template <int32_t runs>
  int32_t scanFour(SpanTable& table, int32_t y, int32_t stop) {
    lanes::TwoSides left(x_, slope_), right(x_ + 2, slope_ + 2);
    while (y < stop && inOrder_) {
      if constexpr (runs == 2) {
        table.set(y & 7, left.columns(), right.columns());
      } else {
        table.set(y & 7, {left.columns().start, right.columns().end});
      }
      left.step();
      right.step();
      inOrder_ = left.inOrderBefore(right);
      ++y;
    }
    left.storeTo(x_);
    right.storeTo(x_ + 2);
    return y;
  }

  int32_t scanAny(SpanTable& table, int32_t y, int32_t stop) {
    while (y < stop && inOrder_) {
      for (int32_t k = 0; k < runs_; ++k)
        table.append(y & 7, {nearestSub(x_[run_[k].open]), nearestSub(x_[run_[k].close])});
      for (int32_t i = 0; i < count_; ++i) x_[i] += slope_[i];
      for (int32_t i = 1; i < count_; ++i) inOrder_ = inOrder_ && !(x_[i - 1] > x_[i]);
      ++y;
    }
    return y;
  }

  struct Run {
    int32_t open, close;
  };
  double x_[most];
  double slope_[most];
  Run run_[most / 2];
  int32_t count_;
  int32_t runs_ = 0;
  bool inOrder_ = true;
};

}  // namespace vindrel
