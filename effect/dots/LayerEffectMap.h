// The weight by a layer's luminance and alpha, and the reader of a layer's colour.
//
// An affine map takes a canvas position into the layer; one pixel is read there, without interpolation, and the tiling
// says what stands outside the layer.
#pragma once

#include <cstddef>
#include <cstdint>

#include "effect/dots/EffectMap.h"
#include "effect/pixel/Pixel.h"

namespace vindrel {

/// What stands outside a layer.
enum class Tiling : int32_t {
  none,        ///< opaque black
  repeat,      ///< the layer again and again
  mirror,      ///< the layer turned over at each edge
  extendEdge,  ///< the nearest pixel of the layer
  unknown,  ///< opaque black, but for the column and the row next to the layer's far edges: what the memory has there
};

/// The pixels of a layer. Owns nothing.
/// @tparam Pixel  Pixel8, Pixel16 or Pixel32: what the bytes mean.
template <class Pixel>
struct LayerView {
  const std::byte* pixels = nullptr;  ///< first pixel; null when there is no layer. Rows need not be aligned
  int32_t width = 0;                  ///< pixels; 0 or less is as no layer
  int32_t height = 0;                 ///< pixels; 0 or less is as no layer
  int32_t rowBytes = 0;               ///< bytes from a row to the next; may be negative
};

/// @tparam Pixel  Pixel8, Pixel16 or Pixel32; the layer's pixels must be of that depth.
template <class Pixel>
class LayerEffectMap final : public BaseEffectMap {
 public:
  /// @param centerX,centerY  where the layer's centre sits on the canvas, pixels
  /// @param angleDegrees     clockwise turn of the layer on the canvas
  /// @param scaleX,scaleY    layer pixels per canvas pixel
  /// @param layer            its pixels must outlive the map. One without any pixel is harmless: the weight is 0.0
  ///                         everywhere and no colour is there to pick.
  LayerEffectMap(double centerX, double centerY, double angleDegrees, double scaleX, double scaleY, Tiling tiling,
                 const LayerView<Pixel>& layer) noexcept;

  /// Luminance times alpha of the tiled pixel, 0.0 to 1.0 at the integer depths and unclamped in float.
  double Evaluate(double x, double y) const noexcept override;

  /// The pixel under a canvas position, with tiling. Opaque black outside an untiled layer, and without a layer.
  Pixel SamplePixel(double x, double y) const noexcept;

  /// The same without tiling: the fallback outside the layer, and without a layer.
  Pixel SamplePixelOr(double x, double y, const Pixel& fallback) const noexcept;

  /// Whether there is a layer with at least one pixel.
  bool hasPixels() const noexcept { return layer_.pixels != nullptr; }

 private:
  struct Place {
    int32_t column;
    int32_t row;
  };
  Place placeOf(double x, double y) const noexcept;
  Pixel readPixel(Place place) const noexcept;

  static constexpr Pixel outsidePixel{PixelTraits<Pixel>::fullScale, 0, 0, 0};  ///< opaque black

  LayerView<Pixel> layer_{};                  ///< what pixels are read from; empty when there are none
  double m00_ = 1.0, m01_ = 0.0, m02_ = 0.0;  ///< column = x * m00 + y * m01 + m02
  double m10_ = 0.0, m11_ = 1.0, m12_ = 0.0;  ///< row = x * m10 + y * m11 + m12
  Tiling tileMode_;
};

}  // namespace vindrel
