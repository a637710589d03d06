#include "cli/Ease.h"

#include <algorithm>

namespace cli {
namespace {

/// A cubic from 0 to 1 with two inner points.
double cubic(double first, double second, double at) {
  const double rest = 1.0 - at;
  return 3.0 * rest * rest * at * first + 3.0 * rest * at * at * second + at * at * at;
}

/// Where along the curve the time is `part`. Its inner points lie within 0 to 1, so the time never turns back.
double placeOf(double first, double second, double part) {
  double low = 0.0;
  double high = 1.0;
  constexpr int halvings = 60;  // to the last bits of a double
  for (int i = 0; i < halvings; ++i) {
    const double middle = 0.5 * (low + high);
    (cubic(first, second, middle) < part ? low : high) = middle;
  }
  return 0.5 * (low + high);
}

}  // namespace

double easedPart(const Ease& out, const Ease& in, double part, double seconds, double distance) {
  if (out.kind == Ease::Kind::hold) return part < 1.0 ? 0.0 : 1.0;
  if (out.kind == Ease::Kind::linear && in.kind == Ease::Kind::linear) return part;
  // A linear side beside a Bezier one leaves in the direction of the other key, with an influence of a sixth.
  constexpr double linearInfluence = 1.0 / 6.0;
  const auto influence = [](const Ease& ease) {
    return ease.kind == Ease::Kind::bezier ? std::clamp(ease.influence / 100.0, 0.0, 1.0) : linearInfluence;
  };
  // Units a second, as parts of the way for each part of the time.
  const auto slope = [&](const Ease& ease) {
    if (ease.kind != Ease::Kind::bezier) return 1.0;
    return distance == 0.0 ? 0.0 : ease.speed * seconds / distance;
  };
  const double firstTime = influence(out);
  const double secondTime = 1.0 - influence(in);
  const double first = slope(out) * influence(out);
  const double second = 1.0 - slope(in) * influence(in);
  return cubic(first, second, placeOf(firstTime, secondTime, part));
}

}  // namespace cli
