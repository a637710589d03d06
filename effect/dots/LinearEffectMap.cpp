#include "effect/dots/LinearEffectMap.h"

#include <cmath>

namespace vindrel {
namespace {

constexpr double radiansPerDegree = 0.017453292519943295;

// A sine that only comes near 0 would let far positions drift across the line, so right angles are exact.
double exactSine(double degrees) noexcept {
  return std::fmod(degrees, 180.0) == 0.0 ? 0.0 : std::sin(degrees * radiansPerDegree);
}
double exactCosine(double degrees) noexcept {
  return std::abs(std::fmod(degrees, 180.0)) == 90.0 ? 0.0 : std::cos(degrees * radiansPerDegree);
}

}  // namespace

LinearEffectMap::LinearEffectMap(double x, double y, double angleDegrees, double size, double falloffRatio,
                                 bool mirror) noexcept
    : originX_(x),
      originY_(y),
      mirror_(mirror),
      sinAngle_(exactSine(angleDegrees)),
      cosAngle_(exactCosine(angleDegrees)),
      reach_(size),
      fadeLength_(size * falloffRatio),
      solidLength_(size - size * falloffRatio) {}

double LinearEffectMap::Evaluate(double x, double y) const noexcept {
  // Kept as is: without a fade the weight is full on the whole canvas, and the size no longer limits it.
  if (fadeLength_ == 0.0) return 1.0;
  const double signedDistance = (x - originX_) * sinAngle_ - (y - originY_) * cosAngle_;
  if (!mirror_ && signedDistance < 0.0) return 1.0;
  const double distance = std::abs(signedDistance);
  if (distance > reach_) return 0.0;
  if (distance < solidLength_) return 1.0;
  return 1.0 - (distance - solidLength_) / fadeLength_;
}

}  // namespace vindrel
