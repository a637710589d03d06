#include "effect/raster/EdgeTable.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "effect/pixel/Int32.h"

namespace vindrel {
namespace {

/// The side between two neighbouring vertices, upper end first. A horizontal one divides by zero; it ends on the
/// sub-row on which it would begin, before its x is used.
ScanEdge edgeBetween(const PathVertex& vertex, const PathVertex& previous) {
  const double y0 = vertex.ty * 8.0;
  const double y1 = previous.ty * 8.0;
  const double x0 = vertex.tx * 8.0;
  const double x1 = previous.tx * 8.0;
  if (y0 > y1) return {y1, y0, x1, (x0 - x1) / (y0 - y1), -1};
  return {y0, y1, x0, (x1 - x0) / (y1 - y0), 1};
}

/// What becomes of a sum for a while.
struct Course {
  double growth;   ///< of each addition, exactly
  double howLong;  ///< additions for which that is known; not above 0 if for none
};

// Sign and exponent: numbers that share them lie between the same two powers of two, on the same side of zero.
uint64_t stretchOf(double number) {
  return std::bit_cast<uint64_t>(number) >> 52U;
}

Course courseOf(double x, double slope) {
  constexpr double forGood = 4294967296.0;  // longer than any scan
  if (x + slope == x || std::isnan(x)) return {0.0, forGood};
  // Two additions show it: a sum that falls half-way between two multiples goes to the even one, so from the first sum
  // on growth can't change, and from x on it doesn't if the first two are alike.
  const double first = x + slope;
  const double second = first + slope;
  const double growth = second - first;
  if (stretchOf(x) != stretchOf(second) || first - x != growth || !std::isfinite(second)) return {0.0, 0.0};
  const double low = std::bit_cast<double>(std::bit_cast<uint64_t>(x) & 0xFFF0000000000000U);
  const bool outward = (x > 0.0) == (slope > 0.0);
  const double room = std::abs((outward ? 2.0 * low : low) - x);
  // Two additions short of the end, so that no sum and no sum before its rounding can reach it.
  return {growth, room / std::max(std::abs(growth), std::abs(slope)) - 2.0};
}

}  // namespace

int32_t nearestSub(double coordinate) {
  return truncateToInt32(coordinate + 0.5);
}

EdgeTable::EdgeTable(std::vector<ScanEdge>& storage, const std::vector<PathVertex>& outline, bool dropLevel)
    : edges_(storage) {
  edges_.clear();
  const PathVertex* previous = &outline.back();
  for (const PathVertex& v : outline) {
    if (!dropLevel || nearestSub(v.ty * 8.0) != nearestSub(previous->ty * 8.0)) {
      edges_.push_back(edgeBetween(v, *previous));
    }
    previous = &v;
  }
  pendingEnd_ = activeEnd_ = static_cast<int32_t>(edges_.size()) - 1;
  edges_.push_back(sentinelEdge);
  // By yTop, the lowest on the screen first. The sentinel is above all; the bound is for outlines beyond even that.
  const int32_t last = pendingEnd_;
  for (int32_t i = last - 1; i >= 0; --i) {
    const ScanEdge edge = at(i);
    int32_t j = i;
    for (; j < last && at(j + 1).yTop > edge.yTop; ++j) at(j) = at(j + 1);
    at(j) = edge;
  }
}

void EdgeTable::enter(int32_t y) {
  start(y);
  end(y);
  sortActive();
}

// Only edges of just this sub-row join: whoever has missed it never does.
void EdgeTable::start(int32_t y) {
  while (pendingEnd_ >= 0 && nearestSub(at(pendingEnd_).yTop) == y) --pendingEnd_;
}

// An edge ends before its last sub-row is used, so one that rounds to a single sub-row does nothing at all.
void EdgeTable::end(int32_t y) {
  for (int32_t j = pendingEnd_ + 1; j <= activeEnd_;) {
    if (nearestSub(at(j).yBottom) == y) {
      at(j) = at(activeEnd_);
      at(activeEnd_) = sentinelEdge;
      --activeEnd_;
    } else {
      ++j;
    }
  }
}

bool EdgeTable::sortActive() {
  bool moved = false;
  for (int32_t i = activeEnd_ - 1; i > pendingEnd_; --i) {
    if (!(at(i).x > at(i + 1).x)) continue;
    const ScanEdge edge = at(i);
    int32_t j = i;
    for (; j < activeEnd_ && edge.x > at(j + 1).x; ++j) at(j) = at(j + 1);
    at(j) = edge;
    moved = true;
  }
  return moved;
}

void EdgeTable::step() {
  for (int32_t j = pendingEnd_ + 1; j <= activeEnd_; ++j) at(j).x += at(j).dxdy;
}

int32_t EdgeTable::nextChange(int32_t y, int32_t limit) const {
  int32_t next = limit;
  const auto consider = [&next, y](int32_t subRow) {
    if (subRow > y) next = std::min(next, subRow);
  };
  if (pendingEnd_ >= 0) consider(nearestSub(at(pendingEnd_).yTop));
  for (int32_t j = pendingEnd_ + 1; j <= activeEnd_; ++j) consider(nearestSub(at(j).yBottom));
  return next;
}

void EdgeTable::pass(int32_t y, int32_t to) {
  while (y < to) {
    enter(y);
    for (const int32_t change = nextChange(y, to); y < change; ++y) {
      sortActive();
      // An edge that starts or ends must find the others as the sub-row before has left them.
      const int32_t leapt = leap(change - 1 - y);
      if (leapt > 0) sortActive();
      y += leapt;
      step();
    }
  }
}

int32_t EdgeTable::leap(int32_t most) {
  // With an x that isn't a number, which compares with nothing, the order is beyond what is said above; unless nothing
  // moves at all.
  double room = most;
  bool anyNaN = false;
  bool allRest = true;
  for (int32_t j = pendingEnd_ + 1; j <= activeEnd_; ++j) {
    const Course course = courseOf(at(j).x, at(j).dxdy);
    room = std::min(room, course.howLong);
    anyNaN = anyNaN || std::isnan(at(j).x);
    allRest = allRest && course.growth == 0.0 && course.howLong > 0.0;
  }
  if (anyNaN && !allRest) return 0;
  if (!(room >= 1.0)) return 0;
  const auto count = static_cast<int32_t>(room);
  for (int32_t j = pendingEnd_ + 1; j <= activeEnd_; ++j) at(j).x += count * courseOf(at(j).x, at(j).dxdy).growth;
  return count;
}

}  // namespace vindrel
