#include "cli/Preset.h"

#include <nlohmann/json.hpp>
#include <set>
#include <system_error>

#include "cli/ControlValue.h"
#include "cli/NearestName.h"
#include "cli/UserError.h"
#include "cli/files/FileBytes.h"

namespace cli {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr uint64_t mostPresetBytes = 16'000'000;

/// "line 3, column 14" of the byte (counted from 1) at which reading failed.
std::string placeIn(const std::string& text, std::size_t byte) {
  std::size_t line = 1;
  std::size_t column = 1;
  for (std::size_t i = 0; i + 1 < byte && i < text.size(); ++i) {
    ++column;
    if (text[i] == '\n') {
      ++line;
      column = 1;
    }
  }
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

std::string textOf(const json& value, const std::string& name, const std::string& where) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_boolean()) return value.get<bool>() ? "on" : "off";
  if (value.is_number_integer()) return std::to_string(value.get<int64_t>());
  if (value.is_number()) return shownNumber(value.get<double>());
  throw UserError(where + "'" + name + "' takes a number, a text, true or false, not " + value.type_name());
}

void needObject(const json& part, const char* key, const std::string& where) {
  if (!part.is_object()) throw UserError(where + "'" + key + "' takes names with values in braces");
}

std::vector<Assignment> controlsOf(const json& part, const std::string& where) {
  needObject(part, "controls", where);
  std::vector<Assignment> controls;
  for (const auto& [name, value] : part.items()) controls.push_back({name, textOf(value, name, where)});
  return controls;
}

/// Below the folder by its name, and also where its links lead.
bool liesBelow(const fs::path& picture, const fs::path& folder) {
  if (picture.is_absolute()) return false;
  std::error_code ignored;
  const fs::path top = fs::weakly_canonical(folder.empty() ? fs::path(".") : folder, ignored);
  const fs::path below = fs::weakly_canonical(folder / picture, ignored).lexically_relative(top);
  return !below.empty() && *below.begin() != "..";
}

std::string pictureOf(const json& value, const std::string& name, const fs::path& folder, PathsOfPreset paths,
                      const std::string& where) {
  if (!value.is_string()) throw UserError(where + "'" + name + "' takes a picture, 'source' or 'none'");
  std::string picture = value.get<std::string>();
  if (picture == "source" || picture == "none" || picture.empty()) return picture;
  if (paths == PathsOfPreset::besideIt && !liesBelow(picture, folder)) {
    throw UserError(where + "'" + name + "' is '" + picture +
                    "', which lies outside the preset's folder; --allow-paths allows it");
  }
  return (folder / picture).string();
}

std::vector<Assignment> layersOf(const json& part, const fs::path& folder, PathsOfPreset paths,
                                 const std::string& where) {
  needObject(part, "layers", where);
  std::vector<Assignment> layers;
  for (const auto& [name, value] : part.items()) layers.push_back({name, pictureOf(value, name, folder, paths, where)});
  return layers;
}

[[noreturn]] void refuseKey(const std::string& key, const std::string& where) {
  throw UserError(where + "no key '" + key + "'" +
                  suggestion(key, {"about", "controls", "layers"}, "; it may have about, controls and layers"));
}

/// JSON takes the last of two equal keys without a word; somebody who wrote both meant something by each.
json parsedOnce(const std::string& content, const std::string& where) {
  std::vector<std::set<std::string>> keys;
  const auto watch = [&](int, json::parse_event_t event, json& value) {
    if (event == json::parse_event_t::object_start) keys.emplace_back();
    if (event == json::parse_event_t::object_end) keys.pop_back();
    if (event == json::parse_event_t::key && !keys.back().insert(value.get<std::string>()).second) {
      throw UserError(where + "'" + value.get<std::string>() + "' stands in it twice");
    }
    return true;
  };
  try {
    return json::parse(content, watch);
  } catch (const json::parse_error& error) {
    throw UserError(where + "no JSON at " + placeIn(content, error.byte));
  } catch (const json::exception&) {
    throw UserError(where + "a number in it is too large");
  }
}

}  // namespace

Preset readPreset(const fs::path& file, PathsOfPreset paths) {
  const std::string where = "preset '" + file.string() + "': ";
  const std::vector<uint8_t> bytes = readFile(file, "preset", mostPresetBytes);
  const json whole = parsedOnce(std::string(bytes.begin(), bytes.end()), where);
  if (!whole.is_object()) throw UserError(where + "it must be an object with 'controls' and 'layers'");

  Preset preset;
  for (const auto& [key, value] : whole.items()) {
    if (key == "about") {
      if (!value.is_string()) throw UserError(where + "'about' takes a text");
      preset.about = value.get<std::string>();
    } else if (key == "controls") {
      preset.controls = controlsOf(value, where);
    } else if (key == "layers") {
      preset.layers = layersOf(value, file.parent_path(), paths, where);
    } else {
      refuseKey(key, where);
    }
  }
  return preset;
}

Assignment splitAssignment(const std::string& argument, const std::string& option) {
  const std::size_t equals = argument.find('=');
  std::size_t first = argument.find_first_not_of(' ');
  std::size_t last = equals;
  while (last != std::string::npos && last > 0 && argument[last - 1] == ' ') --last;
  if (equals == std::string::npos || first >= equals) {
    const char* example = option == "--set" ? "--set \"Dot Size=14\"" : "--layer \"Mask Target Layer=mask.png\"";
    throw UserError(option + " takes a name, '=' and a value, as in " + example + ", not '" + argument + "'");
  }
  return {argument.substr(first, last - first), argument.substr(equals + 1)};
}

}  // namespace cli
