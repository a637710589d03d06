// An effect of the classic road that declares nothing and runs out of memory in every frame.

#include "ae/Constants.h"
#include "ae/InOutData.h"

extern "C" __attribute__((visibility("default"))) PF_Err EntryPointFunc(PF_Cmd command, PF_InData*, PF_OutData* out,
                                                                        PF_ParamDef**, PF_LayerDef*, void*) {
  if (command == PF_Cmd_PARAMS_SETUP) out->num_params = 1;
  return command == PF_Cmd_RENDER ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
}
