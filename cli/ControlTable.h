/// The list of controls as a table for people and as JSON for programs.
#pragma once

#include <ostream>
#include <vector>

#include "cli/ControlFacts.h"
#include "host/ParameterValues.h"

namespace cli {

/// One line a control: index, id, name, kind, ranges, default, flags and choices. With `values`, also the value that
/// each control has and whether it is greyed; null leaves both out.
void writeControlTable(std::ostream& out, const std::vector<ControlFacts>& controls,
                       const standin::ParameterValues* values);

/// An array with one object a control; the same facts under "index", "id", "name", "kind", "valid", "slider",
/// "default", "precision", "percent", "choices", "choiceCount", "flags", "flagNames", "uiFlags" and, with `values`,
/// "value" and "greyed". Facts that a kind doesn't have are left out.
void writeControlJson(std::ostream& out, const std::vector<ControlFacts>& controls,
                      const standin::ParameterValues* values);

}  // namespace cli
