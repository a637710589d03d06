#include "effect/params/ParamGetter.h"

#include "ae/Constants.h"
#include "effect/params/ParamClasses.h"

namespace vindrel {
namespace {

bool enabledIn(PF_ParamDef** params, int32_t index) {
  return (params[index]->ui_flags & PF_PUI_DISABLED) == 0;
}

}  // namespace

PF_Err GetParamByCheckout::Get(int32_t index, PF_ParamDef* def) {
  const PF_Err err = in_data_->inter.checkout_param(in_data_->effect_ref, index, in_data_->current_time,
                                                    in_data_->time_step, in_data_->time_scale, def);
  if (err != PF_Err_NONE) *def = zeroedDef();
  return err;
}

PF_Err GetParamByCheckout::Checkin(PF_ParamDef* def) {
  return in_data_->inter.checkin_param(in_data_->effect_ref, def);
}

bool GetParamByCheckout::DeferLayers() {
  return deferLayers_;
}

bool GetParamByCheckout::IsEnabled(int32_t index) {
  return params_ == nullptr || enabledIn(params_, index);
}

PF_Err GetParamFromArray::Get(int32_t index, PF_ParamDef* def) {
  *def = *params_[index];
  return PF_Err_NONE;
}

PF_Err GetParamFromArray::Checkin(PF_ParamDef* /*def*/) {
  return PF_Err_NONE;
}

bool GetParamFromArray::DeferLayers() {
  return false;
}

bool GetParamFromArray::IsEnabled(int32_t index) {
  return enabledIn(params_, index);
}

}  // namespace vindrel
