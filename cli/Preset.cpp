#include "cli/Preset.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <system_error>

#include "cli/JsonFile.h"
#include "cli/NearestName.h"
#include "cli/UserError.h"

namespace cli {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr double mostPictureHeight = 30000.0;  // the host's largest

void needObject(const json& part, const char* key, const std::string& where) {
  if (!part.is_object()) throw UserError(where + "'" + key + "' takes names with values in braces");
}

std::vector<Assignment> controlsOf(const json& part, const std::string& where) {
  needObject(part, "controls", where);
  std::vector<Assignment> controls;
  for (const auto& [name, value] : part.items()) controls.push_back({name, valueText(value, name, where)});
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

/// A picture alone, or in braces with what it is prepared by.
LayerText layerOf(const json& value, const std::string& name, const fs::path& folder, PathsOfPreset paths,
                  const std::string& where) {
  LayerText layer{name, {}, {}};
  if (!value.is_object()) {
    layer.picture = pictureOf(value, name, folder, paths, where);
    return layer;
  }
  if (!value.contains("picture")) throw UserError(where + "'" + name + "' has no 'picture'");
  for (const auto& [key, part] : value.items()) {
    if (key == "picture") {
      layer.picture = pictureOf(part, name, folder, paths, where);
      continue;
    }
    try {
      prepare(key, valueText(part, key, ""), layer.preparation);
    } catch (const UserError& error) {
      throw UserError(where + "'" + name + "': " + error.what());
    }
  }
  return layer;
}

std::vector<LayerText> layersOf(const json& part, const fs::path& folder, PathsOfPreset paths,
                                const std::string& where) {
  needObject(part, "layers", where);
  std::vector<LayerText> layers;
  for (const auto& [name, value] : part.items()) layers.push_back(layerOf(value, name, folder, paths, where));
  return layers;
}

int32_t heightFrom(const json& value, const std::string& where) {
  const double height = value.is_number() ? value.get<double>() : 0.0;
  if (height < 1.0 || height > mostPictureHeight || height != std::floor(height)) {
    throw UserError(where + "'height' takes the height of a picture in whole pixels, 1 to 30000");
  }
  return static_cast<int32_t>(height);
}

[[noreturn]] void refuseKey(const std::string& key, const std::string& where) {
  throw UserError(where + "no key '" + key + "'" +
                  suggestion(key, {"about", "height", "controls", "layers", "animation"},
                             "; it may have about, height, controls, layers and animation"));
}

}  // namespace

Preset readPreset(const fs::path& file, PathsOfPreset paths) {
  const std::string where = "preset '" + file.string() + "': ";
  const json whole = readJson(file, "preset");
  if (!whole.is_object()) throw UserError(where + "it must be an object with 'controls' and 'layers'");

  Preset preset;
  for (const auto& [key, value] : whole.items()) {
    if (key == "about") {
      if (!value.is_string()) throw UserError(where + "'about' takes a text");
      preset.about = value.get<std::string>();
    } else if (key == "height") {
      preset.height = heightFrom(value, where);
    } else if (key == "controls") {
      preset.controls = controlsOf(value, where);
    } else if (key == "layers") {
      preset.layers = layersOf(value, file.parent_path(), paths, where);
    } else if (key == "animation") {
      preset.animation = tracksFrom(value, where);
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
    const char* const example = option == "--set"    ? "--set \"Dot Size=14\""
                                : option == "--vary" ? "--vary \"Dot Size=4,8,12\""
                                                     : "--layer \"Mask Target Layer=mask.png\"";
    throw UserError(option + " takes a name, '=' and a value, as in " + example + ", not '" + argument + "'");
  }
  return {argument.substr(first, last - first), argument.substr(equals + 1)};
}

}  // namespace cli
