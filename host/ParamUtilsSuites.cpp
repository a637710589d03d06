/// "PF Param Utils Suite" 2 and 3. Parameters of this host have no keyframes: their values stand still for as long as
/// nobody sets others.
#include <cstring>

#include "ae/AppSuites.h"
#include "host/DeliverValue.h"
#include "host/HostState.h"
#include "host/Refusals.h"

namespace standin {

namespace {

// Adds bytes to a check sum (FNV-1a of 64 bits), which stands for them in a state.
void addBytes(uint64_t& sum, const void* bytes, size_t count) {
  const auto* at = static_cast<const unsigned char*>(bytes);
  for (size_t i = 0; i < count; ++i) sum = (sum ^ at[i]) * 0x100000001B3u;
}

// Which picture it is, whatever is in it.
void addAddress(uint64_t& sum, const Image* picture) {
  const auto address = reinterpret_cast<uintptr_t>(picture);
  addBytes(sum, &address, sizeof address);
}

void addValue(HostState& host, uint64_t& sum, int32_t index) {
  if (index == 0) {
    addAddress(sum, host.input.get());
    return;
  }
  const Control& control = host.controls[static_cast<size_t>(index) - 1];
  if (index > host.values.size()) return;
  const ParameterValues::Value& value = host.values.value(index);
  if (const auto* layer = std::get_if<LayerValue>(&value)) {
    addBytes(sum, &layer->source, sizeof layer->source);
    addAddress(sum, layer->picture.get());
    return;
  }
  const PF_ParamDef delivered = deliverValue(control, value, host.frame ? *host.frame : FrameRequest{});
  addBytes(sum, &delivered.u, sizeof delivered.u);
}

PF_Err getCurrentState(PF_ProgPtr ref, PF_ParamIndex index, const A_Time*, const A_Time*, PF_State* state) {
  HostState* host = HostState::current();
  if (host == nullptr || state == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "PF_GetCurrentState");
  const std::string text = "index " + std::to_string(index);
  if (const auto fault = host->fault("PF_GetCurrentState")) return host->note("PF_GetCurrentState", text, *fault);
  const auto count = static_cast<int32_t>(host->controls.size());
  if (index > count || index < PF_ParamIndex_CHECK_ALL_HONOR_EXCLUDE || index == -1) {
    host->complain(Matter::kWrongArgument, "PF_GetCurrentState of " + text);
    return host->note("PF_GetCurrentState", text, PF_Err_INVALID_INDEX);
  }
  uint64_t sum = 0xCBF29CE484222325u;
  for (int32_t i = 0; i <= count; ++i) {
    const bool layer = i == 0 || host->controls[static_cast<size_t>(i) - 1].type == PF_Param_LAYER;
    const bool excluded = i > 0 && (host->controls[static_cast<size_t>(i) - 1].definition.flags &
                                    PF_ParamFlag_EXCLUDE_FROM_HAVE_INPUTS_CHANGED) != 0;
    const bool wanted = index >= 0                                             ? i == index
                        : index == PF_ParamIndex_CHECK_ALL_EXCEPT_LAYER_PARAMS ? !layer
                        : index == PF_ParamIndex_CHECK_ALL_HONOR_EXCLUDE       ? !excluded
                                                                               : true;
    if (wanted) addValue(*host, sum, i);
  }
  *state = PF_State{};
  std::memcpy(state->reservedAL, &sum, sizeof sum);
  return host->note("PF_GetCurrentState", text, PF_Err_NONE);
}

PF_Err areStatesIdentical(PF_ProgPtr ref, const PF_State* one, const PF_State* other, A_Boolean* same) {
  HostState* host = HostState::current();
  if (host == nullptr || one == nullptr || other == nullptr || same == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "PF_AreStatesIdentical");
  if (const auto fault = host->fault("PF_AreStatesIdentical")) {
    return host->note("PF_AreStatesIdentical", "", *fault);
  }
  *same = std::memcmp(one->reservedAL, other->reservedAL, sizeof one->reservedAL) == 0 ? 1 : 0;
  return host->note("PF_AreStatesIdentical", *same != 0 ? "yes" : "no", PF_Err_NONE);
}

/// What a question about one parameter does first: the answer is given only for a parameter that is there.
template <class Work>
PF_Err ofParameter(std::string_view service, PF_ProgPtr ref, PF_ParamIndex index, bool usable, Work&& work) {
  HostState* host = HostState::current();
  if (host == nullptr || !usable) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, service);
  const std::string text = "index " + std::to_string(index);
  if (const auto fault = host->fault(service)) return host->note(service, text, *fault);
  if (index < 0 || index > static_cast<int32_t>(host->controls.size())) {
    host->complain(Matter::kWrongArgument, std::string(service) + " of " + text);
    return host->note(service, text, PF_Err_INVALID_INDEX);
  }
  return host->note(service, text, work());
}

PF_Err isIdenticalCheckout(PF_ProgPtr ref, PF_ParamIndex index, A_long, A_long, A_u_long, A_long, A_long, A_u_long,
                           PF_Boolean* identical) {
  return ofParameter("PF_IsIdenticalCheckout", ref, index, identical != nullptr, [&] {
    *identical = 1;
    return PF_Err_NONE;
  });
}

PF_Err findKeyframeTime(PF_ProgPtr ref, PF_ParamIndex index, A_long, A_u_long, PF_TimeDir, PF_Boolean* found,
                        PF_KeyIndex* keyIndex, A_long*, A_u_long*) {
  return ofParameter("PF_FindKeyframeTime", ref, index, found != nullptr, [&] {
    *found = 0;
    if (keyIndex != nullptr) *keyIndex = PF_KeyIndex_NONE;
    return PF_Err_NONE;
  });
}

PF_Err getKeyframeCount(PF_ProgPtr ref, PF_ParamIndex index, PF_KeyIndex* count) {
  return ofParameter("PF_GetKeyframeCount", ref, index, count != nullptr, [&] {
    *count = PF_KeyIndex_NONE;
    return PF_Err_NONE;
  });
}

// There is no keyframe to be had by any number.
PF_Err checkoutKeyframe(PF_ProgPtr ref, PF_ParamIndex index, PF_KeyIndex, A_long*, A_u_long*, PF_ParamDef*) {
  return ofParameter("PF_CheckoutKeyframe", ref, index, true, [] { return PF_Err_INVALID_INDEX; });
}

PF_Err keyIndexToTime(PF_ProgPtr ref, PF_ParamIndex index, PF_KeyIndex, A_long*, A_u_long*) {
  return ofParameter("PF_KeyIndexToTime", ref, index, true, [] { return PF_Err_INVALID_INDEX; });
}

}  // namespace

const PF_ParamUtilsSuite1* paramUtilsSuite2() {
  static const PF_ParamUtilsSuite1 suite = {updateParamUi,
                                            refused<"PF_GetCurrentStateObsolete">,
                                            refused<"PF_HasParamChangedObsolete">,
                                            refused<"PF_HaveInputsChangedOverTimeSpanObsolete">,
                                            isIdenticalCheckout,
                                            findKeyframeTime,
                                            getKeyframeCount,
                                            checkoutKeyframe,
                                            refused<"PF_CheckinKeyframe">,
                                            keyIndexToTime};
  return &suite;
}

const PF_ParamUtilsSuite3* paramUtilsSuite3() {
  static const PF_ParamUtilsSuite3 suite = {
      updateParamUi,    getCurrentState,  areStatesIdentical, isIdenticalCheckout,
      findKeyframeTime, getKeyframeCount, checkoutKeyframe,   refused<"PF_CheckinKeyframe">,
      keyIndexToTime};
  return &suite;
}

}  // namespace standin
