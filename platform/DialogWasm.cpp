// There is no screen that the module could put a dialog on: none can be made, and there are no windows.
#include "platform/Dialog.h"

namespace platform {

Module GetModuleHandleA(const char*) {
  return nullptr;
}

intptr_t DialogBoxParamA(Module, int32_t, Window, DialogProcedure, intptr_t) {
  return -1;
}

bool EndDialog(Window, intptr_t) {
  return false;
}

Window GetDlgItem(Window, int32_t) {
  return nullptr;
}

bool SetDlgItemTextA(Window, int32_t, const char*) {
  return false;
}

bool EnableWindow(Window, bool) {
  return false;
}

Window GetParent(Window) {
  return nullptr;
}

bool GetWindowRect(Window, ScreenRect*) {
  return false;
}

bool MoveWindow(Window, int32_t, int32_t, int32_t, int32_t, bool) {
  return false;
}

intptr_t SetWindowLongPtrA(Window, int32_t, intptr_t) {
  return 0;
}

intptr_t GetWindowLongPtrA(Window, int32_t) {
  return 0;
}

}  // namespace platform
