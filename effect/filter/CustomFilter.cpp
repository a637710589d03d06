// The halftone filter: the one filter that the module makes.
#include <cstring>
#include <new>

#include "effect/filter/BaseFilter.h"
#include "effect/filter/ComposeFrame.h"
#include "effect/filter/EntryPoint.h"
#include "effect/filter/FrameRecord.h"
#include "effect/filter/Roads.h"
#include "effect/params/ParamObjects.h"
#include "effect/params/ParamTable.h"
#include "effect/pixel/Pixel.h"

namespace vindrel {

namespace {

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

}  // namespace

BaseFilter* MakeFilter() {
  return new (std::nothrow) CustomFilter;
}

PF_Err CustomFilter::Render(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output) {
  return renderClassic(*this, RoadOf::customFilter, in_data, out_data, params, output);
}

PF_Err CustomFilter::SmartPreRender(PF_InData* in_data, PF_OutData*, PF_PreRenderExtra* extra) {
  return preRenderSmart(RoadOf::customFilter, in_data, extra);
}

PF_Err CustomFilter::SmartRender(PF_InData* in_data, PF_OutData* out_data, PF_SmartRenderExtra* extra) {
  return renderSmart(*this, RoadOf::customFilter, in_data, out_data, extra);
}

PF_Err CustomFilter::QueryDynamicFlags(PF_InData* in_data, PF_OutData* out_data) {
  PF_ParamDef def{};
  in_data->inter.checkout_param(in_data->effect_ref, HostIndexOf(controlId::randomInterval), in_data->current_time,
                                in_data->time_step, in_data->time_scale, &def);
  in_data->inter.checkin_param(in_data->effect_ref, &def);
  // Kept as is: the control is a slider of whole numbers, and its first eight bytes are read as one double. They are
  // all zero exactly when its value is 0 and the four bytes behind it, an unused text, are zero too (see
  // setWideTimeUnlessTheyReadAsZero).
  double interval = 0.0;
  std::memcpy(&interval, &def.u, sizeof(interval));
  if (interval == 0.0) {
    out_data->out_flags &= ~PF_OutFlag_WIDE_TIME_INPUT;
  } else {
    out_data->out_flags |= PF_OutFlag_WIDE_TIME_INPUT;
  }
  return PF_Err_NONE;
}

PF_Err CustomFilter::RenderFrame(FrameRecord& frame) {
  switch (frame.pixel_format) {
    case PF_PixelFormat_ARGB32:
      return composeFrame<Pixel8>(frame);
    case PF_PixelFormat_ARGB64:
      return composeFrame<Pixel16>(frame);
    case PF_PixelFormat_ARGB128:
      return composeFrame<Pixel32>(frame);
    default:
      return PF_Err_UNRECOGNIZED_PARAM_TYPE;
  }
}

}  // namespace vindrel
