// The halftone filter: the one filter that the module makes.
#pragma once

#include "effect/filter/BaseFilter.h"

namespace vindrel {

class CustomFilter final : public BaseFilter {
 public:
  PF_Err Render(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output) override;
  PF_Err SmartPreRender(PF_InData* in_data, PF_OutData* out_data, PF_PreRenderExtra* extra) override;
  PF_Err SmartRender(PF_InData* in_data, PF_OutData* out_data, PF_SmartRenderExtra* extra) override;

  /// Asks for wide time input only while "Random Interval" isn't 0.
  PF_Err QueryDynamicFlags(PF_InData* in_data, PF_OutData* out_data) override;

  /// Draws at the depth of the frame's pixel format; 514 for a format that isn't one of the three.
  PF_Err RenderFrame(FrameRecord& frame) override;
};

}  // namespace vindrel
