/// The plain twin of transfer_rect: every pixel by the formulas of host/TransferRect.h as they stand there, one 64-bit
/// division or one division of doubles a result, without any short cut.
#pragma once

#include <algorithm>
#include <optional>
#include <type_traits>

#include "ae/Constants.h"
#include "host/Image.h"
#include "host/TransferMask.h"

namespace plain {

template <class Pixel>
struct Transfer {
  using Channel = typename standin::PixelFacts<Pixel>::Channel;
  static constexpr bool isFloat = std::is_floating_point_v<Channel>;
  static constexpr bool isByte = std::is_same_v<Pixel, PF_Pixel>;
  using Number = std::conditional_t<isFloat, double, uint64_t>;
  static constexpr auto full = static_cast<Number>(standin::PixelFacts<Pixel>::full);

  static Number held(Number value) { return value > Number{0} ? std::min(value, full) : Number{0}; }
  static Number divided(Number value, Number by) {
    if constexpr (isFloat) {
      return value / by;
    } else {
      return (value + by / 2) / by;
    }
  }
  static Number alphaOf(const Pixel& p) { return held(static_cast<Number>(p.alpha)); }

  static Number maskOf(const std::optional<standin::TransferMask>& mask, int64_t x, int64_t y) {
    if (!mask) return full;
    const int64_t maskX = x - mask->offset.h;
    const int64_t maskY = y - mask->offset.v;
    Number value{0};
    const PF_EffectWorld& w = mask->world;
    if (w.data != nullptr && maskX >= 0 && maskY >= 0 && maskX < w.width && maskY < w.height) {
      const auto* bytes = reinterpret_cast<const unsigned char*>(w.data) + maskY * w.rowbytes;
      const Pixel& p = reinterpret_cast<const Pixel*>(bytes)[maskX];
      if (!mask->luminance) {
        value = alphaOf(p);
      } else if constexpr (isFloat) {
        const double luma = 0.299 * static_cast<double>(p.red) + 0.587 * static_cast<double>(p.green) +
                            0.114 * static_cast<double>(p.blue);
        value = held(luma * alphaOf(p));
      } else {
        const Number luma = Number{299} * p.red + Number{587} * p.green + Number{114} * p.blue;
        value = held(divided(luma * alphaOf(p), 1000 * full));
      }
    }
    return mask->inverted ? full - value : value;
  }

  // What goes through: a fraction of full, from an alpha (or full) and the mask.
  static Number through(Number alpha, Number mask, const PF_CompositeMode& mode) {
    if constexpr (isFloat) {
      return alpha * (std::min(static_cast<double>(mode.opacitySu), 32768.0) / 32768.0) * mask;
    } else {
      const Number opacity = isByte ? mode.opacity : std::min<Number>(mode.opacitySu, 32768);
      return divided(alpha * opacity * mask, (isByte ? 255 : 32768) * full);
    }
  }

  static void mix(const Pixel& source, Number sourceWeight, Pixel& target, Number targetWeight) {
    if (!(sourceWeight + targetWeight > Number{0})) return;
    const auto one = [&](Channel c, Channel& t) {
      t = static_cast<Channel>(divided(static_cast<Number>(c) * sourceWeight + static_cast<Number>(t) * targetWeight,
                                       sourceWeight + targetWeight));
    };
    one(source.red, target.red);
    one(source.green, target.green);
    one(source.blue, target.blue);
  }

  static void pixel(const Pixel& source, Number mask, const PF_CompositeMode& mode, Pixel& target) {
    const Number s = alphaOf(source);
    const Number t = alphaOf(target);
    Number sourceWeight{0};
    Number targetWeight{0};
    if (mode.xfer == PF_Xfer_COPY) {
      const Number k = through(full, mask, mode);
      if (!(k > Number{0})) return;
      if (k == full) {
        const Channel kept = target.alpha;
        target = source;
        if (mode.rgb_only != 0) target.alpha = kept;
        return;
      }
      sourceWeight = s * k;
      targetWeight = t * (full - k);
      const bool seen = sourceWeight + targetWeight > Number{0};
      mix(source, seen ? sourceWeight : k, target, seen ? targetWeight : full - k);
    } else {
      const Number a = through(s, mask, mode);
      if (!(a > Number{0})) return;
      const bool inFront = mode.xfer == PF_Xfer_IN_FRONT;
      sourceWeight = inFront ? a * full : a * (full - t);
      targetWeight = inFront ? t * (full - a) : t * full;
      mix(source, sourceWeight, target, targetWeight);
    }
    if (mode.rgb_only == 0) target.alpha = static_cast<Channel>(divided(sourceWeight + targetWeight, full));
  }

  /// The whole source at (targetX, targetY) of the target.
  static void rect(const standin::Image& source, const PF_CompositeMode& mode,
                   const std::optional<standin::TransferMask>& mask, int32_t targetX, int32_t targetY,
                   standin::Image& target) {
    for (int32_t y = 0; y < target.height(); ++y) {
      for (int32_t x = 0; x < target.width(); ++x) {
        const int32_t sx = x - targetX;
        const int32_t sy = y - targetY;
        if (sx < 0 || sy < 0 || sx >= source.width() || sy >= source.height()) continue;
        pixel(source.at<Pixel>(sx, sy), maskOf(mask, x, y), mode, target.at<Pixel>(x, y));
      }
    }
  }
};

}  // namespace plain
