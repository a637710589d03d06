#include "cli/LayerWarnings.h"

#include <algorithm>
#include <variant>

#include "cli/HostControls.h"

namespace cli {
namespace {

/// The host declares no such tie between controls, so the names tell. A module without them gets no warning.
struct Tie {
  const char* list;
  const char* item;
  const char* layer;
  const char* onlyWhen;  ///< a check box that must be on for the list to count; null for none
};
constexpr Tie ties[] = {
    {"Mask", "Layer", "Mask Target Layer", nullptr},
    {"Effect Map 1", "Use Custom Map", "Custom Map Layer 1", "Enable Effector 1"},
    {"Effect Map 2", "Use Custom Map", "Custom Map Layer 2", "Enable Effector 2"},
    {"Effect Map 3", "Use Custom Map", "Custom Map Layer 3", "Enable Effector 3"},
};

const ControlFacts* named(const std::vector<ControlFacts>& controls, const char* name, ControlKind kind) {
  const auto found = std::find_if(controls.begin(), controls.end(), [&](const ControlFacts& control) {
    return control.kind == kind && control.name == name;
  });
  return found == controls.end() ? nullptr : &*found;
}

}  // namespace

std::vector<std::string> missingLayers(const std::vector<ControlFacts>& controls,
                                       const standin::ParameterValues& values) {
  std::vector<std::string> lines;
  for (const Tie& tie : ties) {
    const ControlFacts* const list = named(controls, tie.list, ControlKind::choice);
    const ControlFacts* const layer = named(controls, tie.layer, ControlKind::layer);
    if (list == nullptr || layer == nullptr || shownSetting(*list, values) != tie.item) continue;
    const ControlFacts* const enabler =
        tie.onlyWhen == nullptr ? nullptr : named(controls, tie.onlyWhen, ControlKind::checkBox);
    if (enabler != nullptr && shownSetting(*enabler, values) != "on") continue;
    const auto* const picture = std::get_if<standin::LayerValue>(&values.value(layer->index));
    if (picture == nullptr || picture->source != standin::LayerValue::Source::kNone) continue;
    lines.push_back("'" + list->name + "' is '" + tie.item + "', but '" + layer->name +
                    "' has no picture; give one by --layer \"" + layer->name + "=FILE\"");
  }
  return lines;
}

}  // namespace cli
