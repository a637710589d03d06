#include "cli/presets/PresetStack.h"

#include <algorithm>

#include "cli/UserError.h"
#include "cli/presets/Lengths.h"

namespace cli {
namespace {

double factorFor(const Preset& preset, std::optional<double> factor, std::optional<int32_t> pictureHeight) {
  if (factor) return *factor;
  if (!preset.height || !pictureHeight) return 1.0;
  return static_cast<double>(*pictureHeight) / *preset.height;
}

}  // namespace

PresetStack::PresetStack(const std::vector<std::filesystem::path>& files, PathsOfPreset paths) {
  for (const std::filesystem::path& file : files) {
    layers_.push_back({readPreset(file, paths), "preset '" + file.string() + "': "});
  }
}

bool PresetStack::dependsOnHeight() const {
  return std::any_of(layers_.begin(), layers_.end(),
                     [](const Layer& layer) { return layer.preset.height.has_value(); });
}

PresetStack PresetStack::scaled(std::optional<double> factor, std::optional<int32_t> pictureHeight,
                                const std::vector<ControlFacts>& controls) const {
  PresetStack result;
  bool found = false;
  for (const Layer& layer : layers_) {
    const double own = factorFor(layer.preset, factor, pictureHeight);
    if (!found && (factor || layer.preset.height)) {
      result.factorOfDefaults_ = own;
      found = true;
    }
    try {
      result.layers_.push_back({scaledPreset(layer.preset, own, controls), layer.where});
    } catch (const UserError& error) {
      throw UserError(layer.where + error.what());
    }
  }
  return result;
}

std::map<int32_t, Preparation> PresetStack::preparations(const std::vector<ControlFacts>& controls) const {
  std::map<int32_t, Preparation> preparations;
  for (const Layer& layer : layers_) {
    for (const LayerText& text : layer.preset.layers) {
      preparations[findControl(controls, text.name).index] = text.preparation;
    }
  }
  return preparations;
}

}  // namespace cli
