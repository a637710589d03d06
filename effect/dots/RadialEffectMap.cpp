#include "effect/dots/RadialEffectMap.h"

#include <cmath>

namespace vindrel {

RadialEffectMap::RadialEffectMap(double x, double y, double size, double falloffRatio, bool mirror) noexcept
    : originX_(x),
      originY_(y),
      mirror_(mirror),
      reach_(size),
      fadeLength_(size * falloffRatio),
      solidLength_(size - size * falloffRatio) {}

double RadialEffectMap::Evaluate(double x, double y) const noexcept {
  constexpr double pi = 3.141592653589793;
  const double dx = x - originX_;
  const double dy = y - originY_;
  double r = std::sqrt(dy * dy + dx * dx);
  if (r > reach_) return 0.0;
  if (fadeLength_ == 0.0) return 1.0;
  if (mirror_) r = reach_ * 0.5 <= r ? r * 2.0 - reach_ : reach_ - r * 2.0;
  if (r < solidLength_) return 1.0;
  return std::cos((r - solidLength_) * pi / fadeLength_) * 0.5 + 0.5;
}

}  // namespace vindrel
