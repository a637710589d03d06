// The two roads to a frame, from the host's commands to the filter's drawing.
//
// The classic road is one command that gets the values, draws, and gives the values back. The smart road is two: a
// pre-render that tells what is needed and keeps the values, and a render that draws with them, at any later time or
// never. Both fill a FrameRecord and hand it to the filter's RenderFrame. All may run on several threads at once.
#pragma once

#include "ae/InOutData.h"
#include "ae/SmartRender.h"

namespace vindrel {

class BaseFilter;

/// Whose road it is. The base filter draws nothing and never meets a host: its roads make no canvas, hold no suites
/// during a pre-render, and ask for no more than the input covers; its classic road gives back the values after a
/// failed fetch too.
enum class RoadOf { baseFilter, customFilter };

/// PF_Cmd_RENDER. Returns the first error; throws what making the canvas throws. Under kAppIdPremiere nothing is drawn:
/// the output is a copy of the input, whatever the controls say.
PF_Err renderClassic(BaseFilter& filter, RoadOf kind, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                     PF_LayerDef* output);

/// PF_Cmd_SMART_PRE_RENDER. Leaves a FrameRecord with the values of this moment as the host's pre-render data, and the
/// rectangles of what will be drawn. The values stay checked out: this road gives none of them back. Returns the first
/// error, 4 when there is no memory at all; the rectangles are filled in then too. Throws the bare long 516 without a
/// basic suite.
PF_Err preRenderSmart(RoadOf kind, PF_InData* in_data, PF_PreRenderExtra* extra);

/// PF_Cmd_SMART_RENDER. Draws with the values that the pre-render saw. Of the layers only the input is checked in, and
/// only when all went well. Returns the first error, 512 without pre-render data; throws what making the canvas throws.
PF_Err renderSmart(BaseFilter& filter, RoadOf kind, PF_InData* in_data, PF_OutData* out_data,
                   PF_SmartRenderExtra* extra);

}  // namespace vindrel
