#include "host/PremultiplyWorld.h"

#include <algorithm>

#include "host/PixelAccess.h"
#include "host/TransferMask.h"

namespace standin {

namespace {

double premultiplied(double c, double k, double a, bool forward) {
  if (forward) return c * a + k * (1.0 - a);
  return (c - k * (1.0 - a)) / a;
}

// Sums may be below 0 on the way back; the products stay below 2^31.
int64_t premultiplied(int64_t c, int64_t k, int64_t a, int64_t full, bool forward) {
  const int64_t value = forward ? c * a + k * (full - a) : c * full - k * (full - a);
  const int64_t by = forward ? full : a;
  if (value <= 0) return 0;
  return std::min<int64_t>((value + by / 2) / by, full);
}

}  // namespace

template <class Pixel>
void premultiplyWorld(const PF_EffectWorld& source, const Pixel& color, bool forward, const PF_EffectWorld& target) {
  using Channel = typename PixelFacts<Pixel>::Channel;
  if (source.data == nullptr || target.data == nullptr) return;
  const A_long width = std::min(source.width, target.width);
  const A_long height = std::min(source.height, target.height);
  for (A_long y = 0; y < height; ++y) {
    const Pixel* from = worldRow<Pixel>(source, y);
    Pixel* to = worldRow<Pixel>(target, y);
    for (A_long x = 0; x < width; ++x) {
      Pixel pixel = from[x];
      const auto change = [&](Channel& c, Channel k) {
        if constexpr (std::is_floating_point_v<Channel>) {
          const double a = heldToOne(static_cast<double>(pixel.alpha));
          if (!forward && !(a > 0.0)) return;
          c = static_cast<Channel>(premultiplied(static_cast<double>(c), static_cast<double>(k), a, forward));
        } else {
          constexpr int64_t full = PixelFacts<Pixel>::full;
          const int64_t a = std::min<int64_t>(pixel.alpha, full);
          if (!forward && a == 0) return;
          c = static_cast<Channel>(premultiplied(c, k, a, full, forward));
        }
      };
      change(pixel.red, color.red);
      change(pixel.green, color.green);
      change(pixel.blue, color.blue);
      to[x] = pixel;
    }
  }
}

template void premultiplyWorld(const PF_EffectWorld&, const PF_Pixel&, bool, const PF_EffectWorld&);
template void premultiplyWorld(const PF_EffectWorld&, const PF_Pixel16&, bool, const PF_EffectWorld&);
template void premultiplyWorld(const PF_EffectWorld&, const PF_PixelFloat&, bool, const PF_EffectWorld&);

}  // namespace standin
