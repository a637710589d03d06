#include "host/ConvertColor.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

#include "host/Depth.h"

namespace standin {

namespace {

template <class Pixel>
double fraction(typename PixelFacts<Pixel>::Channel value) {
  return static_cast<double>(value) / static_cast<double>(PixelFacts<Pixel>::full);
}

template <class Pixel>
typename PixelFacts<Pixel>::Channel fromFraction(double value) {
  using Channel = typename PixelFacts<Pixel>::Channel;
  if constexpr (std::is_floating_point_v<Channel>) {
    return static_cast<Channel>(value);
  } else {
    const double held = value > 0.0 ? std::min(value, 1.0) : 0.0;
    return static_cast<Channel>(std::floor(held * static_cast<double>(PixelFacts<Pixel>::full) + 0.5));
  }
}

// The channel at a place of the colour circle: rises over a sixth, stays for two, falls over a sixth.
double onCircle(double low, double high, double place) {
  if (place < 0.0) place += 1.0;
  if (place > 1.0) place -= 1.0;
  if (place < 1.0 / 6.0) return low + (high - low) * 6.0 * place;
  if (place < 0.5) return high;
  if (place < 2.0 / 3.0) return low + (high - low) * 6.0 * (2.0 / 3.0 - place);
  return low;
}

}  // namespace

template <class Pixel>
Hls hlsOf(const Pixel& rgb) {
  const double r = fraction<Pixel>(rgb.red);
  const double g = fraction<Pixel>(rgb.green);
  const double b = fraction<Pixel>(rgb.blue);
  const double most = std::max({r, g, b});
  const double least = std::min({r, g, b});
  const double d = most - least;
  Hls hls{0.0, (most + least) / 2.0, 0.0};
  if (!(d > 0.0)) return hls;
  hls.saturation = hls.lightness <= 0.5 ? d / (most + least) : d / (2.0 - most - least);
  hls.hue = (r == most ? (g - b) / d : g == most ? 2.0 + (b - r) / d : 4.0 + (r - g) / d) / 6.0;
  if (hls.hue < 0.0) hls.hue += 1.0;
  return hls;
}

template <class Pixel>
Yiq yiqOf(const Pixel& rgb) {
  const double r = fraction<Pixel>(rgb.red);
  const double g = fraction<Pixel>(rgb.green);
  const double b = fraction<Pixel>(rgb.blue);
  return {0.299 * r + 0.587 * g + 0.114 * b, 0.5959 * r - 0.2746 * g - 0.3213 * b,
          0.2115 * r - 0.5227 * g + 0.3112 * b};
}

template <class Pixel>
void setHls(const Hls& hls, Pixel& rgb) {
  const double high = hls.lightness <= 0.5 ? hls.lightness * (1.0 + hls.saturation)
                                           : hls.lightness + hls.saturation - hls.lightness * hls.saturation;
  const double low = 2.0 * hls.lightness - high;
  rgb.red = fromFraction<Pixel>(onCircle(low, high, hls.hue + 1.0 / 3.0));
  rgb.green = fromFraction<Pixel>(onCircle(low, high, hls.hue));
  rgb.blue = fromFraction<Pixel>(onCircle(low, high, hls.hue - 1.0 / 3.0));
}

template <class Pixel>
void setYiq(const Yiq& yiq, Pixel& rgb) {
  rgb.red = fromFraction<Pixel>(yiq.y + 0.956 * yiq.i + 0.619 * yiq.q);
  rgb.green = fromFraction<Pixel>(yiq.y - 0.272 * yiq.i - 0.647 * yiq.q);
  rgb.blue = fromFraction<Pixel>(yiq.y - 1.106 * yiq.i + 1.703 * yiq.q);
}

template Hls hlsOf(const PF_Pixel&);
template Hls hlsOf(const PF_Pixel16&);
template Hls hlsOf(const PF_PixelFloat&);
template Yiq yiqOf(const PF_Pixel&);
template Yiq yiqOf(const PF_Pixel16&);
template Yiq yiqOf(const PF_PixelFloat&);
template void setHls(const Hls&, PF_Pixel&);
template void setHls(const Hls&, PF_Pixel16&);
template void setHls(const Hls&, PF_PixelFloat&);
template void setYiq(const Yiq&, PF_Pixel&);
template void setYiq(const Yiq&, PF_Pixel16&);
template void setYiq(const Yiq&, PF_PixelFloat&);

}  // namespace standin
