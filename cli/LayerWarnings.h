/// Tells of choices that come to nothing because the picture that they need was not given.
#pragma once

#include <string>
#include <vector>

#include "cli/ControlFacts.h"
#include "host/ParameterValues.h"

namespace cli {

/// One line for each list whose chosen item draws on a layer control that has no picture: "'Mask' is 'Layer', but ...".
std::vector<std::string> missingLayers(const std::vector<ControlFacts>& controls,
                                       const standin::ParameterValues& values);

}  // namespace cli
