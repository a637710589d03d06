/// Colours between the pixels of a world: nearest, mixed from four, and the mean of a rectangle.
///
/// Places are 16.16 in the world's own columns and rows; a whole number is the centre of a pixel. Outside the world
/// everything is transparent black. Where all alphas under a sample are 0, so is the result.
#pragma once

#include "ae/Scalars.h"
#include "ae/Worlds.h"
#include "host/Depth.h"

namespace standin {

/// The pixel whose centre is nearest, halves toward the right and down: column floor(x + 0.5).
template <class Pixel>
Pixel sampleNearest(const PF_EffectWorld& world, PF_Fixed x, PF_Fixed y);

/// The four pixels around the place with the weights w of a bilinear mix, exact fractions of 2^32:
// clang-format off
///
///     alpha  = sum(w a) / 2^32
///     colour = sum(w a c) / sum(w a)
///
// clang-format on
/// Whole-number depths: exact, rounded once to nearest, halves up. Float: in doubles, rounded once.
template <class Pixel>
Pixel sampleSubpixel(const PF_EffectWorld& world, PF_Fixed x, PF_Fixed y);

/// The mean over x - radiusX .. x + radiusX, y - radiusY .. y + radiusY, by the same formulas; the weight of a pixel is
/// the part of it that lies in the rectangle, that of everything together the rectangle's area. Sums in doubles, row by
/// row from the left top; whole-number depths are rounded once at the end, to nearest, halves up.
/// Needs radii of 0 or more; with one that is 0 the result is transparent black.
template <class Pixel>
Pixel sampleArea(const PF_EffectWorld& world, PF_Fixed x, PF_Fixed y, PF_Fixed radiusX, PF_Fixed radiusY);

}  // namespace standin
