#include "effect/raster/SpanTable.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "effect/pixel/Int32.h"
#include "effect/raster/RunLanes.h"

namespace vindrel {
namespace {

// Room for the eight that are added to the ends of runs when columns become pixels.
constexpr int32_t lastOrderlyColumn = std::numeric_limits<int32_t>::max() - 8;

// Pixels; a stretch from which on the walk over eight intersections is cheaper than counting.
constexpr int64_t wideStretch = 24;

/// Puts the run among runs that ascend with a free column between neighbours, and leaves them so.
void join(SpanTable::Runs& joined, ColumnRun added) {
  int32_t i = joined.count;
  // It mostly belongs at the end.
  while (i > 0 && joined.run[i - 1].end + 1 >= added.start) --i;
  if (i == joined.count || added.end + 1 < joined.run[i].start) {
    for (int32_t k = joined.count; k > i; --k) joined.run[k] = joined.run[k - 1];
    joined.run[i] = added;
    ++joined.count;
    return;
  }
  ColumnRun& run = joined.run[i];
  run.start = std::min(run.start, added.start);
  if (added.end <= run.end) return;
  run.end = added.end;
  int32_t next = i + 1;
  while (next < joined.count && joined.run[next].start <= run.end + 1) {
    run.end = std::max(run.end, joined.run[next].end);
    ++next;
  }
  if (next == i + 1) return;
  joined.count = static_cast<int32_t>(std::copy(joined.run + next, joined.run + joined.count, &run + 1) - joined.run);
}

/// What spanIntersect makes of a, without the nodes.
void intersect(const SpanTable::Runs& a, const SpanTable& table, int32_t slot, SpanTable::Runs& kept) {
  const int32_t countOfB = table.count(slot);
  const auto b = [&](int32_t j) { return table.layer(j)[slot]; };
  kept.count = 0;
  if (a.count == 0) return;
  int32_t i = 0, j = 0;
  ColumnRun p = a.run[0];
  const auto next = [&] {
    ++i;
    if (i < a.count) p = a.run[i];
  };
  while (i < a.count && j < countOfB) {
    const ColumnRun q = b(j);
    if (p.end < q.start) {
      next();
    } else if (q.end < p.start) {
      ++j;
    } else if (p.end < q.end || (p.start <= q.start && p.end == q.end)) {
      kept.run[kept.count++] = {std::max(p.start, q.start), p.end};
      next();
    } else {
      kept.run[kept.count++] = {std::max(p.start, q.start), q.end};
      ++j;
      if (j < countOfB && p.end >= b(j).start) {
        p.start = b(j).end;
      } else {
        next();
      }
    }
  }
  if (kept.count > 0 || i >= a.count) return;
  kept.run[kept.count++] = p;
  while (++i < a.count) kept.run[kept.count++] = a.run[i];
}

ColumnRun pixelsWithin(ColumnRun columns) {
  return {(columns.start >> 3) + 1, (columns.end >> 3) - 1};
}

}  // namespace

bool SpanTable::joinLast(ColumnRun& last, ColumnRun added) {
  if (wrapAdd(last.end, 1) < added.start) return false;
  if (last.start <= added.end && last.start <= added.start && last.end < added.end) last.end = added.end;
  return true;
}

bool SpanTable::isOrderly() const {
  for (int32_t r = 0; r < 8; ++r) {
    if (counts_[r] > 0 && (r < first_ || r > last_)) return false;
    for (int32_t k = 0; k < counts_[r]; ++k) {
      const ColumnRun run = layers_[k][r];
      if (run.start > run.end || run.end > lastOrderlyColumn) return false;
    }
  }
  return true;
}

SpanTable::Shape SpanTable::shape() const {
  Shape shape;
  shape.layers = layerCount();
  for (int32_t k = 0; k < shape.layers; ++k) {
    if (isFull(k)) {
      shape.extent[k] = lanes::extentOf(layers_[k]);
      continue;
    }
    LayerExtent extent{lastOrderlyColumn, std::numeric_limits<int32_t>::min(), lastOrderlyColumn,
                       std::numeric_limits<int32_t>::min()};
    for (int32_t r = first_; r <= last_; ++r) {
      if (counts_[r] <= k) continue;
      const ColumnRun run = layers_[k][r];
      extent = {std::min(extent.leastStart, run.start), std::max(extent.greatestStart, run.start),
                std::min(extent.leastEnd, run.end), std::max(extent.greatestEnd, run.end)};
    }
    shape.extent[k] = extent;
  }
  return shape;
}

void SpanTable::joinInto(const Shape& shape, Runs& joined) const {
  joined.count = 0;
  for (int32_t k = 0; k < shape.layers; ++k) {
    const LayerExtent& extent = shape.extent[k];
    // Mostly, neighbouring sub-rows' runs all have a column in common, or nearly.
    if (extent.greatestStart <= extent.leastEnd + 1) {
      const ColumnRun outer{extent.leastStart, extent.greatestEnd};
      if (joined.count == 0 || joined.run[joined.count - 1].end + 1 < outer.start) {
        joined.run[joined.count++] = outer;
      } else {
        join(joined, outer);
      }
      continue;
    }
    for (int32_t r = first_; r <= last_; ++r) {
      if (counts_[r] > k) join(joined, layers_[k][r]);
    }
  }
}

void SpanTable::solidPixelsInto(const Shape& shape, Runs& solid) const {
  solid.count = 0;
  if (first_ != 0 || last_ != 7) return;
  // What comes of the intersection lies within the runs of its first slot.
  int64_t widest = 0;
  for (int32_t k = 0; k < counts_[0]; ++k) {
    const ColumnRun pixels = pixelsWithin(layers_[k][0]);
    widest = std::max(widest, int64_t{pixels.end} - pixels.start + 1);
  }
  if (widest <= 0) return;
  if (!isFull(0)) {
    intersectInto(solid);
    return;
  }
  const ColumnRun common{shape.extent[0].greatestStart, shape.extent[0].leastEnd};
  if (common.start <= common.end && shape.layers == 1) {
    solid.run[solid.count++] = pixelsWithin(common);
  } else if (common.start > common.end || widest >= wideStretch) {
    intersectInto(solid);
  }
}

void SpanTable::intersectInto(Runs& solid) const {
  // By turns from one to the other; seven steps from here end in `solid`.
  Runs other;
  Runs* from = &other;
  Runs* to = &solid;
  from->count = counts_[0];
  for (int32_t k = 0; k < from->count; ++k) from->run[k] = layers_[k][0];
  for (int32_t r = 1; r < 8; ++r) {
    intersect(*from, *this, r, *to);
    std::swap(from, to);
  }
  for (int32_t k = 0; k < solid.count; ++k) solid.run[k] = pixelsWithin(solid.run[k]);
}

}  // namespace vindrel
