// The items of the popups as projects hold them, told once more for tests that see the module from outside and for
// twins: they have their numbers from here and not from the effect's own table.
#pragma once

#include <cstdint>

namespace vindrel::test {

enum ShapeItem : int32_t { circle = 1, square = 2, roundSquare = 3, cross = 4, star = 5, diamond = 6 };
enum RotationItem : int32_t { rotationNormal = 1, rotationLookAtCenter = 2, rotationFixDotAngle = 3 };
enum DistanceItem : int32_t { betweenDots = 1, betweenCenters = 2 };
enum CenterItem : int32_t { centerCenter = 1, centerFx1 = 2, centerFx2 = 3, centerFx3 = 4 };
enum MaskItem : int32_t { maskNormal = 1, maskNone = 2, maskLayer = 3 };
enum MapItem : int32_t {
  customMap = 1,
  mapLine = 2,  ///< a separator
  radialMap = 3,
  radialMirrorMap = 4,
  linearMap = 5,
  linearMirrorMap = 6
};
enum TilingItem : int32_t { tilingNone = 1, tilingRepeat = 2, tilingMirror = 3, tilingExtend = 4 };
enum BlendItem : int32_t {
  blendNormal = 1,
  blendFirstLine = 2,  ///< a separator
  blendAdd = 3,
  blendSubtract = 4,
  blendMultiply = 5,
  blendScreen = 6,
  blendOverlay = 7,
  blendHardLight = 8,
  blendSoftLight = 9,
  blendSecondLine = 10,  ///< a separator
  blendDarken = 11,
  blendLighten = 12,
  blendDifference = 13,
  blendExclusion = 14
};

}  // namespace vindrel::test
