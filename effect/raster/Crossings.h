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
#include "effect/raster/SpanTable.h"

namespace vindrel {

/// Calls add with the edges that open and close each run of a sub-row, from the left.
template <class Add>
void forEachRun(EdgeTable& edges, bool nonZeroWinding, Add add) {
  int32_t winding = 0;
  int32_t open = -1;
  for (int32_t i = 0; i < edges.activeCount(); ++i) {
    // By even and odd, every second edge closes what the one before has opened.
    winding += nonZeroWinding ? edges.active(i).winding : open < 0 ? 1 : -1;
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
  Crossings(EdgeTable& edges, bool nonZeroWinding) : count_(edges.activeCount()) {
    for (int32_t i = 0; i < count_; ++i) {
      x_[i] = edges.active(i).x;
      slope_[i] = edges.active(i).dxdy;
    }
    forEachRun(edges, nonZeroWinding, [this](int32_t open, int32_t close) { run_[runs_++] = {open, close}; });
  }

  /// Adds the runs of the sub-rows from y on to the table, until `stop` or until the order no longer holds. Returns the
  /// sub-row behind the last one. The table must have nothing yet for these sub-rows.
  int32_t scan(SpanTable& table, int32_t y, int32_t stop) {
    switch (count_) {
      case 2:
        return scanEdges<2>(table, y, stop);
      case 4:
        return scanEdges<4>(table, y, stop);
      default:
        return scanEdges<0>(table, y, stop);
    }
  }

  bool inOrder() const { return inOrder_; }

  /// Brings the edges to the sub-row that scan has returned. They may need sorting.
  void giveBack(EdgeTable& edges) const {
    for (int32_t i = 0; i < count_; ++i) edges.active(i).x = x_[i];
  }

 private:
  template <int32_t known>
  int32_t scanEdges(SpanTable& table, int32_t y, int32_t stop) {
    const int32_t count = known > 0 ? known : count_;
    while (y < stop) {
      for (int32_t k = 0; k < runs_; ++k) table.append(y & 7, {column(run_[k].open), column(run_[k].close)});
      for (int32_t i = 0; i < count; ++i) x_[i] += slope_[i];
      ++y;
      for (int32_t i = 1; i < count; ++i) inOrder_ = inOrder_ && !(x_[i - 1] > x_[i]);
      if (!inOrder_) break;
    }
    return y;
  }

  /// nearestSub, for a coordinate that is in range.
  int32_t column(int32_t edge) const { return static_cast<int32_t>(x_[edge] + 0.5); }

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
