#include "effect/pixel/Hsv.h"

#include <algorithm>
#include <cstdint>

#include "effect/pixel/Convert.h"

namespace vindrel {
namespace {

/// Not quite one sixth. Kept as is: the true quotient would move channels by a level
/// (theScaleOfTheHueCostsMixedPrimariesALevel).
constexpr double turnsPerSector = 0.166666666666667;

/// The magnitude of a 32-bit integer in 32 bits; the smallest one has none and stays as it is.
double magnitude(int32_t value) noexcept {
  const auto bits = static_cast<uint32_t>(value);
  return static_cast<int32_t>(value < 0 ? 0U - bits : bits);
}

}  // namespace

template <class Pixel>
Hsv rgbToHsv(const Pixel& pixel) noexcept {
  const double red = toUnit<Pixel>(pixel.red);
  const double green = toUnit<Pixel>(pixel.green);
  const double blue = toUnit<Pixel>(pixel.blue);

  const double value = std::max({red, green, blue});
  const double smallest = std::min({red, green, blue});
  const double range = value - smallest;
  const double saturation = value == 0.0 ? 0.0 : range / value;
  if (saturation == 0.0) return {0.0, saturation, value};

  double sectors = 0.0;
  if (value == red) {
    sectors = (green - blue) / range;
  } else if (value == green) {
    sectors = (blue - red) / range + 2.0;
  } else {
    sectors = (red - green) / range + 4.0;
  }
  double hue = sectors * turnsPerSector;
  if (hue < 0.0) hue = hue + 1.0;
  return {hue, saturation, value};
}

template <class Pixel>
Pixel hsvToRgb(const Hsv& color) noexcept {
  const double saturation = color.saturation;
  const double value = color.value;

  const double wholeTurns = magnitude(truncateToInt32(color.hue));
  const double wrapped = color.hue < 0.0 ? color.hue + (wholeTurns + 1.0) : color.hue - wholeTurns;
  // A tiny negative hue wraps to exactly 1.0, so the whole part goes once more.
  const double sectors = (wrapped - truncateToInt32(wrapped)) * 6.0;
  const int32_t sector = truncateToInt32(sectors);
  const double fraction = sectors - sector;

  const double low = (1.0 - saturation) * value;
  const double falling = (1.0 - fraction * saturation) * value;
  const double rising = (1.0 - (1.0 - fraction) * saturation) * value;

  double red = 0.0;
  double green = 0.0;
  double blue = 0.0;
  switch (sector) {
    case 0:
      red = value, green = rising, blue = low;
      break;
    case 1:
      red = falling, green = value, blue = low;
      break;
    case 2:
      red = low, green = value, blue = rising;
      break;
    case 3:
      red = low, green = falling, blue = value;
      break;
    case 4:
      red = rising, green = low, blue = value;
      break;
    case 5:
      red = value, green = low, blue = falling;
      break;
    default:
      break;  // no hue to speak of: black
  }
  return {PixelTraits<Pixel>::fullScale, fromUnit<Pixel>(red), fromUnit<Pixel>(green), fromUnit<Pixel>(blue)};
}

template Hsv rgbToHsv(const Pixel8&) noexcept;
template Hsv rgbToHsv(const Pixel16&) noexcept;
template Hsv rgbToHsv(const Pixel32&) noexcept;
template Pixel8 hsvToRgb(const Hsv&) noexcept;
template Pixel16 hsvToRgb(const Hsv&) noexcept;
template Pixel32 hsvToRgb(const Hsv&) noexcept;

}  // namespace vindrel
