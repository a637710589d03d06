#include "cli/HostControls.h"

#include "ae/Constants.h"

namespace cli {
namespace {

using standin::ByIndex;

double fromFixed(PF_Fixed fixed) {
  return static_cast<double>(fixed) / 65536.0;
}

void takeSlider(const PF_ParamDefUnion& u, PF_ParamType type, ControlFacts& facts) {
  if (type == PF_Param_FLOAT_SLIDER) {
    facts.kind = ControlKind::number;
    // The limits are single precision; through text they come out as the decimals that were meant.
    facts.validMin = static_cast<double>(u.fs_d.valid_min);
    facts.validMax = static_cast<double>(u.fs_d.valid_max);
    facts.sliderMin = static_cast<double>(u.fs_d.slider_min);
    facts.sliderMax = static_cast<double>(u.fs_d.slider_max);
    facts.defaultNumber = static_cast<double>(u.fs_d.dephault);
    facts.precision = u.fs_d.precision;
    facts.percent = (u.fs_d.display_flags & PF_ValueDisplayFlag_PERCENT) != 0;
  } else {
    facts.kind = ControlKind::wholeNumber;
    facts.validMin = u.sd.valid_min;
    facts.validMax = u.sd.valid_max;
    facts.sliderMin = u.sd.slider_min;
    facts.sliderMax = u.sd.slider_max;
    facts.defaultNumber = u.sd.dephault;
  }
}

ControlFacts factsOf(const standin::Control& control) {
  ControlFacts facts;
  facts.index = control.index;
  facts.id = control.id;
  facts.name = control.name;
  facts.flags = control.definition.flags;
  facts.uiFlags = control.uiFlags;
  const PF_ParamDefUnion& u = control.definition.u;
  switch (control.type) {
    case PF_Param_SLIDER:
    case PF_Param_FLOAT_SLIDER:
      takeSlider(u, control.type, facts);
      break;
    case PF_Param_ANGLE:
      facts.kind = ControlKind::angle;
      facts.defaultNumber = fromFixed(u.ad.dephault);
      break;
    case PF_Param_CHECKBOX:
      facts.kind = ControlKind::checkBox;
      facts.defaultNumber = u.bd.dephault != 0 ? 1.0 : 0.0;
      break;
    case PF_Param_COLOR:
      facts.kind = ControlKind::color;
      facts.defaultColor = {u.cd.dephault.red, u.cd.dephault.green, u.cd.dephault.blue};
      break;
    case PF_Param_POINT:
      facts.kind = ControlKind::place;
      facts.defaultXPercent = fromFixed(u.td.x_dephault);
      facts.defaultYPercent = fromFixed(u.td.y_dephault);
      break;
    case PF_Param_POPUP:
      facts.kind = ControlKind::choice;
      facts.items = control.choices;
      facts.declaredItems = u.pd.num_choices;
      facts.defaultNumber = u.pd.dephault;
      break;
    case PF_Param_LAYER:
      facts.kind = ControlKind::layer;
      facts.defaultNumber = u.ld.dephault;
      break;
    case PF_Param_GROUP_START:
      facts.kind = ControlKind::groupStart;
      break;
    case PF_Param_GROUP_END:
      facts.kind = ControlKind::groupEnd;
      break;
    default:
      facts.kind = ControlKind::other;
      break;
  }
  return facts;
}

}  // namespace

std::vector<ControlFacts> factsOf(const std::vector<standin::Control>& controls) {
  std::vector<ControlFacts> facts;
  facts.reserve(controls.size());
  for (const standin::Control& control : controls) facts.push_back(factsOf(control));
  return facts;
}

void setValue(const ControlFacts& control, const ControlValue& value, standin::ParameterValues& values) {
  const ByIndex key{control.index};
  switch (control.kind) {
    case ControlKind::wholeNumber:
      values.setNumber(key, std::get<int32_t>(value));
      break;
    case ControlKind::number:
      values.setNumber(key, std::get<double>(value));
      break;
    case ControlKind::angle:
      values.setAngle(key, std::get<double>(value));
      break;
    case ControlKind::checkBox:
      values.setCheckbox(key, std::get<int32_t>(value) != 0);
      break;
    case ControlKind::choice:
      values.setPopup(key, std::get<int32_t>(value));
      break;
    case ControlKind::color: {
      const Color color = std::get<Color>(value);
      values.setColor(key, PF_Pixel{255, color.red, color.green, color.blue});
      break;
    }
    case ControlKind::place: {
      const Place place = std::get<Place>(value);
      if (place.percent) {
        values.setPointPercent(key, place.x, place.y);
      } else {
        values.setPoint(key, place.x, place.y);
      }
      break;
    }
    case ControlKind::layer:
    case ControlKind::groupStart:
    case ControlKind::groupEnd:
    case ControlKind::other:
      break;  // parseControlValue gives no value for these
  }
}

std::string shownSetting(const ControlFacts& control, const standin::ParameterValues& values) {
  const standin::ParameterValues::Value& value = values.value(control.index);
  if (const auto* whole = std::get_if<int32_t>(&value)) return shownValue(control, *whole);
  if (const auto* number = std::get_if<double>(&value)) return shownValue(control, *number);
  if (const auto* color = std::get_if<PF_Pixel>(&value)) {
    return shownValue(control, Color{color->red, color->green, color->blue});
  }
  if (const auto* point = std::get_if<standin::PointValue>(&value)) {
    return shownValue(control, Place{point->x, point->y, point->percent});
  }
  if (const auto* layer = std::get_if<standin::LayerValue>(&value)) {
    switch (layer->source) {
      case standin::LayerValue::Source::kNone:
        return "none";
      case standin::LayerValue::Source::kItself:
        return "source";
      case standin::LayerValue::Source::kPicture:
        return "a picture";
    }
  }
  return {};
}

}  // namespace cli
