#include "effect/dots/Effector.h"

#include <algorithm>

#include "effect/dots/LayerEffectMap.h"
#include "effect/pixel/Blend.h"
#include "effect/pixel/Convert.h"
#include "effect/pixel/Hsv.h"

namespace vindrel {
namespace {

constexpr double unitsPerFixed = 1.52587890625e-05;  // 16.16
constexpr double radiansPerDegree = 0.017453292519943295;

constexpr int32_t customMapItem = 1;
constexpr int32_t noTilingItem = 1;

/// The code of an item of the popup "Blend Mode". Separators take numbers of their own there, and they, like any
/// number outside the list, mean Normal.
int32_t blendCodeOf(int32_t item) noexcept {
  switch (item) {
    case 3:
      return addBlend;
    case 4:
      return subtractBlend;
    case 5:
      return multiplyBlend;
    case 6:
      return screenBlend;
    case 7:
      return overlayBlend;
    case 8:
      return hardLightBlend;
    case 9:
      return softLightBlend;
    case 11:
      return darkenBlend;
    case 12:
      return lightenBlend;
    case 13:
      return differenceBlend;
    case 14:
      return exclusionBlend;
    default:
      return normalBlend;
  }
}

double squaredDistance(const EffectorState& state, double x, double y) noexcept {
  const double dx = x - state.positionX;
  const double dy = y - state.positionY;
  return dx * dx + dy * dy;
}

template <class Pixel>
void pickColor(const EffectorState& state, const BaseEffectMap& map, DotDraft<Pixel>& dot) noexcept {
  if (state.effectMap != customMapItem || !state.customMapLayer || !state.pickSourceColor) return;
  const auto& layerMap = static_cast<const LayerEffectMap<Pixel>&>(map);
  if (!layerMap.hasPixels()) return;
  dot.color = state.tiling == noTilingItem ? layerMap.SamplePixelOr(dot.x, dot.y, dot.color)
                                           : layerMap.SamplePixel(dot.x, dot.y);
}

template <class Pixel>
void moveToTargets(const EffectorState& state, double w, DotDraft<Pixel>& dot) noexcept {
  const double u = 1.0 - w;
  dot.size = state.absSize * w + u * dot.size;
  dot.aspect = state.targetAspect * w + u * dot.aspect;
  dot.rotation = u * dot.rotation + state.targetRotation * w;
  dot.opacity = u * dot.opacity + state.targetOpacity * w;
}

template <class Pixel>
void scaleAndOffset(const EffectorState& state, double w, DotDraft<Pixel>& dot) noexcept {
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
void tint(const EffectorState& state, const Pixel& blendColor, double w, Pixel& color) noexcept {
  Pixel blended = color;
  // In float blendPixel leaves this test to its caller; at the integer depths it only comes early.
  if (blendColor.alpha != 0) blendPixel(blended, blendColor, blendCodeOf(state.blendMode));
  color.alpha = mixChannel<Pixel>(color.alpha, blended.alpha, w);
  color.red = mixChannel<Pixel>(color.red, blended.red, w);
  color.green = mixChannel<Pixel>(color.green, blended.green, w);
  color.blue = mixChannel<Pixel>(color.blue, blended.blue, w);
}

}  // namespace

EffectorState makeEffectorState(const EffectorParams& params, int32_t canvasWidth, int32_t canvasHeight) noexcept {
  EffectorState state{};
  static_cast<EffectorParams&>(state) = params;
  state.positionX = params.position.x * unitsPerFixed;
  state.positionY = params.position.y * unitsPerFixed;
  state.falloffRatio = params.falloff / 100;
  state.targetAspect = std::clamp(params.absAspect / 100, -1.0, 1.0);
  state.targetRotation = params.absRotation * unitsPerFixed * radiansPerDegree;
  state.targetOpacity = params.absOpacity / 100;
  state.addAspect = std::clamp(params.offsetAspect / 100, -1.0, 1.0);
  state.addRotation = params.offsetRotation * unitsPerFixed * radiansPerDegree;
  state.addOpacity = params.offsetOpacity / 100;
  state.hueShiftTurns = params.shiftHue * unitsPerFixed / 360;
  state.canvasWidth = canvasWidth;
  state.canvasHeight = canvasHeight;
  return state;
}

template <class Pixel>
void applyEffector(const EffectorState& state, const BaseEffectMap& map, const Pixel& blendColor,
                   bool frontOrderingPossible, DotDraft<Pixel>& dot) noexcept {
  if (!state.enabled) return;
  if (frontOrderingPossible && state.centerDotToFront) {
    const double distance = squaredDistance(state, dot.x, dot.y);
    dot.frontKey = dot.frontKey == noFrontKey ? distance : std::min(dot.frontKey, distance);
  }
  // Kept as is: the colour is picked before the weight is known, so that a dot of weight 0 has the layer's colour too.
  pickColor(state, map, dot);

  const double w = map.Evaluate(dot.x, dot.y);
  if (w == 0.0) return;
  if (state.absolute) moveToTargets(state, w, dot);
  scaleAndOffset(state, w, dot);
  if (state.color) tint(state, blendColor, w, dot.color);
  if (state.shiftHue != 0) {
    Hsv hsv = rgbToHsv(dot.color);
    hsv.hue = state.hueShiftTurns * w + hsv.hue;
    dot.color = hsvToRgb<Pixel>(hsv);
  }
}

template void applyEffector(const EffectorState&, const BaseEffectMap&, const Pixel8&, bool,
                            DotDraft<Pixel8>&) noexcept;
template void applyEffector(const EffectorState&, const BaseEffectMap&, const Pixel16&, bool,
                            DotDraft<Pixel16>&) noexcept;
template void applyEffector(const EffectorState&, const BaseEffectMap&, const Pixel32&, bool,
                            DotDraft<Pixel32>&) noexcept;

}  // namespace vindrel
