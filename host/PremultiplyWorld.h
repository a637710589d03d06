/// Multiplies colours by alpha and back, over black or another colour, exact at all three depths.
#pragma once

#include "ae/Pixels.h"
#include "ae/Worlds.h"
#include "host/Depth.h"

namespace standin {

/// From source to target, which may be one world; where their sizes differ, in the part that both have.
///
/// Let full be the depth's full scale, c a colour and a the alpha of the source, k the channel of color:
// clang-format off
///
///     forward:   c' = (c a + k (full - a)) / full
///     backward:  c' = (c full - k (full - a)) / a         left as it is where a is 0
///
// clang-format on
/// Whole-number depths: exact, rounded once to nearest with halves up, held to 0..full; a is held to full. Float: in
/// doubles, a held to 0..1, rounded once, not cut off. Alpha is copied, the alpha of color has no meaning.
template <class Pixel>
void premultiplyWorld(const PF_EffectWorld& source, const Pixel& color, bool forward, const PF_EffectWorld& target);

}  // namespace standin
