#include "effect/filter/ComposeFrame.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "ae/Constants.h"
#include "ae/Suites.h"
#include "effect/dots/RenderDotField.h"
#include "effect/filter/FrameRecord.h"
#include "effect/filter/MakeFieldSettings.h"
#include "effect/params/Choices.h"
#include "effect/pixel/Int32.h"
#include "effect/pixel/Pixel.h"
#include "effect/raster/PolygonRasterizer.h"
#include "effect/share/util/SuiteCache.h"

namespace vindrel {

namespace {

PF_Rect wholeWorld(const PF_EffectWorld& world) {
  return {0, 0, lowHalf(world.width), lowHalf(world.height)};
}

/// Transparent black. The host's fill takes an 8-bit colour at every depth; one of four zeros means the same at each.
PF_Err clearOutput(FrameRecord& frame, AEUtil::SuiteCache& suites) {
  const PF_Pixel transparentBlack{};
  const PF_Rect rect = wholeWorld(*frame.output);
  return suites.fillMatteSuite().fill(frame.in_data->effect_ref, &transparentBlack, &rect, frame.output);
}

/// Copies the source to its place in the output.
///
/// Kept as is: the target is clamped to the output at the far sides, and the source is not shortened to match, so that
/// a source that reaches beyond the output is squeezed into it (aSourceThatReachesBeyondTheOutputIsSqueezedIntoIt).
PF_Err copySource(FrameRecord& frame, AEUtil::SuiteCache& suites) {
  const PF_EffectWorld& input = *frame.input;
  const PF_EffectWorld& output = *frame.output;
  const int32_t inputX = lowHalf(input.origin_x);
  const int32_t inputY = lowHalf(input.origin_y);
  const int32_t outputX = lowHalf(output.origin_x);
  const int32_t outputY = lowHalf(output.origin_y);
  PF_Rect source = wholeWorld(input);
  PF_Rect target = {inputX - outputX, inputY - outputY, lowHalf(inputX + source.right) - outputX,
                    lowHalf(inputY + source.bottom) - outputY};
  const PF_Rect bounds = wholeWorld(output);
  target.left = std::min(target.left, bounds.right);
  target.right = std::min(target.right, bounds.right);
  target.top = std::min(target.top, bounds.bottom);
  target.bottom = std::min(target.bottom, bounds.bottom);
  const PF_WorldTransformSuite1& transform = suites.worldTransformSuite();
  const auto copy = frame.in_data->quality == PF_Quality_HI ? transform.copy_hq : transform.copy;
  return copy(frame.in_data->effect_ref, frame.input, frame.output, &source, &target);
}

template <class Pixel>
CanvasView<Pixel> viewOf(const PF_EffectWorld& canvas) {
  return {reinterpret_cast<Pixel*>(canvas.data), lowHalf(canvas.width), lowHalf(canvas.height), canvas.rowbytes};
}

int32_t tellHost(void* in_data, int32_t percent) {
  const auto& host = *static_cast<const PF_InData*>(in_data);
  return host.inter.progress(host.effect_ref, percent, 100);
}

/// Draws the dots on the canvas with a rasteriser of their own.
template <class Pixel>
PF_Err drawDots(FrameRecord& frame) {
  const std::unique_ptr<PolygonRasterizer<Pixel>> rasterizer(new PolygonRasterizer<Pixel>);
  DrawContext<Pixel> context{.canvas = viewOf<Pixel>(*frame.canvas.world()), .rasterizer = rasterizer.get()};
  const FieldSettings<Pixel> settings = makeFieldSettings<Pixel>(frame.params, *frame.in_data);
  return RenderDotField(settings, context, {tellHost, frame.in_data});
}

/// Where a side of the mask layer lies so that the layer is centred on the output. Full 32 bits are read here.
int32_t centredOffset(int32_t outputOrigin, int32_t maskExtent, int32_t outputExtent) {
  const double doubled = static_cast<double>(outputOrigin) - maskExtent + outputExtent;
  return lowHalf(truncateToInt32(std::floor(doubled * 0.5 + 0.5)));
}

/// The mask of a frame whose `mask` isn't None. A mask layer that isn't there leaves the mask all zero.
PF_MaskWorld makeMask(const FrameRecord& frame) {
  const RenderParams& params = frame.params;
  const PF_EffectWorld& output = *frame.output;
  PF_MaskWorld mask{};
  if (params.mask == maskLayer) {
    if (params.maskTargetLayer != nullptr) {
      mask.mask = *params.maskTargetLayer;
      mask.offset.h = centredOffset(output.origin_x, mask.mask.width, output.width);
      mask.offset.v = centredOffset(output.origin_y, mask.mask.height, output.height);
    }
  } else {
    mask.mask = *frame.input;
    if (params.invertMask != 0) {
      mask.offset = {lowHalf(frame.input->origin_x), lowHalf(frame.input->origin_y)};
    }
  }
  mask.what_is_mask = params.invertMask != 0 ? PF_MaskFlag_INVERTED : PF_MaskFlag_NONE;
  return mask;
}

/// The part of the canvas that goes to the output. The canvas has layer coordinates: this is what `input` covers.
PF_Rect canvasPart(const PF_EffectWorld& input) {
  const int32_t left = lowHalf(input.origin_x);
  const int32_t top = lowHalf(input.origin_y);
  return {left, top, left + lowHalf(input.width), top + lowHalf(input.height)};
}

PF_Err transferCanvas(FrameRecord& frame, AEUtil::SuiteCache& suites) {
  const int32_t kind = frame.params.mask;
  const bool masked = kind == maskNormal || kind == maskLayer;
  const PF_MaskWorld mask = masked ? makeMask(frame) : PF_MaskWorld{};
  const PF_Rect source = canvasPart(*frame.input);
  PF_CompositeMode mode{};
  mode.xfer = PF_Xfer_IN_FRONT;
  mode.opacity = PF_MAX_CHAN8;
  mode.opacitySu = PF_MAX_CHAN16;
  return suites.worldTransformSuite().transfer_rect(frame.in_data->effect_ref, frame.in_data->quality,
                                                    PF_MF_Alpha_STRAIGHT, PF_Field_FRAME, &source, frame.canvas.world(),
                                                    &mode, masked ? &mask : nullptr, 0, 0, frame.output);
}

}  // namespace

template <class Pixel>
PF_Err composeFrame(FrameRecord& frame) {
  AEUtil::SuiteScope suites(frame.in_data->pica_basicP);
  PF_Err err = clearOutput(frame, *suites);
  if (err == PF_Err_NONE && frame.params.clearBackground == 0) {
    err = copySource(frame, *suites);
  }
  if (err == PF_Err_NONE && frame.canvas.world() == nullptr) {
    // A float frame under a host whose only world suite knows no float worlds.
    err = PF_Err_INTERNAL_STRUCT_DAMAGED;
  }
  if (err == PF_Err_NONE) {
    err = drawDots<Pixel>(frame);
  }
  if (err == PF_Err_NONE) {
    err = transferCanvas(frame, *suites);
  }
  return err;
}

template PF_Err composeFrame<Pixel8>(FrameRecord& frame);
template PF_Err composeFrame<Pixel16>(FrameRecord& frame);
template PF_Err composeFrame<Pixel32>(FrameRecord& frame);

}  // namespace vindrel
