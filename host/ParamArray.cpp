#include "host/DeliverValue.h"
#include "host/StandInHost.h"

namespace standin {

ParamArray::ParamArray(const std::vector<Control>& controls, const ParameterValues& values, const FrameRequest& frame,
                       const PF_EffectWorld& input) {
  definitions_.reserve(controls.size() + 1);
  PF_ParamDef layer{};
  layer.param_type = PF_Param_LAYER;
  layer.u.ld = input;
  definitions_.push_back(layer);
  const bool valued = values.size() == static_cast<int32_t>(controls.size());
  const ParameterValues defaults = valued ? ParameterValues() : ParameterValues(controls);
  for (const Control& control : controls) {
    definitions_.push_back(deliverValue(control, (valued ? values : defaults).value(control.index), frame));
  }
  for (PF_ParamDef& definition : definitions_) pointers_.push_back(&definition);
  pointers_.push_back(nullptr);
}

}  // namespace standin
