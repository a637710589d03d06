#include "cli/EffectSession.h"

#include <system_error>

#include "cli/EffectErrors.h"
#include "cli/HostControls.h"
#include "cli/NearestName.h"
#include "cli/UserError.h"
#include "cli/files/SettingsFile.h"
#include "cli/presets/Lengths.h"

namespace cli {
namespace {

namespace fs = std::filesystem;
using standin::ByIndex;

standin::LoadedModule load(const fs::path& module) {
  std::error_code ignored;
  if (!fs::exists(module, ignored)) throw UserError("no module '" + module.string() + "'; --module names another one");
  if (fs::is_directory(module, ignored)) throw UserError("'" + module.string() + "' is a folder, not a module");
  try {
    return standin::LoadedModule(fs::absolute(module).string());
  } catch (const std::runtime_error& error) {
    throw UserError(error.what());
  }
}

standin::HostSettings toldPath(const fs::path& place) {
  standin::HostSettings settings;
  settings.modulePath = place.string();
  return settings;
}

standin::HostSettings settingsFor(const fs::path& module, Defaults defaults) {
  // A module that isn't told where it lies can't look for a file beside itself.
  if (defaults == Defaults::builtIn) return toldPath({});
  checkSettingsFile(settingsFileOf(module));
  return {};
}

standin::LayerValue layerFrom(const ControlFacts& control, const std::string& text, const LayerReader& readLayer) {
  if (text == "source") return standin::LayerValue::itself();
  if (text == "none") return standin::LayerValue::none();
  if (text.empty()) throw UserError("'" + control.name + "' takes a picture's file, source or none");
  return standin::LayerValue::of(readLayer(text));
}

void applyAll(const std::vector<ControlFacts>& controls, const std::vector<Assignment>& sets,
              const std::vector<LayerText>& layers, const LayerReader& readLayer, standin::ParameterValues& values) {
  for (const Assignment& set : sets) {
    const ControlFacts& control = findControl(controls, set.name);
    setValue(control, parseControlValue(control, set.text), values);
  }
  for (const LayerText& layer : layers) {
    const ControlFacts& control = findLayer(controls, layer.name);
    values.setLayer(ByIndex{control.index}, layerFrom(control, layer.picture, readLayer));
  }
}

}  // namespace

const ControlFacts& findLayer(const std::vector<ControlFacts>& controls, const std::string& name) {
  std::vector<std::string> layers;
  for (const ControlFacts& control : controls) {
    if (control.kind == ControlKind::layer) layers.push_back(control.name);
    if (control.kind == ControlKind::groupEnd || !equalIgnoringCase(control.name, name)) continue;
    if (control.kind == ControlKind::layer) return control;
    throw UserError("'" + control.name + "' is a " + kindName(control.kind) + ", not a layer; give it by --set");
  }
  throw UserError("no layer '" + name + "'" + suggestion(name, layers, "; the layers are " + listed(layers, "and")));
}

EffectSession::EffectSession(const fs::path& module, Defaults defaults)
    : module_(load(module)), host_(module_, settingsFor(module, defaults)) {
  if (defaults == Defaults::builtIn) {
    start();
  } else {
    const SettingsLock lock(settingsFileOf(module), SettingsLock::Way::read);
    start();
  }
}

EffectSession::EffectSession(const fs::path& module, const fs::path& place)
    : module_(load(module)), host_(module_, toldPath(place)) {
  start();
}

void EffectSession::start() {
  check(host_.start(), "while it was set up");
  controls_ = factsOf(host_.controls());
}

EffectSession::~EffectSession() {
  // The work is done by now; an effect that fails at its own end takes nothing away from it.
  static_cast<void>(host_.finish());
}

standin::ParameterValues EffectSession::values(const PresetStack& presets, const std::vector<Assignment>& sets,
                                               const std::vector<LayerText>& layers,
                                               const LayerReader& readLayer) const {
  standin::ParameterValues values = host_.defaults();
  if (presets.factorOfDefaults() != 1.0) scaleLengths(controls_, presets.factorOfDefaults(), values);
  for (const PresetStack::Layer& layer : presets.layers()) {
    try {
      applyAll(controls_, layer.preset.controls, layer.preset.layers, readLayer, values);
    } catch (const UserError& error) {
      throw UserError(layer.where + error.what());
    }
  }
  applyAll(controls_, sets, layers, readLayer, values);
  return values;
}

void EffectSession::check(PF_Err code, const std::string& during) const {
  checkEffect(host_, code, during);
}

}  // namespace cli
