#include "cli/color/SrgbCurve.h"

#include <cmath>

namespace cli {

namespace {
constexpr double slope = 12.92;
constexpr double start = 0.04045;  ///< where the power begins, as a display's number
constexpr double offset = 0.055;
constexpr double power = 2.4;
}  // namespace

float lightFromSrgb(float number) {
  const auto n = static_cast<double>(number);
  return static_cast<float>(n <= start ? n / slope : std::pow((n + offset) / (1.0 + offset), power));
}

float srgbFromLight(float light) {
  const auto l = static_cast<double>(light);
  return static_cast<float>(l <= start / slope ? l * slope : (1.0 + offset) * std::pow(l, 1.0 / power) - offset);
}

}  // namespace cli
