#include "effect/pixel/RepeatedAddition.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace vindrel {
namespace {

// Sign and exponent: numbers that share them lie between the same two powers of two, on the same side of zero.
uint64_t stretchOf(double number) noexcept {
  return std::bit_cast<uint64_t>(number) >> 52U;
}

// The end of the number's stretch towards which a growing sum goes.
double farEnd(double number) noexcept {
  const double low = std::bit_cast<double>(std::bit_cast<uint64_t>(number) & 0xFFF0000000000000U);
  return number > 0.0 ? 2.0 * low : low;
}

}  // namespace

double addRepeatedly(double start, double step, int32_t count) noexcept {
  double sum = start;
  while (count >= 16) {
    const double first = sum + step;
    const double second = first + step;
    sum = second + step;
    count -= 3;
    if (!std::isfinite(sum)) return sum;  // more additions change nothing
    if (stretchOf(first) != stretchOf(sum)) continue;
    const double growth = sum - second;
    // Two additions short of the end, so that no sum and no sum before its rounding can reach it.
    const double room = (farEnd(sum) - sum) / std::max(growth, step) - 2.0;
    if (!(room >= 1.0)) continue;
    const int32_t leap = room < count ? static_cast<int32_t>(room) : count;
    sum += leap * growth;
    count -= leap;
  }
  for (; count > 0; --count) sum += step;
  return sum;
}

}  // namespace vindrel
