/// The parameters that a video program sees: one text that names a preset, and one for each control that a video
/// program has a kind for, made by a walk over the controls as the host received them.
///
/// Numbers of video programs go from 0 to 1:
/// - a number's 0 and 1 are the ends of its slider; a program that lets other values through reaches the whole valid
/// range
/// - an angle's 0.5 is 0 degrees, 0 and 1 are half a turn to either side; other values are further turns
/// - a list's items are spread evenly: 0 is the first, 1 the last, and the nearest one counts; separators are no items
/// - a place's 0,0 and 1,1 are the corners of the picture; a colour's channels are 0 to 1; a check box is on from 0.5
/// up What comes out of a number is rounded to a millionth, so that decimals like 7.2 are met to the last bit.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/ControlFacts.h"
#include "cli/ControlValue.h"

namespace video {

/// Of the parameter that isn't a control.
inline constexpr const char* presetName = "Preset";

struct Parameter {
  int32_t kind = 0;                            ///< F0R_PARAM_*
  const cli::ControlFacts* control = nullptr;  ///< null: the preset
  std::string name;                            ///< as the control's own
  std::string explanation;                     ///< how its numbers are meant
};

/// The preset first, then the controls in their own order. Groups have no parameter, nor have layers, for which there
/// is no kind: they come from a preset.
/// @param controls  outlives what is returned
std::vector<Parameter> parametersOf(const std::vector<cli::ControlFacts>& controls);

/// A number as a video program gives it, for a number, an angle, a list or a check box.
/// Not a number counts as the control's default; what lies beyond the valid range as its nearer end.
cli::ControlValue valueFrom(const cli::ControlFacts& control, double number);

/// A place as a video program gives it: 0,0 and 1,1 are the corners of the picture. Held to what the host can tell.
cli::Place placeFrom(double x, double y);

/// The number that gives the value. Needs a control and a value of the kinds above.
double numberFor(const cli::ControlFacts& control, const cli::ControlValue& value);

/// The value that the control starts with.
cli::ControlValue defaultOf(const cli::ControlFacts& control);

}  // namespace video
