// A blur of three pixels in a row, on the smart road: it returns one pixel more on every side than is wanted of it, and
// asks for two more, since its kernel looks one further. Leaves a bare handle as pre-render data, as several published
// modules do.
#include <algorithm>

#include "ModuleParts.h"

namespace {

PF_Err preRender(PF_InData* in_data, PF_PreRenderExtra& extra) {
  if (const PF_Err err = parts::askForLayer(in_data, extra, 2)) return err;
  PF_LRect& most = extra.output->max_result_rect;
  most = {most.left + 1, most.top + 1, most.right - 1, most.bottom - 1};
  const PF_LRect& wanted = extra.input->output_request.rect;
  PF_LRect& result = extra.output->result_rect;
  result = {std::max(wanted.left - 1, most.left), std::max(wanted.top - 1, most.top),
            std::min(wanted.right + 1, most.right), std::min(wanted.bottom + 1, most.bottom)};
  if (result.left >= result.right || result.top >= result.bottom) result = {};
  extra.output->flags = PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS;
  extra.output->pre_render_data = in_data->utils->host_new_handle(16);
  return PF_Err_NONE;
}

// The layer goes into a world of the output's size first, one pixel off, so that the kernel finds neighbours; then a
// third of each of three pixels goes to the output.
PF_Err draw(PF_InData* in_data, PF_EffectWorld* source, PF_EffectWorld* target) {
  parts::Suite<PF_WorldSuite2> worlds(in_data, kPFWorldSuite, 2);
  parts::Suite<PF_WorldTransformSuite1> transform(in_data, kPFWorldTransformSuite, 1);
  PF_PixelFormat format = 0;
  if (const PF_Err err = worlds->PF_GetPixelFormat(target, &format)) return err;
  PF_EffectWorld wide{};
  if (const PF_Err err = worlds->PF_NewWorld(in_data->effect_ref, target->width, target->height, 1, format, &wide)) {
    return err;
  }
  PF_Err err = PF_Err_NONE;
  // Where the layer has nothing to give there is no world of it.
  if (source != nullptr && source->data != nullptr) {
    PF_Rect place{source->origin_x - target->origin_x, source->origin_y - target->origin_y, 0, 0};
    place.right = place.left + source->width;
    place.bottom = place.top + source->height;
    err = transform->copy(in_data->effect_ref, source, &wide, nullptr, &place);
  }
  A_long kernel[3] = {1, 1, 1};
  if (err == PF_Err_NONE) {
    err = transform->convolve(in_data->effect_ref, &wide, nullptr, PF_KernelFlag_1D | PF_KernelFlag_NORMALIZED, 3,
                              kernel, kernel, kernel, kernel, target);
  }
  const PF_Err ended = worlds->PF_DisposeWorld(in_data->effect_ref, &wide);
  return err != PF_Err_NONE ? err : ended;
}

}  // namespace

extern "C" PF_Err EffectMain(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef*[], PF_LayerDef*,
                             void* extra) {
  switch (cmd) {
    case PF_Cmd_GLOBAL_SETUP:
      out_data->my_version = 1;
      out_data->out_flags = PF_OutFlag_DEEP_COLOR_AWARE | PF_OutFlag_I_EXPAND_BUFFER;
      out_data->out_flags2 = PF_OutFlag2_SUPPORTS_SMART_RENDER | PF_OutFlag2_FLOAT_COLOR_AWARE;
      return PF_Err_NONE;
    case PF_Cmd_PARAMS_SETUP:
      out_data->num_params = 1;
      return PF_Err_NONE;
    case PF_Cmd_SMART_PRE_RENDER:
      return preRender(in_data, *static_cast<PF_PreRenderExtra*>(extra));
    case PF_Cmd_SMART_RENDER:
      return parts::drawSmart(in_data, *static_cast<PF_SmartRenderExtra*>(extra), draw);
    default:
      return PF_Err_NONE;
  }
}
