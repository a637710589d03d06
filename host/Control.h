/// One parameter as the effect declared it, and how it looks to the user now.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ae/Constants.h"
#include "ae/Params.h"

namespace standin {

struct Control {
  int32_t index = 0;  ///< place in the host's list; the layer itself is 0, so controls count from 1
  int32_t id = 0;     ///< by which projects know it
  std::string name;
  PF_ParamType type = 0;

  /// The record as add_param gave it. Pointers to texts in it point at the copies below, which live as long as the host
  /// that holds the control; copies of a Control share them with the host and must not outlive it.
  PF_ParamDef definition{};

  std::vector<std::string> choices;  ///< items of a popup, "(-" being a separator that counts as an item
  std::string label;                 ///< text beside a check box or on a button

  /// PF_PUI_* as they are now: those of the declaration until PF_UpdateParamUI changes them.
  PF_ParamUIFlags uiFlags = 0;

  bool greyed() const { return (uiFlags & PF_PUI_DISABLED) != 0; }

  /// False for what only orders the list: starts and ends of groups.
  bool hasValue() const { return type != PF_Param_GROUP_START && type != PF_Param_GROUP_END; }
};

/// "float slider", "popup", "group start" ...; "kind N" for a type that has no name here.
std::string kindName(PF_ParamType type);

}  // namespace standin
