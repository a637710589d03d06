/// Lays one world over another through a mask: transfer_rect, exact at all three depths.
///
/// Works on plain windows of one depth. Colours are straight. What a mask lets through is TransferMask.h's.
#pragma once

#include <optional>

#include "ae/Pixels.h"
#include "ae/Worlds.h"
#include "host/Depth.h"
#include "host/TransferMask.h"

namespace standin {

/// Lays sourceRect of source (null: whole; cut to the source, the place in the target moving along) over target, with
/// the rectangle's left top at (targetX, targetY).
///
/// Modes: PF_Xfer_COPY, PF_Xfer_BEHIND and PF_Xfer_IN_FRONT. Let full be the depth's full scale; c, s a colour and the
/// alpha of the source, C, A those of the target; and
// clang-format off
///
///     k = mask * opacity                 opacity / 255 at 8 bits, opacitySu / 32768 at the others; no mask: full
///     a = s k / full
///
///     in front:  alpha  = (a full + A (full - a)) / full
///                colour = (c a full + C A (full - a)) / (a full + A (full - a))
///
///     behind:    alpha  = (A full + a (full - A)) / full
///                colour = (C A full + c a (full - A)) / (A full + a (full - A))
///
///     copy:      alpha  = (s k + A (full - k)) / full
///                colour = (c s k + C A (full - k)) / (s k + A (full - k))
///
// clang-format on
/// Whole-number depths: k (of copy) and a (of the others) are rounded to the depth, to nearest with halves up, and cut
/// off at full; then each result is exact in 64 bits and rounded once in the same way. Float: all in doubles, a and k
/// held to 0..1, each result rounded once to float.
/// Where a (of copy: k) is 0 the target keeps its bytes; in copy a full k copies the bytes. Where a colour's divisor is
/// 0 the target's colour stays, in copy the colours are mixed by k. rgb_only leaves the target's alpha.
/// @return 0, or PF_Err_BAD_CALLBACK_PARAM for another mode, with nothing drawn
PF_Err transferRect(Depth depth, const PF_Rect* sourceRect, const PF_EffectWorld& source, const PF_CompositeMode& mode,
                    const std::optional<TransferMask>& mask, A_long targetX, A_long targetY,
                    const PF_EffectWorld& target);

}  // namespace standin
