#include "host/BlendWorlds.h"

#include <algorithm>

#include "host/PixelAccess.h"
#include "host/TransferMask.h"

namespace standin {

namespace {

// Weights are whole numbers of 1/65536 at every depth; alpha (2^15) times weight (2^16) times colour (2^16) stays below
// 2^48, and two of them below 2^49.
template <class Pixel>
Pixel blended(const Pixel& first, const Pixel& second, uint32_t t) {
  using Channel = typename PixelFacts<Pixel>::Channel;
  using Number = TransferNumber<Pixel>;
  const auto firstShare = static_cast<Number>(65536 - t);
  const auto secondShare = static_cast<Number>(t);
  const auto divided = [](Number value, Number by) {
    if constexpr (std::is_floating_point_v<Channel>) {
      return static_cast<Channel>(value / by);
    } else {
      return static_cast<Channel>(roundedQuotient(value, by));
    }
  };
  const Number firstWeight = heldAlpha(first) * firstShare;
  const Number secondWeight = heldAlpha(second) * secondShare;
  const Number sum = firstWeight + secondWeight;
  const bool seen = sum > Number{0};
  const auto color = [&](Channel c, Channel C) {
    const auto one = static_cast<Number>(c);
    const auto other = static_cast<Number>(C);
    return seen ? divided(one * firstWeight + other * secondWeight, sum)
                : divided(one * firstShare + other * secondShare, Number{65536});
  };
  return {divided(sum, Number{65536}), color(first.red, second.red), color(first.green, second.green),
          color(first.blue, second.blue)};
}

}  // namespace

void blendWorlds(Depth depth, const PF_EffectWorld& first, const PF_EffectWorld& second, PF_Fixed ratio,
                 const PF_EffectWorld& target) {
  if (first.data == nullptr || second.data == nullptr || target.data == nullptr) return;
  const auto t = static_cast<uint32_t>(std::clamp<PF_Fixed>(ratio, 0, 65536));
  const A_long width = std::min({first.width, second.width, target.width});
  const A_long height = std::min({first.height, second.height, target.height});
  withPixelOf(depth, [&](auto pixel) {
    using Pixel = decltype(pixel);
    for (A_long y = 0; y < height; ++y) {
      const Pixel* one = worldRow<Pixel>(first, y);
      const Pixel* other = worldRow<Pixel>(second, y);
      Pixel* to = worldRow<Pixel>(target, y);
      for (A_long x = 0; x < width; ++x) to[x] = blended(one[x], other[x], t);
    }
  });
}

}  // namespace standin
