/// Which host this is: what it says of itself, which services it withholds, and how it answers simple questions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ae/Constants.h"
#include "ae/Scalars.h"
#include "ae/Suites.h"

namespace standin {

/// A suite as an effect asks for it.
struct SuiteName {
  std::string name;
  int32_t version = 0;
  bool operator==(const SuiteName&) const = default;
};

struct HostSettings {
  A_long applId = kAppIdAfterEffects;
  PF_SpecVersion version{13, 0};  ///< in_data->version; given at every command
  bool renderEngine = false;      ///< the answer of PF_IsRenderEngine

  /// What get_platform_data tells for the module's and the resources' path (narrow, cut to 259 bytes). Without a value
  /// it is the path that the module was loaded from, or the empty text.
  std::optional<std::string> modulePath;

  /// What get_platform_data tells for the main window: a window handle of the system, null for none.
  void* mainWindow = nullptr;

  bool withoutBasicSuite = false;   ///< pica_basicP is null
  std::vector<SuiteName> withheld;  ///< AcquireSuite says "not found" for these
  int32_t fillOfNewWorlds = 0xB7;   ///< byte of every pixel of a world that is made without clearing
  int32_t fillOfOutputs = 0xB7;     ///< byte of every pixel of an output before the effect draws
};

}  // namespace standin
