/// An effect module in use: loaded, set up, with its controls in plain words, and put away again at the end.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cli/ControlFacts.h"
#include "cli/ControlValue.h"
#include "cli/ImageFile.h"
#include "cli/Preset.h"
#include "cli/presets/PresetStack.h"
#include "host/LoadedModule.h"
#include "host/StandInHost.h"

namespace cli {

/// Where the defaults of controls come from: the module alone, or the settings file beside it where there is one.
enum class Defaults { builtIn, stored };

/// The layer of this name.
/// @throws UserError for a control of another kind, and for a misspelt name with the nearest layer, since nothing else
///         was meant
const ControlFacts& findLayer(const std::vector<ControlFacts>& controls, const std::string& name);

class EffectSession {
 public:
  /// Loads the module and sends the set-ups of the module, its controls and a sequence.
  /// @throws UserError when the file is no module of this kind of host, EffectError when a set-up fails
  EffectSession(const std::filesystem::path& module, Defaults defaults);
  /// The same, but the module is told that it lies at `place`, so that its stored defaults are those beside that.
  EffectSession(const std::filesystem::path& module, const std::filesystem::path& place);
  EffectSession(const EffectSession&) = delete;
  EffectSession& operator=(const EffectSession&) = delete;
  ~EffectSession();

  standin::StandInHost& host() { return host_; }
  const standin::StandInHost& host() const { return host_; }
  const std::vector<ControlFacts>& controls() const { return controls_; }

  /// The defaults, with the presets' values over them, and the assignments over both. Pictures of layers are read here.
  /// Lengths that no preset names go along with the presets (PresetStack::factorOfDefaults).
  /// @param readLayer  for the pictures of layers
  /// @throws UserError for a name, value or picture that doesn't fit
  standin::ParameterValues values(const PresetStack& presets, const std::vector<Assignment>& sets,
                                  const std::vector<LayerText>& layers,
                                  const LayerReader& readLayer = plainLayers()) const;

  /// checkEffect() of this session's host.
  void check(PF_Err code, const std::string& during) const;

 private:
  void start();

  standin::LoadedModule module_;
  standin::StandInHost host_;
  std::vector<ControlFacts> controls_;
};

}  // namespace cli
