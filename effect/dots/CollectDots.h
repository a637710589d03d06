// All dots of a frame, as records: the lattice, the jitter, the effectors and the finishing of each dot in one pass.
//
// Pure arithmetic: it calls nothing of the host and draws nothing.
#pragma once

#include <cstdint>

#include "ae/InOutData.h"
#include "effect/dots/DotOrder.h"
#include "effect/params/RenderParams.h"

namespace vindrel {

/// Makes the records in the order of the walk, and says in which order they are to be drawn.
/// @param params  the frame's values, size-like fields scaled to the down-sampling.
/// @param in_data  its times choose the random pattern; null is as a time step of 0.
/// @param width, height  of the canvas, pixels.
/// Throws std::bad_alloc when there is no memory for the records.
/// @tparam Pixel  Pixel8, Pixel16 or Pixel32.
template <class Pixel>
DotField<Pixel> collectDots(const RenderParams& params, const PF_InData* in_data, int32_t width, int32_t height);

}  // namespace vindrel
