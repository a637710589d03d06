/// The extra records of PF_Cmd_SMART_PRE_RENDER and PF_Cmd_SMART_RENDER.
///
/// Rectangles are in layer coordinates at the current resolution: pixels of the down-sampled layer, 0 at its top left.
#pragma once

#include "ae/Pixels.h"
#include "ae/Scalars.h"
#include "ae/Worlds.h"

/// Which part of a layer is wanted, in layer coordinates at the current resolution.
struct PF_RenderRequest {
  PF_LRect rect;                          ///< may be empty, may reach below 0
  PF_Field field;                         ///< PF_Field_*
  PF_ChannelMask channel_mask;            ///< PF_ChannelMask_*
  PF_Boolean preserve_rgb_of_zero_alpha;  ///< not 0: colour counts where alpha is 0
  char unused[3];
  A_long reserved[4];
};

/// What the host will give for a checked-out layer.
struct PF_CheckoutResult {
  PF_LRect result_rect;      ///< what will come for this request; may be empty
  PF_LRect max_result_rect;  ///< all that the layer could give
  PF_RationalScale par;      ///< pixel aspect
  PF_Boolean solid;          ///< not 0: the result is opaque
  PF_Boolean reservedB[3];
  A_long ref_width;   ///< the layer at full resolution, pixels
  A_long ref_height;  ///< the layer at full resolution, pixels
  A_long reserved[6];
};

/// What is asked for before a smart frame. The last three fields came with newer hosts: the effect does not read them.
struct PF_PreRenderInput {
  PF_RenderRequest output_request;  ///< the wanted part of the output
  short bitdepth;                   ///< 8, 16 or 32
  const void* gpu_data;
  PF_GPU_Framework what_gpu;  ///< PF_GPU_Framework_*
  A_u_long device_index;
};

/// The answer before a smart frame. Comes with empty rectangles and no flags.
struct PF_PreRenderOutput {
  PF_LRect result_rect;      ///< what will be drawn; not beyond the request unless RETURNS_EXTRA_PIXELS is set
  PF_LRect max_result_rect;  ///< what could be drawn at most; must not depend on the request
  PF_Boolean solid;          ///< not 0: the result will be opaque
  PF_Boolean reserved;
  PF_RenderOutputFlags flags;                              ///< PF_RenderOutputFlag_*, 16 bits
  void* pre_render_data;                                   ///< passes to the host when the command ends
  PF_DeletePreRenderDataFunc delete_pre_render_data_func;  ///< how the host drops pre_render_data, also when no frame
                                                           ///< follows; null: plain free
};

/// Calls of PF_Cmd_SMART_PRE_RENDER.
struct PF_PreRenderCallbacks {
  PF_Err (*checkout_layer)(
      PF_ProgPtr effect_ref, PF_ParamIndex index, A_long checkout_idL, const PF_RenderRequest* req, A_long what_time,
      A_long time_step, A_u_long time_scale,
      PF_CheckoutResult* checkout_result);  ///< id: 0 or more, chosen by the effect, once in a frame
  PF_Err (*GuidMixInPtr)(PF_ProgPtr effect_ref, A_u_long buf_sizeLu, const void* buf);  ///< newer hosts only
};

/// The extra of PF_Cmd_SMART_PRE_RENDER; all three belong to the host.
struct PF_PreRenderExtra {
  PF_PreRenderInput* input;
  PF_PreRenderOutput* output;
  PF_PreRenderCallbacks* cb;
};

/// What is known at a smart frame; output_request is that of the pre-render. The last three fields came with newer
/// hosts.
struct PF_SmartRenderInput {
  PF_RenderRequest output_request;
  short bitdepth;         ///< 8, 16 or 32
  void* pre_render_data;  ///< what the pre-render left; the host drops it
  const void* gpu_data;
  PF_GPU_Framework what_gpu;  ///< PF_GPU_Framework_*
  A_u_long device_index;
};

/// Calls of PF_Cmd_SMART_RENDER. Worlds given out stay the host's and live until check-in or the end of the command.
struct PF_SmartRenderCallbacks {
  PF_Err (*checkout_layer_pixels)(
      PF_ProgPtr effect_ref, A_long checkout_idL,
      PF_EffectWorld** pixels);  ///< once for each id; a layer set to none gives success and null
  PF_Err (*checkin_layer_pixels)(PF_ProgPtr effect_ref, A_long checkout_idL);  ///< optional
  PF_Err (*checkout_output)(PF_ProgPtr effect_ref, PF_EffectWorld** output);   ///< only after an input was checked out
};

/// The extra of PF_Cmd_SMART_RENDER; both belong to the host.
struct PF_SmartRenderExtra {
  PF_SmartRenderInput* input;
  PF_SmartRenderCallbacks* cb;
};

// Layout, identical on 64-bit Windows and on Linux x86-64. A compiler that disagrees must not build. WebAssembly has
// pointers of 32 bits; there the module and the host are one program, and no saved byte depends on these records.
#ifndef __wasm32__
static_assert(sizeof(PF_RenderRequest) == 44 && alignof(PF_RenderRequest) == 4);
static_assert(offsetof(PF_RenderRequest, rect) == 0 && sizeof(PF_RenderRequest::rect) == 16);
static_assert(offsetof(PF_RenderRequest, field) == 16 && sizeof(PF_RenderRequest::field) == 4);
static_assert(offsetof(PF_RenderRequest, channel_mask) == 20 && sizeof(PF_RenderRequest::channel_mask) == 4);
static_assert(offsetof(PF_RenderRequest, preserve_rgb_of_zero_alpha) == 24 &&
              sizeof(PF_RenderRequest::preserve_rgb_of_zero_alpha) == 1);
static_assert(offsetof(PF_RenderRequest, unused) == 25 && sizeof(PF_RenderRequest::unused) == 3);
static_assert(offsetof(PF_RenderRequest, reserved) == 28 && sizeof(PF_RenderRequest::reserved) == 16);
static_assert(sizeof(PF_CheckoutResult) == 76 && alignof(PF_CheckoutResult) == 4);
static_assert(offsetof(PF_CheckoutResult, result_rect) == 0 && sizeof(PF_CheckoutResult::result_rect) == 16);
static_assert(offsetof(PF_CheckoutResult, max_result_rect) == 16 && sizeof(PF_CheckoutResult::max_result_rect) == 16);
static_assert(offsetof(PF_CheckoutResult, par) == 32 && sizeof(PF_CheckoutResult::par) == 8);
static_assert(offsetof(PF_CheckoutResult, solid) == 40 && sizeof(PF_CheckoutResult::solid) == 1);
static_assert(offsetof(PF_CheckoutResult, reservedB) == 41 && sizeof(PF_CheckoutResult::reservedB) == 3);
static_assert(offsetof(PF_CheckoutResult, ref_width) == 44 && sizeof(PF_CheckoutResult::ref_width) == 4);
static_assert(offsetof(PF_CheckoutResult, ref_height) == 48 && sizeof(PF_CheckoutResult::ref_height) == 4);
static_assert(offsetof(PF_CheckoutResult, reserved) == 52 && sizeof(PF_CheckoutResult::reserved) == 24);
static_assert(sizeof(PF_PreRenderInput) == 64 && alignof(PF_PreRenderInput) == 8);
static_assert(offsetof(PF_PreRenderInput, output_request) == 0 && sizeof(PF_PreRenderInput::output_request) == 44);
static_assert(offsetof(PF_PreRenderInput, bitdepth) == 44 && sizeof(PF_PreRenderInput::bitdepth) == 2);
static_assert(offsetof(PF_PreRenderInput, gpu_data) == 48 && sizeof(PF_PreRenderInput::gpu_data) == 8);
static_assert(offsetof(PF_PreRenderInput, what_gpu) == 56 && sizeof(PF_PreRenderInput::what_gpu) == 4);
static_assert(offsetof(PF_PreRenderInput, device_index) == 60 && sizeof(PF_PreRenderInput::device_index) == 4);
static_assert(sizeof(PF_PreRenderOutput) == 56 && alignof(PF_PreRenderOutput) == 8);
static_assert(offsetof(PF_PreRenderOutput, result_rect) == 0 && sizeof(PF_PreRenderOutput::result_rect) == 16);
static_assert(offsetof(PF_PreRenderOutput, max_result_rect) == 16 && sizeof(PF_PreRenderOutput::max_result_rect) == 16);
static_assert(offsetof(PF_PreRenderOutput, solid) == 32 && sizeof(PF_PreRenderOutput::solid) == 1);
static_assert(offsetof(PF_PreRenderOutput, reserved) == 33 && sizeof(PF_PreRenderOutput::reserved) == 1);
static_assert(offsetof(PF_PreRenderOutput, flags) == 34 && sizeof(PF_PreRenderOutput::flags) == 2);
static_assert(offsetof(PF_PreRenderOutput, pre_render_data) == 40 && sizeof(PF_PreRenderOutput::pre_render_data) == 8);
static_assert(offsetof(PF_PreRenderOutput, delete_pre_render_data_func) == 48 &&
              sizeof(PF_PreRenderOutput::delete_pre_render_data_func) == 8);
static_assert(sizeof(PF_PreRenderCallbacks) == 16 && alignof(PF_PreRenderCallbacks) == 8);
static_assert(offsetof(PF_PreRenderCallbacks, checkout_layer) == 0 &&
              sizeof(PF_PreRenderCallbacks::checkout_layer) == 8);
static_assert(offsetof(PF_PreRenderCallbacks, GuidMixInPtr) == 8 && sizeof(PF_PreRenderCallbacks::GuidMixInPtr) == 8);
static_assert(sizeof(PF_PreRenderExtra) == 24 && alignof(PF_PreRenderExtra) == 8);
static_assert(offsetof(PF_PreRenderExtra, input) == 0 && sizeof(PF_PreRenderExtra::input) == 8);
static_assert(offsetof(PF_PreRenderExtra, output) == 8 && sizeof(PF_PreRenderExtra::output) == 8);
static_assert(offsetof(PF_PreRenderExtra, cb) == 16 && sizeof(PF_PreRenderExtra::cb) == 8);
static_assert(sizeof(PF_SmartRenderInput) == 72 && alignof(PF_SmartRenderInput) == 8);
static_assert(offsetof(PF_SmartRenderInput, output_request) == 0 && sizeof(PF_SmartRenderInput::output_request) == 44);
static_assert(offsetof(PF_SmartRenderInput, bitdepth) == 44 && sizeof(PF_SmartRenderInput::bitdepth) == 2);
static_assert(offsetof(PF_SmartRenderInput, pre_render_data) == 48 &&
              sizeof(PF_SmartRenderInput::pre_render_data) == 8);
static_assert(offsetof(PF_SmartRenderInput, gpu_data) == 56 && sizeof(PF_SmartRenderInput::gpu_data) == 8);
static_assert(offsetof(PF_SmartRenderInput, what_gpu) == 64 && sizeof(PF_SmartRenderInput::what_gpu) == 4);
static_assert(offsetof(PF_SmartRenderInput, device_index) == 68 && sizeof(PF_SmartRenderInput::device_index) == 4);
static_assert(sizeof(PF_SmartRenderCallbacks) == 24 && alignof(PF_SmartRenderCallbacks) == 8);
static_assert(offsetof(PF_SmartRenderCallbacks, checkout_layer_pixels) == 0 &&
              sizeof(PF_SmartRenderCallbacks::checkout_layer_pixels) == 8);
static_assert(offsetof(PF_SmartRenderCallbacks, checkin_layer_pixels) == 8 &&
              sizeof(PF_SmartRenderCallbacks::checkin_layer_pixels) == 8);
static_assert(offsetof(PF_SmartRenderCallbacks, checkout_output) == 16 &&
              sizeof(PF_SmartRenderCallbacks::checkout_output) == 8);
static_assert(sizeof(PF_SmartRenderExtra) == 16 && alignof(PF_SmartRenderExtra) == 8);
static_assert(offsetof(PF_SmartRenderExtra, input) == 0 && sizeof(PF_SmartRenderExtra::input) == 8);
static_assert(offsetof(PF_SmartRenderExtra, cb) == 8 && sizeof(PF_SmartRenderExtra::cb) == 8);
#endif
