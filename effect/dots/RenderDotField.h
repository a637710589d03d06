// The halftone of one frame: from the values of the controls to dots on the canvas.
//
// Every dot is made first, because the order of drawing depends on all of them: a walk over the lattice makes the
// records (CollectDots.h), one sort puts them in order (DotOrder.h), and only then is each handed to drawDot.
#pragma once

#include "ae/Scalars.h"
#include "effect/params/FrameRecord.h"
#include "effect/raster/DrawContext.h"

namespace vindrel {

/// Draws all dots of the frame on the canvas of the context.
///
/// The size-like fields of frame.params must already be scaled to the down-sampling. Without in_data the frame is
/// drawn as at time 0 and reports no progress; with it, progress is told after each record, in percent.
/// @param context  its width and height bound the lattice; its rasteriser must not be null when a dot is drawn.
/// @returns 0, or what the host's progress call returned when that was not 0; the rest of the dots is then not drawn.
/// Throws std::bad_alloc when there is no memory for the records; nothing is drawn then.
/// @tparam Pixel  Pixel8, Pixel16 or Pixel32.
template <class Pixel>
PF_Err RenderDotField(FrameRecord& frame, DrawContext<Pixel>& context);

}  // namespace vindrel
