/// The list of controls as a table for people and as JSON for programs.
#pragma once

#include <ostream>
#include <vector>

#include "cli/ControlFacts.h"
#include "host/ParameterValues.h"

namespace cli {

/// One line a control: index, id, name, kind, valid range, range of the slider and default, and under it the choices of
/// a menu. With `values`, the value that each control has and whether it is greyed stand in the place of the slider's
/// range; null leaves both out. No line is longer than 100 columns as long as names are no longer than Vindrel's.
void writeControlTable(std::ostream& out, const std::vector<ControlFacts>& controls,
                       const standin::ParameterValues* values);

/// An array with one object a control; the same facts under "index", "id", "name", "kind", "valid", "slider",
/// "default", "precision", "percent", "choices", "choiceCount", "flags", "flagNames", "uiFlags" and, with `values`,
/// "value" and "greyed". Facts that a kind doesn't have are left out.
void writeControlJson(std::ostream& out, const std::vector<ControlFacts>& controls,
                      const standin::ParameterValues* values);

/// All about one control, for a person: its help, its facts and its choices, lines of at most 100 columns.
void describeControl(std::ostream& out, const ControlFacts& control);

}  // namespace cli
