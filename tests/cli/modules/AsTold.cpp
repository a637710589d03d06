// An effect whose controls are of kinds that others seldom have, and that draws what the environment tells it to:
// "later" shows what its controls are two frames later, "corner" draws nothing but the lower right quarter, "beyond"
// two pixels more than there are on every side, "nothing" draws nothing and says that all went well, and "fail 512
// words" fails with that error and those words. By the smart road, but for "later".

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "ae/Constants.h"
#include "ae/InOutData.h"
#include "ae/SmartRender.h"

namespace {

std::string_view told() {
  const char* const words = std::getenv("VINDREL_TEST_ORDER");
  return words == nullptr ? "" : words;
}

enum Index { kAmount = 1, kCount, kPicture, kSteady, kButton, kOdd, kEnd };

PF_Err addParams(PF_InData* in, PF_OutData* out) {
  PF_ParamDef amount{};
  amount.param_type = PF_Param_FLOAT_SLIDER;
  std::strcpy(amount.name, "Amount");
  amount.u.fs_d.valid_max = amount.u.fs_d.slider_max = 200;
  PF_ParamDef count{};
  count.param_type = PF_Param_SLIDER;
  std::strcpy(count.name, "Count");
  count.u.sd.valid_max = count.u.sd.slider_max = 200;
  PF_ParamDef picture{};
  picture.param_type = PF_Param_LAYER;
  std::strcpy(picture.name, "Picture");
  PF_ParamDef steady = count;
  std::strcpy(steady.name, "Steady");
  steady.flags = PF_ParamFlag_CANNOT_TIME_VARY;
  PF_ParamDef button{};
  button.param_type = PF_Param_BUTTON;
  std::strcpy(button.name, "Reset");
  button.u.button_d.u.namesptr = "Now";
  PF_ParamDef odd = amount;
  std::strcpy(odd.name, "'Odd \\ \"one\": [a-b]");
  const PF_ParamDef* const all[] = {&amount, &count, &picture, &steady, &button, &odd};
  A_long id = 1;
  for (const PF_ParamDef* one : all) {
    PF_ParamDef def = *one;
    def.uu.id = id++;
    if (const PF_Err err = in->inter.add_param(in->effect_ref, -1, &def)) return err;
  }
  out->num_params = kEnd;
  return PF_Err_NONE;
}

void fill(const PF_EffectWorld& world, PF_Pixel color) {
  for (A_long y = 0; y < world.height; ++y) {
    auto* row = reinterpret_cast<PF_Pixel*>(reinterpret_cast<char*>(world.data) +
                                            static_cast<std::ptrdiff_t>(y) * world.rowbytes);
    std::fill(row, row + world.width, color);
  }
}

/// Red is the amount, green the count and blue the red of the picture's first pixel, 7 without a picture; all of them
/// two frames later.
PF_Err drawLater(PF_InData* in, const PF_EffectWorld& output) {
  const A_long later = in->current_time + 2 * in->time_step;
  PF_Pixel color{255, 0, 0, 7};
  for (const PF_ParamIndex index : {kAmount, kCount, kPicture}) {
    PF_ParamDef def{};
    PF_Err err = in->inter.checkout_param(in->effect_ref, index, later, in->time_step, in->time_scale, &def);
    if (err != PF_Err_NONE) return err;
    if (index == kAmount) color.red = static_cast<A_u_char>(def.u.fs_d.value);
    if (index == kCount) color.green = static_cast<A_u_char>(def.u.sd.value);
    if (index == kPicture && def.u.ld.data != nullptr) color.blue = reinterpret_cast<PF_Pixel*>(def.u.ld.data)->red;
    err = in->inter.checkin_param(in->effect_ref, &def);
    if (err != PF_Err_NONE) return err;
  }
  fill(output, color);
  return PF_Err_NONE;
}

PF_Err preRender(PF_InData* in, PF_OutData* out, PF_PreRenderExtra& extra) {
  const PF_RenderRequest request = extra.input->output_request;
  PF_CheckoutResult layer{};
  if (const PF_Err err = extra.cb->checkout_layer(in->effect_ref, 0, 0, &request, in->current_time, in->time_step,
                                                  in->time_scale, &layer)) {
    return err;
  }
  PF_LRect rect = layer.result_rect;
  if (told() == "corner") {
    rect.left = rect.right / 2;
    rect.top = rect.bottom / 2;
  } else if (told() == "beyond") {
    rect = {rect.left - 2, rect.top - 2, rect.right + 2, rect.bottom + 2};
    extra.output->flags = PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS;
  } else if (told() == "nothing") {
    rect = {};
  }
  extra.output->result_rect = extra.output->max_result_rect = rect;
  int number = 0;
  int behind = 0;
  if (std::sscanf(told().data(), "fail %d %n", &number, &behind) == 1) {
    std::strcpy(out->return_msg, told().data() + behind);
    return number;
  }
  return PF_Err_NONE;
}

PF_Err drawSmart(PF_InData* in, const PF_SmartRenderExtra& extra) {
  PF_EffectWorld* output = nullptr;
  const PF_Err err = extra.cb->checkout_output(in->effect_ref, &output);
  if (err == PF_Err_NONE) fill(*output, {255, 40, 50, 60});
  return err;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) PF_Err EntryPointFunc(PF_Cmd command, PF_InData* in, PF_OutData* out,
                                                                        PF_ParamDef**, PF_LayerDef* output,
                                                                        void* extra) {
  switch (command) {
    case PF_Cmd_GLOBAL_SETUP:
      out->out_flags = PF_OutFlag_WIDE_TIME_INPUT;
      out->out_flags2 = told() == "later" ? 0 : PF_OutFlag2_SUPPORTS_SMART_RENDER;
      return PF_Err_NONE;
    case PF_Cmd_PARAMS_SETUP:
      return addParams(in, out);
    case PF_Cmd_RENDER:
      return drawLater(in, *output);
    case PF_Cmd_SMART_PRE_RENDER:
      return preRender(in, out, *static_cast<PF_PreRenderExtra*>(extra));
    case PF_Cmd_SMART_RENDER:
      return drawSmart(in, *static_cast<PF_SmartRenderExtra*>(extra));
    case PF_Cmd_ABOUT:
      std::strcpy(out->return_msg, "first\r\nsecond\rthird\r");
      return PF_Err_NONE;
    default:
      return PF_Err_NONE;
  }
}
