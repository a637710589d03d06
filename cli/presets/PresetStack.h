/// Several presets, one over the other, in the lengths of the picture at hand.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/ControlFacts.h"
#include "cli/Preset.h"

namespace cli {

class PresetStack {
 public:
  struct Layer {
    Preset preset;
    std::string where;  ///< before each complaint: "preset 'p.json': "
  };

  /// Nothing.
  PresetStack() = default;

  /// Reads the presets, the first of which lies lowest.
  /// @throws UserError
  PresetStack(const std::vector<std::filesystem::path>& files, PathsOfPreset paths);

  const std::vector<Layer>& layers() const { return layers_; }
  bool empty() const { return layers_.empty(); }

  /// True when the values depend on the height of the picture.
  bool dependsOnHeight() const;

  /// The presets with their lengths times the factor; and without one, times the picture's height over that for which
  /// each was made. A preset that names no height stays as it is.
  /// @param pictureHeight  pixels at full size; none: the presets' own
  /// @throws UserError for a length that would leave its control's range
  PresetStack scaled(std::optional<double> factor, std::optional<int32_t> pictureHeight,
                     const std::vector<ControlFacts>& controls) const;

  /// The presets with other pictures for layers.
  /// @param change  gets what a preset names and gives what it is to name
  template <class Change>
  PresetStack withLayers(const Change& change) const {
    PresetStack result = *this;
    for (Layer& layer : result.layers_) layer.preset.layers = change(layer.preset.layers);
    return result;
  }

  /// How the presets have layers prepared, by index of the control: as the last preset says that names it.
  /// @throws UserError for a layer that there isn't
  std::map<int32_t, Preparation> preparations(const std::vector<ControlFacts>& controls) const;

  /// What scaled() multiplied the lengths by that no preset names: the factor of the lowest preset that names a height,
  /// since whoever made it saw them at that height.
  double factorOfDefaults() const { return factorOfDefaults_; }

 private:
  std::vector<Layer> layers_;
  double factorOfDefaults_ = 1.0;
};

}  // namespace cli
