// The weight by a layer's luminance and alpha, and the reader of a layer's colour.
//
// An affine map takes a canvas position into the layer; one pixel is read there, without interpolation, and the tiling
// says what stands outside the layer.
#pragma once

#include <cstdint>

#include "ae/Worlds.h"
#include "effect/dots/EffectMap.h"
#include "effect/pixel/Pixel.h"

namespace vindrel {

/// @tparam Pixel  Pixel8, Pixel16 or Pixel32; the layer's pixels must be of that depth.
template <class Pixel>
class LayerEffectMap final : public BaseEffectMap {
 public:
  /// @param centerX,centerY  where the layer's centre sits on the canvas, pixels
  /// @param angleDegrees     clockwise turn of the layer on the canvas
  /// @param scaleX,scaleY    layer pixels per canvas pixel
  /// @param tiling           popup value: 1 none, 2 repeat, 3 mirror, 4 extend edge
  /// @param layer            not owned, must outlive the map. Null, or a world without any pixel, is harmless: the
  ///                         weight is 0.0 everywhere and no colour is there to pick.
  LayerEffectMap(double centerX, double centerY, double angleDegrees, double scaleX, double scaleY, int32_t tiling,
                 const PF_EffectWorld* layer) noexcept;

  /// Luminance times alpha of the tiled pixel, 0.0 to 1.0 at the integer depths and unclamped in float.
  double Evaluate(double x, double y) const noexcept override;

  /// The pixel under a canvas position, with tiling. Opaque black outside an untiled layer, and without a layer.
  Pixel SamplePixel(double x, double y) const noexcept;

  /// The same without tiling: the fallback outside the layer, and without a layer.
  Pixel SamplePixelOr(double x, double y, const Pixel& fallback) const noexcept;

  /// Whether there is a layer with at least one pixel.
  bool hasPixels() const noexcept;

 private:
  struct Place {
    int32_t column;
    int32_t row;
  };
  Place placeOf(double x, double y) const noexcept;
  Pixel readPixel(Place place) const noexcept;

  const PF_EffectWorld* sampleWorld_ = nullptr;  ///< the world that pixels are read from
  double m00_ = 1.0, m01_ = 0.0, m02_ = 0.0;     ///< column = x * m00 + y * m01 + m02
  double m10_ = 0.0, m11_ = 1.0, m12_ = 0.0;     ///< row = x * m10 + y * m11 + m12
  int32_t tileMode_;                             ///< see tileModeOf in the source
  Pixel outsidePixel_;                           ///< opaque black
  const PF_EffectWorld* layer_;                  ///< limits the tiling; may be null
};

}  // namespace vindrel
