/// Pictures and sounds as the host hands them out.
///
/// Who made a world frees it: the host what it hands out, the effect what it asked a world suite for.
#pragma once

#include "ae/Pixels.h"
#include "ae/Scalars.h"

/// A picture: a window on pixel memory that the host owns. Rows go from the top down.
/// Signed 32-bit widths, heights and origins. Pixels lie at data + y * rowbytes + x * pixel size; nothing between
/// the end of a row and the next belongs to the picture.
struct PF_EffectWorld {
  void* reserved0;               ///< the host's own; zero in a world that was cleared
  void* reserved1;               ///< the host's own
  PF_WorldFlags world_flags;     ///< PF_WorldFlag_*; DEEP is set for 16 bits, not for float
  PF_PixelPtr data;              ///< the top left pixel; null when there is no picture
  A_long rowbytes;               ///< bytes from a row to the next; may be more than width * pixel size
  A_long width;                  ///< pixels
  A_long height;                 ///< pixels
  PF_UnionableRect extent_hint;  ///< of an input: the pixels that aren't transparent; of an output: what is to be drawn
  void* platform_ref;            ///< unused
  A_long reserved_long1;         ///< the host's own
  void* reserved_long4;          ///< the host's own
  PF_RationalScale pix_aspect_ratio;  ///< width of a pixel : height of a pixel
  void* reserved_long2;               ///< the host's own
  A_long origin_x;                    ///< layer x of the left column; filled on the smart road
  A_long origin_y;                    ///< layer y of the top row; filled on the smart road
  A_long reserved_long3;              ///< the host's own
  A_long dephault;                    ///< PF_LayerDefault_*; read at add_param only
};

using PF_LayerDef = PF_EffectWorld;

/// A world that limits where transfer_rect draws.
struct PF_MaskWorld {
  PF_EffectWorld mask;        ///< by value; its pixels stay with their owner
  PF_Point offset;            ///< place of the mask's top left pixel, pixels
  PF_MaskFlags what_is_mask;  ///< PF_MaskFlag_*
};

/// What the sampling calls take; the effect uses none of them.
struct PF_SampPB {
  PF_Fixed x_radius;
  PF_Fixed y_radius;
  PF_Fixed area;
  PF_EffectWorld* src;
  PF_SampleEdgeBehav samp_behave;
  A_long allow_asynch;
  A_long motion_blur;
  PF_CompositeMode comp_mode;
  PF_PixelPtr mask0;
  A_u_char* fcm_table;
  A_u_char* fcd_table;
  A_long reserved[8];
};

/// The form of a sound; this interface is complete, the effect handles no sound.
struct PF_SoundFormatInfo {
  PF_FpLong rateF;  ///< samples a second
  PF_SoundChannels num_channels;
  PF_SoundFormat format;
  PF_SoundSampleSize sample_size;
};

/// A sound, the counterpart of a picture.
struct PF_SoundWorld {
  PF_SoundFormatInfo fi;
  A_long num_samples;  ///< samples in each channel
  void* dataP;         ///< owned by the host
};

// Layout, identical on 64-bit Windows and on Linux x86-64. A compiler that disagrees must not build. WebAssembly has
// pointers of 32 bits; there the module and the host are one program, and no saved byte depends on these records.
#ifndef __wasm32__
static_assert(sizeof(PF_LayerDef) == 120 && alignof(PF_LayerDef) == 8);
static_assert(offsetof(PF_LayerDef, reserved0) == 0 && sizeof(PF_LayerDef::reserved0) == 8);
static_assert(offsetof(PF_LayerDef, reserved1) == 8 && sizeof(PF_LayerDef::reserved1) == 8);
static_assert(offsetof(PF_LayerDef, world_flags) == 16 && sizeof(PF_LayerDef::world_flags) == 4);
static_assert(offsetof(PF_LayerDef, data) == 24 && sizeof(PF_LayerDef::data) == 8);
static_assert(offsetof(PF_LayerDef, rowbytes) == 32 && sizeof(PF_LayerDef::rowbytes) == 4);
static_assert(offsetof(PF_LayerDef, width) == 36 && sizeof(PF_LayerDef::width) == 4);
static_assert(offsetof(PF_LayerDef, height) == 40 && sizeof(PF_LayerDef::height) == 4);
static_assert(offsetof(PF_LayerDef, extent_hint) == 44 && sizeof(PF_LayerDef::extent_hint) == 16);
static_assert(offsetof(PF_LayerDef, platform_ref) == 64 && sizeof(PF_LayerDef::platform_ref) == 8);
static_assert(offsetof(PF_LayerDef, reserved_long1) == 72 && sizeof(PF_LayerDef::reserved_long1) == 4);
static_assert(offsetof(PF_LayerDef, reserved_long4) == 80 && sizeof(PF_LayerDef::reserved_long4) == 8);
static_assert(offsetof(PF_LayerDef, pix_aspect_ratio) == 88 && sizeof(PF_LayerDef::pix_aspect_ratio) == 8);
static_assert(offsetof(PF_LayerDef, reserved_long2) == 96 && sizeof(PF_LayerDef::reserved_long2) == 8);
static_assert(offsetof(PF_LayerDef, origin_x) == 104 && sizeof(PF_LayerDef::origin_x) == 4);
static_assert(offsetof(PF_LayerDef, origin_y) == 108 && sizeof(PF_LayerDef::origin_y) == 4);
static_assert(offsetof(PF_LayerDef, reserved_long3) == 112 && sizeof(PF_LayerDef::reserved_long3) == 4);
static_assert(offsetof(PF_LayerDef, dephault) == 116 && sizeof(PF_LayerDef::dephault) == 4);
static_assert(sizeof(PF_EffectWorld) == 120 && alignof(PF_EffectWorld) == 8);
static_assert(offsetof(PF_EffectWorld, reserved0) == 0 && sizeof(PF_EffectWorld::reserved0) == 8);
static_assert(offsetof(PF_EffectWorld, reserved1) == 8 && sizeof(PF_EffectWorld::reserved1) == 8);
static_assert(offsetof(PF_EffectWorld, world_flags) == 16 && sizeof(PF_EffectWorld::world_flags) == 4);
static_assert(offsetof(PF_EffectWorld, data) == 24 && sizeof(PF_EffectWorld::data) == 8);
static_assert(offsetof(PF_EffectWorld, rowbytes) == 32 && sizeof(PF_EffectWorld::rowbytes) == 4);
static_assert(offsetof(PF_EffectWorld, width) == 36 && sizeof(PF_EffectWorld::width) == 4);
static_assert(offsetof(PF_EffectWorld, height) == 40 && sizeof(PF_EffectWorld::height) == 4);
static_assert(offsetof(PF_EffectWorld, extent_hint) == 44 && sizeof(PF_EffectWorld::extent_hint) == 16);
static_assert(offsetof(PF_EffectWorld, platform_ref) == 64 && sizeof(PF_EffectWorld::platform_ref) == 8);
static_assert(offsetof(PF_EffectWorld, reserved_long1) == 72 && sizeof(PF_EffectWorld::reserved_long1) == 4);
static_assert(offsetof(PF_EffectWorld, reserved_long4) == 80 && sizeof(PF_EffectWorld::reserved_long4) == 8);
static_assert(offsetof(PF_EffectWorld, pix_aspect_ratio) == 88 && sizeof(PF_EffectWorld::pix_aspect_ratio) == 8);
static_assert(offsetof(PF_EffectWorld, reserved_long2) == 96 && sizeof(PF_EffectWorld::reserved_long2) == 8);
static_assert(offsetof(PF_EffectWorld, origin_x) == 104 && sizeof(PF_EffectWorld::origin_x) == 4);
static_assert(offsetof(PF_EffectWorld, origin_y) == 108 && sizeof(PF_EffectWorld::origin_y) == 4);
static_assert(offsetof(PF_EffectWorld, reserved_long3) == 112 && sizeof(PF_EffectWorld::reserved_long3) == 4);
static_assert(offsetof(PF_EffectWorld, dephault) == 116 && sizeof(PF_EffectWorld::dephault) == 4);
static_assert(sizeof(PF_MaskWorld) == 136 && alignof(PF_MaskWorld) == 8);
static_assert(offsetof(PF_MaskWorld, mask) == 0 && sizeof(PF_MaskWorld::mask) == 120);
static_assert(offsetof(PF_MaskWorld, offset) == 120 && sizeof(PF_MaskWorld::offset) == 8);
static_assert(offsetof(PF_MaskWorld, what_is_mask) == 128 && sizeof(PF_MaskWorld::what_is_mask) == 4);
static_assert(sizeof(PF_SampPB) == 104 && alignof(PF_SampPB) == 8);
static_assert(offsetof(PF_SampPB, x_radius) == 0 && sizeof(PF_SampPB::x_radius) == 4);
static_assert(offsetof(PF_SampPB, y_radius) == 4 && sizeof(PF_SampPB::y_radius) == 4);
static_assert(offsetof(PF_SampPB, area) == 8 && sizeof(PF_SampPB::area) == 4);
static_assert(offsetof(PF_SampPB, src) == 16 && sizeof(PF_SampPB::src) == 8);
static_assert(offsetof(PF_SampPB, samp_behave) == 24 && sizeof(PF_SampPB::samp_behave) == 4);
static_assert(offsetof(PF_SampPB, allow_asynch) == 28 && sizeof(PF_SampPB::allow_asynch) == 4);
static_assert(offsetof(PF_SampPB, motion_blur) == 32 && sizeof(PF_SampPB::motion_blur) == 4);
static_assert(offsetof(PF_SampPB, comp_mode) == 36 && sizeof(PF_SampPB::comp_mode) == 12);
static_assert(offsetof(PF_SampPB, mask0) == 48 && sizeof(PF_SampPB::mask0) == 8);
static_assert(offsetof(PF_SampPB, fcm_table) == 56 && sizeof(PF_SampPB::fcm_table) == 8);
static_assert(offsetof(PF_SampPB, fcd_table) == 64 && sizeof(PF_SampPB::fcd_table) == 8);
static_assert(offsetof(PF_SampPB, reserved) == 72 && sizeof(PF_SampPB::reserved) == 32);
static_assert(sizeof(PF_SoundFormatInfo) == 16 && alignof(PF_SoundFormatInfo) == 8);
static_assert(offsetof(PF_SoundFormatInfo, rateF) == 0 && sizeof(PF_SoundFormatInfo::rateF) == 8);
static_assert(offsetof(PF_SoundFormatInfo, num_channels) == 8 && sizeof(PF_SoundFormatInfo::num_channels) == 2);
static_assert(offsetof(PF_SoundFormatInfo, format) == 10 && sizeof(PF_SoundFormatInfo::format) == 2);
static_assert(offsetof(PF_SoundFormatInfo, sample_size) == 12 && sizeof(PF_SoundFormatInfo::sample_size) == 2);
static_assert(sizeof(PF_SoundWorld) == 32 && alignof(PF_SoundWorld) == 8);
static_assert(offsetof(PF_SoundWorld, fi) == 0 && sizeof(PF_SoundWorld::fi) == 16);
static_assert(offsetof(PF_SoundWorld, num_samples) == 16 && sizeof(PF_SoundWorld::num_samples) == 4);
static_assert(offsetof(PF_SoundWorld, dataP) == 24 && sizeof(PF_SoundWorld::dataP) == 8);
#endif
