// The weight field of an effector: a number for each position on the canvas.
//
// Built once per frame by MakeEffectMap, asked once per dot and effector. Two maps are geometric (LinearEffectMap,
// RadialEffectMap) and one reads a layer (LayerEffectMap). No map owns anything: worlds are the host's.
#pragma once

#include "effect/dots/SharedCount.h"

namespace vindrel {

struct EffectorState;

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

using EffectMapPtr = SharedPointer<BaseEffectMap>;

/// The map that an effector's popup asks for; an enabled effector or not, there is always one. A popup value outside
/// the list, the separator included, gives the plain linear map. "Use Custom Map" gives a LayerEffectMap<Pixel>.
/// Throws what the global operator new throws.
template <class Pixel>
EffectMapPtr MakeEffectMap(const EffectorState& state);

}  // namespace vindrel
