#include "effect/dots/EffectMap.h"

#include <cmath>

#include "effect/dots/Effector.h"
#include "effect/dots/LayerEffectMap.h"
#include "effect/pixel/Units.h"

namespace vindrel {
namespace {

// A sine that only comes near 0 would let far positions drift across the line, so right angles are exact.
double exactSine(double degrees) noexcept {
  return std::fmod(degrees, 180.0) == 0.0 ? 0.0 : std::sin(degrees * radiansPerDegree);
}
double exactCosine(double degrees) noexcept {
  return std::abs(std::fmod(degrees, 180.0)) == 90.0 ? 0.0 : std::cos(degrees * radiansPerDegree);
}

template <class Pixel>
EffectMapPtr makeLayerMap(const EffectorState<Pixel>& state, double canvasWidth, double canvasHeight) {
  const LayerView<Pixel>& layer = state.customMapLayer;
  if (state.fitToLayer) {
    // The layer is stretched over the whole canvas; the effector's own place and angle play no part.
    return EffectMapPtr(new LayerEffectMap<Pixel>(canvasWidth * 0.5, canvasHeight * 0.5, 0.0, layer.width / canvasWidth,
                                                  layer.height / canvasHeight, state.tiling, layer));
  }
  return EffectMapPtr(
      new LayerEffectMap<Pixel>(state.positionX, state.positionY, state.angleDegrees, 1.0, 1.0, state.tiling, layer));
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
  // Kept as is: without a fade the weight is full on the whole canvas, and the size no longer limits it
  // (withoutFalloffTheWeightIsFullEverywhere, withSizeZeroTheWeightIsFullEverywhere).
  if (fadeLength_ == 0.0) return 1.0;
  const double signedDistance = (x - originX_) * sinAngle_ - (y - originY_) * cosAngle_;
  if (!mirror_ && signedDistance < 0.0) return 1.0;
  const double distance = std::abs(signedDistance);
  if (distance > reach_) return 0.0;
  if (distance < solidLength_) return 1.0;
  return 1.0 - (distance - solidLength_) / fadeLength_;
}

RadialEffectMap::RadialEffectMap(double x, double y, double size, double falloffRatio, bool mirror) noexcept
    : originX_(x),
      originY_(y),
      mirror_(mirror),
      reach_(size),
      fadeLength_(size * falloffRatio),
      solidLength_(size - size * falloffRatio) {}

double RadialEffectMap::Evaluate(double x, double y) const noexcept {
  const double dx = x - originX_;
  const double dy = y - originY_;
  double r = std::sqrt(dy * dy + dx * dx);
  if (r > reach_) return 0.0;
  if (fadeLength_ == 0.0) return 1.0;
  if (mirror_) r = reach_ * 0.5 <= r ? r * 2.0 - reach_ : reach_ - r * 2.0;
  if (r < solidLength_) return 1.0;
  return std::cos((r - solidLength_) * halfTurn / fadeLength_) * 0.5 + 0.5;
}

template <class Pixel>
EffectMapPtr MakeEffectMap(const EffectorState<Pixel>& state, int32_t canvasWidth, int32_t canvasHeight) {
  switch (state.effectMap) {
    case EffectMapKind::customLayer:
      return makeLayerMap(state, canvasWidth, canvasHeight);
    case EffectMapKind::radial:
    case EffectMapKind::radialMirror:
      return EffectMapPtr(new RadialEffectMap(state.positionX, state.positionY, state.size, state.falloffRatio,
                                              state.effectMap == EffectMapKind::radialMirror));
    case EffectMapKind::linear:
    case EffectMapKind::linearMirror:
      break;
  }
  return EffectMapPtr(new LinearEffectMap(state.positionX, state.positionY, state.angleDegrees, state.size,
                                          state.falloffRatio, state.effectMap == EffectMapKind::linearMirror));
}

template EffectMapPtr MakeEffectMap(const EffectorState<Pixel8>&, int32_t, int32_t);
template EffectMapPtr MakeEffectMap(const EffectorState<Pixel16>&, int32_t, int32_t);
template EffectMapPtr MakeEffectMap(const EffectorState<Pixel32>&, int32_t, int32_t);

}  // namespace vindrel
