// The text of the About box.
#pragma once

#include "ae/InOutData.h"

namespace vindrel {

/// Writes name, version and copyright line into `out_data->return_msg`, which the host shows; with the Shift key down
/// also stage and build. Uses the host's sprintf. Returns 0; `params` and `output` are not looked at.
PF_Err About(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output);

}  // namespace vindrel
