/// The host's arithmetic on worlds: fill, copy and transfer, exact at all three depths.
///
/// Works on plain windows; finding out what depth a world has is the caller's work. Colours are straight. Areas outside
/// a world count as transparent and are never written.
#pragma once

#include <optional>

#include "ae/Pixels.h"
#include "ae/Worlds.h"
#include "host/Depth.h"

namespace standin {

/// Sets every pixel of rect (null: the whole world), cut to the world, to color.
template <class Pixel>
void fillWorld(PF_EffectWorld& world, const PF_Rect* rect, const Pixel& color);

/// A colour at another depth: to nearest, halves up, cut off to 0..full scale for whole-number depths.
template <class To, class From>
To convertPixel(const From& pixel);

/// Copies sourceRect of source to targetRect of target (null: the whole world); both worlds have the same depth.
///
/// Rectangles of equal size: each pixel is copied bit for bit, as far as it lies in both worlds. Rectangles of
/// different size stretch, over the whole rectangles even where those reach outside a world: the target pixel with the
/// number i of n takes the source pixel floor((2i + 1) * m / 2n) of m (nearest centre). A source pixel outside the
/// source leaves the target as it is. An empty or reversed rectangle copies nothing. The worlds must not share pixels.
void copyWorld(Depth depth, const PF_EffectWorld& source, const PF_EffectWorld& target, const PF_Rect* sourceRect,
               const PF_Rect* targetRect);

/// As copyWorld, but a stretch interpolates between the four nearest pixel centres. The centre of target pixel i of n
/// lies at ((2i + 1) * m - n) / 2n in source pixels; beyond the outermost centres of the rectangle (cut to the source
/// world) the edge pixel counts. Alpha is the weighted mean, a colour the mean weighted by weight * alpha, or by weight
/// alone where all four alphas are 0. Whole-number depths: the weights are exact fractions and each channel is rounded
/// once, to nearest, halves up. Float: in doubles, rounded once.
void copyWorldSmoothly(Depth depth, const PF_EffectWorld& source, const PF_EffectWorld& target,
                       const PF_Rect* sourceRect, const PF_Rect* targetRect);

/// A mask of the depth of the worlds that it stands between.
struct TransferMask {
  PF_EffectWorld world;  ///< of width 0 or data null: everything is outside
  PF_Point offset;       ///< the mask's pixel for target pixel (x, y) is (x - offset.h, y - offset.v)
  bool inverted;         ///< what counts is full scale less the value; outside the world is then full
  bool luminance;        ///< the value is luminance (0.299, 0.587, 0.114) times alpha, not alpha
};

/// Lays sourceRect of source (null: whole; cut to the source, the place in the target moving along) over target, with
/// the rectangle's left top at (targetX, targetY).
///
/// Modes: PF_Xfer_COPY, PF_Xfer_BEHIND and PF_Xfer_IN_FRONT. Let full be the depth's full scale, k the strength: mask
/// value times opacity (opacity / 255 at 8 bits, opacitySu / 32768 at the others), and a the source's alpha times k.
///   in front:  alpha = a + A (full - a) / full            colour = (c a full + C A (full - a)) / (a full + A (full -
///   a)) behind:    alpha = A + a (full - A) / full            colour = (C A full + c a (full - A)) / (A full + a (full
///   - A)) copy:      alpha = (s k + A (full - k)) / full        colour = (c s k + C A (full - k)) / (s k + A (full -
///   k))
/// with c, s the source's colour and alpha, C, A the target's. Whole-number depths: k (of copy) and a (of the others)
/// are rounded to the depth, to nearest with halves up, and cut off at full; then each result is exact in 64 bits and
/// rounded once in the same way. Float: all in doubles, a and k held to 0..1, each result rounded once to float.
/// Where a (of copy: k) is 0 the target keeps its bytes; in copy a full k copies the bytes. Where a colour's divisor is
/// 0 the target's colour stays, in copy the colours are mixed by k. rgb_only leaves the target's alpha.
/// @return 0, or PF_Err_BAD_CALLBACK_PARAM for another mode, with nothing drawn
PF_Err transferRect(Depth depth, const PF_Rect* sourceRect, const PF_EffectWorld& source, const PF_CompositeMode& mode,
                    const std::optional<TransferMask>& mask, A_long targetX, A_long targetY,
                    const PF_EffectWorld& target);

}  // namespace standin
