/// "AEGP Render Queue Suite": this host has no queue, so its state is "stopped" and nothing can be put into it.
#include "ae/AegpSuites.h"
#include "host/HostState.h"
#include "host/Refusals.h"

namespace standin {

namespace {

A_Err getRenderQueueState(AEGP_RenderQueueState* state) {
  HostState* host = HostState::current();
  if (host == nullptr || state == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  if (const auto fault = host->fault("AEGP_GetRenderQueueState")) {
    return host->note("AEGP_GetRenderQueueState", "", *fault);
  }
  *state = AEGP_RenderQueueState_STOPPED;
  return host->note("AEGP_GetRenderQueueState", "stopped", PF_Err_NONE);
}

}  // namespace

const AEGP_RenderQueueSuite* renderQueueSuite() {
  static const AEGP_RenderQueueSuite suite = {refused<"AEGP_AddCompToRenderQueue">, refused<"AEGP_SetRenderQueueState">,
                                              getRenderQueueState};
  return &suite;
}

}  // namespace standin
