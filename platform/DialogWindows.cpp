// The system's own dialog functions. Windows and modules are passed through as the handles that they are.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include "platform/Dialog.h"

namespace platform {

static_assert(messageInitDialog == WM_INITDIALOG && messageCommand == WM_COMMAND);
static_assert(commandCancel == IDCANCEL && userDataIndex == GWLP_USERDATA);

namespace {

HWND handleOf(Window window) {
  return static_cast<HWND>(window);
}

}  // namespace

Module GetModuleHandleA(const char* path) {
  return ::GetModuleHandleA(path);
}

intptr_t DialogBoxParamA(Module module, int32_t id, Window parent, DialogProcedure procedure, intptr_t parameter) {
  static_assert(sizeof(UINT) == sizeof(uint32_t) && sizeof(WPARAM) == sizeof(uintptr_t));
  // There is one calling convention on 64-bit Windows; the types differ in name only (the handle is a pointer).
  const auto systemProcedure = reinterpret_cast<DLGPROC>(reinterpret_cast<void*>(procedure));
  return ::DialogBoxParamA(static_cast<HINSTANCE>(module), MAKEINTRESOURCEA(id), handleOf(parent), systemProcedure,
                           parameter);
}

bool EndDialog(Window dialog, intptr_t result) {
  return ::EndDialog(handleOf(dialog), result) != FALSE;
}

Window GetDlgItem(Window dialog, int32_t control) {
  return ::GetDlgItem(handleOf(dialog), control);
}

bool SetDlgItemTextA(Window dialog, int32_t control, const char* text) {
  return ::SetDlgItemTextA(handleOf(dialog), control, text) != FALSE;
}

bool EnableWindow(Window window, bool enable) {
  return ::EnableWindow(handleOf(window), enable ? TRUE : FALSE) != FALSE;
}

Window GetParent(Window window) {
  return ::GetParent(handleOf(window));
}

bool GetWindowRect(Window window, ScreenRect* rect) {
  RECT found;
  if (::GetWindowRect(handleOf(window), &found) == FALSE) return false;
  *rect = {static_cast<int32_t>(found.left), static_cast<int32_t>(found.top), static_cast<int32_t>(found.right),
           static_cast<int32_t>(found.bottom)};
  return true;
}

bool MoveWindow(Window window, int32_t left, int32_t top, int32_t width, int32_t height, bool repaint) {
  return ::MoveWindow(handleOf(window), left, top, width, height, repaint ? TRUE : FALSE) != FALSE;
}

intptr_t SetWindowLongPtrA(Window window, int32_t index, intptr_t value) {
  return ::SetWindowLongPtrA(handleOf(window), index, value);
}

intptr_t GetWindowLongPtrA(Window window, int32_t index) {
  return ::GetWindowLongPtrA(handleOf(window), index);
}

}  // namespace platform
