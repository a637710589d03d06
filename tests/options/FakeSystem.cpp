#include "tests/options/FakeSystem.h"

#include "platform/CodePage.h"
#include "platform/CommandLine.h"
#include "platform/KeyState.h"

FakeSystem fakeSystem;
FakeDialog fakeDialog;

namespace {

char dialogMark;
char parentMark;
char moduleMark;
std::map<int32_t, char> controlMarks;

}  // namespace

namespace platform {

uint32_t GetACP() {
  ++fakeSystem.codePageAsked;
  return fakeSystem.codePage;
}

const char* GetCommandLineA() {
  ++fakeSystem.commandLineAsked;
  return fakeSystem.commandLine.c_str();
}

int16_t GetKeyState(int32_t virtualKey) {
  return virtualKey == keyShift && fakeSystem.shiftDown ? int16_t{-128} : int16_t{1};
}

Module GetModuleHandleA(const char* path) {
  fakeDialog.modulePath = path;
  return *path ? &moduleMark : nullptr;
}

intptr_t DialogBoxParamA(Module module, int32_t id, Window parent, DialogProcedure procedure, intptr_t parameter) {
  if (!module || !fakeDialog.canBeMade) return -1;
  ++fakeDialog.shown;
  fakeDialog.resource = id;
  fakeDialog.parent = parent;
  fakeDialog.procedure = procedure;
  fakeDialog.answers.push_back(procedure(&dialogMark, messageInitDialog, 0, parameter));
  fakeDialog.whileOpen();
  for (const int32_t command : fakeDialog.clicks) {
    if (fakeDialog.ended && !fakeDialog.takesClicksBehindTheEnd) break;
    // The high word says how the command came about; it must not matter.
    fakeDialog.answers.push_back(
        procedure(&dialogMark, messageCommand, 0x00030000u | static_cast<uintptr_t>(command), 0));
  }
  return fakeDialog.result;
}

bool EndDialog(Window, intptr_t result) {
  fakeDialog.ended = true;
  fakeDialog.result = result;
  return true;
}

Window GetDlgItem(Window, int32_t control) {
  return &controlMarks[control];
}

bool SetDlgItemTextA(Window, int32_t control, const char* text) {
  fakeDialog.texts[control] = text;
  return true;
}

bool EnableWindow(Window window, bool enable) {
  for (const auto& [control, mark] : controlMarks)
    if (&mark == window) fakeDialog.enabled[control] = enable;
  return false;
}

Window GetParent(Window) {
  return fakeDialog.parentIsThere ? &parentMark : nullptr;
}

bool GetWindowRect(Window window, ScreenRect* rect) {
  if (window == &dialogMark) *rect = fakeDialog.ownPlace;
  if (window == &parentMark) *rect = fakeDialog.parentPlace;
  return window == &dialogMark || window == &parentMark;
}

bool MoveWindow(Window window, int32_t left, int32_t top, int32_t width, int32_t height, bool repaint) {
  if (window != &dialogMark) return false;
  fakeDialog.movedTo = {left, top, left + width, top + height};
  fakeDialog.repaint = repaint;
  return true;
}

intptr_t SetWindowLongPtrA(Window, int32_t index, intptr_t value) {
  if (index != userDataIndex) return 0;
  fakeDialog.userData = value;
  return 0;
}

intptr_t GetWindowLongPtrA(Window, int32_t index) {
  return index == userDataIndex ? fakeDialog.userData : 0;
}

}  // namespace platform
