// One frame in flight: what the roads fill, and what all that draws the frame reads.
#pragma once

#include <cstdint>

#include "ae/Constants.h"
#include "ae/InOutData.h"
#include "effect/params/RenderParams.h"
#include "effect/share/util/EffectWorldPtr.h"

namespace vindrel {

/// Lives for its frame: on the classic road on the stack of the command, on the smart road as the host's pre-render
/// data.
struct FrameRecord {
  RenderParams params{};
  PF_InData* in_data = nullptr;
  PF_OutData* out_data = nullptr;
  PF_EffectWorld* input = nullptr;                       ///< the layer that the effect is applied to
  PF_EffectWorld* output = nullptr;                      ///< the world that the host gets back
  PF_PixelFormat pixel_format = PF_PixelFormat_INVALID;  ///< the tag of `input`; invalid while not known
  PF_LRect extent{};              ///< what the host says is visible; kept for a reader under a debugger
  AEUtil::EffectWorldPtr canvas;  ///< the world that the dots are drawn on, in layer coordinates
};

}  // namespace vindrel
