/// Between the host's records of controls and the plain words and numbers of the command line.
#pragma once

#include <string>
#include <vector>

#include "cli/ControlFacts.h"
#include "cli/ControlValue.h"
#include "host/ParameterValues.h"

namespace cli {

/// The host's records of controls in plain words, in the same order.
std::vector<ControlFacts> factsOf(const std::vector<standin::Control>& controls);

/// Gives the control a value as parseControlValue made it for this control.
void setValue(const ControlFacts& control, const ControlValue& value, standin::ParameterValues& values);

/// The value that the control has in `values`, to be shown; "source", "none" or "a picture" for layers.
std::string shownSetting(const ControlFacts& control, const standin::ParameterValues& values);

}  // namespace cli
