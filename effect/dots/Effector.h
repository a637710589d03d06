// What one effector does to one dot.
//
// An effector has a weight field (its effect map) and a set of changes; at a dot the weight says how far the changes
// go. Effectors work in a row, each on what the one before left, and nothing is clamped between them.
#pragma once

#include <cstdint>

#include "effect/dots/EffectMap.h"
#include "effect/dots/LayerEffectMap.h"
#include "effect/pixel/Blend.h"

namespace vindrel {

/// One effector of a frame. As it is made here, it is disabled.
template <class Pixel>
struct EffectorState {
  bool enabled{};
  double positionX{}, positionY{};  ///< origin of the map and front centre, canvas pixels
  bool centerDotToFront{};          ///< the position is a front centre

  EffectMapKind effectMap = EffectMapKind::linear;
  double angleDegrees{};              ///< direction of a linear map, turn of a layer map
  double size{};                      ///< reach of a geometric map, pixels
  double falloffRatio{};              ///< 1.0 is the whole reach; not clamped
  LayerView<Pixel> customMapLayer{};  ///< of a custom map; has no pixels when there is none
  bool fitToLayer{};                  ///< stretches the layer over the canvas
  bool pickSourceColor{};             ///< dots take the layer's colour
  Tiling tiling = Tiling::none;

  bool absolute{};                                                                     ///< turns on the four targets
  double absSize{};                                                                    ///< pixels
  double targetAspect{};                                                               ///< -1.0 to 1.0
  double targetRotation{};                                                             ///< radians
  double targetOpacity{};                                                              ///< 1.0 is opaque; not clamped
  double ratioSize = 1.0, ratioAspect = 1.0, ratioRotation = 1.0, ratioOpacity = 1.0;  ///< 1.0 changes nothing
  double offsetSize{};                                                                 ///< pixels
  double addAspect{};                                                                  ///< -1.0 to 1.0
  double addRotation{};                                                                ///< radians
  double addOpacity{};                                                                 ///< 1.0 is opaque; not clamped

  bool color{};  ///< turns on the tint
  BlendMode blendMode = normalBlend;
  Pixel blendColor{};
  double hueShiftTurns{};  ///< turns at weight 1.0
};

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

/// Changes the draft: front key, picked colour, and then, unless the weight is exactly 0.0, size, aspect, rotation,
/// opacity, colour and hue.
/// @param state                  of an enabled effector
/// @param map                    made by MakeEffectMap of the same state
/// @param frontOrderingPossible  false once the frame has given up the front ordering; then no key is written
template <class Pixel>
void applyEffector(const EffectorState<Pixel>& state, const BaseEffectMap& map, bool frontOrderingPossible,
                   DotDraft<Pixel>& dot) noexcept;

}  // namespace vindrel
