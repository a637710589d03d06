/// The host's calls that come with every command: parameters and progress, services, C library, colours.
///
/// The order of the members is the contract. Unless told otherwise a call gives 0 (PF_Err_NONE) for success.
#pragma once

#include "ae/Params.h"
#include "ae/Pixels.h"
#include "ae/Scalars.h"
#include "ae/Worlds.h"

struct PF_InData;
struct PF_CustomUIInfo;    // AppSuites.h
struct PF_LayerAudioInfo;  // never opened
using PF_LayerAudio = PF_LayerAudioInfo*;
using PF_SndSamplePtr = void*;
using PF_CallbackFunc = PF_Err (*)();

/// One pixel's work in the host's pixel loops: reads *in, writes *out at column x and row y.
using PF_IteratePixel8Func = PF_Err (*)(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out);
using PF_IteratePixel16Func = PF_Err (*)(void* refcon, A_long x, A_long y, PF_Pixel16* in, PF_Pixel16* out);
using PF_IteratePixelFloatFunc = PF_Err (*)(void* refcon, A_long x, A_long y, PF_PixelFloat* in, PF_PixelFloat* out);

/// The host's calls that come by value in every PF_InData. All take PF_InData's effect_ref first.
struct PF_InteractCallbacks {
  PF_Err (*checkout_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long what_time, A_long time_step,
                           A_u_long time_scale,
                           PF_ParamDef* param);  ///< fills the caller's own record with the value at a time; index 0 is
                                                 ///< the layer; not an element of params
  PF_Err (*checkin_param)(PF_ProgPtr effect_ref,
                          PF_ParamDef* param);  ///< once for each check-out; the record means nothing afterwards
  PF_Err (*add_param)(
      PF_ProgPtr effect_ref, PF_ParamIndex index,
      PF_ParamDefPtr def);  ///< at PF_Cmd_PARAMS_SETUP only; index -1 appends; the host copies all it keeps
  PF_Err (*abort)(PF_ProgPtr effect_ref);  ///< not 0: stop and return that value
  PF_Err (*progress)(PF_ProgPtr effect_ref, A_long current,
                     A_long total);  ///< current of total; not 0: stop and return that value
  PF_Err (*register_ui)(PF_ProgPtr effect_ref, PF_CustomUIInfo* cust_info);  ///< custom controls only
  PF_Err (*checkout_layer_audio)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long start_time, A_long duration,
                                 A_u_long time_scale, PF_UFixed rate, A_long bytes_per_sample, A_long num_channels,
                                 A_long fmt_signed, PF_LayerAudio* audio);
  PF_Err (*checkin_layer_audio)(PF_ProgPtr effect_ref, PF_LayerAudio audio);
  PF_Err (*get_audio_data)(PF_ProgPtr effect_ref, PF_LayerAudio audio, PF_SndSamplePtr* data0, A_long* num_samples0,
                           PF_UFixed* rate0, A_long* bytes_per_sample0, A_long* num_channels0, A_long* fmt_signed0);
  void* reserved_str[3];
  void* reserved[10];
};

/// C library functions as the host gives them. Angles are radians.
struct PF_ANSICallbacks {
  A_FpLong (*atan)(A_FpLong);
  A_FpLong (*atan2)(A_FpLong y, A_FpLong x);
  A_FpLong (*ceil)(A_FpLong);
  A_FpLong (*cos)(A_FpLong);
  A_FpLong (*exp)(A_FpLong);
  A_FpLong (*fabs)(A_FpLong);
  A_FpLong (*floor)(A_FpLong);
  A_FpLong (*fmod)(A_FpLong x, A_FpLong y);
  A_FpLong (*hypot)(A_FpLong x, A_FpLong y);
  A_FpLong (*log)(A_FpLong);
  A_FpLong (*log10)(A_FpLong);
  A_FpLong (*pow)(A_FpLong x, A_FpLong y);
  A_FpLong (*sin)(A_FpLong);
  A_FpLong (*sqrt)(A_FpLong);
  A_FpLong (*tan)(A_FpLong);
  int (*sprintf)(A_char*, const A_char*, ...);  ///< the caller owns the buffer and knows that it is large enough
  A_char* (*strcpy)(A_char*, const A_char*);    ///< returns its first argument
  A_FpLong (*asin)(A_FpLong);
  A_FpLong (*acos)(A_FpLong);
  A_long ansi_procs[1];
};

/// Conversions of one colour by the host; the effect converts on its own.
struct PF_ColorCallbacks {
  PF_Err (*RGBtoHLS)(PF_ProgPtr effect_ref, PF_Pixel* rgb, PF_HLS_Pixel hls);
  PF_Err (*HLStoRGB)(PF_ProgPtr effect_ref, PF_HLS_Pixel hls, PF_Pixel* rgb);
  PF_Err (*RGBtoYIQ)(PF_ProgPtr effect_ref, PF_Pixel* rgb, PF_YIQ_Pixel yiq);
  PF_Err (*YIQtoRGB)(PF_ProgPtr effect_ref, PF_YIQ_Pixel yiq, PF_Pixel* rgb);
  PF_Err (*Luminance)(PF_ProgPtr effect_ref, PF_Pixel* rgb, A_long* lum100);
  PF_Err (*Hue)(PF_ProgPtr effect_ref, PF_Pixel* rgb, A_long* hue);
  PF_Err (*Lightness)(PF_ProgPtr effect_ref, PF_Pixel* rgb, A_long* lightness);
  PF_Err (*Saturation)(PF_ProgPtr effect_ref, PF_Pixel* rgb, A_long* saturation);
};

/// The host's services, reached by in_data->utils. The host owns the table.
struct PF_UtilCallbacks {
  PF_Err (*begin_sampling)(PF_ProgPtr effect_ref, PF_Quality qual, PF_ModeFlags mf, PF_SampPB* params);
  PF_Err (*subpixel_sample)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                            PF_Pixel* dst_pixel);
  PF_Err (*area_sample)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params, PF_Pixel* dst_pixel);
  void* get_batch_func_is_deprecated;
  PF_Err (*end_sampling)(PF_ProgPtr effect_ref, PF_Quality qual, PF_ModeFlags mf, PF_SampPB* params);
  PF_Err (*composite_rect)(PF_ProgPtr effect_ref, PF_Rect* src_rect, A_long src_opacity, PF_EffectWorld* source_wld,
                           A_long dest_x, A_long dest_y, PF_Field field_rdr, PF_XferMode xfer_mode,
                           PF_EffectWorld* dest_wld);
  PF_Err (*blend)(PF_ProgPtr effect_ref, const PF_EffectWorld* src1, const PF_EffectWorld* src2, PF_Fixed ratio,
                  PF_EffectWorld* dst);
  PF_Err (*convolve)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Rect* area, PF_KernelFlags flags,
                     A_long kernel_size, void* a_kernel, void* r_kernel, void* g_kernel, void* b_kernel,
                     PF_EffectWorld* dst);
  PF_Err (*copy)(PF_ProgPtr effect_ref, PF_EffectWorld* src, PF_EffectWorld* dst, PF_Rect* src_r,
                 PF_Rect* dst_r);  ///< null rectangles mean the whole world
  PF_Err (*fill)(PF_ProgPtr effect_ref, const PF_Pixel* color, const PF_Rect* dst_rect,
                 PF_EffectWorld* world);  ///< null colour clears, null rectangle is the whole world
  PF_Err (*gaussian_kernel)(PF_ProgPtr effect_ref, A_FpLong kRadius, PF_KernelFlags flags, A_FpLong multiplier,
                            A_long* diameter, void* kernel);
  PF_Err (*iterate)(PF_InData* in_data, A_long progress_base, A_long progress_final, PF_EffectWorld* src,
                    const PF_Rect* area, void* refcon, PF_IteratePixel8Func pix_fn, PF_EffectWorld* dst);
  PF_Err (*premultiply)(PF_ProgPtr effect_ref, A_long forward, PF_EffectWorld* dst);
  PF_Err (*premultiply_color)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Pixel* color, A_long forward,
                              PF_EffectWorld* dst);
  PF_Err (*new_world)(PF_ProgPtr effect_ref, A_long width, A_long height, PF_NewWorldFlags flags,
                      PF_EffectWorld* world);
  PF_Err (*dispose_world)(PF_ProgPtr effect_ref, PF_EffectWorld* world);
  PF_Err (*iterate_origin)(PF_InData* in_data, A_long progress_base, A_long progress_final, PF_EffectWorld* src,
                           const PF_Rect* area, const PF_Point* origin, void* refcon, PF_IteratePixel8Func pix_fn,
                           PF_EffectWorld* dst);
  PF_Err (*iterate_lut)(PF_InData* in_data, A_long progress_base, A_long progress_final, PF_EffectWorld* src,
                        const PF_Rect* area, A_u_char* a_lut0, A_u_char* r_lut0, A_u_char* g_lut0, A_u_char* b_lut0,
                        PF_EffectWorld* dst);
  PF_Err (*transfer_rect)(PF_ProgPtr effect_ref, PF_Quality quality, PF_ModeFlags m_flags, PF_Field field,
                          const PF_Rect* src_rec, const PF_EffectWorld* src_world, const PF_CompositeMode* comp_mode,
                          const PF_MaskWorld* mask_world0, A_long dest_x, A_long dest_y, PF_EffectWorld* dst_world);
  PF_Err (*transform_world)(PF_ProgPtr effect_ref, PF_Quality quality, PF_ModeFlags m_flags, PF_Field field,
                            const PF_EffectWorld* src_world, const PF_CompositeMode* comp_mode,
                            const PF_MaskWorld* mask_world0, const PF_FloatMatrix* matrices, A_long num_matrices,
                            PF_Boolean src2dst_matrix, const PF_Rect* dest_rect, PF_EffectWorld* dst_world);
  PF_Handle (*host_new_handle)(A_u_longlong size);  ///< bytes; null when there is no memory
  void* (*host_lock_handle)(PF_Handle pf_handle);   ///< address of the block, or null
  void (*host_unlock_handle)(PF_Handle pf_handle);
  void (*host_dispose_handle)(PF_Handle pf_handle);
  PF_Err (*get_callback_addr)(PF_ProgPtr effect_ref, PF_Quality quality, PF_ModeFlags mode_flags,
                              PF_CallbackID which_callback, PF_CallbackFunc* fn_ptr);
  PF_Err (*app)(PF_ProgPtr, A_long, ...);
  PF_ANSICallbacks ansi;      ///< by value
  PF_ColorCallbacks colorCB;  ///< by value
  PF_Err (*get_platform_data)(PF_ProgPtr effect_ref, PF_PlatDataID which,
                              void* data);                    ///< PF_PlatData_*; what lies at data depends on it
  A_u_longlong (*host_get_handle_size)(PF_Handle pf_handle);  ///< bytes
  PF_Err (*iterate_origin_non_clip_src)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                                        PF_EffectWorld* src, const PF_Rect* area, const PF_Point* origin, void* refcon,
                                        PF_IteratePixel8Func pix_fn, PF_EffectWorld* dst);
  PF_Err (*iterate_generic)(A_long iterationsL, void* refconPV,
                            PF_Err (*fn_func)(void* refconPV, A_long thread_indexL, A_long i, A_long iterationsL));
  PF_Err (*host_resize_handle)(A_u_longlong new_sizeL, PF_Handle* handlePH);
  PF_Err (*subpixel_sample16)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                              PF_Pixel16* dst_pixel);
  PF_Err (*area_sample16)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                          PF_Pixel16* dst_pixel);
  PF_Err (*fill16)(PF_ProgPtr effect_ref, const PF_Pixel16* color, const PF_Rect* dst_rect, PF_EffectWorld* world);
  PF_Err (*premultiply_color16)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Pixel16* color, A_long forward,
                                PF_EffectWorld* dst);
  PF_Err (*iterate16)(PF_InData* in_data, A_long progress_base, A_long progress_final, PF_EffectWorld* src,
                      const PF_Rect* area, void* refcon, PF_IteratePixel16Func pix_fn, PF_EffectWorld* dst);
  PF_Err (*iterate_origin16)(PF_InData* in_data, A_long progress_base, A_long progress_final, PF_EffectWorld* src,
                             const PF_Rect* area, const PF_Point* origin, void* refcon, PF_IteratePixel16Func pix_fn,
                             PF_EffectWorld* dst);
  PF_Err (*iterate_origin_non_clip_src16)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                                          PF_EffectWorld* src, const PF_Rect* area, const PF_Point* origin,
                                          void* refcon, PF_IteratePixel16Func pix_fn, PF_EffectWorld* dst);
  PF_Err (*get_pixel_data8)(PF_EffectWorld* worldP, PF_PixelPtr pixelsP0, PF_Pixel8** pixPP);
  PF_Err (*get_pixel_data16)(PF_EffectWorld* worldP, PF_PixelPtr pixelsP0, PF_Pixel16** pixPP);
  A_long reserved[1];
};

// Layout, identical on 64-bit Windows and on Linux x86-64. A compiler that disagrees must not build. WebAssembly has
// pointers of 32 bits; there the module and the host are one program, and no saved byte depends on these records.
#ifndef __wasm32__
static_assert(sizeof(PF_InteractCallbacks) == 176 && alignof(PF_InteractCallbacks) == 8);
static_assert(offsetof(PF_InteractCallbacks, checkout_param) == 0 && sizeof(PF_InteractCallbacks::checkout_param) == 8);
static_assert(offsetof(PF_InteractCallbacks, checkin_param) == 8 && sizeof(PF_InteractCallbacks::checkin_param) == 8);
static_assert(offsetof(PF_InteractCallbacks, add_param) == 16 && sizeof(PF_InteractCallbacks::add_param) == 8);
static_assert(offsetof(PF_InteractCallbacks, abort) == 24 && sizeof(PF_InteractCallbacks::abort) == 8);
static_assert(offsetof(PF_InteractCallbacks, progress) == 32 && sizeof(PF_InteractCallbacks::progress) == 8);
static_assert(offsetof(PF_InteractCallbacks, register_ui) == 40 && sizeof(PF_InteractCallbacks::register_ui) == 8);
static_assert(offsetof(PF_InteractCallbacks, checkout_layer_audio) == 48 &&
              sizeof(PF_InteractCallbacks::checkout_layer_audio) == 8);
static_assert(offsetof(PF_InteractCallbacks, checkin_layer_audio) == 56 &&
              sizeof(PF_InteractCallbacks::checkin_layer_audio) == 8);
static_assert(offsetof(PF_InteractCallbacks, get_audio_data) == 64 &&
              sizeof(PF_InteractCallbacks::get_audio_data) == 8);
static_assert(offsetof(PF_InteractCallbacks, reserved_str) == 72 && sizeof(PF_InteractCallbacks::reserved_str) == 24);
static_assert(offsetof(PF_InteractCallbacks, reserved) == 96 && sizeof(PF_InteractCallbacks::reserved) == 80);
static_assert(sizeof(PF_ANSICallbacks) == 160 && alignof(PF_ANSICallbacks) == 8);
static_assert(offsetof(PF_ANSICallbacks, atan) == 0 && sizeof(PF_ANSICallbacks::atan) == 8);
static_assert(offsetof(PF_ANSICallbacks, atan2) == 8 && sizeof(PF_ANSICallbacks::atan2) == 8);
static_assert(offsetof(PF_ANSICallbacks, ceil) == 16 && sizeof(PF_ANSICallbacks::ceil) == 8);
static_assert(offsetof(PF_ANSICallbacks, cos) == 24 && sizeof(PF_ANSICallbacks::cos) == 8);
static_assert(offsetof(PF_ANSICallbacks, exp) == 32 && sizeof(PF_ANSICallbacks::exp) == 8);
static_assert(offsetof(PF_ANSICallbacks, fabs) == 40 && sizeof(PF_ANSICallbacks::fabs) == 8);
static_assert(offsetof(PF_ANSICallbacks, floor) == 48 && sizeof(PF_ANSICallbacks::floor) == 8);
static_assert(offsetof(PF_ANSICallbacks, fmod) == 56 && sizeof(PF_ANSICallbacks::fmod) == 8);
static_assert(offsetof(PF_ANSICallbacks, hypot) == 64 && sizeof(PF_ANSICallbacks::hypot) == 8);
static_assert(offsetof(PF_ANSICallbacks, log) == 72 && sizeof(PF_ANSICallbacks::log) == 8);
static_assert(offsetof(PF_ANSICallbacks, log10) == 80 && sizeof(PF_ANSICallbacks::log10) == 8);
static_assert(offsetof(PF_ANSICallbacks, pow) == 88 && sizeof(PF_ANSICallbacks::pow) == 8);
static_assert(offsetof(PF_ANSICallbacks, sin) == 96 && sizeof(PF_ANSICallbacks::sin) == 8);
static_assert(offsetof(PF_ANSICallbacks, sqrt) == 104 && sizeof(PF_ANSICallbacks::sqrt) == 8);
static_assert(offsetof(PF_ANSICallbacks, tan) == 112 && sizeof(PF_ANSICallbacks::tan) == 8);
static_assert(offsetof(PF_ANSICallbacks, sprintf) == 120 && sizeof(PF_ANSICallbacks::sprintf) == 8);
static_assert(offsetof(PF_ANSICallbacks, strcpy) == 128 && sizeof(PF_ANSICallbacks::strcpy) == 8);
static_assert(offsetof(PF_ANSICallbacks, asin) == 136 && sizeof(PF_ANSICallbacks::asin) == 8);
static_assert(offsetof(PF_ANSICallbacks, acos) == 144 && sizeof(PF_ANSICallbacks::acos) == 8);
static_assert(offsetof(PF_ANSICallbacks, ansi_procs) == 152 && sizeof(PF_ANSICallbacks::ansi_procs) == 4);
static_assert(sizeof(PF_ColorCallbacks) == 64 && alignof(PF_ColorCallbacks) == 8);
static_assert(offsetof(PF_ColorCallbacks, RGBtoHLS) == 0 && sizeof(PF_ColorCallbacks::RGBtoHLS) == 8);
static_assert(offsetof(PF_ColorCallbacks, HLStoRGB) == 8 && sizeof(PF_ColorCallbacks::HLStoRGB) == 8);
static_assert(offsetof(PF_ColorCallbacks, RGBtoYIQ) == 16 && sizeof(PF_ColorCallbacks::RGBtoYIQ) == 8);
static_assert(offsetof(PF_ColorCallbacks, YIQtoRGB) == 24 && sizeof(PF_ColorCallbacks::YIQtoRGB) == 8);
static_assert(offsetof(PF_ColorCallbacks, Luminance) == 32 && sizeof(PF_ColorCallbacks::Luminance) == 8);
static_assert(offsetof(PF_ColorCallbacks, Hue) == 40 && sizeof(PF_ColorCallbacks::Hue) == 8);
static_assert(offsetof(PF_ColorCallbacks, Lightness) == 48 && sizeof(PF_ColorCallbacks::Lightness) == 8);
static_assert(offsetof(PF_ColorCallbacks, Saturation) == 56 && sizeof(PF_ColorCallbacks::Saturation) == 8);
static_assert(sizeof(PF_UtilCallbacks) == 552 && alignof(PF_UtilCallbacks) == 8);
static_assert(offsetof(PF_UtilCallbacks, begin_sampling) == 0 && sizeof(PF_UtilCallbacks::begin_sampling) == 8);
static_assert(offsetof(PF_UtilCallbacks, subpixel_sample) == 8 && sizeof(PF_UtilCallbacks::subpixel_sample) == 8);
static_assert(offsetof(PF_UtilCallbacks, area_sample) == 16 && sizeof(PF_UtilCallbacks::area_sample) == 8);
static_assert(offsetof(PF_UtilCallbacks, get_batch_func_is_deprecated) == 24 &&
              sizeof(PF_UtilCallbacks::get_batch_func_is_deprecated) == 8);
static_assert(offsetof(PF_UtilCallbacks, end_sampling) == 32 && sizeof(PF_UtilCallbacks::end_sampling) == 8);
static_assert(offsetof(PF_UtilCallbacks, composite_rect) == 40 && sizeof(PF_UtilCallbacks::composite_rect) == 8);
static_assert(offsetof(PF_UtilCallbacks, blend) == 48 && sizeof(PF_UtilCallbacks::blend) == 8);
static_assert(offsetof(PF_UtilCallbacks, convolve) == 56 && sizeof(PF_UtilCallbacks::convolve) == 8);
static_assert(offsetof(PF_UtilCallbacks, copy) == 64 && sizeof(PF_UtilCallbacks::copy) == 8);
static_assert(offsetof(PF_UtilCallbacks, fill) == 72 && sizeof(PF_UtilCallbacks::fill) == 8);
static_assert(offsetof(PF_UtilCallbacks, gaussian_kernel) == 80 && sizeof(PF_UtilCallbacks::gaussian_kernel) == 8);
static_assert(offsetof(PF_UtilCallbacks, iterate) == 88 && sizeof(PF_UtilCallbacks::iterate) == 8);
static_assert(offsetof(PF_UtilCallbacks, premultiply) == 96 && sizeof(PF_UtilCallbacks::premultiply) == 8);
static_assert(offsetof(PF_UtilCallbacks, premultiply_color) == 104 && sizeof(PF_UtilCallbacks::premultiply_color) == 8);
static_assert(offsetof(PF_UtilCallbacks, new_world) == 112 && sizeof(PF_UtilCallbacks::new_world) == 8);
static_assert(offsetof(PF_UtilCallbacks, dispose_world) == 120 && sizeof(PF_UtilCallbacks::dispose_world) == 8);
static_assert(offsetof(PF_UtilCallbacks, iterate_origin) == 128 && sizeof(PF_UtilCallbacks::iterate_origin) == 8);
static_assert(offsetof(PF_UtilCallbacks, iterate_lut) == 136 && sizeof(PF_UtilCallbacks::iterate_lut) == 8);
static_assert(offsetof(PF_UtilCallbacks, transfer_rect) == 144 && sizeof(PF_UtilCallbacks::transfer_rect) == 8);
static_assert(offsetof(PF_UtilCallbacks, transform_world) == 152 && sizeof(PF_UtilCallbacks::transform_world) == 8);
static_assert(offsetof(PF_UtilCallbacks, host_new_handle) == 160 && sizeof(PF_UtilCallbacks::host_new_handle) == 8);
static_assert(offsetof(PF_UtilCallbacks, host_lock_handle) == 168 && sizeof(PF_UtilCallbacks::host_lock_handle) == 8);
static_assert(offsetof(PF_UtilCallbacks, host_unlock_handle) == 176 &&
              sizeof(PF_UtilCallbacks::host_unlock_handle) == 8);
static_assert(offsetof(PF_UtilCallbacks, host_dispose_handle) == 184 &&
              sizeof(PF_UtilCallbacks::host_dispose_handle) == 8);
static_assert(offsetof(PF_UtilCallbacks, get_callback_addr) == 192 && sizeof(PF_UtilCallbacks::get_callback_addr) == 8);
static_assert(offsetof(PF_UtilCallbacks, app) == 200 && sizeof(PF_UtilCallbacks::app) == 8);
static_assert(offsetof(PF_UtilCallbacks, ansi) == 208 && sizeof(PF_UtilCallbacks::ansi) == 160);
static_assert(offsetof(PF_UtilCallbacks, colorCB) == 368 && sizeof(PF_UtilCallbacks::colorCB) == 64);
static_assert(offsetof(PF_UtilCallbacks, get_platform_data) == 432 && sizeof(PF_UtilCallbacks::get_platform_data) == 8);
static_assert(offsetof(PF_UtilCallbacks, host_get_handle_size) == 440 &&
              sizeof(PF_UtilCallbacks::host_get_handle_size) == 8);
static_assert(offsetof(PF_UtilCallbacks, iterate_origin_non_clip_src) == 448 &&
              sizeof(PF_UtilCallbacks::iterate_origin_non_clip_src) == 8);
static_assert(offsetof(PF_UtilCallbacks, iterate_generic) == 456 && sizeof(PF_UtilCallbacks::iterate_generic) == 8);
static_assert(offsetof(PF_UtilCallbacks, host_resize_handle) == 464 &&
              sizeof(PF_UtilCallbacks::host_resize_handle) == 8);
static_assert(offsetof(PF_UtilCallbacks, subpixel_sample16) == 472 && sizeof(PF_UtilCallbacks::subpixel_sample16) == 8);
static_assert(offsetof(PF_UtilCallbacks, area_sample16) == 480 && sizeof(PF_UtilCallbacks::area_sample16) == 8);
static_assert(offsetof(PF_UtilCallbacks, fill16) == 488 && sizeof(PF_UtilCallbacks::fill16) == 8);
static_assert(offsetof(PF_UtilCallbacks, premultiply_color16) == 496 &&
              sizeof(PF_UtilCallbacks::premultiply_color16) == 8);
static_assert(offsetof(PF_UtilCallbacks, iterate16) == 504 && sizeof(PF_UtilCallbacks::iterate16) == 8);
static_assert(offsetof(PF_UtilCallbacks, iterate_origin16) == 512 && sizeof(PF_UtilCallbacks::iterate_origin16) == 8);
static_assert(offsetof(PF_UtilCallbacks, iterate_origin_non_clip_src16) == 520 &&
              sizeof(PF_UtilCallbacks::iterate_origin_non_clip_src16) == 8);
static_assert(offsetof(PF_UtilCallbacks, get_pixel_data8) == 528 && sizeof(PF_UtilCallbacks::get_pixel_data8) == 8);
static_assert(offsetof(PF_UtilCallbacks, get_pixel_data16) == 536 && sizeof(PF_UtilCallbacks::get_pixel_data16) == 8);
static_assert(offsetof(PF_UtilCallbacks, reserved) == 544 && sizeof(PF_UtilCallbacks::reserved) == 4);
#endif
