#include "effect/params/BaseParam.h"

#include <cstring>

#include "ae/Constants.h"
#include "effect/params/ParamGetter.h"
#include "effect/params/ParamTable.h"
#include "effect/params/StoredDefaults.h"

namespace vindrel {

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

}  // namespace vindrel
