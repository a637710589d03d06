#include "effect/filter/BaseFilter.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "effect/filter/Roads.h"
#include "effect/options/Messages.h"
#include "effect/options/OptionDialog.h"
#include "effect/params/ParamObjects.h"
#include "effect/params/ParamRules.h"
#include "effect/params/SequenceRecord.h"
#include "effect/params/StoredDefaults.h"
#include "effect/share/util/HostMemory.h"
#include "effect/share/util/Identity.h"

namespace vindrel {

namespace {

/// A locked handle as a record. Optionally filled with the values of a new one.
class LockedRecord {
 public:
  enum Fill { asItIs, fresh };

  LockedRecord(PF_Handle handle, Fill fill) : lock_(handle) {
    if (fill == fresh && lock_.block() != nullptr) {
      *record() = SequenceRecord{};
    }
  }
  SequenceRecord* record() const { return static_cast<SequenceRecord*>(lock_.block()); }

 private:
  AEUtil::LockedHandle lock_;
};

/// Whether the handle can be locked and begins with our mark. A handle too short for the mark hasn't got it.
bool beginsWithMagic(const PF_InData& in_data, PF_Handle handle) {
  const AEUtil::LockedHandle lock(handle);
  uint32_t mark = 0;
  if (lock.block() == nullptr || in_data.utils->host_get_handle_size(handle) < sizeof(mark)) return false;
  std::memcpy(&mark, lock.block(), sizeof(mark));
  return mark == sequenceMagic;
}

}  // namespace

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

PF_Err BaseFilter::SequenceSetup(PF_InData* in_data, PF_OutData* out_data) {
  PF_Handle handle = in_data->utils->host_new_handle(sizeof(SequenceRecord));
  if (handle == nullptr) return PF_Err_OUT_OF_MEMORY;
  const LockedRecord locked(handle, LockedRecord::fresh);
  if (locked.record() == nullptr) {
    in_data->utils->host_dispose_handle(handle);
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
  }
  out_data->sequence_data = handle;
  return PF_Err_NONE;
}

PF_Err BaseFilter::SequenceSetdown(PF_InData* in_data, PF_OutData*) {
  if (in_data->sequence_data != nullptr) in_data->utils->host_dispose_handle(in_data->sequence_data);
  return PF_Err_NONE;
}

PF_Err BaseFilter::SequenceFlatten(PF_InData* in_data, PF_OutData* out_data) {
  const LockedRecord old(out_data->sequence_data, LockedRecord::asItIs);
  if (old.record() == nullptr) return PF_Err_INTERNAL_STRUCT_DAMAGED;
  // Kept as is: even the reserved fields are stored as those of a new record, so that the flat form is a constant
  // (see everyFlatteningGivesTheSameBytes).
  resetStoredFields(*old.record());
  const std::vector<uint8_t> bytes = flatForm(*old.record());
  PF_Handle handle = in_data->utils->host_new_handle(bytes.size());
  if (handle == nullptr) return PF_Err_OUT_OF_MEMORY;
  const AEUtil::LockedHandle flat(handle);
  if (flat.block() == nullptr) {
    in_data->utils->host_dispose_handle(handle);
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
  }
  std::memcpy(flat.block(), bytes.data(), bytes.size());
  out_data->sequence_data = handle;
  return PF_Err_NONE;
}

PF_Err BaseFilter::SequenceResetup(PF_InData* in_data, PF_OutData* out_data) {
  if (in_data->sequence_data == nullptr || !beginsWithMagic(*in_data, in_data->sequence_data)) {
    return BaseFilter::SequenceSetup(in_data, out_data);
  }
  const AEUtil::LockedHandle old(in_data->sequence_data);
  if (old.block() == nullptr) return PF_Err_INTERNAL_STRUCT_DAMAGED;
  const PF_Err err = BaseFilter::SequenceSetup(in_data, out_data);
  if (err != PF_Err_NONE) return err;
  const LockedRecord made(out_data->sequence_data, LockedRecord::asItIs);
  if (made.record() == nullptr) return PF_Err_INTERNAL_STRUCT_DAMAGED;
  std::vector<uint8_t> bytes(static_cast<std::size_t>(in_data->utils->host_get_handle_size(in_data->sequence_data)));
  if (!bytes.empty()) std::memcpy(bytes.data(), old.block(), bytes.size());
  parseFlatForm(bytes, *made.record());
  return PF_Err_NONE;
}

PF_Err BaseFilter::QueryDynamicFlags(PF_InData*, PF_OutData*) {
  return PF_Err_NONE;
}

PF_Err BaseFilter::RenderFrame(FrameRecord&) {
  return PF_Err_INTERNAL_STRUCT_DAMAGED;
}

}  // namespace vindrel
