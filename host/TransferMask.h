/// The mask of a transfer: how much it lets through at a pixel of the target, exact at all three depths.
///
/// Let full be the depth's full scale (255, 32768, 1.0). The value of a mask pixel is
// clang-format off
///
///     alpha mask:      value = alpha                                      alpha held to 0..full
///     luminance mask:  value = (299 R + 587 G + 114 B) alpha / (1000 full)   rounded to nearest, halves up, held to full
///                      value = (0.299 R + 0.587 G + 0.114 B) alpha           float: in doubles, held to 0..1
///     inverted:        full - value
///
// clang-format on
/// Outside the mask's world the value is 0, so that an inverted mask lets everything through there.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <type_traits>

#include "ae/Pixels.h"
#include "ae/Worlds.h"
#include "host/Depth.h"
#include "host/PixelAccess.h"

namespace standin {

/// A mask of the depth of the worlds that it stands between.
struct TransferMask {
  PF_EffectWorld world;  ///< of width 0 or data null: everything is outside
  PF_Point offset;       ///< the mask's pixel for target pixel (x, y) is (x - offset.h, y - offset.v)
  bool inverted;         ///< what counts is full scale less the value
  bool luminance;        ///< the value is luminance times alpha, not alpha
};

/// In what a transfer of this depth counts: whole numbers of full scale, or doubles.
template <class Pixel>
using TransferNumber =
    std::conditional_t<std::is_floating_point_v<typename PixelFacts<Pixel>::Channel>, double, uint64_t>;

/// A number of a float world held to 0..1; what is not a number counts as 0, since no comparison with it holds.
inline double heldToOne(double value) {
  return value > 0.0 ? std::min(value, 1.0) : 0.0;
}

/// A pixel's alpha, held to 0..full.
template <class Pixel>
TransferNumber<Pixel> heldAlpha(const Pixel& pixel) {
  if constexpr (std::is_floating_point_v<typename PixelFacts<Pixel>::Channel>) {
    return heldToOne(static_cast<double>(pixel.alpha));
  } else {
    return std::min<uint64_t>(pixel.alpha, PixelFacts<Pixel>::full);
  }
}

/// The value of one pixel of a mask, not yet inverted.
template <class Pixel>
TransferNumber<Pixel> maskPixelValue(const Pixel& pixel, bool luminance) {
  if (!luminance) return heldAlpha(pixel);
  if constexpr (std::is_floating_point_v<typename PixelFacts<Pixel>::Channel>) {
    return heldToOne((0.299 * static_cast<double>(pixel.red) + 0.587 * static_cast<double>(pixel.green) +
                      0.114 * static_cast<double>(pixel.blue)) *
                     heldAlpha(pixel));
  } else {
    constexpr uint64_t full = PixelFacts<Pixel>::full;
    const uint64_t luma = uint64_t{299} * pixel.red + uint64_t{587} * pixel.green + uint64_t{114} * pixel.blue;
    return std::min(full, roundedQuotient(luma * heldAlpha(pixel), 1000 * full));
  }
}

/// One row of a mask, as the pixels of one target row ask for it.
template <class Pixel>
class MaskRow {
 public:
  /// @param y  the row in the target
  MaskRow(const std::optional<TransferMask>& mask, int64_t y) {
    if (!mask) {
      outside_ = static_cast<Number>(PixelFacts<Pixel>::full);
      return;
    }
    inverted_ = mask->inverted;
    luminance_ = mask->luminance;
    outside_ = inverted_ ? static_cast<Number>(PixelFacts<Pixel>::full) : Number{0};
    const int64_t maskY = y - mask->offset.v;
    if (mask->world.data == nullptr || maskY < 0 || maskY >= mask->world.height) return;
    row_ = worldRow<Pixel>(mask->world, static_cast<int32_t>(maskY));
    left_ = mask->offset.h;
    width_ = mask->world.width;
  }

  /// What goes through at column x of the target: full where there is no mask.
  TransferNumber<Pixel> at(int64_t x) const {
    const int64_t maskX = x - left_;
    if (maskX < 0 || maskX >= width_) return outside_;
    const Number value = maskPixelValue(row_[maskX], luminance_);
    return inverted_ ? static_cast<Number>(PixelFacts<Pixel>::full) - value : value;
  }

 private:
  using Number = TransferNumber<Pixel>;
  const Pixel* row_ = nullptr;
  int64_t left_ = 0;
  int64_t width_ = 0;  // 0: no pixel of the row lies in the mask
  Number outside_{};
  bool inverted_ = false;
  bool luminance_ = false;
};

}  // namespace standin
