// A stand-in for the screen: the module's one dialog, answered by an environment variable.
//
// The dialog and its controls are plain records on the stack of DialogBoxParamA; a Window is the address of one of
// them. Whatever host window is passed as the parent is taken for one at a fixed place, since there is no screen.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/Dialog.h"
#include "platform/ResourceIds.h"

namespace platform {

namespace {

// 315 by 244 dialog units at the usual font of 6 by 13 pixels: a unit is a quarter across and an eighth down.
constexpr int32_t dialogWidth = 315 * 6 / 4;
constexpr int32_t dialogHeight = 244 * 13 / 8;

constexpr ScreenRect parentPlace{100, 60, 1380, 1084};

/// A dialog or one of its controls.
struct StandInWindow {
  int32_t id = 0;
  ScreenRect place{};
  bool enabled = true;
  char text[256] = "-";
  intptr_t userData = 0;
  StandInWindow* owner = nullptr;  ///< a control's dialog
};

struct StandInDialog {
  StandInWindow self;
  std::array<StandInWindow, 4> controls{};
  DialogProcedure procedure = nullptr;
  bool ended = false;
  intptr_t result = 0;
};

// Dialogs are modal and come on the host's one thread of the user interface.
StandInDialog* openDialog = nullptr;

StandInWindow* windowOf(Window window) {
  if (!openDialog || !window) return nullptr;
  if (window == &openDialog->self) return &openDialog->self;
  const auto found = std::find_if(openDialog->controls.begin(), openDialog->controls.end(),
                                  [window](const StandInWindow& control) { return &control == window; });
  return found == openDialog->controls.end() ? nullptr : &*found;
}

// Nothing but the dialog's parent is asked for that isn't the stand-in's own.
char parentMark;

void click(StandInDialog& dialog, int32_t control) {
  const auto* const window = windowOf(GetDlgItem(&dialog.self, control));
  if (window && window->enabled) dialog.procedure(&dialog.self, messageCommand, static_cast<uintptr_t>(control), 0);
}

void writeLog(const StandInDialog& dialog) {
  const char* const path = std::getenv("VINDREL_DIALOG_LOG");
  if (!path) return;
  std::FILE* const file = std::fopen(path, "wb");
  if (!file) return;
  const ScreenRect& place = dialog.self.place;
  std::fprintf(file, "dialog %d %d %d %d\n", place.left, place.top, place.right, place.bottom);
  for (const StandInWindow& control : dialog.controls) {
    std::fprintf(file, "%d %s %s\n", control.id, control.enabled ? "on" : "grey", control.text);
  }
  std::fclose(file);
}

void answer(StandInDialog& dialog) {
  const char* const wanted = std::getenv("VINDREL_DIALOG_ANSWER");
  if (wanted && std::strcmp(wanted, "save") == 0) click(dialog, VINDREL_SAVE_DEFAULTS);
  if (wanted && std::strcmp(wanted, "restore") == 0) click(dialog, VINDREL_RESTORE_DEFAULTS);
  if (!dialog.ended) dialog.procedure(&dialog.self, messageCommand, commandCancel, 0);
}

}  // namespace

Module GetModuleHandleA(const char* path) {
  static char anyModule;
  return *path ? &anyModule : nullptr;
}

intptr_t DialogBoxParamA(Module module, int32_t id, Window, DialogProcedure procedure, intptr_t parameter) {
  if (!module || id != VINDREL_OPTION_DIALOG) return -1;
  StandInDialog dialog;
  dialog.procedure = procedure;
  dialog.self.place = {0, 0, dialogWidth, dialogHeight};
  constexpr std::array<int32_t, 4> ids{VINDREL_SETTINGS_GROUP, VINDREL_SAVE_DEFAULTS, VINDREL_RESTORE_DEFAULTS,
                                       VINDREL_BANNER_CONTROL};
  for (size_t i = 0; i < ids.size(); ++i) {
    dialog.controls[i].id = ids[i];
    dialog.controls[i].owner = &dialog.self;
  }
  openDialog = &dialog;
  procedure(&dialog.self, messageInitDialog, 0, parameter);
  writeLog(dialog);
  if (!dialog.ended) answer(dialog);
  openDialog = nullptr;
  return dialog.result;
}

bool EndDialog(Window dialog, intptr_t result) {
  if (!openDialog || dialog != &openDialog->self) return false;
  openDialog->ended = true;
  openDialog->result = result;
  return true;
}

Window GetDlgItem(Window dialog, int32_t control) {
  if (!openDialog || dialog != &openDialog->self) return nullptr;
  const auto found = std::find_if(openDialog->controls.begin(), openDialog->controls.end(),
                                  [control](const StandInWindow& window) { return window.id == control; });
  return found == openDialog->controls.end() ? nullptr : &*found;
}

bool SetDlgItemTextA(Window dialog, int32_t control, const char* text) {
  StandInWindow* const window = windowOf(GetDlgItem(dialog, control));
  if (!window) return false;
  std::snprintf(window->text, sizeof window->text, "%s", text);
  return true;
}

bool EnableWindow(Window window, bool enable) {
  StandInWindow* const found = windowOf(window);
  if (!found) return false;
  const bool wasDisabled = !found->enabled;
  found->enabled = enable;
  return wasDisabled;
}

Window GetParent(Window window) {
  StandInWindow* const found = windowOf(window);
  if (!found) return nullptr;
  return found->owner ? static_cast<Window>(found->owner) : &parentMark;
}

bool GetWindowRect(Window window, ScreenRect* rect) {
  if (window == &parentMark) {
    *rect = parentPlace;
    return true;
  }
  const StandInWindow* const found = windowOf(window);
  if (!found) return false;
  *rect = found->place;
  return true;
}

bool MoveWindow(Window window, int32_t left, int32_t top, int32_t width, int32_t height, bool) {
  StandInWindow* const found = windowOf(window);
  if (!found) return false;
  found->place = {left, top, left + width, top + height};
  return true;
}

intptr_t SetWindowLongPtrA(Window window, int32_t index, intptr_t value) {
  StandInWindow* const found = windowOf(window);
  if (!found || index != userDataIndex) return 0;
  const intptr_t before = found->userData;
  found->userData = value;
  return before;
}

intptr_t GetWindowLongPtrA(Window window, int32_t index) {
  const StandInWindow* const found = windowOf(window);
  return found && index == userDataIndex ? found->userData : 0;
}

}  // namespace platform
