// The weight by the distance from a point: full near it, a raised cosine down to the rim.
#pragma once

#include "effect/dots/EffectMap.h"

namespace vindrel {

class RadialEffectMap final : public BaseEffectMap {
 public:
  /// @param x,y           centre, canvas pixels
  /// @param size          reach of the map in pixels
  /// @param falloffRatio  share of the reach over which the weight fades; not clamped
  /// @param mirror        full weight on the ring at half the reach, fading inward and outward
  RadialEffectMap(double x, double y, double size, double falloffRatio, bool mirror) noexcept;

  double Evaluate(double x, double y) const noexcept override;

 private:
  double originX_;
  double originY_;
  bool mirror_;
  double reach_;        ///< pixels
  double fadeLength_;   ///< pixels over which the weight fades
  double solidLength_;  ///< pixels of full weight
};

}  // namespace vindrel
