/// The controls as the effect declared them, told to the page in JSON.
#pragma once

#include <string>
#include <vector>

#include "host/Control.h"

namespace studio {

/// An array with an object for each control, in the host's order:
///   index, id, name, kind ("number", "whole number", "angle", "check box", "colour", "place", "choice", "layer",
///   "group", "end of group"), flags and uiFlags as the interface has them; valid and slider [least, greatest] of the
///   two kinds of sliders; precision and percent of a number; choices (separators included) and choiceCount of a
///   choice; label of a check box that has one; default: a number, true or false, "#rrggbb", [x, y] in percent of the
///   layer, "source" or "none".
/// Numbers have so many digits that they read back as the same number.
std::string controlsJson(const std::vector<standin::Control>& controls);

}  // namespace studio
