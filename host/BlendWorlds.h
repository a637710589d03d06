/// Mixes two worlds by one ratio, colours weighed by their alpha, exact at all three depths.
#pragma once

#include "ae/Scalars.h"
#include "ae/Worlds.h"
#include "host/Depth.h"

namespace standin {

/// The part that all three worlds have, from their left top. target may be one of the sources.
///
/// Let t be ratio / 65536 held to 0..1, c, a a colour and the alpha of first, C, A those of second:
// clang-format off
///
///     alpha  = a (1 - t) + A t
///     colour = (c a (1 - t) + C A t) / (a (1 - t) + A t)       c (1 - t) + C t  where that divisor is 0
///
// clang-format on
/// Whole-number depths: exact fractions, rounded once to nearest with halves up, alphas held to full scale. Float: in
/// doubles, alphas held to 0..1, rounded once.
void blendWorlds(Depth depth, const PF_EffectWorld& first, const PF_EffectWorld& second, PF_Fixed ratio,
                 const PF_EffectWorld& target);

}  // namespace standin
