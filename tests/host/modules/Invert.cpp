// Turns every colour into its opposite, pixel by pixel in the host's own loops at three depths, on both roads. It
// registers itself at its set-up and asks the render queue for its state, as real modules do.
#include "ModuleParts.h"

namespace {

template <class Pixel>
PF_Err invert(void* refcon, A_long, A_long, Pixel* in, Pixel* out) {
  using Channel = decltype(out->red);
  const auto full = *static_cast<const Channel*>(refcon);
  *out = {in->alpha, static_cast<Channel>(full - in->red), static_cast<Channel>(full - in->green),
          static_cast<Channel>(full - in->blue)};
  return PF_Err_NONE;
}

PF_Err draw(PF_InData* in_data, PF_EffectWorld* source, PF_EffectWorld* target) {
  parts::Suite<PF_WorldSuite2> worlds(in_data, kPFWorldSuite, 2);
  PF_PixelFormat format = 0;
  if (const PF_Err err = worlds->PF_GetPixelFormat(target, &format)) return err;
  if (format == PF_PixelFormat_ARGB32) {
    A_u_char full = 255;
    parts::Suite<PF_Iterate8Suite> loops(in_data, kPFIterate8Suite, 1);
    return loops->iterate(in_data, 0, target->height, source, nullptr, &full, invert<PF_Pixel>, target);
  }
  if (format == PF_PixelFormat_ARGB64) {
    A_u_short full = 32768;
    parts::Suite<PF_Iterate16Suite> loops(in_data, kPFIterate16Suite, 2);
    return loops->iterate(in_data, 0, target->height, source, nullptr, &full, invert<PF_Pixel16>, target);
  }
  PF_FpShort full = 1.0F;
  parts::Suite<PF_IterateFloatSuite> loops(in_data, kPFIterateFloatSuite, 1);
  return loops->iterate(in_data, 0, 0, source, nullptr, &full, invert<PF_PixelFloat>, target);
}

PF_Err globalSetup(PF_InData* in_data, PF_OutData* out_data) {
  out_data->my_version = 1;
  out_data->out_flags = PF_OutFlag_DEEP_COLOR_AWARE | PF_OutFlag_PIX_INDEPENDENT;
  out_data->out_flags2 = PF_OutFlag2_SUPPORTS_SMART_RENDER | PF_OutFlag2_FLOAT_COLOR_AWARE;
  parts::Suite<AEGP_UtilitySuite> utility(in_data, kAEGPUtilitySuite, 7);
  AEGP_PluginID id = 0;
  if (const PF_Err err = utility->AEGP_RegisterWithAEGP(nullptr, "Invert", &id)) return err;
  parts::Suite<AEGP_RenderQueueSuite> queue(in_data, kAEGPRenderQueueSuite, 1);
  AEGP_RenderQueueState state = 99;
  if (const PF_Err err = queue->AEGP_GetRenderQueueState(&state)) return err;
  return id > 0 && state == AEGP_RenderQueueState_STOPPED ? PF_Err_NONE : PF_Err_INTERNAL_STRUCT_DAMAGED;
}

}  // namespace

extern "C" PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                                 PF_LayerDef* output, void* extra) {
  switch (cmd) {
    case PF_Cmd_GLOBAL_SETUP:
      return globalSetup(in_data, out_data);
    case PF_Cmd_PARAMS_SETUP:
      out_data->num_params = 1;
      return PF_Err_NONE;
    case PF_Cmd_RENDER:
      return draw(in_data, &params[0]->u.ld, output);
    case PF_Cmd_SMART_PRE_RENDER:
      return parts::askForLayer(in_data, *static_cast<PF_PreRenderExtra*>(extra), 0);
    case PF_Cmd_SMART_RENDER:
      return parts::drawSmart(in_data, *static_cast<PF_SmartRenderExtra*>(extra), draw);
    default:
      return PF_Err_NONE;
  }
}
