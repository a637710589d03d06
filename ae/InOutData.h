/// The two records of every call and the type of the entry point.
#pragma once

#include "ae/Callbacks.h"
#include "ae/Params.h"
#include "ae/Pixels.h"
#include "ae/Scalars.h"
#include "ae/Worlds.h"

struct SPBasicSuite;

/// What the host tells at every call. It belongs to the host; the effect never writes into it.
struct PF_InData {
  PF_InteractCallbacks inter;  ///< by value
  PF_UtilCallbacks* utils;     ///< the host's services
  PF_ProgPtr effect_ref;       ///< names this instance in every call back
  PF_Quality quality;          ///< PF_Quality_*
  PF_SpecVersion version;      ///< of the interface; not set before the global set-up is over
  A_long serial_num;
  A_long appl_id;     ///< which host: kAppIdAfterEffects ...
  A_long num_params;  ///< parameters with the layer itself
  A_long reserved;
  A_long what_cpu;
  A_long what_fpu;
  A_long current_time;                  ///< layer time in 1/time_scale seconds, may be negative
  A_long time_step;                     ///< length of a frame in 1/time_scale seconds; may be 0 or negative
  A_long total_time;                    ///< length of the layer in 1/time_scale seconds
  A_long local_time_step;               ///< time_step without the time stretch of the composition
  A_u_long time_scale;                  ///< units a second
  PF_Field field;                       ///< PF_Field_*
  PF_Fixed shutter_angle;               ///< 16.16, 1.0 is a full turn
  A_long width;                         ///< the layer at full resolution, pixels
  A_long height;                        ///< the layer at full resolution, pixels
  PF_Rect extent_hint;                  ///< what is worth drawing, in coordinates of the layer
  A_long output_origin_x;               ///< place of the input in a resized output
  A_long output_origin_y;               ///< place of the input in a resized output
  PF_RationalScale downsample_x;        ///< 1/2 at half resolution
  PF_RationalScale downsample_y;        ///< 1/2 at half resolution
  PF_RationalScale pixel_aspect_ratio;  ///< width of a pixel : height of a pixel
  PF_InFlags in_flags;
  PF_Handle global_data;    ///< what the effect left at PF_Cmd_GLOBAL_SETUP; the effect frees it
  PF_Handle sequence_data;  ///< what the effect left for this instance; locked by the host during a call
  PF_Handle frame_data;     ///< what the effect left at PF_Cmd_FRAME_SETUP
  A_long start_sampL;
  A_long dur_sampL;
  A_long total_sampL;
  PF_SoundWorld src_snd;
  SPBasicSuite* pica_basicP;          ///< the way to the suites
  A_long pre_effect_source_origin_x;  ///< place of the source in the input, frame commands only
  A_long pre_effect_source_origin_y;  ///< place of the source in the input, frame commands only
  PF_Fixed shutter_phase;             ///< 16.16, 1.0 is a full turn
};

/// What the effect answers. It belongs to the host, which reads it after each call.
struct PF_OutData {
  A_u_long my_version;  ///< the version word of PF_Cmd_GLOBAL_SETUP
  A_char name[32];
  PF_Handle global_data;    ///< handle; the host keeps it until PF_Cmd_GLOBAL_SETDOWN
  A_long num_params;        ///< parameters with the layer itself, after PF_Cmd_PARAMS_SETUP
  PF_Handle sequence_data;  ///< handle of this instance
  A_long flat_sdata_size;   ///< unused
  PF_Handle frame_data;     ///< handle of this frame
  A_long width;             ///< of the output, 0 for no change
  A_long height;            ///< of the output
  PF_Point origin;          ///< place of the input in the output
  PF_OutFlags out_flags;    ///< PF_OutFlag_*
  A_char return_msg[256];   ///< zero-ended text that the host shows
  A_long start_sampL;
  A_long dur_sampL;
  PF_SoundWorld dest_snd;
  PF_OutFlags2 out_flags2;  ///< PF_OutFlag2_*
};

/// The one function that a module exports, with C linkage. params is closed by a null pointer; what params, output and
/// extra hold depends on cmd, and each may be null where the command has no use for it.
using PF_EffectEntryPoint = PF_Err (*)(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                                       PF_LayerDef* output, void* extra);

// Layout, identical on 64-bit Windows and on Linux x86-64. A compiler that disagrees must not build. WebAssembly has
// pointers of 32 bits; there the module and the host are one program, and no saved byte depends on these records.
#ifndef __wasm32__
static_assert(sizeof(PF_InData) == 408 && alignof(PF_InData) == 8);
static_assert(offsetof(PF_InData, inter) == 0 && sizeof(PF_InData::inter) == 176);
static_assert(offsetof(PF_InData, utils) == 176 && sizeof(PF_InData::utils) == 8);
static_assert(offsetof(PF_InData, effect_ref) == 184 && sizeof(PF_InData::effect_ref) == 8);
static_assert(offsetof(PF_InData, quality) == 192 && sizeof(PF_InData::quality) == 4);
static_assert(offsetof(PF_InData, version) == 196 && sizeof(PF_InData::version) == 4);
static_assert(offsetof(PF_InData, serial_num) == 200 && sizeof(PF_InData::serial_num) == 4);
static_assert(offsetof(PF_InData, appl_id) == 204 && sizeof(PF_InData::appl_id) == 4);
static_assert(offsetof(PF_InData, num_params) == 208 && sizeof(PF_InData::num_params) == 4);
static_assert(offsetof(PF_InData, reserved) == 212 && sizeof(PF_InData::reserved) == 4);
static_assert(offsetof(PF_InData, what_cpu) == 216 && sizeof(PF_InData::what_cpu) == 4);
static_assert(offsetof(PF_InData, what_fpu) == 220 && sizeof(PF_InData::what_fpu) == 4);
static_assert(offsetof(PF_InData, current_time) == 224 && sizeof(PF_InData::current_time) == 4);
static_assert(offsetof(PF_InData, time_step) == 228 && sizeof(PF_InData::time_step) == 4);
static_assert(offsetof(PF_InData, total_time) == 232 && sizeof(PF_InData::total_time) == 4);
static_assert(offsetof(PF_InData, local_time_step) == 236 && sizeof(PF_InData::local_time_step) == 4);
static_assert(offsetof(PF_InData, time_scale) == 240 && sizeof(PF_InData::time_scale) == 4);
static_assert(offsetof(PF_InData, field) == 244 && sizeof(PF_InData::field) == 4);
static_assert(offsetof(PF_InData, shutter_angle) == 248 && sizeof(PF_InData::shutter_angle) == 4);
static_assert(offsetof(PF_InData, width) == 252 && sizeof(PF_InData::width) == 4);
static_assert(offsetof(PF_InData, height) == 256 && sizeof(PF_InData::height) == 4);
static_assert(offsetof(PF_InData, extent_hint) == 260 && sizeof(PF_InData::extent_hint) == 16);
static_assert(offsetof(PF_InData, output_origin_x) == 276 && sizeof(PF_InData::output_origin_x) == 4);
static_assert(offsetof(PF_InData, output_origin_y) == 280 && sizeof(PF_InData::output_origin_y) == 4);
static_assert(offsetof(PF_InData, downsample_x) == 284 && sizeof(PF_InData::downsample_x) == 8);
static_assert(offsetof(PF_InData, downsample_y) == 292 && sizeof(PF_InData::downsample_y) == 8);
static_assert(offsetof(PF_InData, pixel_aspect_ratio) == 300 && sizeof(PF_InData::pixel_aspect_ratio) == 8);
static_assert(offsetof(PF_InData, in_flags) == 308 && sizeof(PF_InData::in_flags) == 4);
static_assert(offsetof(PF_InData, global_data) == 312 && sizeof(PF_InData::global_data) == 8);
static_assert(offsetof(PF_InData, sequence_data) == 320 && sizeof(PF_InData::sequence_data) == 8);
static_assert(offsetof(PF_InData, frame_data) == 328 && sizeof(PF_InData::frame_data) == 8);
static_assert(offsetof(PF_InData, start_sampL) == 336 && sizeof(PF_InData::start_sampL) == 4);
static_assert(offsetof(PF_InData, dur_sampL) == 340 && sizeof(PF_InData::dur_sampL) == 4);
static_assert(offsetof(PF_InData, total_sampL) == 344 && sizeof(PF_InData::total_sampL) == 4);
static_assert(offsetof(PF_InData, src_snd) == 352 && sizeof(PF_InData::src_snd) == 32);
static_assert(offsetof(PF_InData, pica_basicP) == 384 && sizeof(PF_InData::pica_basicP) == 8);
static_assert(offsetof(PF_InData, pre_effect_source_origin_x) == 392 &&
              sizeof(PF_InData::pre_effect_source_origin_x) == 4);
static_assert(offsetof(PF_InData, pre_effect_source_origin_y) == 396 &&
              sizeof(PF_InData::pre_effect_source_origin_y) == 4);
static_assert(offsetof(PF_InData, shutter_phase) == 400 && sizeof(PF_InData::shutter_phase) == 4);
static_assert(sizeof(PF_OutData) == 408 && alignof(PF_OutData) == 8);
static_assert(offsetof(PF_OutData, my_version) == 0 && sizeof(PF_OutData::my_version) == 4);
static_assert(offsetof(PF_OutData, name) == 4 && sizeof(PF_OutData::name) == 32);
static_assert(offsetof(PF_OutData, global_data) == 40 && sizeof(PF_OutData::global_data) == 8);
static_assert(offsetof(PF_OutData, num_params) == 48 && sizeof(PF_OutData::num_params) == 4);
static_assert(offsetof(PF_OutData, sequence_data) == 56 && sizeof(PF_OutData::sequence_data) == 8);
static_assert(offsetof(PF_OutData, flat_sdata_size) == 64 && sizeof(PF_OutData::flat_sdata_size) == 4);
static_assert(offsetof(PF_OutData, frame_data) == 72 && sizeof(PF_OutData::frame_data) == 8);
static_assert(offsetof(PF_OutData, width) == 80 && sizeof(PF_OutData::width) == 4);
static_assert(offsetof(PF_OutData, height) == 84 && sizeof(PF_OutData::height) == 4);
static_assert(offsetof(PF_OutData, origin) == 88 && sizeof(PF_OutData::origin) == 8);
static_assert(offsetof(PF_OutData, out_flags) == 96 && sizeof(PF_OutData::out_flags) == 4);
static_assert(offsetof(PF_OutData, return_msg) == 100 && sizeof(PF_OutData::return_msg) == 256);
static_assert(offsetof(PF_OutData, start_sampL) == 356 && sizeof(PF_OutData::start_sampL) == 4);
static_assert(offsetof(PF_OutData, dur_sampL) == 360 && sizeof(PF_OutData::dur_sampL) == 4);
static_assert(offsetof(PF_OutData, dest_snd) == 368 && sizeof(PF_OutData::dest_snd) == 32);
static_assert(offsetof(PF_OutData, out_flags2) == 400 && sizeof(PF_OutData::out_flags2) == 4);
#endif
