#include "effect/params/ParamRules.h"

#include <initializer_list>

#include "ae/Constants.h"
#include "ae/Suites.h"
#include "effect/params/Choices.h"
#include "effect/params/ParamObjects.h"
#include "effect/params/ParamTable.h"
#include "effect/params/SequenceRecord.h"
#include "effect/share/util/HostMemory.h"
#include "effect/share/util/SuiteCache.h"

namespace vindrel {
namespace {

/// "PF Param Utils Suite" 2 for the length of one command. No suite record has a slot for it.
class ParamUtils {
 public:
  explicit ParamUtils(SPBasicSuite* basicSuite) : basic_(basicSuite) {
    const void* table = nullptr;
    if (basic_ == nullptr ||
        basic_->AcquireSuite(kPFParamUtilsSuite, kPFParamUtilsSuiteVersion2, &table) != kSPNoError ||
        table == nullptr) {
      AEUtil::throwMissingSuite();
    }
    suite_ = static_cast<const PF_ParamUtilsSuite1*>(table);
  }
  ~ParamUtils() { basic_->ReleaseSuite(kPFParamUtilsSuite, kPFParamUtilsSuiteVersion2); }
  ParamUtils(const ParamUtils&) = delete;
  ParamUtils& operator=(const ParamUtils&) = delete;
  const PF_ParamUtilsSuite1* operator->() const { return suite_; }

 private:
  SPBasicSuite* basic_;
  const PF_ParamUtilsSuite1* suite_;
};

/// The controls of one command: their values, and their greyed state by id.
class Controls {
 public:
  Controls(PF_InData* inData, PF_ParamDef** hostParams)
      : in_data_(inData), params_(hostParams), utils_(inData->pica_basicP) {}

  /// The host is told every time, whether or not anything changes, through a copy: its own array is only read.
  void setEnabledAt(int32_t index, bool enabled) const {
    PF_ParamDef copy = *params_[index];
    if (enabled) {
      copy.ui_flags &= ~PF_PUI_DISABLED;
    } else {
      copy.ui_flags |= PF_PUI_DISABLED;
    }
    utils_->PF_UpdateParamUI(in_data_->effect_ref, index, &copy);
  }
  void setEnabled(int32_t id, bool enabled) const { setEnabledAt(HostIndexOf(id), enabled); }
  void setEnabled(std::initializer_list<int32_t> ids, bool enabled) const {
    for (const int32_t id : ids) setEnabled(id, enabled);
  }
  [[nodiscard]] int32_t item(int32_t id) const { return params_[HostIndexOf(id)]->u.pd.value; }
  [[nodiscard]] int32_t checked(int32_t id) const { return params_[HostIndexOf(id)]->u.bd.value; }

 private:
  PF_InData* in_data_;
  PF_ParamDef** params_;
  ParamUtils utils_;
};

void applyMaskRules(const Controls& controls) {
  const int32_t mask = controls.item(controlId::mask);
  controls.setEnabled(controlId::maskTargetLayer, mask == maskLayer);
  controls.setEnabled(controlId::invertMask, mask != maskNone);
}

/// What an effector that is on shows, by its own controls. Overrules the rule of the whole group.
void applyRulesInside(const Controls& controls, int n) {
  using namespace controlId;
  const int32_t map = controls.item(effectMap(n));
  const bool customMap = map == customMapItem;
  const bool ownPlace = controls.checked(fitToLayer(n)) == 0;
  controls.setEnabled({customMapLayer(n), tiling(n), fitToLayer(n), pickSourceColor(n)}, customMap);
  controls.setEnabled({size(n), falloff(n)}, !customMap);
  controls.setEnabled(angle(n), (customMap && ownPlace) || map == linearMapItem || map == linearMirrorMapItem);
  controls.setEnabled(position(n), !customMap || ownPlace);
  controls.setEnabled({absSize(n), absAspect(n), absRotation(n), absOpacity(n)}, controls.checked(absolute(n)) == 1);
  controls.setEnabled({blendMode(n), blendColor(n)}, controls.checked(color(n)) == 1);
}

void applyEffectorRules(const Controls& controls, int n) {
  using namespace controlId;
  const bool on = controls.checked(enableEffector(n)) == 1;
  controls.setEnabled({effectMap(n), angle(n), position(n), centerDotToFront(n), size(n), falloff(n), customMapLayer(n),
                       tiling(n), fitToLayer(n), pickSourceColor(n), absolute(n)},
                      on);
  // Kept as is: two ids of this run have no control, so that the step is carried out on index 0, the layer itself. The
  // host takes no harm from it (see theTwoEmptyIdsOfAnEffectorReachTheHostAsIndexZero).
  for (int32_t id = absSize(n); id <= shiftHue(n); ++id) controls.setEnabled(id, on);
  if (on) applyRulesInside(controls, n);
}

/// Remembers the first mode of "Distance Between" that a sequence shows, as what the next change is measured by.
void noteDistanceMode(PF_InData* in_data, const Controls& controls) {
  if (in_data->sequence_data == nullptr) return;
  const AEUtil::LockedHandle lock(in_data->sequence_data);
  auto* const record = static_cast<SequenceRecord*>(lock.block());
  if (record != nullptr && record->flattened == 0 && record->distanceModeKnown == 0) {
    record->distanceMode = controls.item(controlId::distanceBetween);
    record->distanceModeKnown = 1;
  }
}

/// A distance between dots of D is a distance between centres of D plus the size of a dot.
double convertedDistance(double distance, double dotSize, int32_t mode) {
  if (mode == distanceBetweenDotsItem) {
    const double between = distance - dotSize;
    return between > 0.0 ? between : 0.0;
  }
  return mode == distanceBetweenCentersItem ? distance + dotSize : distance;
}

}  // namespace

PF_Err UpdateParamsRules(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef** params) {
  const bool renderEngine = IsRenderEngine(in_data);
  const Controls controls(in_data, params);
  if (renderEngine) {
    for (int32_t index = 1; index < out_data->num_params; ++index) controls.setEnabledAt(index, false);
    return PF_Err_NONE;
  }
  applyMaskRules(controls);
  for (int effector = 1; effector <= effectorCount; ++effector) applyEffectorRules(controls, effector);
  noteDistanceMode(in_data, controls);
  return PF_Err_NONE;
}

PF_Err UserChangedRules(PF_InData* in_data, PF_OutData* /*out_data*/, PF_ParamDef** params,
                        PF_UserChangedParamExtra* extra) {
  AEUtil::SuiteScope suites(in_data->pica_basicP);
  const int32_t distanceIndex = HostIndexOf(controlId::distanceBetween);
  if (extra->param_index != distanceIndex || in_data->sequence_data == nullptr) return PF_Err_NONE;

  // The plain pair of calls, and not a scoped lock: a sequence without a mode leaves by the next line and stays locked
  // once more. Kept as is; the host unlocks it with the sequence (see aChangeBeforeTheFirstUpdateLeavesTheLock).
  auto* const record = static_cast<SequenceRecord*>(suites->handleSuite().host_lock_handle(in_data->sequence_data));
  if (record == nullptr || record->distanceModeKnown == 0) return PF_Err_NONE;

  const int32_t mode = params[distanceIndex]->u.pd.value;
  if (mode != record->distanceMode) {
    record->distanceMode = mode;
    const double dotSize = params[HostIndexOf(controlId::dotSize)]->u.fs_d.value;
    for (const int32_t id : {controlId::dotDistanceX, controlId::dotDistanceY}) {
      PF_ParamDef& distance = *params[HostIndexOf(id)];
      distance.u.fs_d.value = convertedDistance(distance.u.fs_d.value, dotSize, mode);
      // Set for an unknown mode too, where the value stayed: the host then takes the same value over.
      distance.uu.change_flags |= PF_ChangeFlag_CHANGED_VALUE;
    }
  }
  suites->handleSuite().host_unlock_handle(in_data->sequence_data);
  return PF_Err_NONE;
}

}  // namespace vindrel
