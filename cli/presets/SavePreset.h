/// Presets into files.
#pragma once

#include <string>
#include <vector>

#include "cli/ControlFacts.h"
#include "cli/Preset.h"

namespace cli {

/// One preset that gives what the presets give one over the other: of values, pictures and keys for the same control
/// the last ones hold. Names become the controls' own, in the module's order.
/// @throws UserError for a name that no control has
Preset merged(const std::vector<Preset>& presets, const std::vector<ControlFacts>& controls);

/// The text of a preset's file. Reading it gives the same preset.
/// @param folder  in which the file will stand; pictures below it are named from there
/// @throws UserError for a picture that lies elsewhere, unless `paths` allows it, and for values that don't fit
std::string presetText(const Preset& preset, const std::vector<ControlFacts>& controls,
                       const std::filesystem::path& folder, PathsOfPreset paths);

}  // namespace cli
