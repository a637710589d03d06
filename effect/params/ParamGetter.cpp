#include "effect/params/ParamGetter.h"

#include "ae/Constants.h"
#include "effect/params/BaseParam.h"

namespace vindrel {
namespace {

bool enabledIn(PF_ParamDef** params, int32_t index) {
  return (params[index]->ui_flags & PF_PUI_DISABLED) == 0;
}

}  // namespace

PF_Err GetParamByCheckout::Get(int32_t index, PF_ParamDef* def) {
  const PF_Err err = in_data->inter.checkout_param(in_data->effect_ref, index, in_data->current_time,
                                                   in_data->time_step, in_data->time_scale, def);
  if (err != PF_Err_NONE) {
    *def = zeroedDef();
  }
  return err;
}

PF_Err GetParamByCheckout::Checkin(PF_ParamDef* def) {
  return in_data->inter.checkin_param(in_data->effect_ref, def);
}

bool GetParamByCheckout::DeferLayers() {
  return deferLayers != 0;
}

bool GetParamByCheckout::IsEnabled(int32_t index) {
  return params == nullptr || enabledIn(params, index);
}

PF_Err GetParamFromArray::Get(int32_t index, PF_ParamDef* def) {
  *def = *params[index];
  return PF_Err_NONE;
}

PF_Err GetParamFromArray::Checkin(PF_ParamDef* /*def*/) {
  return PF_Err_NONE;
}

bool GetParamFromArray::DeferLayers() {
  return false;
}

bool GetParamFromArray::IsEnabled(int32_t index) {
  return enabledIn(params, index);
}

}  // namespace vindrel
