// What the nine draws of a cell do to its dot, in the order of the draws.
//
// Draws 1 to 6 (place, size, aspect, rotation, opacity) come before the effectors, 7 to 9 (hue, saturation, value)
// after them and act on the colour that they left. Every draw is taken whether its amount is 0 or not, and the colour
// goes through hue, saturation and value for every dot, which at 8 bits can cost a channel a level.
#pragma once

#include "effect/dots/Random.h"
#include "effect/params/RenderParams.h"
#include "effect/pixel/Hsv.h"
#include "effect/pixel/Truncate.h"

namespace vindrel {

/// Half widths of the random spread.
struct JitterAmounts {
  double distanceX, distanceY;  ///< pitches
  double size;                  ///< sizes
  double aspect;                ///< 1.0 takes a round dot to a line
  double rotation;              ///< turns
  double opacity;               ///< 1.0 is opaque
  double hueAmount;             ///< turns
  double saturationAmount;      ///< 1.0 is the full scale
  double valueAmount;           ///< 1.0 is the full scale
};

inline JitterAmounts makeJitterAmounts(const RenderParams& params) noexcept {
  return {.distanceX = params.randomDistanceX,
          .distanceY = params.randomDistanceY,
          .size = params.randomSize,
          .aspect = params.randomAspect,
          .rotation = params.randomRotation,
          .opacity = params.randomOpacity,
          .hueAmount = params.randomHue * 1.52587890625e-05 / 360.0,
          .saturationAmount = params.randomSaturation / 100.0,
          .valueAmount = params.randomValue / 100.0};
}

/// Draw 3. Pixels, never below 0.
inline double drawSize(double amount, double baseSize) noexcept {
  const double size = drawJitter(amount) * baseSize + baseSize;
  return size < 0.0 ? 0.0 : size;
}

/// Draw 5. Radians. The turn is a factor of each term and not of their sum: the last bits depend on it.
inline double drawRotation(double amountTurns, double baseRotation) noexcept {
  constexpr double fullTurn = 6.283185307179586;
  return (amountTurns - (-amountTurns)) * static_cast<double>(NextRandom()) * 1.52587890625e-05 * fullTurn +
         (-amountTurns) * fullTurn + baseRotation;
}

/// Draw 6. The base is limited to 0.0 to 1.0 here, and only here. Kept as is: too much opacity folds back down
/// from 1.0, while too little simply ends at 0.0, so a wide spread makes more dots vanish than shine.
inline double drawOpacity(double amount, double baseOpacity) noexcept {
  double opacity = baseOpacity;
  if (opacity > 1.0) opacity = 1.0;
  if (opacity < 0.0) opacity = 0.0;
  opacity += drawJitter(amount);
  if (opacity > 1.0) opacity = 2.0 - opacity;
  return opacity < 0.0 ? 0.0 : opacity;
}

/// Folds a number into 0.0 to 1.0 with period 2, as between two mirrors.
inline double foldIntoUnit(double number) noexcept {
  double folded = number > 0.0 ? number : -number;
  folded = folded - truncateToInt32(folded * 0.5) * 2.0;
  return folded > 1.0 ? 2.0 - folded : folded;
}

/// Draws 7 to 9. The hue may leave 0 to 1, the way back wraps it. The result's alpha is full scale.
template <class Pixel>
Pixel drawColor(const JitterAmounts& amounts, const Pixel& color) noexcept {
  Hsv hsv = rgbToHsv(color);
  hsv.hue = drawJitter(amounts.hueAmount) + hsv.hue;
  hsv.saturation = foldIntoUnit(drawJitter(amounts.saturationAmount) + hsv.saturation);
  hsv.value = foldIntoUnit(drawJitter(amounts.valueAmount) + hsv.value);
  return hsvToRgb<Pixel>(hsv);
}

}  // namespace vindrel
