// Holds the Shift key down for a scope, as a user would.
#pragma once

class HoldShift {
 public:
  HoldShift();
  ~HoldShift();
  HoldShift(const HoldShift&) = delete;
  HoldShift& operator=(const HoldShift&) = delete;
};
