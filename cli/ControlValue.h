/// Values of controls as a person writes them, and back.
///
/// Numbers are decimal with a point. Percent and degree signs may be left out. Colours are #rrggbb or #rgb, places are
/// two coordinates, both in pixels of the full-size layer or both in percent of it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "cli/ControlFacts.h"

namespace cli {

/// A place in the layer.
struct Place {
  double x = 0.0;
  double y = 0.0;
  bool percent = false;  ///< x and y are percent of the layer's width and height; otherwise pixels at full size
  friend bool operator==(const Place&, const Place&) = default;
};

/// double: number, and degrees of an angle; int32_t: whole number, check box (0 or 1), item of a choice (from 1).
using ControlValue = std::variant<double, int32_t, Color, Place>;

/// "#ff7d14" or "#f80"; nothing for other texts.
std::optional<Color> readColor(std::string_view text);

/// Reads `text` as a value for the control.
/// @throws UserError naming the control, what it takes and what was given; for layers and groups, too
ControlValue parseControlValue(const ControlFacts& control, const std::string& text);

/// What the control takes, in words: "a number from 0 to 1000", "one of Circle, Square or Diamond".
std::string expectation(const ControlFacts& control);

/// A value as it is shown in tables: "10", "100%", "45°", "on", "#ff7d14", "50%, 50%", "Circle".
std::string shownValue(const ControlFacts& control, const ControlValue& value);

/// The control's default in the same form; empty for groups, "source" (the picture itself) or "none" for layers.
std::string shownDefault(const ControlFacts& control);

/// The shortest decimal that reads back as the same number.
std::string shownNumber(double number);

}  // namespace cli
