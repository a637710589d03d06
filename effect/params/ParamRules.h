// How controls depend on each other: which are greyed, and how a change of "Distance Between" rewrites two others.
//
// Both are called on the host's user-interface thread. They throw a bare long 516 when a suite is not lent.
#pragma once

#include "ae/InOutData.h"
#include "ae/Params.h"
#include "ae/Scalars.h"

namespace vindrel {

/// Greys and frees the controls, and notes the mode of "Distance Between" when the sequence has none yet.
/// The host's array is only read. In a render engine everything is greyed and nothing noted. Returns 0.
PF_Err UpdateParamsRules(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef** params);

/// After a change of "Distance Between": converts both distances, so that the grid stays where it is. Returns 0.
PF_Err UserChangedRules(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef** params,
                        PF_UserChangedParamExtra* extra);

}  // namespace vindrel
