// The value of every control for one frame, exactly as the host returned it.
//
// Nothing is converted on the way in: a popup counts from 1, an angle or a point stays 16.16 fixed, a percentage stays
// 0 to 100. The values are converted once, at the start of the frame (effect/filter/MakeFieldSettings.h). The items of
// the popups are those of Choices.h; a popup may also hold a number that is no item.
#pragma once

#include <cstdint>

#include "ae/Pixels.h"
#include "ae/Scalars.h"
#include "ae/Worlds.h"

namespace vindrel {

/// One byte that is zero or not, as a checkbox arrives.
using Bool8 = uint8_t;

/// One effector group.
struct EffectorParams {
  Bool8 enabled;
  int32_t effectMap;       ///< an EffectMapItem
  PF_Fixed angle;          ///< degrees, 16.16
  PF_FixedPoint position;  ///< layer pixels, 16.16
  Bool8 centerDotToFront;
  double size;                     ///< pixels
  double falloff;                  ///< percent
  PF_EffectWorld* customMapLayer;  ///< null when there is none; never owned
  Bool8 fitToLayer;
  Bool8 pickSourceColor;
  int32_t tiling;  ///< a TilingItem
  Bool8 absolute;
  double absSize;                                              ///< pixels
  double absAspect;                                            ///< percent
  PF_Fixed absRotation;                                        ///< degrees, 16.16
  double absOpacity;                                           ///< percent
  double ratioSize, ratioAspect, ratioRotation, ratioOpacity;  ///< factors, 1.0 changes nothing
  double offsetSize;                                           ///< pixels
  double offsetAspect;                                         ///< percent
  PF_Fixed offsetRotation;                                     ///< degrees, 16.16
  double offsetOpacity;                                        ///< percent
  Bool8 color;
  int32_t blendMode;    ///< a BlendModeItem
  PF_Pixel blendColor;  ///< bytes 0 to 255 at every depth
  PF_Fixed shiftHue;    ///< degrees, 16.16
};

/// All controls of a frame. All bytes zero when made.
struct RenderParams {
  int32_t dotShape;                   ///< a DotShape
  PF_Pixel dotColor;                  ///< bytes 0 to 255 at every depth
  double dotSize;                     ///< pixels
  double dotAspect;                   ///< percent, -100 to 100
  PF_Fixed dotRotation;               ///< degrees, 16.16
  int32_t rotationType;               ///< a RotationTypeItem
  double dotOpacity;                  ///< percent
  int32_t distanceBetween;            ///< a DistanceBetweenItem
  double dotDistanceX, dotDistanceY;  ///< pixels
  PF_FixedPoint centerPosition;       ///< layer pixels, 16.16
  Bool8 centerDotToFront;
  PF_Fixed globalRotation;          ///< degrees, 16.16
  int32_t globalRotationCenter;     ///< a RotationCenterItem
  int32_t mask;                     ///< a MaskItem
  PF_EffectWorld* maskTargetLayer;  ///< null when there is none; never owned
  Bool8 invertMask;
  Bool8 clearBackground;
  int32_t randomInterval;  ///< frames
  int32_t randomArray;     ///< count
  int32_t randomSeed;
  double randomSize, randomAspect, randomRotation, randomOpacity, randomDistanceX, randomDistanceY;  ///< spread
  PF_Fixed randomHue;                                                                                ///< degrees, 16.16
  double randomSaturation, randomValue;                                                              ///< percent
  EffectorParams effector[3];
};

}  // namespace vindrel
