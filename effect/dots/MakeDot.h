// How one dot is made: what all dots start from, what the nine draws of its cell do to it, and how it is finished.
//
// Draws 1 to 6 (place, size, aspect, rotation, opacity) come before the effectors, 7 to 9 (hue, saturation, value)
// after them and act on the colour that they left. Every draw is taken whether its amount is 0 or not, and the colour
// goes through hue, saturation and value for every dot, which at 8 bits can cost a channel a level.
#pragma once

#include <cmath>
#include <cstdint>

#include "effect/dots/Effector.h"
#include "effect/dots/Grid.h"
#include "effect/dots/Random.h"
#include "effect/pixel/Convert.h"
#include "effect/pixel/Hsv.h"
#include "effect/pixel/Int32.h"
#include "effect/pixel/Units.h"
#include "effect/raster/DrawDot.h"

namespace vindrel {

/// By what a dot is turned beside its own rotation.
enum class RotationType {
  normal,        ///< by the turn of the lattice
  lookAtCenter,  ///< toward the point about which the lattice turns
  fixDotAngle,   ///< by nothing
};

/// What every dot of a frame is before jitter and effectors.
template <class Pixel>
struct BaseDot {
  double baseSize{};      ///< pixels
  double baseAspect{};    ///< -1.0 to 1.0
  double baseRotation{};  ///< radians
  double baseOpacity{};   ///< 1.0 is opaque; limited to 0.0 to 1.0 only when it is drawn from
  Pixel baseColor{};
  RotationType rotationType = RotationType::fixDotAngle;
  DotShape shape{};  ///< a number that is no shape draws nothing
};

/// Half widths of the random spread; that of the place belongs to the lattice.
struct JitterAmounts {
  double size{};              ///< sizes
  double aspect{};            ///< 1.0 takes a round dot to a line
  double rotation{};          ///< turns
  double opacity{};           ///< 1.0 is opaque
  double hueAmount{};         ///< turns
  double saturationAmount{};  ///< 1.0 is the full scale
  double valueAmount{};       ///< 1.0 is the full scale
};

/// Draw 3. Pixels, never below 0.
inline double drawSize(double amount, double baseSize) noexcept {
  const double size = drawJitter(amount) * baseSize + baseSize;
  return size < 0.0 ? 0.0 : size;
}

/// Draw 5. Radians. The turn is a factor of each term and not of their sum: the last bits depend on it.
inline double drawRotation(double amountTurns, double baseRotation) noexcept {
  return (amountTurns - (-amountTurns)) * static_cast<double>(NextRandom()) * twoToMinus16 * fullTurn +
         (-amountTurns) * fullTurn + baseRotation;
}

/// Draw 6. The base is limited to 0.0 to 1.0 here, and only here. Kept as is: too much opacity folds back down
/// from 1.0, while too little simply ends at 0.0, so a wide spread makes more dots vanish than shine
/// (tooMuchOpacityFoldsBackDown, tooLittleOpacityEndsAtZero).
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

/// The angle of a dot at x, y, radians. `rotation` is the dot's own, after jitter and effectors.
inline double dotAngle(RotationType type, const DotGrid& grid, double x, double y, double rotation) noexcept {
  if (type == RotationType::normal) return rotation + grid.rotation;
  if (type != RotationType::lookAtCenter) return rotation;
  // A dot right on the centre that it should look at has nowhere to look.
  if (x == grid.rotationCenterX && y == grid.rotationCenterY) return rotation;
  return rotation + (std::atan2(y - grid.rotationCenterY, x - grid.rotationCenterX) - quarterTurn);
}

/// A dot as it waits to be drawn: a DotRecord without the shape, which all dots of a frame share. A frame can hold very
/// many, in one block of memory, so it is kept small.
template <class Pixel>
struct FinishedDot {
  double frontKey;       ///< squared distance in canvas pixels to the nearest front centre, or noFrontKey
  double x, y;           ///< centre, canvas pixels
  double width, height;  ///< pixels along the dot's own axes
  double angle;          ///< radians
  Pixel color;           ///< alpha holds the opacity
};

/// The end of a dot's making. Only one of the two extents ever shrinks by the aspect, and none grows: -1.0 flattens the
/// width to nothing, 1.0 the height. Whatever alpha the running colour had gives way to the opacity.
template <class Pixel>
FinishedDot<Pixel> finishDot(const DotDraft<Pixel>& dot, double angle) noexcept {
  const double size = dot.size < 0.0 ? 0.0 : dot.size;
  double widthFactor = 1.0;
  double heightFactor = 1.0;
  if (dot.aspect < 0.0) widthFactor = 1.0 - (-dot.aspect < 1.0 ? -dot.aspect : 1.0);
  if (dot.aspect > 0.0) heightFactor = 1.0 - (dot.aspect < 1.0 ? dot.aspect : 1.0);
  double opacity = dot.opacity;
  if (opacity < 0.0) opacity = 0.0;
  if (opacity > 1.0) opacity = 1.0;

  FinishedDot<Pixel> finished{.frontKey = dot.frontKey,
                              .x = dot.x,
                              .y = dot.y,
                              .width = widthFactor * size,
                              .height = heightFactor * size,
                              .angle = angle,
                              .color = dot.color};
  finished.color.alpha = fromUnit<Pixel>(opacity);
  return finished;
}

}  // namespace vindrel
