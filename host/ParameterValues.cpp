#include "host/ParameterValues.h"

#include <algorithm>
#include <stdexcept>

namespace standin {

namespace {

ParameterValues::Value defaultOf(const Control& control) {
  const PF_ParamDefUnion& u = control.definition.u;
  switch (control.type) {
    case PF_Param_LAYER:
      return u.ld.dephault == PF_LayerDefault_MYSELF ? LayerValue::itself() : LayerValue::none();
    case PF_Param_SLIDER:
      return int32_t{u.sd.dephault};
    case PF_Param_FIX_SLIDER:
      return static_cast<double>(u.fd.dephault) / 65536.0;
    case PF_Param_ANGLE:
      return static_cast<double>(u.ad.dephault) / 65536.0;
    case PF_Param_CHECKBOX:
      return int32_t{u.bd.dephault};
    case PF_Param_COLOR:
      return u.cd.dephault;
    case PF_Param_POINT:
      return PointValue{static_cast<double>(u.td.x_dephault) / 65536.0, static_cast<double>(u.td.y_dephault) / 65536.0,
                        true};
    case PF_Param_POPUP:
      return int32_t{u.pd.dephault};
    case PF_Param_FLOAT_SLIDER:
      return static_cast<double>(u.fs_d.dephault);
    default:
      return std::monostate{};
  }
}

}  // namespace

const Control* ControlKey::find(const std::vector<Control>& controls) const {
  const auto found = std::find_if(controls.begin(), controls.end(), [&](const Control& control) {
    switch (kind_) {
      case Kind::kName:
        return control.hasValue() && control.name == name_;
      case Kind::kId:
        return control.id == number_;
      default:
        return control.index == number_;
    }
  });
  return found == controls.end() ? nullptr : &*found;
}

std::string ControlKey::text() const {
  switch (kind_) {
    case Kind::kName:
      return "\"" + name_ + "\"";
    case Kind::kId:
      return "id " + std::to_string(number_);
    default:
      return "index " + std::to_string(number_);
  }
}

ParameterValues::ParameterValues(const std::vector<Control>& controls) : controls_(controls) {
  values_.reserve(controls.size());
  for (const Control& control : controls) values_.push_back(defaultOf(control));
}

const Control& ParameterValues::find(const ControlKey& key, std::initializer_list<PF_ParamType> kinds) const {
  const Control* control = key.find(controls_);
  if (control == nullptr) throw std::out_of_range("there is no control " + key.text());
  if (std::find(kinds.begin(), kinds.end(), control->type) == kinds.end()) {
    throw std::invalid_argument("the control " + key.text() + " is of the kind " + kindName(control->type) +
                                ", which takes no such value");
  }
  return *control;
}

template <class T>
void ParameterValues::set(const ControlKey& key, std::initializer_list<PF_ParamType> kinds, T value) {
  setValue(find(key, kinds).index, Value(std::move(value)));
}

template <class T>
const T& ParameterValues::get(const ControlKey& key, std::initializer_list<PF_ParamType> kinds) const {
  return std::get<T>(value(find(key, kinds).index));
}

void ParameterValues::setNumber(const ControlKey& key, double value) {
  const Control& control = find(key, {PF_Param_SLIDER, PF_Param_FIX_SLIDER, PF_Param_FLOAT_SLIDER});
  if (control.type == PF_Param_SLIDER) {
    setValue(control.index, static_cast<int32_t>(value));
  } else {
    setValue(control.index, value);
  }
}
void ParameterValues::setPopup(const ControlKey& key, int32_t item) {
  set(key, {PF_Param_POPUP}, item);
}
void ParameterValues::setCheckbox(const ControlKey& key, bool on) {
  set(key, {PF_Param_CHECKBOX}, int32_t{on});
}
void ParameterValues::setAngle(const ControlKey& key, double degrees) {
  set(key, {PF_Param_ANGLE}, degrees);
}
void ParameterValues::setColor(const ControlKey& key, PF_Pixel color) {
  set(key, {PF_Param_COLOR}, color);
}
void ParameterValues::setPoint(const ControlKey& key, double x, double y) {
  set(key, {PF_Param_POINT}, PointValue{x, y, false});
}
void ParameterValues::setPointPercent(const ControlKey& key, double x, double y) {
  set(key, {PF_Param_POINT}, PointValue{x, y, true});
}
void ParameterValues::setLayer(const ControlKey& key, LayerValue value) {
  set(key, {PF_Param_LAYER}, std::move(value));
}

double ParameterValues::number(const ControlKey& key) const {
  const Control& control = find(key, {PF_Param_SLIDER, PF_Param_FIX_SLIDER, PF_Param_FLOAT_SLIDER});
  const Value& held = value(control.index);
  return control.type == PF_Param_SLIDER ? static_cast<double>(std::get<int32_t>(held)) : std::get<double>(held);
}
int32_t ParameterValues::popup(const ControlKey& key) const {
  return get<int32_t>(key, {PF_Param_POPUP});
}
bool ParameterValues::checkbox(const ControlKey& key) const {
  return get<int32_t>(key, {PF_Param_CHECKBOX}) != 0;
}
double ParameterValues::angle(const ControlKey& key) const {
  return get<double>(key, {PF_Param_ANGLE});
}
PF_Pixel ParameterValues::color(const ControlKey& key) const {
  return get<PF_Pixel>(key, {PF_Param_COLOR});
}
PointValue ParameterValues::point(const ControlKey& key) const {
  return get<PointValue>(key, {PF_Param_POINT});
}
LayerValue ParameterValues::layer(const ControlKey& key) const {
  return get<LayerValue>(key, {PF_Param_LAYER});
}

}  // namespace standin
