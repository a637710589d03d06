// A filled FrameRecord becomes pixels in its output: background, dots on the canvas, canvas through the mask.
#pragma once

#include "ae/Scalars.h"
#include "effect/filter/FrameRecord.h"

namespace vindrel {

/// Clears the output, puts the source back unless "Clear Background" is on, has the dots drawn on the canvas, and lays
/// the canvas over the output, in front, straight alpha, held back by the mask.
///
/// Returns the first error and draws no further after it: an error of the dots leaves the background alone in the
/// output. A frame without a canvas gets its background and 512. Throws the bare long 516 when a suite, or the way to
/// the suites, is missing.
/// @tparam Pixel  Pixel8, Pixel16 or Pixel32, as frame.pixel_format tells.
template <class Pixel>
PF_Err composeFrame(FrameRecord& frame);

}  // namespace vindrel
