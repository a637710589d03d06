// The items of the popups: the texts that the host shows, and the numbers that projects hold. Items count from 1, and a
// separator takes a number of its own. A record may hold any number at all: an expression can set one that is no item,
// and each reader says what that means.
//
// In a text | stands between two items, and "(-" is a separator.
#pragma once

#include <cstdint>

namespace vindrel {

/// "Dot Shape": its items are the DotShape that is drawn, in the same order.
inline constexpr int32_t firstDotShapeItem = 1;
inline constexpr int32_t dotShapeItems = 6;
inline constexpr const char* dotShapeChoices = "Circle|Square|Round Square|Cross|Star|Diamond";

/// "Rotation Type".
enum RotationTypeItem : int32_t { rotationNormalItem = 1, rotationLookAtCenterItem = 2, rotationFixDotAngleItem = 3 };
inline constexpr const char* rotationTypeChoices = "Normal|Look At Center|Fix Dot Angle";

/// "Distance Between": what the two distances are measured between.
enum DistanceBetweenItem : int32_t { distanceBetweenDotsItem = 1, distanceBetweenCentersItem = 2 };
inline constexpr const char* distanceBetweenChoices = "Dots|Centers";

/// "Global Rotation Center": the centre position, or the position of an effector.
enum RotationCenterItem : int32_t {
  rotationCenterCenterItem = 1,
  rotationCenterFx1Item = 2,
  rotationCenterFx2Item = 3,
  rotationCenterFx3Item = 4,
};
inline constexpr const char* rotationCenterChoices = "Center|FX1|FX2|FX3";

/// "Mask": what holds the dots back.
enum MaskItem : int32_t {
  maskNormal = 1,  ///< the source's own alpha
  maskNone = 2,
  maskLayer = 3,  ///< another layer
};
inline constexpr const char* maskChoices = "Normal|None|Layer";

/// "Effect Map"; a separator stands at 2.
enum EffectMapItem : int32_t {
  customMapItem = 1,
  radialMapItem = 3,
  radialMirrorMapItem = 4,
  linearMapItem = 5,
  linearMirrorMapItem = 6,
};
inline constexpr const char* effectMapChoices = "Use Custom Map|(-|Radial|Radial Mirror|Linear|Linear Mirror";

/// "Tiling".
enum TilingItem : int32_t { tilingNoneItem = 1, tilingRepeatItem = 2, tilingMirrorItem = 3, tilingExtendEdgeItem = 4 };
inline constexpr const char* tilingChoices = "None|Repeat|Mirror|Extend Edge";

/// "Blend Mode"; separators stand at 2 and 10.
enum BlendModeItem : int32_t {
  blendNormalItem = 1,
  blendAddItem = 3,
  blendSubtractItem = 4,
  blendMultiplyItem = 5,
  blendScreenItem = 6,
  blendOverlayItem = 7,
  blendHardLightItem = 8,
  blendSoftLightItem = 9,
  blendDarkenItem = 11,
  blendLightenItem = 12,
  blendDifferenceItem = 13,
  blendExclusionItem = 14,
};
/// "Substract" is spelt so on purpose: it is the text that users of the effect know.
inline constexpr const char* blendModeChoices =
    "Normal|(-|Add|Substract|Multiply|Screen|Overlay|Hard Light|Soft Light|(-|Darken|Lighten|Difference|Exclusion";

}  // namespace vindrel
