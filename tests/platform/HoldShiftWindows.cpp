#define WIN32_LEAN_AND_MEAN
#define NOMINMAX 1
#include <windows.h>

#include "tests/platform/HoldShift.h"

namespace {

// The state of the calling thread's own keyboard, which is what a message of the key would have set.
void setShift(BYTE state) {
  BYTE keys[256] = {};
  GetKeyboardState(keys);
  keys[VK_SHIFT] = state;
  SetKeyboardState(keys);
}

}  // namespace

HoldShift::HoldShift() {
  setShift(0x80);
}
HoldShift::~HoldShift() {
  setShift(0);
}
