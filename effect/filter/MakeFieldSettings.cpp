#include "effect/filter/MakeFieldSettings.h"

#include <algorithm>
#include <cstddef>

#include "effect/filter/FrameRecord.h"
#include "effect/params/Choices.h"
#include "effect/pixel/Convert.h"
#include "effect/pixel/Units.h"

// Formulas stand in the order in which they round; a factor put together beforehand would give other last bits.

namespace vindrel {
namespace {

/// Lengths that the user sets in pixels of the full layer become pixels of the canvas by these factors. Places and
/// ratios don't: the host has scaled the places already.
struct DownSampling {
  double x, y;  ///< for what lies along an axis
  double both;  ///< for sizes: the smaller of the two
};

DownSampling downSamplingOf(const PF_InData& in_data) {
  const double x = scaleFactor(in_data.downsample_x);
  const double y = scaleFactor(in_data.downsample_y);
  return {x, y, std::min(x, y)};
}

double degrees(PF_Fixed angle) {
  return angle * twoToMinus16;
}
double radians(PF_Fixed angle) {
  return angle * twoToMinus16 * radiansPerDegree;
}
double turns(PF_Fixed angle) {
  return angle * twoToMinus16 / degreesPerTurn;
}
double share(double percent) {
  return percent / 100.0;
}
double aspectOf(double percent) {
  return std::clamp(percent / 100.0, -1.0, 1.0);
}

struct Place {
  double x, y;
};

Place placeOf(const PF_FixedPoint& point) {
  return {point.x * twoToMinus16, point.y * twoToMinus16};
}

template <class Pixel>
Pixel colorOf(const PF_Pixel& color) {
  return pixelFrom8<Pixel>(color.alpha, color.red, color.green, color.blue);
}

template <class Pixel>
LayerView<Pixel> viewOf(const PF_EffectWorld* world) {
  if (world == nullptr) return {};
  return {reinterpret_cast<const std::byte*>(world->data), world->width, world->height, world->rowbytes};
}

// What a number outside a popup's list means is told by each of the functions below.

Place rotationCenterOf(const RenderParams& params) {
  switch (params.globalRotationCenter) {
    case rotationCenterCenterItem:
      return placeOf(params.centerPosition);
    case rotationCenterFx1Item:
      return placeOf(params.effector[0].position);
    case rotationCenterFx2Item:
      return placeOf(params.effector[1].position);
    case rotationCenterFx3Item:
      return placeOf(params.effector[2].position);
    default:
      return {0.0, 0.0};
  }
}

double pitchOf(int32_t distanceBetween, double dotSize, double distance) {
  switch (distanceBetween) {
    case distanceBetweenDotsItem:
      return dotSize + distance;
    case distanceBetweenCentersItem:
      return distance;
    default:
      return 1.0;
  }
}

RotationType rotationTypeOf(int32_t item) {
  switch (item) {
    case rotationNormalItem:
      return RotationType::normal;
    case rotationLookAtCenterItem:
      return RotationType::lookAtCenter;
    default:
      return RotationType::fixDotAngle;
  }
}

EffectMapKind effectMapOf(int32_t item) {
  switch (item) {
    case customMapItem:
      return EffectMapKind::customLayer;
    case radialMapItem:
      return EffectMapKind::radial;
    case radialMirrorMapItem:
      return EffectMapKind::radialMirror;
    case linearMirrorMapItem:
      return EffectMapKind::linearMirror;
    default:
      return EffectMapKind::linear;
  }
}

Tiling tilingOf(int32_t item) {
  switch (item) {
    case tilingNoneItem:
      return Tiling::none;
    case tilingRepeatItem:
      return Tiling::repeat;
    case tilingMirrorItem:
      return Tiling::mirror;
    case tilingExtendEdgeItem:
      return Tiling::extendEdge;
    default:
      return Tiling::unknown;
  }
}

BlendMode blendModeOf(int32_t item) {
  switch (item) {
    case blendAddItem:
      return addBlend;
    case blendSubtractItem:
      return subtractBlend;
    case blendMultiplyItem:
      return multiplyBlend;
    case blendScreenItem:
      return screenBlend;
    case blendOverlayItem:
      return overlayBlend;
    case blendHardLightItem:
      return hardLightBlend;
    case blendSoftLightItem:
      return softLightBlend;
    case blendDarkenItem:
      return darkenBlend;
    case blendLightenItem:
      return lightenBlend;
    case blendDifferenceItem:
      return differenceBlend;
    case blendExclusionItem:
      return exclusionBlend;
    default:
      return normalBlend;
  }
}

LatticeSettings latticeOf(const RenderParams& params, const DownSampling& scale) {
  const Place center = placeOf(params.centerPosition);
  const Place rotationCenter = rotationCenterOf(params);
  const double dotSize = params.dotSize * scale.both;
  return {.centerX = center.x,
          .centerY = center.y,
          .rotationCenterX = rotationCenter.x,
          .rotationCenterY = rotationCenter.y,
          .rotation = radians(params.globalRotation),
          .pitchX = pitchOf(params.distanceBetween, dotSize, params.dotDistanceX * scale.x),
          .pitchY = pitchOf(params.distanceBetween, dotSize, params.dotDistanceY * scale.y),
          .jitterX = params.randomDistanceX,
          .jitterY = params.randomDistanceY};
}

template <class Pixel>
BaseDot<Pixel> baseOf(const RenderParams& params, const DownSampling& scale) {
  return {.baseSize = params.dotSize * scale.both,
          .baseAspect = aspectOf(params.dotAspect),
          .baseRotation = radians(params.dotRotation),
          .baseOpacity = share(params.dotOpacity),
          .baseColor = colorOf<Pixel>(params.dotColor),
          .rotationType = rotationTypeOf(params.rotationType),
          .shape = static_cast<DotShape>(params.dotShape)};
}

JitterAmounts jitterOf(const RenderParams& params) {
  return {.size = params.randomSize,
          .aspect = params.randomAspect,
          .rotation = params.randomRotation,
          .opacity = params.randomOpacity,
          .hueAmount = turns(params.randomHue),
          .saturationAmount = share(params.randomSaturation),
          .valueAmount = share(params.randomValue)};
}

template <class Pixel>
EffectorState<Pixel> effectorOf(const EffectorParams& params, const DownSampling& scale) {
  const Place position = placeOf(params.position);
  return {.enabled = params.enabled != 0,
          .positionX = position.x,
          .positionY = position.y,
          .centerDotToFront = params.centerDotToFront != 0,
          .effectMap = effectMapOf(params.effectMap),
          .angleDegrees = degrees(params.angle),
          .size = params.size * scale.both,
          .falloffRatio = share(params.falloff),
          .customMapLayer = viewOf<Pixel>(params.customMapLayer),
          .fitToLayer = params.fitToLayer != 0,
          .pickSourceColor = params.pickSourceColor != 0,
          .tiling = tilingOf(params.tiling),
          .absolute = params.absolute != 0,
          .absSize = params.absSize * scale.both,
          .targetAspect = aspectOf(params.absAspect),
          .targetRotation = radians(params.absRotation),
          .targetOpacity = share(params.absOpacity),
          .ratioSize = params.ratioSize,
          .ratioAspect = params.ratioAspect,
          .ratioRotation = params.ratioRotation,
          .ratioOpacity = params.ratioOpacity,
          .offsetSize = params.offsetSize * scale.both,
          .addAspect = aspectOf(params.offsetAspect),
          .addRotation = radians(params.offsetRotation),
          .addOpacity = share(params.offsetOpacity),
          .color = params.color != 0,
          .blendMode = blendModeOf(params.blendMode),
          .blendColor = colorOf<Pixel>(params.blendColor),
          .hueShiftTurns = turns(params.shiftHue)};
}

}  // namespace

template <class Pixel>
FieldSettings<Pixel> makeFieldSettings(const RenderParams& params, const PF_InData& in_data) {
  const DownSampling scale = downSamplingOf(in_data);
  return {.lattice = latticeOf(params, scale),
          .random = {.seed = params.randomSeed,
                     .interval = params.randomInterval,
                     .array = params.randomArray,
                     .currentTime = in_data.current_time,
                     .timeStep = in_data.time_step},
          .base = baseOf<Pixel>(params, scale),
          .jitter = jitterOf(params),
          .centerDotToFront = params.centerDotToFront != 0,
          .effectors = {effectorOf<Pixel>(params.effector[0], scale), effectorOf<Pixel>(params.effector[1], scale),
                        effectorOf<Pixel>(params.effector[2], scale)}};
}

template FieldSettings<Pixel8> makeFieldSettings(const RenderParams&, const PF_InData&);
template FieldSettings<Pixel16> makeFieldSettings(const RenderParams&, const PF_InData&);
template FieldSettings<Pixel32> makeFieldSettings(const RenderParams&, const PF_InData&);

}  // namespace vindrel
