/// Copies a part of a world into another, stretched where the rectangles differ in size: copy and copy_hq.
///
/// Works on plain windows of one depth. Areas outside a world count as transparent and are never written.
#pragma once

#include "ae/Pixels.h"
#include "ae/Worlds.h"
#include "host/Depth.h"

namespace standin {

/// Copies sourceRect of source to targetRect of target (null: the whole world); both worlds have the same depth.
///
/// Rectangles of equal size: each pixel is copied bit for bit, as far as it lies in both worlds. Rectangles of
/// different size stretch, over the whole rectangles even where those reach outside a world: target pixel i of n takes
/// the source pixel whose centre is nearest, of m
// clang-format off
///
///     floor((2 i + 1) m / (2 n))
///
// clang-format on
/// counted from the rectangle's left or top. A source pixel outside the source leaves the target as it is. An empty or
/// reversed rectangle copies nothing. The worlds must not share pixels.
void copyWorld(Depth depth, const PF_EffectWorld& source, const PF_EffectWorld& target, const PF_Rect* sourceRect,
               const PF_Rect* targetRect);

/// As copyWorld, but a stretch interpolates between the four nearest pixel centres. The centre of target pixel i of n
/// lies, in source pixels of m, at
// clang-format off
///
///     ((2 i + 1) m - n) / (2 n)
///
/// Beyond the outermost centres of the rectangle (cut to the source world) the edge pixel counts. With the weights w of
/// the four pixels, their alphas a and a colour's values c:
///
///     alpha  = sum(w a) / sum(w)
///     colour = sum(w a c) / sum(w a)      and  sum(w c) / sum(w)  where all four alphas are 0
///
// clang-format on
/// Whole-number depths: the weights are exact fractions and each channel is rounded once, to nearest, halves up. Float:
/// in doubles, rounded once.
void copyWorldSmoothly(Depth depth, const PF_EffectWorld& source, const PF_EffectWorld& target,
                       const PF_Rect* sourceRect, const PF_Rect* targetRect);

}  // namespace standin
