#include "host/SampleWorld.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

#include "host/PixelAccess.h"
#include "host/TransferMask.h"

namespace standin {

namespace {

template <class Pixel>
Pixel pixelAt(const PF_EffectWorld& world, int64_t x, int64_t y) {
  if (world.data == nullptr || x < 0 || y < 0 || x >= world.width || y >= world.height) return Pixel{};
  return worldRow<Pixel>(world, static_cast<int32_t>(y))[x];
}

template <class Channel>
Channel rounded(double value, double full) {
  if constexpr (std::is_floating_point_v<Channel>) {
    return static_cast<Channel>(value);
  } else {
    return static_cast<Channel>(std::min(std::floor(value + 0.5), full));
  }
}

}  // namespace

template <class Pixel>
Pixel sampleNearest(const PF_EffectWorld& world, PF_Fixed x, PF_Fixed y) {
  // Shifts of numbers below 0 go down, as floor does.
  return pixelAt<Pixel>(world, (int64_t{x} + 32768) >> 16, (int64_t{y} + 32768) >> 16);
}

template <class Pixel>
Pixel sampleSubpixel(const PF_EffectWorld& world, PF_Fixed x, PF_Fixed y) {
  using Channel = typename PixelFacts<Pixel>::Channel;
  using Number = TransferNumber<Pixel>;
  const int64_t left = x >> 16;
  const int64_t top = y >> 16;
  const auto right = static_cast<Number>(x & 0xFFFF);
  const auto lower = static_cast<Number>(y & 0xFFFF);
  const Number one{65536};
  const Pixel corners[4] = {pixelAt<Pixel>(world, left, top), pixelAt<Pixel>(world, left + 1, top),
                            pixelAt<Pixel>(world, left, top + 1), pixelAt<Pixel>(world, left + 1, top + 1)};
  const Number weights[4] = {(one - right) * (one - lower), right * (one - lower), (one - right) * lower,
                             right * lower};
  // Weights add up to 2^32, an alpha is 2^15 at most and a colour below 2^16: sums stay below 2^63.
  Number sum{0};
  for (int k = 0; k < 4; ++k) sum += weights[k] * heldAlpha(corners[k]);
  if (!(sum > Number{0})) return Pixel{};
  const auto divided = [](Number value, Number by) {
    if constexpr (std::is_floating_point_v<Channel>) {
      return static_cast<Channel>(value / by);
    } else {
      return static_cast<Channel>(roundedQuotient(value, by));
    }
  };
  Pixel result{};
  result.alpha = divided(sum, one * one);
  for (int c = 1; c < 4; ++c) {
    Number colors{0};
    for (int k = 0; k < 4; ++k) {
      colors += weights[k] * heldAlpha(corners[k]) * static_cast<Number>(channel(corners[k], c));
    }
    channel(result, c) = divided(colors, sum);
  }
  return result;
}

template <class Pixel>
Pixel sampleArea(const PF_EffectWorld& world, PF_Fixed x, PF_Fixed y, PF_Fixed radiusX, PF_Fixed radiusY) {
  using Channel = typename PixelFacts<Pixel>::Channel;
  constexpr double full = static_cast<double>(PixelFacts<Pixel>::full);
  // Edges in 1/65536 of a pixel, counted from the left edge of column 0, whose centre is half a pixel further.
  const int64_t left = int64_t{x} - radiusX + 32768;
  const int64_t right = int64_t{x} + radiusX + 32768;
  const int64_t top = int64_t{y} - radiusY + 32768;
  const int64_t bottom = int64_t{y} + radiusY + 32768;
  if (left >= right || top >= bottom || world.data == nullptr) return Pixel{};
  const auto overlap = [](int64_t pixel, int64_t start, int64_t end) {
    return static_cast<double>(std::min(end, (pixel + 1) << 16) - std::max(start, pixel << 16));
  };
  double alpha = 0;
  double colors[3] = {0, 0, 0};
  const int64_t lastRow = std::min<int64_t>((bottom - 1) >> 16, world.height - 1);
  const int64_t lastColumn = std::min<int64_t>((right - 1) >> 16, world.width - 1);
  for (int64_t row = std::max<int64_t>(top >> 16, 0); row <= lastRow; ++row) {
    for (int64_t column = std::max<int64_t>(left >> 16, 0); column <= lastColumn; ++column) {
      const Pixel pixel = pixelAt<Pixel>(world, column, row);
      const double weight =
          overlap(column, left, right) * overlap(row, top, bottom) * static_cast<double>(heldAlpha(pixel));
      alpha += weight;
      for (int c = 0; c < 3; ++c) colors[c] += weight * static_cast<double>(channel(pixel, c + 1));
    }
  }
  if (!(alpha > 0.0)) return Pixel{};
  const double area = static_cast<double>(right - left) * static_cast<double>(bottom - top);
  return {rounded<Channel>(alpha / area, full), rounded<Channel>(colors[0] / alpha, full),
          rounded<Channel>(colors[1] / alpha, full), rounded<Channel>(colors[2] / alpha, full)};
}

template PF_Pixel sampleNearest(const PF_EffectWorld&, PF_Fixed, PF_Fixed);
template PF_Pixel16 sampleNearest(const PF_EffectWorld&, PF_Fixed, PF_Fixed);
template PF_PixelFloat sampleNearest(const PF_EffectWorld&, PF_Fixed, PF_Fixed);
template PF_Pixel sampleSubpixel(const PF_EffectWorld&, PF_Fixed, PF_Fixed);
template PF_Pixel16 sampleSubpixel(const PF_EffectWorld&, PF_Fixed, PF_Fixed);
template PF_PixelFloat sampleSubpixel(const PF_EffectWorld&, PF_Fixed, PF_Fixed);
template PF_Pixel sampleArea(const PF_EffectWorld&, PF_Fixed, PF_Fixed, PF_Fixed, PF_Fixed);
template PF_Pixel16 sampleArea(const PF_EffectWorld&, PF_Fixed, PF_Fixed, PF_Fixed, PF_Fixed);
template PF_PixelFloat sampleArea(const PF_EffectWorld&, PF_Fixed, PF_Fixed, PF_Fixed, PF_Fixed);

}  // namespace standin
