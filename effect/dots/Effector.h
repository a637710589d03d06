// What one effector does to one dot.
//
// An effector has a weight field (its effect map) and a set of changes; at a dot the weight says how far the changes
// go. Effectors work in a row, each on what the one before left, and nothing is clamped between them.
#pragma once

#include <cstdint>

#include "effect/dots/EffectMap.h"
#include "effect/params/RenderParams.h"

namespace vindrel {

/// An effector's controls, and beside them what is derived from them once per frame.
struct EffectorState : EffectorParams {
  double positionX, positionY;       ///< canvas pixels
  double falloffRatio;               ///< 1.0 is the whole reach; not clamped
  double targetAspect;               ///< -1.0 to 1.0
  double targetRotation;             ///< radians
  double targetOpacity;              ///< 1.0 is opaque; not clamped
  double addAspect;                  ///< -1.0 to 1.0
  double addRotation;                ///< radians
  double addOpacity;                 ///< 1.0 is opaque; not clamped
  double hueShiftTurns;              ///< turns at weight 1.0
  double canvasWidth, canvasHeight;  ///< pixels
};

/// @param params  with the size-like controls already scaled for the frame's resolution
/// @param canvasWidth,canvasHeight  pixels
EffectorState makeEffectorState(const EffectorParams& params, int32_t canvasWidth, int32_t canvasHeight) noexcept;

/// The front key of a dot that no front centre has ranked.
inline constexpr double noFrontKey = -1.0;

/// A dot between its draws and its record: the running values that effectors change.
template <class Pixel>
struct DotDraft {
  double frontKey;  ///< squared distance in pixels to the nearest front centre so far, or noFrontKey
  double x, y;      ///< final centre, canvas pixels
  double size;      ///< pixels; may be negative
  double aspect;    ///< -1.0 to 1.0 is what shows; may lie beyond
  double rotation;  ///< radians
  double opacity;   ///< 0.0 to 1.0 is what shows; may lie beyond
  Pixel color;      ///< alpha carries no meaning here; the opacity replaces it later
};

/// Changes the draft as an enabled effector does: front key, picked colour, and then, unless the weight is exactly
/// 0.0, size, aspect, rotation, opacity, colour and hue. A disabled effector changes nothing.
/// @param map                    made by MakeEffectMap<Pixel> of the same state
/// @param blendColor             state.blendColor at the frame's depth
/// @param frontOrderingPossible  false once the frame has given up the front ordering; then no key is written
template <class Pixel>
void applyEffector(const EffectorState& state, const BaseEffectMap& map, const Pixel& blendColor,
                   bool frontOrderingPossible, DotDraft<Pixel>& dot) noexcept;

}  // namespace vindrel
