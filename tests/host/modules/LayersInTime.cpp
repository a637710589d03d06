// Mixes its own layer a frame ago, another layer a frame ahead and a third of its own half and half, each by the host's
// blend.
#include <cstring>

#include "ModuleParts.h"

namespace {

PF_Err addLayer(PF_InData* in_data, const char* name, A_long id, A_long dephault) {
  PF_ParamDef def{};
  def.param_type = PF_Param_LAYER;
  def.uu.id = id;
  std::strcpy(def.name, name);
  def.u.ld.dephault = dephault;
  return in_data->inter.add_param(in_data->effect_ref, -1, &def);
}

// One layer at another time, mixed half and half into the output. A layer that is not there changes nothing.
PF_Err mixIn(PF_InData* in_data, PF_ParamIndex index, A_long time, PF_EffectWorld* output) {
  PF_ParamDef layer{};
  PF_Err err =
      in_data->inter.checkout_param(in_data->effect_ref, index, time, in_data->time_step, in_data->time_scale, &layer);
  if (err != PF_Err_NONE) return err;
  if (layer.u.ld.data != nullptr) {
    err = in_data->utils->blend(in_data->effect_ref, output, &layer.u.ld, 32768, output);
  }
  const PF_Err ended = in_data->inter.checkin_param(in_data->effect_ref, &layer);
  return err != PF_Err_NONE ? err : ended;
}

PF_Err draw(PF_InData* in_data, PF_EffectWorld* source, PF_EffectWorld* output) {
  PF_Err err = in_data->utils->copy(in_data->effect_ref, source, output, nullptr, nullptr);
  if (err == PF_Err_NONE) err = mixIn(in_data, 0, in_data->current_time - in_data->time_step, output);
  if (err == PF_Err_NONE) err = mixIn(in_data, 1, in_data->current_time + in_data->time_step, output);
  if (err == PF_Err_NONE) err = mixIn(in_data, 2, in_data->current_time, output);
  return err;
}

}  // namespace

extern "C" PF_Err PluginMain(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                             PF_LayerDef* output, void*) {
  switch (cmd) {
    case PF_Cmd_GLOBAL_SETUP:
      out_data->my_version = 1;
      out_data->out_flags = PF_OutFlag_WIDE_TIME_INPUT | PF_OutFlag_DEEP_COLOR_AWARE;
      return PF_Err_NONE;
    case PF_Cmd_PARAMS_SETUP: {
      out_data->num_params = 3;
      const PF_Err err = addLayer(in_data, "Ahead", 1, PF_LayerDefault_NONE);
      return err != PF_Err_NONE ? err : addLayer(in_data, "Own", 2, PF_LayerDefault_MYSELF);
    }
    case PF_Cmd_RENDER:
      return draw(in_data, &params[0]->u.ld, output);
    default:
      return PF_Err_NONE;
  }
}
