#include "cli/presets/SavePreset.h"

#include <map>
#include <nlohmann/json.hpp>
#include <system_error>

#include "cli/ControlValue.h"
#include "cli/UserError.h"

namespace cli {
namespace {

namespace fs = std::filesystem;
using nlohmann::ordered_json;

/// A number where a number says the same as the text, so that the file is pleasant to read and to change.
ordered_json jsonOf(const ControlFacts& control, const std::string& text) {
  const ControlValue value = parseControlValue(control, text);
  if (const auto* number = std::get_if<double>(&value)) return *number;
  if (const auto* whole = std::get_if<int32_t>(&value)) {
    if (control.kind == ControlKind::checkBox) return *whole != 0;
    if (control.kind == ControlKind::wholeNumber) return *whole;
  }
  return shownValue(control, value);
}

ordered_json jsonOf(const Ease& ease) {
  if (ease.kind == Ease::Kind::hold) return "hold";
  if (ease.kind == Ease::Kind::linear) return "linear";
  return {{"influence", ease.influence}, {"speed", ease.speed}};
}

ordered_json jsonOf(const ControlFacts& control, const TrackText& track) {
  ordered_json keys = ordered_json::array();
  for (const KeyText& key : track.keys) {
    ordered_json one;
    one[key.inSeconds ? "second" : "frame"] = key.at;
    // Turns ("2x+45") have no other form than their text.
    const bool hasTurns = control.kind == ControlKind::angle && key.value.find('x') != std::string::npos;
    one["value"] = hasTurns ? ordered_json(key.value) : jsonOf(control, key.value);
    one["in"] = jsonOf(key.in);
    one["out"] = jsonOf(key.out);
    keys.push_back(std::move(one));
  }
  return keys;
}

ordered_json jsonOf(const LayerText& layer, const std::string& picture) {
  if (!layer.preparation.any()) return picture;
  ordered_json whole = {{"picture", picture}};
  for (const Assignment& part : preparationTexts(layer.preparation)) {
    // The only value that is a number.
    if (part.name == "blur" && layer.preparation.blur == Preparation::Blur::pixels) {
      whole[part.name] = layer.preparation.blurPixels;
    } else {
      whole[part.name] = part.text;
    }
  }
  return whole;
}

std::string pictureFrom(const std::string& name, const std::string& picture, const fs::path& folder,
                        PathsOfPreset paths) {
  if (picture == "source" || picture == "none") return picture;
  std::error_code ignored;
  const fs::path whole = fs::weakly_canonical(picture, ignored);
  const fs::path below = whole.lexically_relative(fs::weakly_canonical(folder.empty() ? "." : folder, ignored));
  if (!below.empty() && *below.begin() != "..") return below.string();
  if (paths == PathsOfPreset::anywhere) return whole.string();
  throw UserError("'" + name + "' is '" + picture +
                  "', which lies outside the preset's folder; put it there, or give --allow-paths");
}

}  // namespace

Preset merged(const std::vector<Preset>& presets, const std::vector<ControlFacts>& controls) {
  std::map<int32_t, Assignment> values;
  std::map<int32_t, LayerText> layers;
  std::map<int32_t, TrackText> tracks;
  Preset whole;
  for (const Preset& preset : presets) {
    if (!preset.about.empty()) whole.about = preset.about;
    for (const Assignment& value : preset.controls) {
      const ControlFacts& control = findControl(controls, value.name);
      values[control.index] = {control.name, value.text};
      tracks.erase(control.index);
    }
    for (const LayerText& layer : preset.layers) {
      const ControlFacts& control = findControl(controls, layer.name);
      layers[control.index] = {control.name, layer.picture, layer.preparation};
    }
    for (const TrackText& track : preset.animation) {
      const ControlFacts& control = findControl(controls, track.control);
      tracks[control.index] = {control.name, track.keys};
    }
  }
  for (auto& [index, value] : values) whole.controls.push_back(std::move(value));
  for (auto& [index, layer] : layers) whole.layers.push_back(std::move(layer));
  for (auto& [index, track] : tracks) whole.animation.push_back(std::move(track));
  return whole;
}

std::string presetText(const Preset& preset, const std::vector<ControlFacts>& controls, const fs::path& folder,
                       PathsOfPreset paths) {
  ordered_json whole;
  if (!preset.about.empty()) whole["about"] = preset.about;
  if (preset.height) whole["height"] = *preset.height;
  for (const Assignment& value : preset.controls) {
    whole["controls"][value.name] = jsonOf(findControl(controls, value.name), value.text);
  }
  for (const LayerText& layer : preset.layers) {
    whole["layers"][layer.name] = jsonOf(layer, pictureFrom(layer.name, layer.picture, folder, paths));
  }
  for (const TrackText& track : preset.animation) {
    whole["animation"][track.control] = jsonOf(findControl(controls, track.control), track);
  }
  if (whole.is_null()) whole = ordered_json::object();
  return whole.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace cli
