// What becomes of a colour between a control or a layer and a dot, written out plainly and apart from the effect's own
// code: bytes to channels, the pass through hue, saturation and value that every dot's colour makes, and the blend
// modes under an opaque source.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <type_traits>

#include "host/Depth.h"
#include "tests/support/PopupItems.h"

namespace vindrel::test {

/// Numbers of one depth. Channels are handled as doubles, which hold every value of every depth exactly.
template <class Pixel>
struct PlainDepth {
  using Channel = typename standin::PixelFacts<Pixel>::Channel;
  static constexpr bool isFloat = std::is_floating_point_v<Channel>;
  static constexpr double full = static_cast<double>(standin::PixelFacts<Pixel>::full);

  /// 0 to 1 of a channel. At 8 bits by the constant, which is not quite 1/255.
  static double unit(double channel) {
    if (isFloat) return channel;
    return full == 255.0 ? channel * 0.00392156862745098 : channel / 32768.0;
  }

  /// A channel of 0 to 1: cut off, not rounded, at the whole-number depths.
  static Channel channel(double unit) { return static_cast<Channel>(isFloat ? unit : std::trunc(unit * full)); }

  static Pixel fromBytes(PF_Pixel bytes) {
    const auto wide = [](A_u_char byte) { return channel(static_cast<double>(byte) / 255.0); };
    return {wide(bytes.alpha), wide(bytes.red), wide(bytes.green), wide(bytes.blue)};
  }
};

/// The colour after its pass through hue, saturation and value, fully opaque. Hue turns by hueTurns on the way.
template <class Pixel>
Pixel throughHsv(const Pixel& color, double hueTurns = 0.0) {
  using D = PlainDepth<Pixel>;
  const double r = D::unit(static_cast<double>(color.red));
  const double g = D::unit(static_cast<double>(color.green));
  const double b = D::unit(static_cast<double>(color.blue));
  const double value = std::max({r, g, b});
  const double span = value - std::min({r, g, b});
  const double saturation = value == 0.0 ? 0.0 : span / value;
  double hue = 0.0;
  if (saturation != 0.0) {
    if (value == r) {
      hue = (g - b) / span;
    } else if (value == g) {
      hue = (b - r) / span + 2.0;
    } else {
      hue = (r - g) / span + 4.0;
    }
    hue *= 0.166666666666667;
    if (hue < 0.0) hue += 1.0;
  }
  hue += hueTurns;
  const double wrapped = hue < 0.0 ? hue + (std::trunc(-hue) + 1.0) : hue - std::trunc(hue);
  const double sixth = (wrapped - std::trunc(wrapped)) * 6.0;
  const double f = sixth - std::trunc(sixth);
  const double p = (1.0 - saturation) * value;
  const double q = (1.0 - f * saturation) * value;
  const double t = (1.0 - (1.0 - f) * saturation) * value;
  const std::array<std::array<double, 3>, 6> sectors = {
      {{value, t, p}, {q, value, p}, {p, value, t}, {p, q, value}, {t, p, value}, {value, p, q}}};
  const auto& rgb = sectors[static_cast<size_t>(sixth)];
  return {D::channel(1.0), D::channel(rgb[0]), D::channel(rgb[1]), D::channel(rgb[2])};
}

/// The colour that a dot of this control's value is drawn with.
template <class Pixel>
Pixel dotColorOf(PF_Pixel bytes) {
  return throughHsv(PlainDepth<Pixel>::fromBytes(bytes));
}

/// One channel d under an opaque source's s, at 8 (full 255) or 16 bits (full 32768). A separator is "Normal".
///
/// Products are scaled by shifts, so that at 8 bits full times full is 254.
inline int64_t blendedWhole(int32_t item, int64_t d, int64_t s, int64_t full) {
  const int shift = full == 255 ? 8 : 15;
  const int halfShift = shift - 1;
  const int64_t square = full == 255 ? 65025 : 1073741824;
  const auto dark = [&] { return (d * s) >> halfShift; };
  const auto bright = [&] { return full - (((full - d) * (full - s)) >> halfShift); };
  switch (item) {
    case blendAdd:
      return std::min(d + ((s * full) >> shift), full);
    case blendSubtract:
      return std::max<int64_t>(d - ((s * full) >> shift), 0);
    case blendMultiply:
      return std::min((d * s) >> shift, full);
    case blendScreen:
      return (square - (full - d) * (full - s)) >> shift;
    case blendOverlay:
      return d < (full == 255 ? 128 : 16385) ? dark() : bright();
    case blendHardLight:
      return s > (full == 255 ? 127 : 16384) ? bright() : dark();
    case blendSoftLight: {
      const double a = static_cast<double>(d) / static_cast<double>(full);
      const double b = static_cast<double>(s) / static_cast<double>(full);
      const double t = b < 0.5 ? a - a * a : a < 0.125 ? (a - a * a) * (3.0 - 8.0 * a) : std::sqrt(a) - a;
      return static_cast<int64_t>((t * (2.0 * b - 1.0) + a) * static_cast<double>(full));
    }
    case blendDarken:
      return std::min(d, s);
    case blendLighten:
      return std::max(d, s);
    case blendDifference:
      return std::abs(d - s);
    case blendExclusion:
      return ((full - s) * d + (full - d) * s) >> shift;
    default:
      return s;
  }
}

/// The same in float, by the textbook forms; good to a few units of single precision.
inline double blendedFloat(int32_t item, double d, double s) {
  const double dark = 2.0 * d * s;
  const double bright = 1.0 - 2.0 * (1.0 - d) * (1.0 - s);
  switch (item) {
    case blendAdd:
      return std::min(d + s, 1.0);
    case blendSubtract:
      return std::max(d - s, 0.0);
    case blendMultiply:
      return std::min(d * s, 1.0);
    case blendScreen:
      return d + s - d * s;
    case blendOverlay:
      return std::min(d <= 0.5 ? dark : bright, 1.0);
    case blendHardLight:
      return s > 0.5 ? bright : dark;
    case blendSoftLight: {
      const double t = s < 0.5 ? d - d * d : d < 0.125 ? (d - d * d) * (3.0 - 8.0 * d) : std::sqrt(d) - d;
      return std::min(t * (2.0 * s - 1.0) + d, 1.0);
    }
    case blendDarken:
      return std::min(d, s);
    case blendLighten:
      return std::max(d, s);
    case blendDifference:
      return std::abs(d - s);
    case blendExclusion:
      return d + s - 2.0 * d * s;
    default:
      return s;
  }
}

/// A whole colour under an opaque source.
template <class Pixel>
Pixel blendedColor(int32_t item, const Pixel& under, const Pixel& source) {
  using D = PlainDepth<Pixel>;
  const auto one = [item](auto d, auto s) {
    if constexpr (D::isFloat) {
      return static_cast<typename D::Channel>(blendedFloat(item, static_cast<double>(d), static_cast<double>(s)));
    } else {
      return static_cast<typename D::Channel>(blendedWhole(item, d, s, static_cast<int64_t>(D::full)));
    }
  };
  return {under.alpha, one(under.red, source.red), one(under.green, source.green), one(under.blue, source.blue)};
}

}  // namespace vindrel::test
