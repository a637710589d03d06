#include <algorithm>
#include <type_traits>

#include "ae/Constants.h"
#include "host/PixelAccess.h"
#include "host/PixelServices.h"
#include "host/Rects.h"

namespace standin {

namespace {

// Whole-number depths. Everything is a fraction of full; a product of two is full squared, of a colour with two of them
// below 2^16 * 2^30, so that 64 bits hold every sum exactly.
template <class Pixel, bool isFloat = std::is_floating_point_v<typename PixelFacts<Pixel>::Channel>>
struct Arithmetic {
  using Channel = typename PixelFacts<Pixel>::Channel;
  using Number = uint64_t;
  static constexpr Number full = PixelFacts<Pixel>::full;

  static Number alphaOf(const Pixel& pixel) { return std::min<Number>(pixel.alpha, full); }
  static Number opacityOf(const PF_CompositeMode& mode) {
    return PixelFacts<Pixel>::depth == Depth::k8 ? mode.opacity : std::min<Number>(mode.opacitySu, 32768);
  }
  static constexpr Number opacityFull = PixelFacts<Pixel>::depth == Depth::k8 ? 255 : 32768;

  // alpha * opacity * mask, rounded to the depth. 2^45 at most.
  static Number strength(Number alpha, Number opacity, Number mask) {
    return roundedQuotient(alpha * opacity * mask, opacityFull * full);
  }
  static Channel quotient(Number value, Number by) { return static_cast<Channel>(roundedQuotient(value, by)); }
  static Number luminance(const Pixel& p) {
    const Number luma = Number{299} * p.red + Number{587} * p.green + Number{114} * p.blue;
    return std::min(full, roundedQuotient(luma * alphaOf(p), 1000 * full));
  }
};

template <class Pixel>
struct Arithmetic<Pixel, true> {
  using Channel = typename PixelFacts<Pixel>::Channel;
  using Number = double;
  static constexpr Number full = 1.0;

  // Not a number counts as 0: no comparison with it holds.
  static Number held(Number value) { return value > 0.0 ? std::min(value, 1.0) : 0.0; }
  static Number alphaOf(const Pixel& pixel) { return held(static_cast<Number>(pixel.alpha)); }
  static Number opacityOf(const PF_CompositeMode& mode) {
    return std::min(static_cast<Number>(mode.opacitySu), 32768.0) / 32768.0;
  }
  static constexpr Number opacityFull = 1.0;

  static Number strength(Number alpha, Number opacity, Number mask) { return alpha * opacity * mask; }
  static Channel quotient(Number value, Number by) { return static_cast<Channel>(value / by); }
  static Number luminance(const Pixel& p) {
    return held((0.299 * static_cast<Number>(p.red) + 0.587 * static_cast<Number>(p.green) +
                 0.114 * static_cast<Number>(p.blue)) *
                alphaOf(p));
  }
};

template <class Pixel>
typename Arithmetic<Pixel>::Number maskValue(const std::optional<TransferMask>& mask, int64_t x, int64_t y) {
  using A = Arithmetic<Pixel>;
  if (!mask) return A::full;
  const int64_t maskX = x - mask->offset.h;
  const int64_t maskY = y - mask->offset.v;
  typename A::Number value{0};
  if (mask->world.data != nullptr && maskX >= 0 && maskY >= 0 && maskX < mask->world.width &&
      maskY < mask->world.height) {
    const Pixel& pixel = worldRow<Pixel>(mask->world, static_cast<int32_t>(maskY))[maskX];
    value = mask->luminance ? A::luminance(pixel) : A::alphaOf(pixel);
  }
  return mask->inverted ? A::full - value : value;
}

// Two colours with their weights; a divisor of 0 leaves the target's colour.
template <class Pixel>
void mixColors(const Pixel& source, typename Arithmetic<Pixel>::Number sourceWeight, Pixel& target,
               typename Arithmetic<Pixel>::Number targetWeight) {
  using A = Arithmetic<Pixel>;
  using Number = typename A::Number;
  const Number sum = sourceWeight + targetWeight;
  if (!(sum > Number{0})) return;
  for (int c = 1; c < 4; ++c) {
    const auto from = static_cast<Number>(channel(source, c));
    const auto to = static_cast<Number>(channel(target, c));
    channel(target, c) = A::quotient(from * sourceWeight + to * targetWeight, sum);
  }
}

template <class Pixel>
void transferPixel(const Pixel& source, typename Arithmetic<Pixel>::Number opacity,
                   typename Arithmetic<Pixel>::Number mask, const PF_CompositeMode& mode, Pixel& target) {
  using A = Arithmetic<Pixel>;
  using Number = typename A::Number;
  const Number full = A::full;
  const Number sourceAlpha = A::alphaOf(source);
  const Number targetAlpha = A::alphaOf(target);
  const auto keptAlpha = target.alpha;
  Number sourceWeight{0};
  Number targetWeight{0};
  if (mode.xfer == PF_Xfer_COPY) {
    const Number k = A::strength(full, opacity, mask);
    if (!(k > Number{0})) return;
    if (k == full) {
      target = source;
      if (mode.rgb_only != 0) target.alpha = keptAlpha;
      return;
    }
    sourceWeight = sourceAlpha * k;
    targetWeight = targetAlpha * (full - k);
    if (sourceWeight > Number{0} || targetWeight > Number{0}) {
      mixColors(source, sourceWeight, target, targetWeight);
    } else {
      mixColors(source, k, target, full - k);
    }
  } else {
    const Number a = A::strength(sourceAlpha, opacity, mask);
    if (!(a > Number{0})) return;
    const bool inFront = mode.xfer == PF_Xfer_IN_FRONT;
    sourceWeight = inFront ? a * full : a * (full - targetAlpha);
    targetWeight = inFront ? targetAlpha * (full - a) : targetAlpha * full;
    mixColors(source, sourceWeight, target, targetWeight);
  }
  if (mode.rgb_only == 0) target.alpha = A::quotient(sourceWeight + targetWeight, full);
}

template <class Pixel>
void transferRows(const PF_LRect& from, const PF_EffectWorld& source, const PF_CompositeMode& mode,
                  const std::optional<TransferMask>& mask, int64_t dx, int64_t dy, const PF_EffectWorld& target) {
  const auto opacity = Arithmetic<Pixel>::opacityOf(mode);
  const int64_t left = std::max<int64_t>(from.left, -dx);
  const int64_t right = std::min<int64_t>(from.right, target.width - dx);
  const int64_t top = std::max<int64_t>(from.top, -dy);
  const int64_t bottom = std::min<int64_t>(from.bottom, target.height - dy);
  for (int64_t y = top; y < bottom; ++y) {
    const Pixel* sourceRow = worldRow<Pixel>(source, static_cast<int32_t>(y));
    Pixel* targetRow = worldRow<Pixel>(target, static_cast<int32_t>(y + dy));
    for (int64_t x = left; x < right; ++x) {
      transferPixel(sourceRow[x], opacity, maskValue<Pixel>(mask, x + dx, y + dy), mode, targetRow[x + dx]);
    }
  }
}

}  // namespace

PF_Err transferRect(Depth depth, const PF_Rect* sourceRect, const PF_EffectWorld& source, const PF_CompositeMode& mode,
                    const std::optional<TransferMask>& mask, A_long targetX, A_long targetY,
                    const PF_EffectWorld& target) {
  if (mode.xfer != PF_Xfer_COPY && mode.xfer != PF_Xfer_BEHIND && mode.xfer != PF_Xfer_IN_FRONT) {
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  const PF_LRect asked = sourceRect == nullptr ? wholeOf(source) : *sourceRect;
  const PF_LRect from = intersection(asked, wholeOf(source));
  if (isEmpty(from) || isEmpty(wholeOf(target))) return PF_Err_NONE;
  const int64_t dx = int64_t{targetX} - asked.left;
  const int64_t dy = int64_t{targetY} - asked.top;
  withPixelOf(depth, [&](auto pixel) { transferRows<decltype(pixel)>(from, source, mode, mask, dx, dy, target); });
  return PF_Err_NONE;
}

}  // namespace standin
