#include "effect/params/ParamClasses.h"

#include <cstdio>
#include <cstring>

#include "ae/Constants.h"
#include "effect/params/ParamGetter.h"
#include "effect/params/ParamObjects.h"
#include "effect/params/StoredDefaults.h"
#include "effect/pixel/Int32.h"
#include "effect/pixel/Units.h"

namespace vindrel {
namespace {

/// A key of a colour: the control's name, a dot and the letter of the channel.
class ChannelKey {
 public:
  ChannelKey(const char* name, char channel) { std::snprintf(text_, sizeof text_, "%s.%c", name, channel); }
  [[nodiscard]] const char* c_str() const { return text_; }

 private:
  char text_[64];
};

uint8_t storedChannel(const PF_InData* in_data, const char* name, char channel, uint8_t builtIn, const char* path) {
  return static_cast<uint8_t>(storedInteger(in_data, ChannelKey(name, channel).c_str(), builtIn, path));
}

}  // namespace

BaseParam::BaseParam(const char* paramName, ParamTarget target, const PF_ParamDef& definition)
    : name(paramName),
      def(definition),
      hostIndex(nextHostIndex++),
      targetOffset(target.offset),
      targetSize(target.size) {}

PF_Err BaseParam::Fetch(void* target, ParamGetter& getter) {
  if (targetSize == 0) return PF_Err_NONE;
  PF_ParamDef& own = getter.definition(id, def);
  const PF_Err err = get(getter, own);
  if (err != PF_Err_NONE || target == nullptr) return err;
  std::memcpy(static_cast<char*>(target) + targetOffset, &own.u, targetSize);
  return PF_Err_NONE;
}

PF_Err BaseParam::Release(ParamGetter& getter) {
  // Kept as is: a greyed layer is checked in too, although it was not checked out (see
  // aGreyedLayerIsNotFetchedButGivenBack).
  return targetSize == 0 ? PF_Err_NONE : getter.Checkin(&getter.definition(id, def));
}

PF_Err BaseParam::get(ParamGetter& getter, PF_ParamDef& own) {
  const PF_Err err = getter.Get(hostIndex, &own);
  if (&own != &def) def = own;
  return err;
}

void BaseParam::SaveDefault(const char* /*settingsPath*/) {}

PF_Err BaseParam::addToHost(PF_InData* in_data, PF_ParamType type, int32_t paramId) {
  def.param_type = type;
  if (type != PF_Param_GROUP_END) in_data->utils->ansi.strcpy(def.name, name);
  def.uu.id = paramId;
  return in_data->inter.add_param(in_data->effect_ref, -1, &def);
}

void BaseParam::saveInteger(const char* settingsPath, int32_t value) const {
  storeInteger(name, value, settingsPath);
}

ParamAddColor::ParamAddColor(const ControlRow& row, const PF_ParamDef& definition)
    : BaseParam(row.name.data(), row.target, definition), defaultColor(row.color) {}

PF_Err ParamAddColor::Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) {
  PF_Pixel initial{};
  // The file holds an alpha too, but it is never read.
  initial.alpha = 255;
  initial.red = storedChannel(in_data, name, 'r', defaultColor.red, settingsPath);
  initial.green = storedChannel(in_data, name, 'g', defaultColor.green, settingsPath);
  initial.blue = storedChannel(in_data, name, 'b', defaultColor.blue, settingsPath);
  def.u.cd.value = initial;
  def.u.cd.dephault = initial;
  return addToHost(in_data, PF_Param_COLOR, paramId);
}

void ParamAddColor::SaveDefault(const char* settingsPath) {
  const PF_Pixel& value = def.u.cd.value;
  storeInteger(ChannelKey(name, 'r').c_str(), value.red, settingsPath);
  storeInteger(ChannelKey(name, 'g').c_str(), value.green, settingsPath);
  storeInteger(ChannelKey(name, 'b').c_str(), value.blue, settingsPath);
  storeInteger(ChannelKey(name, 'a').c_str(), value.alpha, settingsPath);
}

ParamAddSlider::ParamAddSlider(const ControlRow& row, const PF_ParamDef& definition)
    : BaseParam(row.name.data(), row.target, definition),
      validMin(truncateToInt32(row.valid.least)),
      validMax(truncateToInt32(row.valid.greatest)),
      sliderMin(truncateToInt32(row.slider.least)),
      sliderMax(truncateToInt32(row.slider.greatest)),
      defaultValue(truncateToInt32(row.defaultValue)) {}

PF_Err ParamAddSlider::Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) {
  const int32_t initial = storedInteger(in_data, name, defaultValue, settingsPath);
  def.u.sd.value = initial;
  def.u.sd.dephault = initial;
  def.u.sd.valid_min = validMin;
  def.u.sd.valid_max = validMax;
  def.u.sd.slider_min = sliderMin;
  def.u.sd.slider_max = sliderMax;
  def.u.sd.value_str[0] = '\0';
  def.u.sd.value_desc[0] = '\0';
  return addToHost(in_data, PF_Param_SLIDER, paramId);
}

void ParamAddSlider::SaveDefault(const char* settingsPath) {
  saveInteger(settingsPath, def.u.sd.value);
}

ParamAddFloatSlider::ParamAddFloatSlider(const ControlRow& row, const PF_ParamDef& definition)
    : BaseParam(row.name.data(), row.target, definition),
      validMin(static_cast<float>(row.valid.least)),
      validMax(static_cast<float>(row.valid.greatest)),
      sliderMin(static_cast<float>(row.slider.least)),
      sliderMax(static_cast<float>(row.slider.greatest)),
      defaultValue(static_cast<float>(row.defaultValue)),
      precision(row.precision),
      displayFlags(row.displayFlags) {}

PF_Err ParamAddFloatSlider::Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) {
  const auto initial = static_cast<float>(storedNumber(in_data, name, static_cast<double>(defaultValue), settingsPath));
  def.u.fs_d.value = static_cast<double>(initial);
  def.u.fs_d.dephault = initial;
  def.u.fs_d.valid_min = validMin;
  def.u.fs_d.valid_max = validMax;
  def.u.fs_d.slider_min = sliderMin;
  def.u.fs_d.slider_max = sliderMax;
  def.u.fs_d.precision = precision;
  def.u.fs_d.display_flags = displayFlags;
  def.u.fs_d.curve_tolerance = 0.05f;
  return addToHost(in_data, PF_Param_FLOAT_SLIDER, paramId);
}

void ParamAddFloatSlider::SaveDefault(const char* settingsPath) {
  storeNumber(name, def.u.fs_d.value, settingsPath);
}

ParamAddCheckbox::ParamAddCheckbox(const ControlRow& row, const PF_ParamDef& definition)
    : BaseParam(row.name.data(), row.target, definition),
      defaultValue(static_cast<int8_t>(truncateToInt32(row.defaultValue))) {}

PF_Err ParamAddCheckbox::Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) {
  // Only the low byte of a stored value counts; a byte from 128 up arrives as a negative value.
  const auto initial = static_cast<int8_t>(storedInteger(in_data, name, defaultValue, settingsPath));
  def.u.bd.value = initial;  // NOLINT(bugprone-signed-char-misuse): the sign is meant
  def.u.bd.dephault = initial;
  def.u.bd.u.nameptr = "";  // only the control's own name is shown
  return addToHost(in_data, PF_Param_CHECKBOX, paramId);
}

void ParamAddCheckbox::SaveDefault(const char* settingsPath) {
  saveInteger(settingsPath, def.u.bd.value);
}

ParamAddAngle::ParamAddAngle(const ControlRow& row, const PF_ParamDef& definition)
    : BaseParam(row.name.data(), row.target, definition), defaultValue(truncateToInt32(row.defaultValue * twoTo16)) {}

PF_Err ParamAddAngle::Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) {
  const double degrees = storedNumber(in_data, name, defaultValue * twoToMinus16, settingsPath);
  const PF_Fixed initial = truncateToInt32(degrees * twoTo16);
  def.u.ad.value = initial;
  def.u.ad.dephault = initial;
  return addToHost(in_data, PF_Param_ANGLE, paramId);
}

void ParamAddAngle::SaveDefault(const char* settingsPath) {
  storeNumber(name, def.u.ad.value * twoToMinus16, settingsPath);
}

ParamAddPopup::ParamAddPopup(const ControlRow& row, const PF_ParamDef& definition)
    : BaseParam(row.name.data(), row.target, definition),
      choiceCount(row.choiceCount),
      defaultValue(static_cast<int16_t>(truncateToInt32(row.defaultValue))),
      choices(row.choices) {}

PF_Err ParamAddPopup::Add(PF_InData* in_data, int32_t paramId, const char* settingsPath) {
  // The low 16 bits count; an item that the list does not have goes to the host as it stands.
  const auto initial = static_cast<int16_t>(storedInteger(in_data, name, defaultValue, settingsPath));
  def.u.pd.value = initial;
  def.u.pd.dephault = initial;
  def.u.pd.num_choices = choiceCount;
  def.u.pd.u.namesptr = choices;
  return addToHost(in_data, PF_Param_POPUP, paramId);
}

void ParamAddPopup::SaveDefault(const char* settingsPath) {
  saveInteger(settingsPath, def.u.pd.value);
}

ParamAddLayer::ParamAddLayer(const ControlRow& row, const PF_ParamDef& definition)
    : BaseParam(row.name.data(), row.target, definition), defaultLayer(truncateToInt32(row.defaultValue)) {}

PF_Err ParamAddLayer::Fetch(void* target, ParamGetter& getter) {
  if (targetSize == 0) return PF_Err_NONE;
  const auto setField = [this, target](PF_EffectWorld* world) {
    if (target != nullptr) std::memcpy(static_cast<char*>(target) + targetOffset, &world, targetSize);
  };
  setField(nullptr);
  // A greyed layer costs no check-out: the frame sees none.
  if (!getter.IsEnabled(hostIndex) || getter.DeferLayers()) return PF_Err_NONE;
  PF_ParamDef& own = getter.definition(id, def);
  const PF_Err err = get(getter, own);
  if (err != PF_Err_NONE) return err;
  setField(&own.u.ld);
  return PF_Err_NONE;
}

PF_Err ParamAddLayer::Add(PF_InData* in_data, int32_t paramId, const char* /*settingsPath*/) {
  def.u.ld.dephault = defaultLayer;
  return addToHost(in_data, PF_Param_LAYER, paramId);
}

ParamAddPoint::ParamAddPoint(const ControlRow& row, const PF_ParamDef& definition)
    : BaseParam(row.name.data(), row.target, definition), defaultX(row.pointDefault.x), defaultY(row.pointDefault.y) {}

PF_Err ParamAddPoint::Add(PF_InData* in_data, int32_t paramId, const char* /*settingsPath*/) {
  constexpr PF_Fixed wholePercent = -65536;  // the upper 16 bits
  def.u.td.x_value = defaultX & wholePercent;
  def.u.td.y_value = defaultY & wholePercent;
  def.u.td.x_dephault = defaultX & wholePercent;
  def.u.td.y_dephault = defaultY & wholePercent;
  def.u.td.restrict_bounds = 0;
  return addToHost(in_data, PF_Param_POINT, paramId);
}

ParamAddTopic::ParamAddTopic(const ControlRow& row, const PF_ParamDef& definition)
    : BaseParam(row.name.data(), ParamTarget{}, definition) {}

PF_Err ParamAddTopic::Add(PF_InData* in_data, int32_t paramId, const char* /*settingsPath*/) {
  return addToHost(in_data, PF_Param_GROUP_START, paramId);
}

ParamEndTopic::ParamEndTopic() : BaseParam("", ParamTarget{}, zeroedDef()) {}

PF_Err ParamEndTopic::Add(PF_InData* in_data, int32_t paramId, const char* /*settingsPath*/) {
  return addToHost(in_data, PF_Param_GROUP_END, paramId);
}

}  // namespace vindrel
