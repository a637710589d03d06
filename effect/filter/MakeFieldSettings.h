// The one place where a frame's controls become the settings of its field: fixed-point numbers and percentages become
// doubles, popup items named choices, host worlds views, and lengths those of the down-sampled canvas.
#pragma once

#include "ae/InOutData.h"
#include "effect/dots/FieldSettings.h"
#include "effect/params/RenderParams.h"

namespace vindrel {

/// @param params   as the host returned them; the layers in it must be of the depth and outlive the settings
/// @param in_data  gives the down-sampling, whose denominators must not be 0, and the time
/// @tparam Pixel   Pixel8, Pixel16 or Pixel32
template <class Pixel>
FieldSettings<Pixel> makeFieldSettings(const RenderParams& params, const PF_InData& in_data);

}  // namespace vindrel
