// The effect's whole vocabulary of controls as a table: one row is one control, row order is screen order.
//
// Names are the keys of the settings file and ids are what saved projects hold, so both stay as they are for ever; an
// id that has fallen out of use is never given again. A group runs from its row to the next endGroup row. The ids that
// code asks for have names here, and the rows use them; all other ids stand in the rows alone. The items of the popups
// stand in Choices.h.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "ae/Pixels.h"
#include "ae/Scalars.h"

namespace vindrel {

inline constexpr int effectorCount = 3;

namespace controlId {

inline constexpr int32_t dotSize = 3;
inline constexpr int32_t distanceBetween = 8;
inline constexpr int32_t dotDistanceX = 9;
inline constexpr int32_t dotDistanceY = 10;
inline constexpr int32_t mask = 14;
inline constexpr int32_t maskTargetLayer = 15;
inline constexpr int32_t invertMask = 16;
inline constexpr int32_t randomInterval = 20;

/// An id of an effector group, for N = 1, 2 or 3. The first controls of the groups got their ids group by group, with
/// 30 from one group to the next; those that came later got them control by control.
struct OfEffector {
  int32_t first;
  int32_t step;
  constexpr int32_t operator()(int n) const { return first + step * (n - 1); }
};

inline constexpr OfEffector enableEffector{37, 30};
inline constexpr OfEffector angle{40, 30};
inline constexpr OfEffector position{41, 30};
inline constexpr OfEffector size{42, 30};
inline constexpr OfEffector falloff{43, 30};
inline constexpr OfEffector customMapLayer{45, 30};
inline constexpr OfEffector absolute{46, 30};
inline constexpr OfEffector absSize{47, 30};
inline constexpr OfEffector absAspect{48, 30};
inline constexpr OfEffector absRotation{49, 30};
inline constexpr OfEffector absOpacity{50, 30};
inline constexpr OfEffector color{61, 30};
inline constexpr OfEffector blendMode{62, 30};
inline constexpr OfEffector blendColor{63, 30};
inline constexpr OfEffector shiftHue{64, 30};
inline constexpr OfEffector centerDotToFront{126, 1};
inline constexpr OfEffector pickSourceColor{129, 1};
inline constexpr OfEffector tiling{133, 1};
inline constexpr OfEffector effectMap{136, 1};
inline constexpr OfEffector fitToLayer{139, 1};

}  // namespace controlId

/// One for each class of ParamClasses.h.
enum class ControlKind : uint8_t { color, slider, floatSlider, checkbox, angle, popup, layer, point, group, endGroup };

/// Which of the three definitions the control starts from.
enum class ControlTemplate : uint8_t {
  plain,
  supervised,  ///< the host reports the user's changes
  stepped      ///< no interpolation between keyframes
};

/// Both ends inclusive.
struct ControlRange {
  double least = 0.0;
  double greatest = 0.0;
};

/// Where the value of a control goes: `size` bytes at `offset` from the start of a RenderParams.
/// A control without a value (a group) has size 0.
struct ParamTarget {
  uint32_t offset = 0;  ///< bytes
  uint32_t size = 0;    ///< bytes
};

/// What a row can say; a kind reads the fields that its class has and leaves the others at zero.
struct ControlRow {  // NOLINT(clang-analyzer-optin.performance.Padding): the order of reading, for eight bytes
  ControlKind kind = ControlKind::endGroup;
  std::array<char, 32> name{};  ///< zero-ended; empty for the end of a group
  int32_t id = 0;               ///< of an end: unused, since a group with id S ends with id S + 1
  ParamTarget target{};
  ControlTemplate definition = ControlTemplate::plain;
  PF_Pixel color{};              ///< colour only
  ControlRange valid{};          ///< what can be typed; both kinds of sliders
  ControlRange slider{};         ///< ends of the track; both kinds of sliders
  double defaultValue = 0.0;     ///< sliders; a popup's item from 1; degrees; 0 or 1; a layer's PF_LayerDefault_*
  int16_t precision = 0;         ///< decimals shown; float slider only
  int16_t displayFlags = 0;      ///< PF_ValueDisplayFlag_*; float slider only
  int16_t choiceCount = 0;       ///< popup only
  const char* choices = "";      ///< popup only: items with | between, "(-" is a separator line and counts
  PF_FixedPoint pointDefault{};  ///< point only: percent of the layer, 16.16
};

/// All rows. They live as long as the module.
std::span<const ControlRow> controlRows();

}  // namespace vindrel
