#include "host/ShrinkPicture.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace standin {
namespace {

/// Sums over one block.
struct BlockSums {
  double count = 0.0;
  double alpha = 0.0;
  double plain[3] = {};     ///< red, green, blue
  double weighted[3] = {};  ///< the same times alpha

  template <class Pixel>
  void add(const Pixel& pixel) {
    const auto pixelAlpha = static_cast<double>(pixel.alpha);
    const double colors[3] = {static_cast<double>(pixel.red), static_cast<double>(pixel.green),
                              static_cast<double>(pixel.blue)};
    count += 1.0;
    alpha += pixelAlpha;
    for (int i = 0; i < 3; ++i) {
      plain[i] += colors[i];
      weighted[i] += colors[i] * pixelAlpha;
    }
  }

  double color(int i) const { return alpha > 0.0 ? weighted[i] / alpha : plain[i] / count; }
};

template <class Channel>
Channel rounded(double value) {
  // Means of channels in range are in range.
  return static_cast<Channel>(std::is_same_v<Channel, float> ? value : std::floor(value + 0.5));
}

template <class Pixel>
Pixel blockMean(const Image& picture, int32_t left, int32_t top, int32_t factor) {
  using Channel = typename PixelFacts<Pixel>::Channel;
  const int32_t right = std::min(left + factor, picture.width());
  const int32_t bottom = std::min(top + factor, picture.height());
  BlockSums sums;
  for (int32_t y = top; y < bottom; ++y) {
    for (int32_t x = left; x < right; ++x) sums.add(picture.at<Pixel>(x, y));
  }
  Pixel mean{};
  mean.alpha = rounded<Channel>(sums.alpha / sums.count);
  mean.red = rounded<Channel>(sums.color(0));
  mean.green = rounded<Channel>(sums.color(1));
  mean.blue = rounded<Channel>(sums.color(2));
  return mean;
}

}  // namespace

Image shrunk(const Image& picture, int32_t factor) {
  if (factor == 1) return picture;
  const PF_RationalScale scale{1, static_cast<A_u_long>(factor)};
  Image result(picture.depth(), scaledLength(picture.width(), scale), scaledLength(picture.height(), scale));
  withPixelOf(picture.depth(), [&](auto pixel) {
    using Pixel = decltype(pixel);
    for (int32_t y = 0; y < result.height(); ++y) {
      for (int32_t x = 0; x < result.width(); ++x) {
        result.at<Pixel>(x, y) = blockMean<Pixel>(picture, x * factor, y * factor, factor);
      }
    }
  });
  return result;
}

}  // namespace standin
