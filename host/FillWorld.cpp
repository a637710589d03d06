#include <algorithm>
#include <cmath>
#include <type_traits>

#include "host/FillWorld.h"
#include "host/PixelAccess.h"
#include "host/Rects.h"

namespace standin {

namespace {

template <class To, class From>
typename PixelFacts<To>::Channel convertChannel(typename PixelFacts<From>::Channel value) {
  using Target = typename PixelFacts<To>::Channel;
  using Source = typename PixelFacts<From>::Channel;
  constexpr auto fullTo = PixelFacts<To>::full;
  constexpr auto fullFrom = PixelFacts<From>::full;
  if constexpr (std::is_same_v<To, From>) {
    return value;
  } else if constexpr (std::is_floating_point_v<Target>) {
    return static_cast<Target>(static_cast<double>(value) / static_cast<double>(fullFrom));
  } else if constexpr (std::is_floating_point_v<Source>) {
    const double held = value > Source{0} ? std::min(static_cast<double>(value), 1.0) : 0.0;  // not a number: 0
    return static_cast<Target>(std::floor(held * static_cast<double>(fullTo) + 0.5));
  } else {
    const uint64_t held = std::min<uint64_t>(value, fullFrom);
    return static_cast<Target>(roundedQuotient(held * fullTo, fullFrom));
  }
}

}  // namespace

template <class To, class From>
To convertPixel(const From& pixel) {
  return To{convertChannel<To, From>(pixel.alpha), convertChannel<To, From>(pixel.red),
            convertChannel<To, From>(pixel.green), convertChannel<To, From>(pixel.blue)};
}

template <class Pixel>
void fillWorld(PF_EffectWorld& world, const PF_Rect* rect, const Pixel& color) {
  const PF_LRect whole = wholeOf(world);
  const PF_LRect area = rect == nullptr ? whole : intersection(*rect, whole);
  for (int32_t y = area.top; y < area.bottom; ++y) {
    Pixel* row = worldRow<Pixel>(world, y);
    std::fill(row + area.left, row + area.right, color);
  }
}

template void fillWorld(PF_EffectWorld&, const PF_Rect*, const PF_Pixel&);
template void fillWorld(PF_EffectWorld&, const PF_Rect*, const PF_Pixel16&);
template void fillWorld(PF_EffectWorld&, const PF_Rect*, const PF_PixelFloat&);

template PF_Pixel convertPixel(const PF_Pixel&);
template PF_Pixel convertPixel(const PF_Pixel16&);
template PF_Pixel convertPixel(const PF_PixelFloat&);
template PF_Pixel16 convertPixel(const PF_Pixel&);
template PF_Pixel16 convertPixel(const PF_Pixel16&);
template PF_Pixel16 convertPixel(const PF_PixelFloat&);
template PF_PixelFloat convertPixel(const PF_Pixel&);
template PF_PixelFloat convertPixel(const PF_Pixel16&);
template PF_PixelFloat convertPixel(const PF_PixelFloat&);

}  // namespace standin
