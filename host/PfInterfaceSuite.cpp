/// "AEGP PF Interface Suite": the layer that an effect lies on, and its time. The layer begins with its composition and
/// is not stretched; there is no camera.
#include "ae/AegpSuites.h"
#include "host/HostState.h"
#include "host/Refusals.h"

namespace standin {

namespace {

template <class Work>
A_Err ofEffect(std::string_view service, PF_ProgPtr ref, bool usable, Work&& work) {
  HostState* host = HostState::current();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, service);
  if (const auto fault = host->fault(service)) return host->note(service, "", *fault);
  if (usable) work(*host);
  return host->note(service, "", usable ? PF_Err_NONE : PF_Err_BAD_CALLBACK_PARAM);
}

// A layer is known by an address and has nothing behind it that an effect may open.
A_Err getEffectLayer(PF_ProgPtr ref, AEGP_LayerH* layer) {
  return ofEffect("AEGP_GetEffectLayer", ref, layer != nullptr, [&](HostState& host) { *layer = &host.layerMark; });
}

A_Err convertEffectToCompTime(PF_ProgPtr ref, A_long time, A_u_long scale, A_Time* compTime) {
  return ofEffect("AEGP_ConvertEffectToCompTime", ref, compTime != nullptr, [&](HostState&) {
    *compTime = {time, scale};
  });
}

A_Err getEffectCamera(PF_ProgPtr ref, const A_Time*, AEGP_LayerH* camera) {
  return ofEffect("AEGP_GetEffectCamera", ref, camera != nullptr, [&](HostState&) { *camera = nullptr; });
}

}  // namespace

const AEGP_PFInterfaceSuite* pfInterfaceSuite() {
  // A reference to an effect would have to be given back to a suite that this host has not.
  static const AEGP_PFInterfaceSuite suite = {getEffectLayer, refused<"AEGP_GetNewEffectForEffect">,
                                              convertEffectToCompTime, getEffectCamera,
                                              refused<"AEGP_GetEffectCameraMatrix">};
  return &suite;
}

}  // namespace standin
