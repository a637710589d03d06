// The effect's whole vocabulary of controls as a table: one row is one control, row order is screen order.
//
// Names are the keys of the settings file and ids are what saved projects hold, so both stay as they are for ever; an
// id that has fallen out of use is never given again. A group runs from its row to the next endGroup row.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "ae/Pixels.h"
#include "ae/Scalars.h"
#include "effect/params/BaseParam.h"

namespace vindrel {

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
