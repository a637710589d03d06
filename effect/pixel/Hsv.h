// A pixel's colour as hue, saturation and value, and back.
//
// Shared by the hue shift of an effector and the colour jitter of a dot. All steps are in doubles at every depth; float
// channels go in unclamped. Rests on Convert.h, so the way there and back can lose a level at 8 and 16 bits.
#pragma once

#include "effect/pixel/Pixel.h"

namespace vindrel {

/// @see rgbToHsv, hsvToRgb
struct Hsv {
  double hue;         ///< turns; 0 to below 1 as rgbToHsv gives it for channels of 0 or more, any number for hsvToRgb
  double saturation;  ///< 0 to 1 for channels of 0 or more
  double value;       ///< the largest channel, unit range
};

/// Hue is 0 where there is no saturation, and saturation is 0 where the value is 0. Alpha plays no part.
template <class Pixel>
Hsv rgbToHsv(const Pixel& pixel) noexcept;

/// The hue may be any number of turns, negative too; one that is not a number or beyond 32 bits of turns gives black.
/// The result's alpha is full scale. Nothing is clamped: out of range values wrap at the integer depths.
template <class Pixel>
Pixel hsvToRgb(const Hsv& color) noexcept;

}  // namespace vindrel
