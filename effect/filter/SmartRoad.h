// The smart road of a frame: a pre-render that tells what is needed and keeps the values, and a render that draws
// with them, at any later time or never.
#pragma once

#include "ae/InOutData.h"
#include "ae/SmartRender.h"

namespace vindrel {

class BaseFilter;

/// In what the filters' ways differ.
struct SmartRoad {
  bool makesCanvas;
  bool keepsSuites;        ///< holds a suite scope during the pre-render
  bool asksForWholeLayer;  ///< where the mask doesn't bound the picture
};

/// PF_Cmd_SMART_PRE_RENDER. Leaves a FrameRecord with the values of this moment as the host's pre-render data, and the
/// rectangles of what will be drawn. The values stay checked out: this road gives none of them back. Returns the first
/// error, 4 when there is no memory at all; the rectangles are filled in then too. Throws the bare long 516 without a
/// basic suite.
PF_Err preRenderSmart(const SmartRoad& road, PF_InData* in_data, PF_PreRenderExtra* extra);

/// PF_Cmd_SMART_RENDER. Draws through the filter's RenderFrame with the values that the pre-render saw. Of the layers
/// only the input is checked in, and only when all went well. Returns the first error, 512 without pre-render data;
/// throws what making the canvas throws.
PF_Err renderSmart(BaseFilter& filter, const SmartRoad& road, PF_InData* in_data, PF_OutData* out_data,
                   PF_SmartRenderExtra* extra);

}  // namespace vindrel
