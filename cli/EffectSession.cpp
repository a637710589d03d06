#include "cli/EffectSession.h"

#include <cstring>
#include <system_error>

#include "ae/Constants.h"
#include "cli/ImageFile.h"
#include "cli/NearestName.h"
#include "cli/UserError.h"

namespace cli {
namespace {

namespace fs = std::filesystem;
using standin::ByIndex;

double fromFixed(PF_Fixed fixed) {
  return static_cast<double>(fixed) / 65536.0;
}

standin::LoadedModule load(const fs::path& module) {
  std::error_code ignored;
  if (!fs::exists(module, ignored)) throw UserError("no module '" + module.string() + "'; --module names another one");
  if (fs::is_directory(module, ignored)) throw UserError("'" + module.string() + "' is a folder, not a module");
  try {
    return standin::LoadedModule(fs::absolute(module).string());
  } catch (const std::runtime_error& error) {
    throw UserError(error.what());
  }
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
      facts.kind = ControlKind::colour;
      facts.defaultColour = {u.cd.dephault.red, u.cd.dephault.green, u.cd.dephault.blue};
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

void apply(const ControlFacts& control, const ControlValue& value, standin::ParameterValues& values) {
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
    case ControlKind::colour: {
      const Colour colour = std::get<Colour>(value);
      values.setColor(key, PF_Pixel{255, colour.red, colour.green, colour.blue});
      break;
    }
    case ControlKind::place: {
      const Place place = std::get<Place>(value);
      if (place.percent)
        values.setPointPercent(key, place.x, place.y);
      else
        values.setPoint(key, place.x, place.y);
      break;
    }
    case ControlKind::layer:
    case ControlKind::groupStart:
    case ControlKind::groupEnd:
    case ControlKind::other:
      break;  // parseControlValue gives no value for these
  }
}

standin::LayerValue layerFrom(const ControlFacts& control, const std::string& text) {
  if (control.kind != ControlKind::layer) {
    throw UserError("'" + control.name + "' is a " + kindName(control.kind) + ", not a layer; give it by --set");
  }
  if (text == "source") return standin::LayerValue::itself();
  if (text == "none") return standin::LayerValue::none();
  if (text.empty()) throw UserError("'" + control.name + "' takes a picture's file, source or none");
  return standin::LayerValue::of(readPicture(text));
}

/// The control of this name, of whatever kind, so that a wrong kind can be told; a misspelt name is answered with the
/// nearest layer, since nothing else was meant.
const ControlFacts& findLayer(const std::vector<ControlFacts>& controls, const std::string& name) {
  std::vector<std::string> layers;
  for (const ControlFacts& control : controls) {
    if (control.kind == ControlKind::layer) layers.push_back(control.name);
    if (control.kind != ControlKind::groupEnd && equalIgnoringCase(control.name, name)) return control;
  }
  throw UserError("no layer '" + name + "'" + suggestion(name, layers, "; the layers are " + listed(layers, "and")));
}

void applyAll(const std::vector<ControlFacts>& controls, const std::vector<Assignment>& sets,
              const std::vector<Assignment>& layers, standin::ParameterValues& values) {
  for (const Assignment& set : sets) {
    const ControlFacts& control = findControl(controls, set.name);
    apply(control, parseControlValue(control, set.text), values);
  }
  for (const Assignment& layer : layers) {
    const ControlFacts& control = findLayer(controls, layer.name);
    values.setLayer(ByIndex{control.index}, layerFrom(control, layer.text));
  }
}

}  // namespace

EffectSession::EffectSession(const fs::path& module) : module_(load(module)), host_(module_) {
  check(host_.start(), "while it was set up");
  controls_ = factsOf(host_.controls());
}

EffectSession::~EffectSession() {
  // The work is done by now; an effect that fails at its own end takes nothing away from it.
  static_cast<void>(host_.finish());
}

standin::ParameterValues EffectSession::values(const Preset* preset, const std::string& presetName,
                                               const std::vector<Assignment>& sets,
                                               const std::vector<Assignment>& layers) const {
  standin::ParameterValues values = host_.defaults();
  if (preset != nullptr) {
    try {
      applyAll(controls_, preset->controls, preset->layers, values);
    } catch (const UserError& error) {
      throw UserError("preset '" + presetName + "': " + error.what());
    }
  }
  applyAll(controls_, sets, layers, values);
  return values;
}

void EffectSession::check(PF_Err code, const std::string& during) const {
  if (code == PF_Err_NONE) return;
  std::string text = "the effect failed " + during + ": " + errorName(code);
  const PF_OutData& out = host_.outData();
  const std::size_t length = strnlen(out.return_msg, sizeof out.return_msg);
  if (length > 0) text += ", \"" + std::string(out.return_msg, length) + "\"";
  throw EffectError(text);
}

std::vector<ControlFacts> factsOf(const std::vector<standin::Control>& controls) {
  std::vector<ControlFacts> facts;
  facts.reserve(controls.size());
  for (const standin::Control& control : controls) facts.push_back(factsOf(control));
  return facts;
}

std::string shownSetting(const ControlFacts& control, const standin::ParameterValues& values) {
  const standin::ParameterValues::Value& value = values.value(control.index);
  if (const auto* whole = std::get_if<int32_t>(&value)) return shownValue(control, *whole);
  if (const auto* number = std::get_if<double>(&value)) return shownValue(control, *number);
  if (const auto* colour = std::get_if<PF_Pixel>(&value)) {
    return shownValue(control, Colour{colour->red, colour->green, colour->blue});
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

std::string errorName(PF_Err code) {
  struct NamedError {
    PF_Err code;
    const char* name;
  };
  constexpr NamedError namedErrors[] = {
      {PF_Err_OUT_OF_MEMORY, "PF_Err_OUT_OF_MEMORY"},
      {PF_Err_INTERNAL_STRUCT_DAMAGED, "PF_Err_INTERNAL_STRUCT_DAMAGED"},
      {PF_Err_INVALID_INDEX, "PF_Err_INVALID_INDEX"},
      {PF_Err_UNRECOGNIZED_PARAM_TYPE, "PF_Err_UNRECOGNIZED_PARAM_TYPE"},
      {PF_Err_INVALID_CALLBACK, "PF_Err_INVALID_CALLBACK"},
      {PF_Err_BAD_CALLBACK_PARAM, "PF_Err_BAD_CALLBACK_PARAM"},
      {PF_Interrupt_CANCEL, "PF_Interrupt_CANCEL"},
      {PF_Err_CANNOT_PARSE_KEYFRAME_TEXT, "PF_Err_CANNOT_PARSE_KEYFRAME_TEXT"},
  };
  for (const NamedError& named : namedErrors) {
    if (named.code == code) return std::string(named.name) + " (" + std::to_string(code) + ")";
  }
  return "error " + std::to_string(code);
}

}  // namespace cli
