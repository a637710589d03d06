#include "effect/dots/Effector.h"

#include <algorithm>

#include "effect/dots/LayerEffectMap.h"
#include "effect/pixel/Blend.h"
#include "effect/pixel/Convert.h"
#include "effect/pixel/Hsv.h"

namespace vindrel {
namespace {

template <class Pixel>
double squaredDistance(const EffectorState<Pixel>& state, double x, double y) noexcept {
  const double dx = x - state.positionX;
  const double dy = y - state.positionY;
  return dx * dx + dy * dy;
}

template <class Pixel>
void pickColor(const EffectorState<Pixel>& state, const BaseEffectMap& map, DotDraft<Pixel>& dot) noexcept {
  if (state.effectMap != EffectMapKind::customLayer || !state.pickSourceColor) return;
  const auto& layerMap = static_cast<const LayerEffectMap<Pixel>&>(map);
  if (!layerMap.hasPixels()) return;
  dot.color = state.tiling == Tiling::none ? layerMap.SamplePixelOr(dot.x, dot.y, dot.color)
                                           : layerMap.SamplePixel(dot.x, dot.y);
}

template <class Pixel>
void moveToTargets(const EffectorState<Pixel>& state, double w, DotDraft<Pixel>& dot) noexcept {
  const double u = 1.0 - w;
  dot.size = state.absSize * w + u * dot.size;
  dot.aspect = state.targetAspect * w + u * dot.aspect;
  dot.rotation = u * dot.rotation + state.targetRotation * w;
  dot.opacity = u * dot.opacity + state.targetOpacity * w;
}

template <class Pixel>
void scaleAndOffset(const EffectorState<Pixel>& state, double w, DotDraft<Pixel>& dot) noexcept {
  dot.size = ((state.ratioSize - 1.0) * w + 1.0) * dot.size + state.offsetSize * w;
  dot.aspect = dot.aspect * ((state.ratioAspect - 1.0) * w + 1.0) + state.addAspect * w;
  dot.rotation = dot.rotation * ((state.ratioRotation - 1.0) * w + 1.0) + state.addRotation * w;
  dot.opacity = ((state.ratioOpacity - 1.0) * w + 1.0) * dot.opacity + state.addOpacity * w;
}

/// The part w of the way from one channel to another, truncated at the integer depths.
template <class Pixel>
Channel<Pixel> mixChannel(Channel<Pixel> from, Channel<Pixel> to, double w) noexcept {
  const auto start = static_cast<double>(from);
  return narrowChannel<Pixel>((static_cast<double>(to) - start) * w + start);
}

template <class Pixel>
void tint(const EffectorState<Pixel>& state, double w, Pixel& color) noexcept {
  Pixel blended = color;
  // In float blendPixel leaves this test to its caller; at the integer depths it only comes early.
  if (state.blendColor.alpha != 0) blendPixel(blended, state.blendColor, state.blendMode);
  color.alpha = mixChannel<Pixel>(color.alpha, blended.alpha, w);
  color.red = mixChannel<Pixel>(color.red, blended.red, w);
  color.green = mixChannel<Pixel>(color.green, blended.green, w);
  color.blue = mixChannel<Pixel>(color.blue, blended.blue, w);
}

}  // namespace

template <class Pixel>
void applyEffector(const EffectorState<Pixel>& state, const BaseEffectMap& map, bool frontOrderingPossible,
                   DotDraft<Pixel>& dot) noexcept {
  if (frontOrderingPossible && state.centerDotToFront) {
    const double distance = squaredDistance(state, dot.x, dot.y);
    dot.frontKey = dot.frontKey == noFrontKey ? distance : std::min(dot.frontKey, distance);
  }
  // Kept as is: the colour is picked before the weight is known, so that a dot of weight 0 has the layer's colour
  // too (aDotOfWeightZeroStillTakesIt).
  pickColor(state, map, dot);

  const double w = map.Evaluate(dot.x, dot.y);
  if (w == 0.0) return;
  if (state.absolute) moveToTargets(state, w, dot);
  scaleAndOffset(state, w, dot);
  if (state.color) tint(state, w, dot.color);
  if (state.hueShiftTurns != 0.0) {
    Hsv hsv = rgbToHsv(dot.color);
    hsv.hue = state.hueShiftTurns * w + hsv.hue;
    dot.color = hsvToRgb<Pixel>(hsv);
  }
}

template void applyEffector(const EffectorState<Pixel8>&, const BaseEffectMap&, bool, DotDraft<Pixel8>&) noexcept;
template void applyEffector(const EffectorState<Pixel16>&, const BaseEffectMap&, bool, DotDraft<Pixel16>&) noexcept;
template void applyEffector(const EffectorState<Pixel32>&, const BaseEffectMap&, bool, DotDraft<Pixel32>&) noexcept;

}  // namespace vindrel
