#include <algorithm>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <system_error>

#include "cli/Commands.h"
#include "cli/EffectSession.h"
#include "cli/UserError.h"
#include "cli/files/FileBytes.h"
#include "cli/files/PutFile.h"
#include "cli/presets/Lengths.h"
#include "cli/presets/LookFiles.h"
#include "cli/presets/PresetStack.h"
#include "cli/presets/SavePreset.h"

namespace cli {
namespace {

namespace fs = std::filesystem;

void list(const Surroundings& surroundings) {
  const std::vector<fs::path> files = allLooks(surroundings, presetFiles);
  std::size_t width = 0;
  for (const fs::path& file : files) width = std::max(width, file.stem().string().size());
  for (const fs::path& file : files) {
    try {
      const Preset preset = readPreset(file, PathsOfPreset::anywhere);
      surroundings.out << std::left << std::setw(static_cast<int>(width + 2)) << file.stem().string() << preset.about
                       << '\n';
    } catch (const UserError& error) {
      surroundings.err << "vindrel: warning: " << error.what() << '\n';
    }
  }
}

fs::path placeToSave(const std::string& name, const Surroundings& surroundings) {
  if (isPathOfLook(name)) {
    if (!name.ends_with(".json")) throw UserError("a preset's file ends in .json, not as '" + name + "' does");
    return name;
  }
  const bool isPlain = !name.empty() && name[0] != '.' && std::all_of(name.begin(), name.end(), [](unsigned char c) {
    return c > 32 && c != 127 && c != '\\';
  });
  if (!isPlain) throw UserError("--save takes a name without blanks or a file that ends in .json, not '" + name + "'");
  if (surroundings.userFolder.empty()) {
    throw UserError("there is no folder of your own to save '" + name + "' in; give a file, as in ./" + name + ".json");
  }
  return surroundings.userFolder / presetFiles.folder / (name + ".json");
}

/// The height at which the saved values will be seen. Presets of several heights, and values by hand over a preset
/// that has one, would leave it open.
std::optional<int32_t> heightToSave(const Arguments& arguments, const PresetStack& stack) {
  if (arguments.height) return arguments.height;
  std::optional<int32_t> height;
  for (const PresetStack::Layer& layer : stack.layers()) {
    if (&layer != &stack.layers().front() && layer.preset.height != height) {
      throw UserError("the presets are for pictures of several heights; --height says for which one to save");
    }
    height = layer.preset.height;
  }
  return height;
}

void save(const Arguments& arguments, const Surroundings& surroundings) {
  const fs::path file = placeToSave(arguments.saveName, surroundings);
  std::error_code ignored;
  if (!arguments.replace && fs::exists(file, ignored)) {
    throw UserError("there is a preset " + quoted(file) + "; --replace saves over it");
  }
  EffectSession session(arguments.module, Defaults::builtIn);
  const PresetStack stack(arguments.presets, arguments.pathsOfPreset);
  const std::optional<int32_t> height = heightToSave(arguments, stack);
  const PresetStack scaled = stack.scaled(arguments.scale, height, session.controls());

  // Whatever the module doesn't take is refused here, as it would be when the preset is used.
  (void)session.values(scaled, arguments.sets, arguments.layers, plainLayers(arguments.mostMemory));

  std::vector<Preset> parts;
  // Lengths that nobody names belong to the look as well.
  if (scaled.factorOfDefaults() != 1.0) {
    standin::ParameterValues defaults = session.host().defaults();
    scaleLengths(session.controls(), scaled.factorOfDefaults(), defaults);
    Preset lengths;
    for (const ControlFacts& control : session.controls()) {
      if (isLength(control)) {
        lengths.controls.push_back({control.name, shownNumber(defaults.number(standin::ByIndex{control.index}))});
      }
    }
    parts.push_back(std::move(lengths));
  }
  for (const PresetStack::Layer& layer : scaled.layers()) parts.push_back(layer.preset);
  Preset given;
  given.controls = arguments.sets;
  given.layers = arguments.layers;
  given.about = arguments.about;
  parts.push_back(std::move(given));

  Preset whole = merged(parts, session.controls());
  whole.height = height;
  const std::string text = presetText(whole, session.controls(), file.parent_path(), arguments.pathsOfPreset);
  if (!isPathOfLook(arguments.saveName)) {
    std::error_code error;
    fs::create_directories(file.parent_path(), error);
    if (error) throw UserError("can't make the folder " + quoted(file.parent_path()) + ": " + error.message());
  }
  checkPlace(file);
  putFile(file, std::span(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
  surroundings.out << "Saved as " << file.string() << '\n';
}

}  // namespace

void usePresets(const Arguments& arguments, const Surroundings& surroundings) {
  if (arguments.saveName.empty()) {
    list(surroundings);
  } else {
    save(arguments, surroundings);
  }
}

}  // namespace cli
