// The twelve ways in which an effector's colour tints a dot's colour.
//
// This works on one pixel value per dot and never on the canvas: dots go on the canvas by the rasteriser's own
// compositing. Colour is straight; the weight shifts of PixelTraits stand in for divisions by full scale, so that at
// 8 bits full times full is 254 on purpose. Integer products are 32 bits wide and wrap; float is single precision
// throughout, except in Soft Light.
#pragma once

#include <cstdint>

#include "effect/pixel/Convert.h"
#include "effect/pixel/Pixel.h"

namespace vindrel {

/// The code that blendPixel takes; not the number of the popup item, which counts separators.
enum BlendMode : int32_t {
  normalBlend = 1,
  addBlend = 2,
  subtractBlend = 3,
  multiplyBlend = 4,
  screenBlend = 5,
  overlayBlend = 6,
  hardLightBlend = 7,
  softLightBlend = 8,
  darkenBlend = 9,
  lightenBlend = 10,
  differenceBlend = 11,
  exclusionBlend = 12,
};

/// Mixes `source` into `pixel`, whose alpha stays as it was.
/// At 8 and 16 bits a source of alpha 0 leaves the pixel alone; in float the caller must not pass an alpha of 0.0.
/// A code outside 1 to 12 replaces the whole pixel, alpha included, by the source.
template <class Pixel>
void blendPixel(Pixel& pixel, Pixel source, int32_t code) noexcept;

/// Lays `source` over `pixel`, weighed by the source's alpha; the pixel's alpha stays as it was.
/// The source's alpha must not be 0 (it may, where the pixel's alpha still gives a weight).
template <class Pixel>
void normalOver(Pixel& pixel, const Pixel& source) noexcept;

/// One channel of a mode: d of the pixel, s of the source.
template <class Pixel>
Channel<Pixel> overlayChannel(Channel<Pixel> d, Channel<Pixel> s) noexcept;
template <class Pixel>
Channel<Pixel> hardLightChannel(Channel<Pixel> d, Channel<Pixel> s) noexcept;
template <class Pixel>
Channel<Pixel> softLightChannel(Channel<Pixel> d, Channel<Pixel> s) noexcept;

/// Screen in float; the integer depths need no routine of their own.
float screenChannel(float d, float s) noexcept;

}  // namespace vindrel
