/// A world seen through a matrix, or the mean of several: what transform_world lays over its target.
#pragma once

#include <vector>

#include "ae/Pixels.h"
#include "ae/Worlds.h"
#include "host/Depth.h"
#include "host/Image.h"

namespace standin {

/// The pixels of area (columns and rows of the target), each taken from the source where the matrices put it.
///
/// Pixel (0, 0) reaches from 0 to 1, its centre is at 0.5. A place is a row vector times the matrix m:
// clang-format off
///
///     x' = (x m00 + y m10 + m20) / w      y' = (x m01 + y m11 + m21) / w      w = x m02 + y m12 + m22
///
// clang-format on
/// @param matrices       from the source to the target when sourceToTarget is set, else from the target to the source;
///                       several are mixed, each with the same weight. One that has no inverse draws nothing.
/// @param interpolated   mixes the four pixels whose centres are around the place, else takes the pixel it lies in
///
/// All in doubles, matrix by matrix: alpha is the mean of weight * alpha, a colour the mean by weight * alpha,
/// transparent black where there is none; outside the source alpha is 0. Whole-number depths are rounded once, to
/// nearest, halves up.
Image transformedWorld(Depth depth, const PF_EffectWorld& source, const std::vector<PF_FloatMatrix>& matrices,
                       bool sourceToTarget, bool interpolated, const PF_LRect& area);

}  // namespace standin
