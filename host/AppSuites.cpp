/// "PF AE App Suite" in its three layouts, and "PF Effect UI Suite": a host without a window. Its colours are a middle
/// grey, its language is American English, its owner has no name, and whoever asks the user for a colour hears that the
/// user has cancelled.
#include <cstring>

#include "ae/AppSuites.h"
#include "host/HostState.h"
#include "host/Refusals.h"

namespace standin {

namespace {

constexpr PF_App_Color kGrey{0x8080, 0x8080, 0x8080};

/// A question with one place for the answer.
template <class Answer, class Work>
PF_Err answered(std::string_view service, Answer* place, std::string text, Work&& work) {
  HostState* host = HostState::current();
  if (host == nullptr || place == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  if (const auto fault = host->fault(service)) return host->note(service, std::move(text), *fault);
  work(*host, *place);
  return host->note(service, std::move(text), PF_Err_NONE);
}

PF_Err appGetBgColor(PF_App_Color* color) {
  return answered("PF_AppGetBgColor", color, "", [](HostState&, PF_App_Color& to) { to = kGrey; });
}

PF_Err appGetColor(PF_App_ColorType type, PF_App_Color* color) {
  return answered("PF_AppGetColor", color, "type " + std::to_string(type),
                  [](HostState&, PF_App_Color& to) { to = kGrey; });
}

PF_Err appGetLanguage(A_char* tag) {
  return answered("PF_AppGetLanguage", tag, "en_US", [](HostState&, A_char& to) { std::memcpy(&to, "en_US", 6); });
}

PF_Err getPersonalInfo(PF_AppPersonalTextInfo* info) {
  return answered("PF_GetPersonalInfo", info, "", [](HostState&, PF_AppPersonalTextInfo& to) { to = {}; });
}

PF_Err setCursor(PF_CursorType cursor) {
  HostState* host = HostState::current();
  return host == nullptr ? PF_Err_BAD_CALLBACK_PARAM : host->note("PF_SetCursor", std::to_string(cursor), PF_Err_NONE);
}

PF_Err isRenderEngine(PF_Boolean* answer) {
  HostState* host = HostState::current();
  const bool yes = host != nullptr && host->settings.renderEngine;
  return answered("PF_IsRenderEngine", answer, yes ? "yes" : "no",
                  [&](HostState&, PF_Boolean& to) { to = yes ? 1 : 0; });
}

PF_Err colorPickerDialog(const A_char*, const PF_PixelFloat*, PF_Boolean, PF_PixelFloat*) {
  HostState* host = HostState::current();
  return host == nullptr ? PF_Err_BAD_CALLBACK_PARAM
                         : host->note("PF_AppColorPickerDialog", "cancelled", PF_Interrupt_CANCEL);
}

PF_Err createProgressDialog(const A_UTF16Char*, const A_UTF16Char*, PF_Boolean, PF_AppProgressDialogP* dialog) {
  return answered("PF_CreateNewAppProgressDialog", dialog, "", [](HostState& host, PF_AppProgressDialogP& to) {
    to = reinterpret_cast<PF_AppProgressDialogP>(&host.layerMark);
  });
}

PF_Err updateProgressDialog(PF_AppProgressDialogP, A_long count, A_long total) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  const std::string text = std::to_string(count) + " of " + std::to_string(total);
  return host->note("PF_AppProgressDialogUpdate", text, host->askToGoOn(count, total));
}

PF_Err disposeProgressDialog(PF_AppProgressDialogP) {
  HostState* host = HostState::current();
  return host == nullptr ? PF_Err_BAD_CALLBACK_PARAM : host->note("PF_DisposeAppProgressDialog", "", PF_Err_NONE);
}

PF_Err setOptionsButtonName(PF_ProgPtr ref, const A_char* name) {
  HostState* host = HostState::current();
  if (host == nullptr || name == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "PF_SetOptionsButtonName");
  if (const auto fault = host->fault("PF_SetOptionsButtonName")) {
    return host->note("PF_SetOptionsButtonName", name, *fault);
  }
  if (host->running != PF_Cmd_PARAMS_SETUP) {
    host->complain(Matter::kWrongMoment, "PF_SetOptionsButtonName outside the parameters' set-up");
  }
  return host->note("PF_SetOptionsButtonName", name, PF_Err_NONE);
}

}  // namespace

const PFAppSuite4* appSuite6() {
  static const PFAppSuite4 suite = {appGetBgColor,
                                    appGetColor,
                                    getPersonalInfo,
                                    refused<"PF_GetFontStyleSheet">,
                                    setCursor,
                                    isRenderEngine,
                                    colorPickerDialog,
                                    refused<"PF_GetMouse">,
                                    refused<"PF_InvalidateRect">,
                                    refused<"PF_ConvertLocalToGlobal">,
                                    refused<"PF_GetColorAtGlobalPoint">};
  return &suite;
}

const PFAppSuite5* appSuite7() {
  static const PFAppSuite5 suite = {appGetBgColor,
                                    appGetColor,
                                    appGetLanguage,
                                    getPersonalInfo,
                                    refused<"PF_GetFontStyleSheet">,
                                    setCursor,
                                    isRenderEngine,
                                    colorPickerDialog,
                                    refused<"PF_GetMouse">,
                                    refused<"PF_InvalidateRect">,
                                    refused<"PF_ConvertLocalToGlobal">,
                                    refused<"PF_GetColorAtGlobalPoint">};
  return &suite;
}

const PFAppSuite6* appSuite1() {
  static const PFAppSuite6 suite = {appGetBgColor,
                                    appGetColor,
                                    appGetLanguage,
                                    getPersonalInfo,
                                    refused<"PF_GetFontStyleSheet">,
                                    setCursor,
                                    isRenderEngine,
                                    colorPickerDialog,
                                    refused<"PF_GetMouse">,
                                    refused<"PF_InvalidateRect">,
                                    refused<"PF_ConvertLocalToGlobal">,
                                    refused<"PF_GetColorAtGlobalPoint">,
                                    createProgressDialog,
                                    updateProgressDialog,
                                    disposeProgressDialog};
  return &suite;
}

const PF_EffectUISuite* effectUiSuite() {
  static const PF_EffectUISuite suite = {setOptionsButtonName};
  return &suite;
}

}  // namespace standin
