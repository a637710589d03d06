// The formulas of the header, and the forms in which they are fast without another result:
//
// - A quotient of whole numbers below 2^53 is divided in doubles and truncated, which is exact: such numbers n and d
// are
//   doubles; where d divides n the quotient is one too; else it lies 1/d or more below the next whole number, and
//   rounding moves it by (n / d) / 2^53 at most, which is less than 1/d.
// - Over an opaque target, and wherever else the divisor comes out as full * full, it is a constant, which the compiler
//   turns into a multiplication.
// - Of an opaque source in front at full strength the formula gives the source's own colour, bit for bit, at the
//   whole-number depths: c full full / (full full). Not so in float, where 0 * C may be no number, or a zero loses its
//   sign; float always takes the formula.
#include "host/TransferRect.h"

#include <algorithm>

#include "ae/Constants.h"
#include "host/PixelAccess.h"
#include "host/Rects.h"

namespace standin {

namespace {

// Whole-number depths. Everything is a fraction of full; a product of two is full squared, of a colour with two of them
// below 2^16 * 2^30 = 2^46, so that every sum is exact and below 2^53.
template <class Pixel, bool isFloat = std::is_floating_point_v<typename PixelFacts<Pixel>::Channel>>
struct Arithmetic {
  using Channel = typename PixelFacts<Pixel>::Channel;
  using Number = uint64_t;
  static constexpr Number full = PixelFacts<Pixel>::full;
  static constexpr Number opacityFull = PixelFacts<Pixel>::depth == Depth::k8 ? 255 : 32768;
  static constexpr bool opaqueSourceIsACopy = true;

  static Number opacityOf(const PF_CompositeMode& mode) {
    return PixelFacts<Pixel>::depth == Depth::k8 ? mode.opacity : std::min<Number>(mode.opacitySu, 32768);
  }
  // alpha * opacity * mask, rounded to the depth. 2^45 at most.
  static Number strength(Number alpha, Number opacity, Number mask) {
    return roundedQuotient(alpha * opacity * mask, opacityFull * full);
  }
  static Channel byFull(Number value) { return static_cast<Channel>(roundedQuotient(value, full)); }
  static Channel byFullSquared(Number value) { return static_cast<Channel>(roundedQuotient(value, full * full)); }
  static Channel quotient(Number value, Number by) {
    const auto sum = static_cast<int64_t>(value + by / 2);  // signed, which converts in one instruction
    const double exact = static_cast<double>(sum) / static_cast<double>(static_cast<int64_t>(by));
    return static_cast<Channel>(static_cast<int64_t>(exact));
  }
};

template <class Pixel>
struct Arithmetic<Pixel, true> {
  using Channel = typename PixelFacts<Pixel>::Channel;
  using Number = double;
  static constexpr Number full = 1.0;
  static constexpr bool opaqueSourceIsACopy = false;

  static Number opacityOf(const PF_CompositeMode& mode) {
    return std::min(static_cast<Number>(mode.opacitySu), 32768.0) / 32768.0;
  }
  static Number strength(Number alpha, Number opacity, Number mask) { return alpha * opacity * mask; }
  static Channel byFull(Number value) { return static_cast<Channel>(value); }
  static Channel byFullSquared(Number value) { return static_cast<Channel>(value); }
  static Channel quotient(Number value, Number by) { return static_cast<Channel>(value / by); }
};

// Two colours with their weights; a divisor of 0 leaves the target's colour.
template <class Pixel>
void mixColors(const Pixel& source, TransferNumber<Pixel> sourceWeight, Pixel& target,
               TransferNumber<Pixel> targetWeight) {
  using A = Arithmetic<Pixel>;
  using Number = typename A::Number;
  const Number sum = sourceWeight + targetWeight;
  if (!(sum > Number{0})) return;
  const auto weighted = [&](auto from, auto to) {
    return static_cast<Number>(from) * sourceWeight + static_cast<Number>(to) * targetWeight;
  };
  const Number red = weighted(source.red, target.red);
  const Number green = weighted(source.green, target.green);
  const Number blue = weighted(source.blue, target.blue);
  if (sum == A::full * A::full) {
    target.red = A::byFullSquared(red);
    target.green = A::byFullSquared(green);
    target.blue = A::byFullSquared(blue);
  } else {
    target.red = A::quotient(red, sum);
    target.green = A::quotient(green, sum);
    target.blue = A::quotient(blue, sum);
  }
}

template <class Pixel>
void copyPixel(const Pixel& source, TransferNumber<Pixel> k, bool rgbOnly, Pixel& target) {
  using A = Arithmetic<Pixel>;
  using Number = typename A::Number;
  if (!(k > Number{0})) return;
  if (k == A::full) {
    const auto keptAlpha = target.alpha;
    target = source;
    if (rgbOnly) target.alpha = keptAlpha;
    return;
  }
  const Number sourceWeight = heldAlpha(source) * k;
  const Number targetWeight = heldAlpha(target) * (A::full - k);
  if (sourceWeight > Number{0} || targetWeight > Number{0}) {
    mixColors(source, sourceWeight, target, targetWeight);
  } else {
    mixColors(source, k, target, A::full - k);
  }
  if (!rgbOnly) target.alpha = A::byFull(sourceWeight + targetWeight);
}

template <class Pixel>
void layPixel(const Pixel& source, TransferNumber<Pixel> a, bool inFront, bool rgbOnly, Pixel& target) {
  using A = Arithmetic<Pixel>;
  using Number = typename A::Number;
  if (!(a > Number{0})) return;
  if constexpr (A::opaqueSourceIsACopy) {
    if (inFront && a == A::full) {
      const auto alpha = rgbOnly ? target.alpha : PixelFacts<Pixel>::full;
      target = source;
      target.alpha = alpha;
      return;
    }
  }
  const Number targetAlpha = heldAlpha(target);
  const Number sourceWeight = inFront ? a * A::full : a * (A::full - targetAlpha);
  const Number targetWeight = inFront ? targetAlpha * (A::full - a) : targetAlpha * A::full;
  mixColors(source, sourceWeight, target, targetWeight);
  if (!rgbOnly) target.alpha = A::byFull(sourceWeight + targetWeight);
}

template <class Pixel>
void transferRows(const PF_LRect& from, const PF_EffectWorld& source, const PF_CompositeMode& mode,
                  const std::optional<TransferMask>& mask, int64_t dx, int64_t dy, const PF_EffectWorld& target) {
  using A = Arithmetic<Pixel>;
  const auto opacity = A::opacityOf(mode);
  const bool inFront = mode.xfer == PF_Xfer_IN_FRONT;
  const bool rgbOnly = mode.rgb_only != 0;
  const int64_t left = std::max<int64_t>(from.left, -dx);
  const int64_t right = std::min<int64_t>(from.right, target.width - dx);
  const int64_t top = std::max<int64_t>(from.top, -dy);
  const int64_t bottom = std::min<int64_t>(from.bottom, target.height - dy);
  for (int64_t y = top; y < bottom; ++y) {
    const Pixel* sourceRow = worldRow<Pixel>(source, static_cast<int32_t>(y));
    Pixel* targetRow = worldRow<Pixel>(target, static_cast<int32_t>(y + dy));
    const MaskRow<Pixel> maskRow(mask, y + dy);
    if (mode.xfer == PF_Xfer_COPY) {
      for (int64_t x = left; x < right; ++x) {
        copyPixel(sourceRow[x], A::strength(A::full, opacity, maskRow.at(x + dx)), rgbOnly, targetRow[x + dx]);
      }
    } else {
      for (int64_t x = left; x < right; ++x) {
        const auto alpha = heldAlpha(sourceRow[x]);
        if (!(alpha > 0)) continue;  // most of a canvas is empty
        layPixel(sourceRow[x], A::strength(alpha, opacity, maskRow.at(x + dx)), inFront, rgbOnly, targetRow[x + dx]);
      }
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
