// Random numbers that are the same with every standard library, whose own distributions differ.
#pragma once

#include <cstdint>
#include <random>

namespace vindrel::test {

class Dice {
 public:
  explicit Dice(uint64_t seed) : engine_(seed) {}
  /// Both ends inclusive.
  int pick(int from, int to) { return from + static_cast<int>(engine_() % static_cast<uint64_t>(to - from + 1)); }
  /// Of as many bits as a double has; `to` is exclusive.
  double number(double from, double to) { return from + (to - from) * static_cast<double>(engine_() >> 11U) * 0x1p-53; }
  uint32_t below(uint32_t count) { return static_cast<uint32_t>(engine_() % count); }
  bool oneIn(int n) { return pick(1, n) == 1; }

 private:
  std::mt19937_64 engine_;
};

}  // namespace vindrel::test
