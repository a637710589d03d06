// A modal dialog from the module's resources, and what its procedure asks of it.
//
// On Windows these are the system's own functions. Elsewhere a stand-in plays the one dialog that the module has, with
// nobody at the screen: it opens, takes the answer that the environment variable VINDREL_DIALOG_ANSWER names, and
// closes. "save" and "restore" are clicks on the two buttons; a click on a grey button does nothing, as on the screen,
// and the dialog is then closed by its close box. Any other answer, and none, is the close box. When
// VINDREL_DIALOG_LOG names a file, the dialog's place, and each control's text and state at the time of the answer, are
// written there.
#pragma once

#include <cstdint>

namespace platform {

using Window = void*;  ///< names a window of the system; null for none
using Module = void*;  ///< names a loaded module; null for none

/// Screen pixels; right and bottom are one past the end.
struct ScreenRect {
  int32_t left;
  int32_t top;
  int32_t right;
  int32_t bottom;
};

/// @return 1 for a message that was handled, 0 for all others.
using DialogProcedure = intptr_t (*)(Window dialog, uint32_t message, uintptr_t wParam, intptr_t lParam);

inline constexpr uint32_t messageInitDialog = 272;  ///< before the dialog is shown; lParam is what DialogBoxParamA got
inline constexpr uint32_t messageCommand = 273;     ///< the low word of wParam is the control's id
inline constexpr int32_t commandCancel = 2;         ///< the close box, or Esc
inline constexpr int32_t userDataIndex = -21;       ///< the word that a window keeps for its owner

/// The module that was loaded from this path; null when there is none.
Module GetModuleHandleA(const char* path);

/// Shows dialog resource `id` of `module` over `parent` and returns when it has closed: what EndDialog was given, or
/// -1 when the dialog could not be made.
intptr_t DialogBoxParamA(Module module, int32_t id, Window parent, DialogProcedure procedure, intptr_t parameter);

/// Closes the dialog once its procedure has returned.
bool EndDialog(Window dialog, intptr_t result);

/// Null when there is no control of this id.
Window GetDlgItem(Window dialog, int32_t control);
bool SetDlgItemTextA(Window dialog, int32_t control, const char* text);

/// A window that isn't enabled is shown grey and takes no clicks. True when it was disabled before.
bool EnableWindow(Window window, bool enable);

Window GetParent(Window window);

/// The whole window with its frame. False, and `rect` unchanged, when there is no such window.
bool GetWindowRect(Window window, ScreenRect* rect);
bool MoveWindow(Window window, int32_t left, int32_t top, int32_t width, int32_t height, bool repaint);

/// Keeps a word with the window, and gives the one kept before. Only `userDataIndex` is used.
intptr_t SetWindowLongPtrA(Window window, int32_t index, intptr_t value);
intptr_t GetWindowLongPtrA(Window window, int32_t index);

}  // namespace platform
