// The weight field of an effector: a number for each position on the canvas.
//
// Built once per frame by MakeEffectMap, asked once per dot and effector. The linear and the radial map are geometric,
// LayerEffectMap reads a layer. No map owns anything.
#pragma once

#include <cstdint>

#include "effect/dots/SharedCount.h"

namespace vindrel {

template <class Pixel>
struct EffectorState;

/// Which map an effector has.
enum class EffectMapKind { customLayer, radial, radialMirror, linear, linearMirror };

class BaseEffectMap {
 public:
  /// The weight at a position in canvas pixels: 0.0 for no effect, 1.0 for the full one. Only a float layer can
  /// give more than 1.0 or less than 0.0. Every position has a weight; there is no error.
  virtual double Evaluate(double x, double y) const noexcept = 0;

 protected:
  // Maps are freed without a destructor (see SharedCount.h), so none is virtual and nobody destroys one by its base.
  BaseEffectMap() = default;
  BaseEffectMap(const BaseEffectMap&) = default;
  BaseEffectMap& operator=(const BaseEffectMap&) = default;
  ~BaseEffectMap() = default;
};

/// The weight by the distance from a line: full behind it, a straight ramp before it.
class LinearEffectMap final : public BaseEffectMap {
 public:
  /// @param x,y           a point of the line, canvas pixels
  /// @param angleDegrees  turn of the line; at 0 the ramp runs upward on the canvas, at 90 to the right. In degrees,
  ///                      because only there a right angle is an exact number
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

/// The weight by the distance from a point: full near it, a raised cosine down to the rim.
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

using EffectMapPtr = SharedPointer<BaseEffectMap>;

/// The map that an effector asks for, be it enabled or not. A custom layer gives a LayerEffectMap<Pixel>.
/// @param state  the pixels of its layer must outlive the map
/// @param canvasWidth,canvasHeight  pixels; a fitted layer is stretched over them
/// Throws what the global operator new throws.
template <class Pixel>
EffectMapPtr MakeEffectMap(const EffectorState<Pixel>& state, int32_t canvasWidth, int32_t canvasHeight);

}  // namespace vindrel
