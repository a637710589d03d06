#include <cstdlib>

#include "tests/platform/HoldShift.h"

HoldShift::HoldShift() {
  setenv("VINDREL_SHIFT_KEY", "down", 1);
}
HoldShift::~HoldShift() {
  unsetenv("VINDREL_SHIFT_KEY");
}
