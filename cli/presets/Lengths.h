/// Which values of a preset are lengths in pixels, and how they go along with a picture of another height.
#pragma once

#include <vector>

#include "cli/ControlFacts.h"
#include "cli/Preset.h"
#include "host/ParameterValues.h"

namespace cli {

/// True for a number that is a length in pixels of the full-size layer. Places are none: they go along when they are
/// given in pixels, and percent stay as they are.
bool isLength(const ControlFacts& control);

/// The preset with its lengths, its places in pixels and the speeds of their keys times the factor. What doesn't fit
/// its control, or names none, is left as it is, for those to refuse who use it.
/// @throws UserError for a length that would leave its control's range
Preset scaledPreset(const Preset& preset, double factor, const std::vector<ControlFacts>& controls);

/// Multiplies the lengths among the values, held to the controls' ranges.
void scaleLengths(const std::vector<ControlFacts>& controls, double factor, standin::ParameterValues& values);

}  // namespace cli
