#include "effect/dots/LayerEffectMap.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "effect/pixel/Convert.h"
#include "effect/pixel/Int32.h"
#include "effect/pixel/Units.h"

namespace vindrel {
namespace {

/// To the nearest integer, halves toward positive infinity. Kept as is: the two sides of zero round by themselves, and
/// the number next to -0.5 goes to -1 (theNumberNextToMinusOneHalfGoesDown).
int32_t roundHalfUp(double value) noexcept {
  if (value > 0.0) return truncateToInt32(value + 0.5);
  const double raised = value + 0.5;
  return truncateToInt32(std::trunc(raised) == raised ? value : value - 0.5);
}

bool isOutside(int32_t c, int32_t n) noexcept {
  return static_cast<uint32_t>(c) >= static_cast<uint32_t>(n);
}

/// Brings a column (or row) c to a layer of n columns, n above 0. The smallest integer wraps where it is negated, and
/// then may stay outside; the read guards against that.
int32_t tile(int32_t c, int32_t n, Tiling tileMode) noexcept {
  if (!isOutside(c, n)) return c;
  switch (tileMode) {
    case Tiling::none:
      return -1;
    case Tiling::extendEdge:
      return c < 0 ? 0 : n - 1;
    case Tiling::repeat: {
      if (c >= 0) return c % n;
      const int32_t tiles = wrapSubtract(c, n - 1) / n;
      return wrapSubtract(c, wrapMultiply(tiles, n));
    }
    case Tiling::mirror: {
      // Kept as is: the high edge mirrors with its pixel repeated, the low edge without
      // (mirrorRepeatsTheEdgePixelOnTheHighSideOnly: column -1 is column 1).
      const int32_t m = c < 0 ? wrapSubtract(0, c) : c;
      const int32_t remainder = m % n;
      return (m / n) % 2 != 0 ? n - remainder - 1 : remainder;
    }
    case Tiling::unknown:
      break;
  }
  return c;
}

}  // namespace

template <class Pixel>
LayerEffectMap<Pixel>::LayerEffectMap(double centerX, double centerY, double angleDegrees, double scaleX, double scaleY,
                                      Tiling tiling, const LayerView<Pixel>& layer) noexcept
    : tileMode_(tiling) {
  if (layer.pixels == nullptr || layer.width <= 0 || layer.height <= 0) return;
  layer_ = layer;
  m02_ = layer.width * 0.5;
  m12_ = layer.height * 0.5;

  m00_ *= scaleX;
  m10_ *= scaleX;
  m11_ *= scaleY;
  m01_ *= scaleY;

  // A canvas position goes into the layer's frame by the inverse of the layer's turn.
  const double s = std::sin(angleDegrees * -radiansPerDegree);
  const double c = std::cos(angleDegrees * -radiansPerDegree);
  const double old00 = m00_;
  const double old10 = m10_;
  m00_ = old00 * c + m01_ * s;
  m01_ = m01_ * c - old00 * s;
  m10_ = old10 * c + m11_ * s;
  m11_ = m11_ * c - old10 * s;

  m02_ = -centerY * m01_ + -centerX * m00_ + m02_;
  m12_ = -centerX * m10_ + -centerY * m11_ + m12_;
}

template <class Pixel>
typename LayerEffectMap<Pixel>::Place LayerEffectMap<Pixel>::placeOf(double x, double y) const noexcept {
  return {roundHalfUp(x * m00_ + y * m01_ + m02_), roundHalfUp(x * m10_ + y * m11_ + m12_)};
}

template <class Pixel>
Pixel LayerEffectMap<Pixel>::readPixel(Place place) const noexcept {
  const int32_t width = layer_.width;
  const int32_t height = layer_.height;
  if (static_cast<uint32_t>(place.column) > static_cast<uint32_t>(width) ||
      static_cast<uint32_t>(place.row) > static_cast<uint32_t>(height)) {
    return outsidePixel;
  }
  // One column or row beyond the layer passes the test above (an unknown tiling brings it here), so the address is
  // held against the memory from the first to the last pixel before anything is read.
  constexpr auto pixelSize = static_cast<int64_t>(sizeof(Pixel));
  const int64_t lastRow = static_cast<int64_t>(height - 1) * layer_.rowBytes;
  const int64_t begin = std::min<int64_t>(lastRow, 0);
  const int64_t end = std::max<int64_t>(lastRow, 0) + width * pixelSize;
  const int64_t offset = static_cast<int64_t>(place.row) * layer_.rowBytes + place.column * pixelSize;
  if (offset < begin || offset + pixelSize > end) return outsidePixel;

  Pixel pixel;  // rows may start anywhere, so the pixel is copied out and not pointed at
  std::memcpy(&pixel, layer_.pixels + offset, sizeof pixel);
  return pixel;
}

template <class Pixel>
Pixel LayerEffectMap<Pixel>::SamplePixel(double x, double y) const noexcept {
  if (!hasPixels()) return outsidePixel;
  Place place = placeOf(x, y);
  place.column = tile(place.column, layer_.width, tileMode_);
  place.row = tile(place.row, layer_.height, tileMode_);
  if (tileMode_ == Tiling::none && (place.column < 0 || place.row < 0)) return outsidePixel;
  return readPixel(place);
}

template <class Pixel>
Pixel LayerEffectMap<Pixel>::SamplePixelOr(double x, double y, const Pixel& fallback) const noexcept {
  if (!hasPixels()) return fallback;
  const Place place = placeOf(x, y);
  if (isOutside(place.column, layer_.width) || isOutside(place.row, layer_.height)) return fallback;
  return readPixel(place);
}

template <class Pixel>
double LayerEffectMap<Pixel>::Evaluate(double x, double y) const noexcept {
  if (!hasPixels()) return 0.0;
  const Pixel pixel = SamplePixel(x, y);
  // The mix of the channels is this look's own, and so is its order.
  const double mixed = static_cast<double>(pixel.green) * 0.586611 + static_cast<double>(pixel.red) * 0.298912 +
                       static_cast<double>(pixel.blue) * 0.114478;
  const auto alpha = static_cast<double>(pixel.alpha);
  if constexpr (hasIntegerChannels<Pixel>) {
    double luminance = mixed * PixelTraits<Pixel>::toUnit;
    if (luminance >= 1.0) luminance = 1.0;
    return alpha * luminance * PixelTraits<Pixel>::toUnit;
  } else {
    return mixed * alpha;  // over-bright layers may pull harder than 1.0
  }
}

template class LayerEffectMap<Pixel8>;
template class LayerEffectMap<Pixel16>;
template class LayerEffectMap<Pixel32>;

}  // namespace vindrel
