#include "effect/dots/EffectMap.h"

#include "effect/dots/Effector.h"
#include "effect/dots/LayerEffectMap.h"
#include "effect/dots/LinearEffectMap.h"
#include "effect/dots/RadialEffectMap.h"

namespace vindrel {
namespace {

constexpr double unitsPerFixed = 1.52587890625e-05;  // 16.16

// Values of the popup "Effect Map"; its item 2 is a separator.
constexpr int32_t customMapItem = 1;
constexpr int32_t radialItem = 3;
constexpr int32_t radialMirrorItem = 4;
constexpr int32_t linearMirrorItem = 6;

template <class Pixel>
EffectMapPtr makeLayerMap(const EffectorState& state) {
  const PF_EffectWorld* layer = state.customMapLayer;
  if (state.fitToLayer && layer) {
    // The layer is stretched over the whole canvas; the effector's own place and angle play no part.
    return EffectMapPtr(new LayerEffectMap<Pixel>(state.canvasWidth * 0.5, state.canvasHeight * 0.5, 0.0,
                                                  layer->width / state.canvasWidth, layer->height / state.canvasHeight,
                                                  state.tiling, layer));
  }
  return EffectMapPtr(new LayerEffectMap<Pixel>(state.positionX, state.positionY, state.angle * unitsPerFixed, 1.0, 1.0,
                                                state.tiling, layer));
}

}  // namespace

template <class Pixel>
EffectMapPtr MakeEffectMap(const EffectorState& state) {
  switch (state.effectMap) {
    case customMapItem:
      return makeLayerMap<Pixel>(state);
    case radialItem:
    case radialMirrorItem:
      return EffectMapPtr(new RadialEffectMap(state.positionX, state.positionY, state.size, state.falloffRatio,
                                              state.effectMap == radialMirrorItem));
    default:
      return EffectMapPtr(new LinearEffectMap(state.positionX, state.positionY, state.angle * unitsPerFixed, state.size,
                                              state.falloffRatio, state.effectMap == linearMirrorItem));
  }
}

template EffectMapPtr MakeEffectMap<Pixel8>(const EffectorState&);
template EffectMapPtr MakeEffectMap<Pixel16>(const EffectorState&);
template EffectMapPtr MakeEffectMap<Pixel32>(const EffectorState&);

}  // namespace vindrel
