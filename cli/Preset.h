/// A look kept in a file: values of controls and pictures for layers.
///
///     { "about": "One line on what it looks like.",
///       "height": 1080,
///       "controls": { "Dot Shape": "Circle", "Dot Size": 8, "Clear Background": true },
///       "layers":   { "Custom Map Layer 1": { "picture": "source", "blur": "pitch", "tone": "area" },
///                     "Mask Target Layer": "disc.png" },
///       "animation": { "Dot Size": [ { "frame": 1, "value": 4 }, { "frame": 24, "value": 9 } ] } }
///
/// Values are numbers, true or false, or the texts that --set takes. Every part may be left out.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/Keyframes.h"
#include "cli/tone/LayerText.h"

namespace cli {

struct Preset {
  std::string about;
  /// Pixels: lengths were chosen for pictures of this height, and are to go along with others. None: they are as given.
  std::optional<int32_t> height;
  std::vector<Assignment> controls;  ///< values in the form that --set takes
  std::vector<LayerText> layers;     ///< pictures' paths go from the preset's folder
  std::vector<TrackText> animation;  ///< goes over the values of the same controls
};

/// Which pictures a preset may name: a preset from elsewhere shall not read what lies about on this machine.
enum class PathsOfPreset { besideIt, anywhere };

/// Reads a preset; names and values of controls are left to be checked against the module's.
/// @throws UserError naming the file and the place in it: no file, no JSON, an unknown key, a key twice, a value of a
///         wrong type, a picture in a place where it may not lie
Preset readPreset(const std::filesystem::path& file, PathsOfPreset paths = PathsOfPreset::besideIt);

/// Splits "Dot Size=14" at the first '='. Blanks around the name are dropped.
/// @param option  the option it came from, for the message
/// @throws UserError when there is no '=' or no name before it
Assignment splitAssignment(const std::string& argument, const std::string& option);

}  // namespace cli
