/// "AEGP Utility Suite": registration. Whatever else stands in the table is refused by its name.
#include <algorithm>

#include "ae/AegpSuites.h"
#include "host/HostState.h"
#include "host/Refusals.h"

namespace standin {

namespace {

// One number for each name, the same again for a module that asks twice; the first argument is the module's own affair.
A_Err registerWithAegp(AEGP_GlobalRefcon, const A_char* name, AEGP_PluginID* id) {
  HostState* host = HostState::current();
  if (host == nullptr || id == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  const std::string known = name == nullptr ? "" : name;
  if (const auto fault = host->fault("AEGP_RegisterWithAEGP")) {
    return host->note("AEGP_RegisterWithAEGP", known, *fault);
  }
  auto& names = host->registeredNames;
  auto place = std::find(names.begin(), names.end(), known);
  if (place == names.end()) place = names.insert(names.end(), known);
  *id = static_cast<AEGP_PluginID>(place - names.begin()) + 1;
  return host->note("AEGP_RegisterWithAEGP", known, PF_Err_NONE);
}

}  // namespace

const AEGP_UtilitySuite* aegpUtilitySuite() {
  static const AEGP_UtilitySuite suite = {
      refused<"AEGP_ReportInfo">,
      refused<"AEGP_GetDriverPluginInitFuncVersion">,
      refused<"AEGP_GetDriverImplementationVersion">,
      refused<"AEGP_StartQuietErrors">,
      refused<"AEGP_EndQuietErrors">,
      refused<"AEGP_StartUndoGroup">,
      refused<"AEGP_EndUndoGroup">,
      registerWithAegp,
      refused<"AEGP_GetMainHWND">,
      refused<"AEGP_ShowHideAllFloaters">,
      refused<"AEGP_PaintPalGetForeColor">,
      refused<"AEGP_PaintPalGetBackColor">,
      refused<"AEGP_PaintPalSetForeColor">,
      refused<"AEGP_PaintPalSetBackColor">,
      refused<"AEGP_CharPalGetFillColor">,
      refused<"AEGP_CharPalGetStrokeColor">,
      refused<"AEGP_CharPalSetFillColor">,
      refused<"AEGP_CharPalSetStrokeColor">,
      refused<"AEGP_CharPalIsFillColorUIFrontmost">,
      refused<"AEGP_ConvertFpLongToHSFRatio">,
      refused<"AEGP_ConvertHSFRatioToFpLong">,
      refused<"AEGP_CauseIdleRoutinesToBeCalled">,
      refused<"AEGP_GetSuppressInteractiveUI">,
      refused<"AEGP_WriteToOSConsole">,
      refused<"AEGP_WriteToDebugLog">,
  };
  return &suite;
}

}  // namespace standin
