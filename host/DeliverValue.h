/// Turns a person's value into what an effect gets: fixed-point numbers, pixels at the current resolution, pictures at
/// the frame's resolution and depth.
#pragma once

#include <memory>

#include "ae/Params.h"
#include "host/FrameRequest.h"
#include "host/ParameterValues.h"

namespace standin {

/// The control's record with the value in it. uu is 0, ui_flags are the control's of now. Layers come without a
/// picture.
///
/// Angles and points are rounded to the nearest 1/65536 and held to 32 bits. Points are in pixels at the frame's
/// resolution: a full-resolution place times the down-sampling. Sliders are not scaled.
PF_ParamDef deliverValue(const Control& control, const ParameterValues::Value& value, const FrameRequest& frame);

/// The picture that a layer parameter shows in this frame; null for none. The layer itself is input.
std::shared_ptr<const Image> deliverLayer(const LayerValue& value, const FrameRequest& frame,
                                          const std::shared_ptr<const Image>& input);

/// Reads back a value that the effect changed; nothing for layers and for what has no value. Points come back in pixels
/// at full resolution.
std::optional<ParameterValues::Value> takeValue(const Control& control, const PF_ParamDef& definition,
                                                const FrameRequest& frame);

}  // namespace standin
