// The last step of drawing: a colour, weighted by how much of the pixel a dot covers, goes over what the pixel holds.
//
// Straight colour all the way: red, green and blue are never multiplied by alpha, the sums are divided by the new
// weight instead. A pixel of alpha 0 is empty, and its colour channels never enter.
#pragma once

#include <cmath>
#include <cstdint>

#include "effect/pixel/Int32.h"
#include "effect/pixel/Pixel.h"

namespace vindrel {

inline constexpr int32_t samplesOfAPixel = 64;

/// Share of a pixel for one covered sample.
inline constexpr double coverageOfOneSample = 1.0 / samplesOfAPixel;

/// Lays the colour over the pixel; the colour's alpha is its opacity. count is 0 to 64 samples. (A run that ends
/// beyond the 32-bit range may bring any count; the result is then of no use, but defined.)
template <class Pixel>
inline void paintPixel(Pixel& pixel, const Pixel& color, int32_t count) {
  using Channel = typename PixelTraits<Pixel>::Channel;
  constexpr int32_t full = PixelTraits<Pixel>::fullScale;
  const auto opacity = static_cast<Channel>(static_cast<uint32_t>(wrapMultiply(color.alpha, count) / samplesOfAPixel));
  const int32_t a = opacity;
  if (a == 0) return;
  if (pixel.alpha == 0 || a == full) {
    pixel = color;
    pixel.alpha = opacity;
    return;
  }
  // The shift stands in for a division by full scale, so at 8 bits a chain of overlapping dots loses a little alpha.
  // Kept as is: overlaps in saved projects have this tone (an8BitPixelUnderHalfADotEndsOneLevelShort).
  const int32_t i = wrapMultiply(full - a, pixel.alpha) >> PixelTraits<Pixel>::weightShift;
  const auto total = static_cast<Channel>(static_cast<uint32_t>(a + i));
  const int32_t t = total;  // at least 1, for a is
  const auto mix = [=](int32_t c, int32_t old) {
    return static_cast<Channel>(static_cast<uint32_t>(wrapAdd(wrapMultiply(c, a), wrapMultiply(old, i)) / t));
  };
  pixel.red = mix(color.red, pixel.red);
  pixel.green = mix(color.green, pixel.green);
  pixel.blue = mix(color.blue, pixel.blue);
  pixel.alpha = total;
}

/// Float pixels are mixed in single precision, each product and sum rounded at once; only the share of the pixel is
/// taken in double. Channels beyond 0 to 1 go through as they are.
inline void paintPixel(Pixel32& pixel, const Pixel32& color, int32_t count) {
  const float product = static_cast<float>(count) * color.alpha;
  const auto a = static_cast<float>(static_cast<double>(product) * coverageOfOneSample);
  if (a == 0.0F) return;
  if (pixel.alpha == 0.0F || a == 1.0F) {
    pixel = color;
    pixel.alpha = a;
    return;
  }
  const float i = (1.0F - a) * pixel.alpha;
  const float t = i + a;
  pixel.red = (a * color.red + i * pixel.red) / t;
  pixel.green = (a * color.green + i * pixel.green) / t;
  pixel.blue = (a * color.blue + i * pixel.blue) / t;
  pixel.alpha = t;
}

/// Whether painting with a count of 0 leaves every pixel alone, so that pixels without coverage need no visit. Not so
/// for a float opacity that is infinite or not a number: zero times that is not a number, which is painted.
template <class Pixel>
inline bool emptyCountPaintsNothing(const Pixel&) {
  return true;
}
inline bool emptyCountPaintsNothing(const Pixel32& color) {
  return std::isfinite(color.alpha);
}

}  // namespace vindrel
