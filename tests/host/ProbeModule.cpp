// A module of its own, small as can be, for the loader's tests. It has two entries, which name themselves in the About
// text, so that a test sees which one the host took.
#include <cstring>

#include "ae/Constants.h"
#include "ae/InOutData.h"

namespace {

// A block of the module's own in each thread that calls it, as a module with exceptions has.
thread_local int callsOfThisThread = 0;

PF_Err answer(const char* name, PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
              PF_LayerDef* output) {
  ++callsOfThisThread;
  if (cmd == PF_Cmd_ABOUT) std::strcpy(out_data->return_msg, name);
  if (cmd == PF_Cmd_GLOBAL_SETUP) {
    out_data->my_version = 42;
    out_data->out_flags = PF_OutFlag_I_DO_DIALOG;
    out_data->out_flags2 = PF_OutFlag2_NONE;
  }
  if (cmd == PF_Cmd_PARAMS_SETUP) out_data->num_params = 1;
  if (cmd == PF_Cmd_RENDER) {
    return in_data->utils->copy(in_data->effect_ref, &params[0]->u.ld, output, nullptr, nullptr);
  }
  return PF_Err_NONE;
}

}  // namespace

extern "C" PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                                 PF_LayerDef* output, void*) {
  return answer("by EntryPointFunc", cmd, in_data, out_data, params, output);
}

extern "C" PF_Err ProbeEntry(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                             PF_LayerDef* output, void*) {
  return answer("by ProbeEntry", cmd, in_data, out_data, params, output);
}
