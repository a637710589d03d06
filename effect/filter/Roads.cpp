#include "effect/filter/Roads.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "ae/Constants.h"
#include "effect/filter/BaseFilter.h"
#include "effect/filter/FrameRecord.h"
#include "effect/params/Choices.h"
#include "effect/params/ParamGetter.h"
#include "effect/params/ParamObjects.h"
#include "effect/params/ParamTable.h"
#include "effect/share/util/SuiteCache.h"
#include "effect/share/util/WorldSuite.h"

namespace vindrel {

namespace {

// Ids by which the pixels of the layers are fetched.
constexpr A_long inputCheckout = 0;
constexpr A_long maskTargetLayerCheckout = 1;
constexpr A_long customMapLayerCheckout[effectorCount] = {2, 3, 4};
/// Added to the id for the first call, which only asks for the size of the layer.
constexpr A_long sizeProbeOffset = 1000000;

/// A cleared world of the size of the layer at the current down-sampling, in the form of the input. One that was there
/// is dropped.
void makeCanvas(FrameRecord& frame) {
  const PF_InData& in_data = *frame.in_data;
  const CanvasSize size = canvasSize(in_data);
  frame.canvas = AEUtil::WorldSuite::newWorld(in_data.effect_ref, size.width, size.height, 1, frame.pixel_format);
}

/// Values in, picture out, values back. The first error is kept.
PF_Err drawFrame(BaseFilter& filter, RoadOf kind, FrameRecord& frame, PF_ParamDef* params[]) {
  FrameDefinitions definitions;
  GetParamByCheckout getter(frame.in_data, params, false, &definitions);
  PF_Err err = FetchAll(&frame.params, getter);
  if (err != PF_Err_NONE && kind == RoadOf::customFilter) {
    // Kept as is: after a failed fetch the values that were fetched before it stay checked out, whereas a failed
    // drawing gives them back (see aFailedFetchEndsTheFrameAndGivesNothingBack).
    return err;
  }
  if (err == PF_Err_NONE) err = filter.RenderFrame(frame);
  GetParamByCheckout releaser(frame.in_data, nullptr, false, &definitions);
  const PF_Err released = ReleaseAll(releaser);
  return err != PF_Err_NONE ? err : released;
}

bool isEmpty(const PF_LRect& rect) {
  return rect.left >= rect.right || rect.top >= rect.bottom;
}

/// Grows `rect` to hold `added` too; empty rectangles don't count.
void unite(PF_LRect& rect, const PF_LRect& added) {
  if (isEmpty(rect)) {
    rect = added;
  } else if (!isEmpty(added)) {
    rect = {std::min(rect.left, added.left), std::min(rect.top, added.top), std::max(rect.right, added.right),
            std::max(rect.bottom, added.bottom)};
  }
}

/// The host calls this when it has no more use for a frame, be it after the set-down.
void deleteFrameRecord(void* pre_render_data) {
  delete static_cast<FrameRecord*>(pre_render_data);
}

/// Asks for the size of a layer control's layer, then requests the whole of it under `checkoutId`.
PF_Err checkoutLayer(PF_InData* in_data, PF_PreRenderExtra* extra, int32_t paramId, A_long checkoutId) {
  const int32_t index = HostIndexOf(paramId);
  PF_RenderRequest request{};
  request.channel_mask = PF_ChannelMask_ARGB;
  PF_CheckoutResult result{};
  const auto checkout = [&](A_long id) {
    return extra->cb->checkout_layer(in_data->effect_ref, index, id, &request, in_data->current_time,
                                     in_data->time_step, in_data->time_scale, &result);
  };
  const PF_Err err = checkout(checkoutId + sizeProbeOffset);
  if (err != PF_Err_NONE) return err;
  request.rect = {0, 0, result.ref_width, result.ref_height};
  return checkout(checkoutId);
}

/// Requests the four layer controls of a smart frame, greyed or not; stops at the first error, which it returns.
PF_Err CheckoutLayers(PF_InData* in_data, PF_PreRenderExtra* extra) {
  PF_Err err = checkoutLayer(in_data, extra, controlId::maskTargetLayer, maskTargetLayerCheckout);
  for (int effector = 0; effector < effectorCount && err == PF_Err_NONE; ++effector) {
    err = checkoutLayer(in_data, extra, controlId::customMapLayer(effector + 1), customMapLayerCheckout[effector]);
  }
  return err;
}

/// Fetches the values, and requests the side layers and the input.
PF_Err requestFrame(FrameRecord& frame, PF_InData* in_data, PF_PreRenderExtra* extra, const PF_RenderRequest& request,
                    PF_CheckoutResult& result) {
  // Nothing of them is needed later: the values go into the record, and the layers come at the render.
  FrameDefinitions definitions;
  GetParamByCheckout getter(in_data, nullptr, true, &definitions);
  PF_Err err = FetchAll(&frame.params, getter);
  if (err == PF_Err_NONE) err = CheckoutLayers(in_data, extra);
  if (err == PF_Err_NONE) {
    err = extra->cb->checkout_layer(in_data->effect_ref, 0, inputCheckout, &request, in_data->current_time,
                                    in_data->time_step, in_data->time_scale, &result);
  }
  return err;
}

/// Input, output, format and side layers of the frame. `usable` tells whether there is something to draw on.
PF_Err checkOutPixels(FrameRecord& frame, const PF_SmartRenderCallbacks& host, bool& usable) {
  PF_ProgPtr effect_ref = frame.in_data->effect_ref;
  frame.input = nullptr;
  frame.output = nullptr;
  PF_Err err = host.checkout_layer_pixels(effect_ref, inputCheckout, &frame.input);
  if (err == PF_Err_NONE) err = host.checkout_output(effect_ref, &frame.output);
  usable = frame.input != nullptr && frame.output != nullptr;
  if (!usable) return err;
  if (err == PF_Err_NONE) err = AEUtil::read_pixel_format(frame.input, &frame.pixel_format);
  if (err == PF_Err_NONE) {
    err = host.checkout_layer_pixels(effect_ref, maskTargetLayerCheckout, &frame.params.maskTargetLayer);
  }
  for (std::size_t i = 0; i < std::size(frame.params.effector) && err == PF_Err_NONE; ++i) {
    err = host.checkout_layer_pixels(effect_ref, customMapLayerCheckout[i], &frame.params.effector[i].customMapLayer);
  }
  return err;
}

}  // namespace

PF_Err renderClassic(BaseFilter& filter, RoadOf kind, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                     PF_LayerDef* output) {
  if (in_data->appl_id == kAppIdPremiere) {
    return in_data->utils->copy(in_data->effect_ref, &params[0]->u.ld, output, nullptr, nullptr);
  }
  FrameRecord frame;
  frame.in_data = in_data;
  frame.out_data = out_data;
  frame.input = &params[0]->u.ld;
  frame.output = output;
  const PF_Err err = AEUtil::read_pixel_format(frame.input, &frame.pixel_format);
  if (kind == RoadOf::customFilter) {
    // Made even when the format isn't known: the host is then asked for a world of no format and says what it thinks.
    makeCanvas(frame);
  }
  return err != PF_Err_NONE ? err : drawFrame(filter, kind, frame, params);
}

PF_Err preRenderSmart(RoadOf kind, PF_InData* in_data, PF_PreRenderExtra* extra) {
  const PF_RenderRequest request = extra->input->output_request;
  std::optional<AEUtil::SuiteScope> suites;
  if (kind == RoadOf::customFilter) suites.emplace(in_data->pica_basicP);
  auto* const frame = new FrameRecord;
  if (frame == nullptr) return PF_Err_OUT_OF_MEMORY;
  PF_PreRenderOutput& answer = *extra->output;
  answer.pre_render_data = frame;
  answer.delete_pre_render_data_func = deleteFrameRecord;

  PF_CheckoutResult result{};
  const PF_Err err = requestFrame(*frame, in_data, extra, request, result);

  const RenderParams& params = frame->params;
  if (kind == RoadOf::customFilter && (params.invertMask != 0 || params.mask == maskNone || params.mask == maskLayer)) {
    // Dots may then stand where the source is transparent, so the source's own bounds say nothing.
    const CanvasSize size = canvasSize(*in_data);
    answer.result_rect = {0, 0, size.width, size.height};
    answer.max_result_rect = answer.result_rect;
    answer.flags = PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS;
  } else {
    unite(answer.result_rect, result.result_rect);
    unite(answer.max_result_rect, result.max_result_rect);
  }
  return err;
}

PF_Err renderSmart(BaseFilter& filter, RoadOf kind, PF_InData* in_data, PF_OutData* out_data,
                   PF_SmartRenderExtra* extra) {
  auto* const frame = static_cast<FrameRecord*>(extra->input->pre_render_data);
  if (frame == nullptr) return PF_Err_INTERNAL_STRUCT_DAMAGED;
  frame->in_data = in_data;
  frame->out_data = out_data;
  bool usable = false;
  PF_Err err = checkOutPixels(*frame, *extra->cb, usable);
  if (usable) {
    if (kind == RoadOf::customFilter) {
      // Made on an error too. It stays in the record; whoever deletes the record drops it.
      makeCanvas(*frame);
    }
    if (err == PF_Err_NONE) err = filter.RenderFrame(*frame);
  }
  // Kept as is: after an error nothing is checked in, and the side layers never are; the host ends them all when the
  // command returns (see onlyTheInputIsCheckedIn and aFailedDrawingIsToldWithoutACheckIn).
  return err != PF_Err_NONE ? err : extra->cb->checkin_layer_pixels(in_data->effect_ref, inputCheckout);
}

}  // namespace vindrel
