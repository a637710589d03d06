#include "effect/filter/ClassicRoad.h"

#include "ae/Constants.h"
#include "effect/filter/BaseFilter.h"
#include "effect/filter/CanvasSize.h"
#include "effect/params/FrameRecord.h"
#include "effect/params/ParamGetter.h"
#include "effect/params/ParamTable.h"
#include "effect/share/util/WorldSuite.h"

namespace vindrel {

namespace {

/// Values in, picture out, values back. The first error is kept.
PF_Err drawFrame(BaseFilter& filter, const ClassicRoad& road, FrameRecord& frame, PF_ParamDef* params[]) {
  FrameDefinitions definitions;
  GetParamByCheckout getter(frame.in_data, params, false, &definitions);
  PF_Err err = FetchAll(&frame.params, getter);
  if (err != PF_Err_NONE && !road.releasesAfterFailedFetch) {
    // Kept as is: after a failed fetch the values that were fetched before it stay checked out.
    return err;
  }
  if (err == PF_Err_NONE) {
    err = filter.RenderFrame(frame);
  }
  GetParamByCheckout releaser(frame.in_data, nullptr, false, &definitions);
  const PF_Err released = ReleaseAll(releaser);
  return err != PF_Err_NONE ? err : released;
}

}  // namespace

PF_Err renderClassic(BaseFilter& filter, const ClassicRoad& road, PF_InData* in_data, PF_OutData* out_data,
                     PF_ParamDef* params[], PF_LayerDef* output) {
  if (in_data->appl_id == kAppIdPremiere) {
    return in_data->utils->copy(in_data->effect_ref, &params[0]->u.ld, output, nullptr, nullptr);
  }
  FrameRecord frame;
  frame.in_data = in_data;
  frame.out_data = out_data;
  frame.input = &params[0]->u.ld;
  frame.output = output;
  frame.extent = in_data->extent_hint;
  const PF_Err err = AEUtil::read_pixel_format(frame.input, &frame.pixel_format);
  if (road.makesCanvas) {
    // Made even when the format isn't known: the host is then asked for a world of no format and says what it thinks.
    const CanvasSize size = canvasSize(*in_data);
    frame.canvas = AEUtil::WorldSuite::newWorld(in_data->effect_ref, size.width, size.height, 1, frame.pixel_format);
  }
  return err != PF_Err_NONE ? err : drawFrame(filter, road, frame, params);
}

}  // namespace vindrel
