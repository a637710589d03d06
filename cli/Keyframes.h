/// Values over time as a person writes them, not yet checked against the module's controls.
///
///     "animation": { "Dot Size": [ { "frame": 1, "value": 4, "out": "hold" },
///                                  { "second": 0.5, "value": 9, "in": { "influence": 50, "speed": 0 } } ] }
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "cli/Ease.h"

namespace cli {

struct KeyText {
  double at = 0.0;
  bool inSeconds = false;  ///< else frames, as the files are numbered
  std::string value;       ///< in the form that --set takes
  Ease in;
  Ease out;
};

/// One control's keys, in the order in which they stand.
struct TrackText {
  std::string control;
  std::vector<KeyText> keys;
};

/// Reads the value of "animation".
/// @param where  before each complaint: "preset 'p.json': "
/// @throws UserError
std::vector<TrackText> tracksFrom(const nlohmann::json& part, const std::string& where);

/// Reads a file that holds an "animation" and nothing else but an "about".
/// @throws UserError
std::vector<TrackText> readAnimation(const std::string& file);

/// Reads a table: a line of names, the first of which is "frame", then a line for each frame that changes something.
/// Texts may stand in double quotes. Each value holds until the next line.
/// @throws UserError
std::vector<TrackText> readValueTable(const std::string& file);

}  // namespace cli
