// The classic road of a frame: one command that gets the values, draws, and gives the values back.
#pragma once

#include "ae/InOutData.h"

namespace vindrel {

class BaseFilter;

/// In what the filters' ways differ.
struct ClassicRoad {
  bool makesCanvas;
  bool releasesAfterFailedFetch;
};

/// PF_Cmd_RENDER. Draws through the filter's RenderFrame. Returns the first error; throws what making the canvas
/// throws. Under kAppIdPremiere nothing is drawn: the output is a copy of the input, whatever the controls say.
PF_Err renderClassic(BaseFilter& filter, const ClassicRoad& road, PF_InData* in_data, PF_OutData* out_data,
                     PF_ParamDef* params[], PF_LayerDef* output);

}  // namespace vindrel
