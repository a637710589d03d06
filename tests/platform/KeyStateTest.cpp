#include "platform/KeyState.h"

#include <gtest/gtest.h>

#include "tests/platform/HoldShift.h"

namespace {

TEST(KeyState, shiftIsNegativeWhileItIsHeld) {
  EXPECT_GE(platform::GetKeyState(platform::keyShift), 0);
  {
    const HoldShift held;
    EXPECT_LT(platform::GetKeyState(platform::keyShift), 0);
  }
  EXPECT_GE(platform::GetKeyState(platform::keyShift), 0);
}

TEST(KeyState, holdingShiftHoldsNoOtherKey) {
  const HoldShift held;
  EXPECT_GE(platform::GetKeyState(0x41), 0);  // the key A
}

}  // namespace
