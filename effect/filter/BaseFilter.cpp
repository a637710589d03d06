#include "effect/filter/BaseFilter.h"

#include "effect/filter/Roads.h"
#include "effect/options/Messages.h"
#include "effect/options/OptionDialog.h"
#include "effect/params/ParamRules.h"
#include "effect/params/ParamTable.h"
#include "effect/params/StoredDefaults.h"
#include "effect/share/util/Identity.h"

namespace vindrel {

PF_Err BaseFilter::Dispatch(PF_Cmd command, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                            PF_LayerDef* output, void* extra) {
  switch (command) {
    case PF_Cmd_ABOUT:
      return About(in_data, out_data, params, output);
    case PF_Cmd_GLOBAL_SETUP:
      return GlobalSetup(in_data, out_data, params, output);
    case PF_Cmd_GLOBAL_SETDOWN:
      return GlobalSetdown(in_data, out_data, params, output);
    case PF_Cmd_PARAMS_SETUP:
      return ParamsSetup(in_data, out_data, params, output);
    case PF_Cmd_SEQUENCE_SETUP:
      return SequenceSetup(in_data, out_data);
    case PF_Cmd_SEQUENCE_RESETUP:
      return SequenceResetup(in_data, out_data);
    case PF_Cmd_SEQUENCE_FLATTEN:
      return SequenceFlatten(in_data, out_data);
    case PF_Cmd_SEQUENCE_SETDOWN:
      return SequenceSetdown(in_data, out_data);
    case PF_Cmd_DO_DIALOG:
      DoOptionDialog(in_data, params);
      return PF_Err_NONE;
    case PF_Cmd_RENDER:
      return Render(in_data, out_data, params, output);
    case PF_Cmd_USER_CHANGED_PARAM:
      return UserChangedParam(in_data, out_data, params, output, static_cast<PF_UserChangedParamExtra*>(extra));
    case PF_Cmd_UPDATE_PARAMS_UI:
      return UpdateParamsUi(in_data, out_data, params, output);
    case PF_Cmd_QUERY_DYNAMIC_FLAGS:
      return QueryDynamicFlags(in_data, out_data);
    case PF_Cmd_SMART_PRE_RENDER:
      return SmartPreRender(in_data, out_data, static_cast<PF_PreRenderExtra*>(extra));
    case PF_Cmd_SMART_RENDER:
      return SmartRender(in_data, out_data, static_cast<PF_SmartRenderExtra*>(extra));
    default:
      // Frame set-up and set-down, sound, events: the effect keeps nothing of its own for them. Newer hosts know
      // commands above the last one here.
      return PF_Err_NONE;
  }
}

PF_Err BaseFilter::About(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output) {
  return vindrel::About(in_data, out_data, params, output);
}

PF_Err BaseFilter::GlobalSetup(PF_InData*, PF_OutData* out_data, PF_ParamDef*[], PF_LayerDef*) {
  out_data->my_version = effectVersion;
  out_data->out_flags = globalOutFlags;
  out_data->out_flags2 = globalOutFlags2;
  return PF_Err_NONE;
}

PF_Err BaseFilter::GlobalSetdown(PF_InData*, PF_OutData*, PF_ParamDef*[], PF_LayerDef*) {
  return PF_Err_NONE;
}

PF_Err BaseFilter::ParamsSetup(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef*[], PF_LayerDef*) {
  char path[settingsPathSize] = {};
  const PF_Err err = AddAll(in_data, PrepareStoredDefaults(in_data, path));
  out_data->num_params = nextHostIndex;
  return err;
}

PF_Err BaseFilter::UserChangedParam(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef*,
                                    PF_UserChangedParamExtra* extra) {
  return UserChangedRules(in_data, out_data, params, extra);
}

PF_Err BaseFilter::UpdateParamsUi(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef*) {
  return UpdateParamsRules(in_data, out_data, params);
}

PF_Err BaseFilter::Render(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output) {
  return renderClassic(*this, RoadOf::baseFilter, in_data, out_data, params, output);
}

PF_Err BaseFilter::SmartPreRender(PF_InData* in_data, PF_OutData*, PF_PreRenderExtra* extra) {
  return preRenderSmart(RoadOf::baseFilter, in_data, extra);
}

PF_Err BaseFilter::SmartRender(PF_InData* in_data, PF_OutData* out_data, PF_SmartRenderExtra* extra) {
  return renderSmart(*this, RoadOf::baseFilter, in_data, out_data, extra);
}

PF_Err BaseFilter::QueryDynamicFlags(PF_InData*, PF_OutData*) {
  return PF_Err_NONE;
}

PF_Err BaseFilter::RenderFrame(FrameRecord&) {
  return PF_Err_INTERNAL_STRUCT_DAMAGED;
}

}  // namespace vindrel
