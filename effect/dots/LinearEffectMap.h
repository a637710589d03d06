// The weight by the distance from a line: full behind it, a straight ramp before it.
#pragma once

#include "effect/dots/EffectMap.h"

namespace vindrel {

class LinearEffectMap final : public BaseEffectMap {
 public:
  /// @param x,y           a point of the line, canvas pixels
  /// @param angleDegrees  turn of the line; at 0 the ramp runs upward on the canvas, at 90 to the right
  /// @param size          reach of the map in pixels
  /// @param falloffRatio  share of the reach over which the weight fades; not clamped
  /// @param mirror        the ramp runs to both sides of the line
  LinearEffectMap(double x, double y, double angleDegrees, double size, double falloffRatio, bool mirror) noexcept;

  double Evaluate(double x, double y) const noexcept override;

 private:
  double originX_;
  double originY_;
  bool mirror_;
  double sinAngle_;     ///< exactly 0.0 at multiples of 180 degrees
  double cosAngle_;     ///< exactly 0.0 halfway between them
  double reach_;        ///< pixels
  double fadeLength_;   ///< pixels before the reach over which the weight fades
  double solidLength_;  ///< pixels of full weight
};

}  // namespace vindrel
