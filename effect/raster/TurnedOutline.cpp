#include "effect/raster/TurnedOutline.h"

#include <algorithm>
#include <cmath>

namespace vindrel {
namespace {

constexpr double crossMargin = 0x1p-18;
constexpr double heightMargin = 0x1p-12;

}  // namespace

void TurnedOutline::take(const std::vector<PathVertex>& outline, const PathMatrix& matrix) {
  if (turned_ && matrix.a == matrix_.a && matrix.b == matrix_.b && matrix.d == matrix_.d && matrix.e == matrix_.e) {
    return;
  }
  matrix_ = matrix;
  turned_ = true;
  holds_ = false;
  if (outline.size() < 3 || outline.size() > mostVertices) return;
  turn(outline);
  const auto n = static_cast<int32_t>(outline.size());
  if (!hasMargins(n)) return;
  makeChains(n);
  holds_ = true;
}

// The first two of the three terms that placeOutline adds up.
void TurnedOutline::turn(const std::vector<PathVertex>& outline) {
  int32_t i = 0;
  for (const PathVertex& vertex : outline) {
    u_[i] = matrix_.b * vertex.y + vertex.x * matrix_.a;
    v_[i] = vertex.x * matrix_.d + matrix_.e * vertex.y;
    ++i;
  }
}

bool TurnedOutline::hasMargins(int32_t n) const {
  double leastCross = HUGE_VAL, greatestCross = -HUGE_VAL, leastStep = HUGE_VAL;
  int32_t turns = 0;
  bool falls = false, anyFall = false, firstFalls = false;
  int32_t q = n - 2, p = n - 1;
  for (int32_t i = 0; i < n; ++i) {
    // What isn't a number fails here, as it compares with nothing.
    if (!(std::abs(u_[i]) <= coordinateReach && std::abs(v_[i]) <= coordinateReach)) return false;
    const double cross = (v_[i] - v_[q]) * (u_[p] - u_[q]) - (v_[p] - v_[q]) * (u_[i] - u_[q]);
    leastCross = std::min(leastCross, cross);
    greatestCross = std::max(greatestCross, cross);
    const double step = v_[i] - v_[p];
    if (step != 0.0) {
      leastStep = std::min(leastStep, std::abs(step));
      if (anyFall && falls != (step > 0.0)) ++turns;
      falls = step > 0.0;
      if (!anyFall) firstFalls = falls;
      anyFall = true;
    }
    q = p;
    p = i;
  }
  if (falls != firstFalls) ++turns;
  return (leastCross > crossMargin || greatestCross < -crossMargin) && leastStep >= heightMargin && turns == 2;
}

void TurnedOutline::makeChains(int32_t n) {
  const auto top = static_cast<int32_t>(std::min_element(v_, v_ + n) - v_);
  left_ = *std::min_element(u_, u_ + n);
  right_ = *std::max_element(u_, u_ + n);
  count_ = 0;
  const auto follow = [&](int32_t direction) {
    int32_t at = top;
    for (;;) {
      x_[count_] = u_[at];
      y_[count_] = v_[at];
      ++count_;
      const int32_t next = (at + direction + n) % n;
      if (v_[next] < v_[at]) break;
      at = next;
    }
  };
  follow(1);
  forwardCount_ = count_;
  follow(-1);
  x_[count_] = y_[count_] = 0.0;
}

}  // namespace vindrel
