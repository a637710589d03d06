// The way into the module: the one function that the host finds in it, and the filter that it hands commands to.
#pragma once

#include "ae/InOutData.h"

namespace vindrel {

class BaseFilter;

/// Makes the module's filter on the global allocator; the caller owns it. Null when there is no memory. Defined beside
/// the filter, so that the entry can be tried with another one.
BaseFilter* MakeFilter();

}  // namespace vindrel

/// Every command of the host comes in here.
///
/// Threads: the effect says that it is safe for threads, and takes no lock. The commands of a frame (PF_Cmd_RENDER,
/// PF_Cmd_SMART_PRE_RENDER, PF_Cmd_SMART_RENDER, PF_Cmd_QUERY_DYNAMIC_FLAGS) may run on several threads at once, each
/// with a frame of its own. The first call, the set-ups, PF_Cmd_GLOBAL_SETDOWN and everything that the user does come
/// on the host's main thread while no other command runs. Frames share the suite record, the controls, the list of
/// pending errors and the generator's word; each tells in its header what a second thread can do to it.
///
/// The first call, whatever its command, builds what lives between calls: the suite record, the list of pending
/// errors, the controls, the filter. PF_Cmd_GLOBAL_SETDOWN takes them down, and a later call builds them anew.
/// @returns the command's result, or the oldest pending error when that is 0. An AEException gives its own code, any
/// other exception 512. What is thrown while the first call builds is not caught here.
extern "C" PF_Err EntryPointFunc(PF_Cmd command, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                                 PF_LayerDef* output, void* extra);
