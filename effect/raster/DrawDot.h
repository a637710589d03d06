// Puts one dot on the canvas: the only call that the dot field makes into the rasteriser.
#pragma once

#include <cstdint>

#include "effect/raster/DotRecord.h"
#include "effect/raster/DrawContext.h"

namespace vindrel {

/// Draws one dot over what the canvas holds. The context's rasterizer must not be null and its matrix must be the
/// identity, which it is again on return. A dot with a width or height of exactly 0.0 is passed over; a negative one is
/// drawn mirrored; nothing is culled, so a dot off the canvas costs its scan. Centre, size and angle may be any
/// number at all. Returns 0. Throws std::bad_alloc when there is no memory; the matrix then still holds this dot's
/// place and turn, and the context must not draw on.
template <class Pixel>
int32_t drawDot(DrawContext<Pixel>& context, const DotRecord<Pixel>& dot);

}  // namespace vindrel
