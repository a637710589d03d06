// A control of each kind, whose values are drawn as the pixels of the first row: each value's four bytes, the highest
// first, are alpha, red, green and blue. What the frame comes to besides is the user's choice.
#include <cstring>

#include "ModuleParts.h"

namespace {

enum Outcome : A_long { kDraws = 1, kFails, kDrawsNothing, kCantBeEnded };
constexpr PF_ParamIndex kOutcomeIndex = 8;

A_long outcomeOfLastFrame = kDraws;

PF_ParamDef named(PF_ParamType type, const char* name, A_long id) {
  PF_ParamDef def{};
  def.param_type = type;
  def.uu.id = id;
  std::strcpy(def.name, name);
  return def;
}

PF_Err paramsSetup(PF_InData* in_data, PF_OutData* out_data) {
  PF_ParamDef outcome = named(PF_Param_POPUP, "Outcome", 8);
  outcome.u.pd.u.namesptr = "Draws|Fails|Draws nothing|Can't be ended";
  outcome.u.pd.num_choices = 4;
  outcome.u.pd.dephault = kDraws;
  PF_ParamDef button = named(PF_Param_BUTTON, "Button", 11);
  button.u.button_d.u.namesptr = "Press";
  PF_ParamDef definitions[] = {named(PF_Param_SLIDER, "Whole", 1),
                               named(PF_Param_FIX_SLIDER, "Fixed", 2),
                               named(PF_Param_FLOAT_SLIDER, "Float", 3),
                               named(PF_Param_ANGLE, "Angle", 4),
                               named(PF_Param_CHECKBOX, "Check", 5),
                               named(PF_Param_COLOR, "Color", 6),
                               named(PF_Param_POINT, "Point", 7),
                               outcome,
                               named(PF_Param_LAYER, "Layer", 9),
                               named(PF_Param_GROUP_START, "Group", 10),
                               button,
                               named(PF_Param_GROUP_END, "", 12)};
  for (PF_ParamDef& def : definitions) {
    if (const PF_Err err = in_data->inter.add_param(in_data->effect_ref, -1, &def)) return err;
  }
  out_data->num_params = 13;
  return PF_Err_NONE;
}

PF_Pixel pixelOf(A_long value) {
  const auto byte = [&](int place) {
    return static_cast<A_u_char>(static_cast<A_u_long>(value) >> (8 * place) & 0xFF);
  };
  return {byte(3), byte(2), byte(1), byte(0)};
}

PF_Err render(PF_ParamDef* params[], PF_LayerDef* output) {
  outcomeOfLastFrame = params[kOutcomeIndex]->u.pd.value;
  if (outcomeOfLastFrame == kFails) return PF_Err_INTERNAL_STRUCT_DAMAGED;
  const PF_Pixel values[] = {pixelOf(params[1]->u.sd.value),
                             pixelOf(params[2]->u.fd.value),
                             pixelOf(static_cast<A_long>(params[3]->u.fs_d.value * 65536.0)),
                             pixelOf(params[4]->u.ad.value),
                             pixelOf(params[5]->u.bd.value),
                             params[6]->u.cd.value,
                             pixelOf(params[7]->u.td.x_value),
                             pixelOf(params[7]->u.td.y_value),
                             pixelOf(outcomeOfLastFrame)};
  if (output->width * output->height != 9) return PF_Err_BAD_CALLBACK_PARAM;
  std::memcpy(output->data, values, sizeof values);
  return PF_Err_NONE;
}

}  // namespace

extern "C" PF_Err EffectMain(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                             PF_LayerDef* output, void*) {
  switch (cmd) {
    case PF_Cmd_GLOBAL_SETUP:
      out_data->my_version = 1;
      return PF_Err_NONE;
    case PF_Cmd_PARAMS_SETUP:
      return paramsSetup(in_data, out_data);
    case PF_Cmd_FRAME_SETUP:
      if (params[kOutcomeIndex]->u.pd.value == kDrawsNothing) out_data->width = out_data->height = 0;
      return PF_Err_NONE;
    case PF_Cmd_RENDER:
      return render(params, output);
    case PF_Cmd_GLOBAL_SETDOWN:
      return outcomeOfLastFrame == kCantBeEnded ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
    default:
      return PF_Err_NONE;
  }
}
