/// The host's pixel loops, its access to pixels, its colour conversions and its samplers, as tables by name and
/// version.
///
/// A table belongs to the host and is good from AcquireSuite to ReleaseSuite. The names are compared byte by byte.
#pragma once

#include "ae/Callbacks.h"
#include "ae/Pixels.h"
#include "ae/Scalars.h"
#include "ae/Worlds.h"

inline constexpr const char* kPFAnsiSuite = "PF ANSI Suite";  ///< 1: the beginning of PF_ANSICallbacks, 19 functions
inline constexpr const char* kPFIterate8Suite = "PF Iterate8 Suite";          ///< versions 1 and 2, one layout
inline constexpr const char* kPFIterate16Suite = "PF iterate16 Suite";        ///< versions 1 and 2, one layout
inline constexpr const char* kPFIterateFloatSuite = "PF iterateFloat Suite";  ///< versions 1 and 2, one layout
inline constexpr const char* kPFPixelDataSuite = "PF Pixel Data Suite";       ///< 1 ends before the last member of 2
inline constexpr const char* kPFColorSuite = "PF Color Suite";
inline constexpr const char* kPFColor16Suite = "PF Color16 Suite";
inline constexpr const char* kPFColorFloatSuite = "PF ColorFloat Suite";
inline constexpr const char* kPFSampling8Suite = "PF Sampling8 Suite";
inline constexpr const char* kPFSampling16Suite = "PF Sampling16 Suite";
inline constexpr const char* kPFSamplingFloatSuite = "PF SamplingFloat Suite";

/// Work that is no pixel's: called for i in 0..iterationsL-1, on any of the host's threads.
using PF_GenericFunc = PF_Err (*)(void* refconPV, A_long thread_indexL, A_long i, A_long iterationsL);

/// iterationsL of the generic loop: once for each processor; the function is told the real count.
inline constexpr A_long PF_Iterations_ONCE_PER_PROCESSOR = -1;

/// A function for every pixel of 8 bits. Asked for as "PF Iterate8 Suite", 1 or 2.
struct PF_Iterate8Suite {
  PF_Err (*iterate)(PF_InData* in_data, A_long progress_base, A_long progress_final, PF_EffectWorld* src,
                    const PF_Rect* area, void* refcon, PF_IteratePixel8Func pix_fn, PF_EffectWorld* dst);
  PF_Err (*iterate_origin)(PF_InData* in_data, A_long progress_base, A_long progress_final, PF_EffectWorld* src,
                           const PF_Rect* area, const PF_Point* origin, void* refcon, PF_IteratePixel8Func pix_fn,
                           PF_EffectWorld* dst);
  PF_Err (*iterate_lut)(PF_InData* in_data, A_long progress_base, A_long progress_final, PF_EffectWorld* src,
                        const PF_Rect* area, A_u_char* a_lut0, A_u_char* r_lut0, A_u_char* g_lut0, A_u_char* b_lut0,
                        PF_EffectWorld* dst);
  PF_Err (*iterate_origin_non_clip_src)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                                        PF_EffectWorld* src, const PF_Rect* area, const PF_Point* origin, void* refcon,
                                        PF_IteratePixel8Func pix_fn, PF_EffectWorld* dst);
  PF_Err (*iterate_generic)(A_long iterationsL, void* refconPV, PF_GenericFunc fn_func);
};

/// A function for every pixel of 16 bits. Asked for as "PF iterate16 Suite", 1 or 2.
struct PF_Iterate16Suite {
  PF_Err (*iterate)(PF_InData* in_data, A_long progress_base, A_long progress_final, PF_EffectWorld* src,
                    const PF_Rect* area, void* refcon, PF_IteratePixel16Func pix_fn, PF_EffectWorld* dst);
  PF_Err (*iterate_origin)(PF_InData* in_data, A_long progress_base, A_long progress_final, PF_EffectWorld* src,
                           const PF_Rect* area, const PF_Point* origin, void* refcon, PF_IteratePixel16Func pix_fn,
                           PF_EffectWorld* dst);
  PF_Err (*iterate_origin_non_clip_src)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                                        PF_EffectWorld* src, const PF_Rect* area, const PF_Point* origin, void* refcon,
                                        PF_IteratePixel16Func pix_fn, PF_EffectWorld* dst);
};

/// A function for every float pixel. Asked for as "PF iterateFloat Suite", 1 or 2.
struct PF_IterateFloatSuite {
  PF_Err (*iterate)(PF_InData* in_data, A_long progress_base, A_long progress_final, PF_EffectWorld* src,
                    const PF_Rect* area, void* refcon, PF_IteratePixelFloatFunc pix_fn, PF_EffectWorld* dst);
  PF_Err (*iterate_origin)(PF_InData* in_data, A_long progress_base, A_long progress_final, PF_EffectWorld* src,
                           const PF_Rect* area, const PF_Point* origin, void* refcon, PF_IteratePixelFloatFunc pix_fn,
                           PF_EffectWorld* dst);
  PF_Err (*iterate_origin_non_clip_src)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                                        PF_EffectWorld* src, const PF_Rect* area, const PF_Point* origin, void* refcon,
                                        PF_IteratePixelFloatFunc pix_fn, PF_EffectWorld* dst);
};

/// Pixels of a world, or null where the world has another depth. Asked for as "PF Pixel Data Suite", 1 or 2.
struct PF_PixelDataSuite {
  PF_Err (*get_pixel_data8)(PF_EffectWorld* worldP, PF_PixelPtr pixelsP0, PF_Pixel8** pixPP);
  PF_Err (*get_pixel_data16)(PF_EffectWorld* worldP, PF_PixelPtr pixelsP0, PF_Pixel16** pixPP);
  PF_Err (*get_pixel_data_float)(PF_EffectWorld* worldP, PF_PixelPtr pixelsP0, PF_PixelFloat** pixPP);
  PF_Err (*get_pixel_data_float_gpu)(PF_EffectWorld* worldP, void** pixPP);
};

/// Colours of 8 bits in other systems. Asked for as "PF Color Suite", 1.
struct PF_ColorSuite {
  PF_Err (*RGBtoHLS)(PF_ProgPtr effect_ref, PF_Pixel* rgb, PF_HLS_Pixel hls);
  PF_Err (*HLStoRGB)(PF_ProgPtr effect_ref, PF_HLS_Pixel hls, PF_Pixel* rgb);
  PF_Err (*RGBtoYIQ)(PF_ProgPtr effect_ref, PF_Pixel* rgb, PF_YIQ_Pixel yiq);
  PF_Err (*YIQtoRGB)(PF_ProgPtr effect_ref, PF_YIQ_Pixel yiq, PF_Pixel* rgb);
  PF_Err (*Luminance)(PF_ProgPtr effect_ref, PF_Pixel* rgb, A_long* lum100);
  PF_Err (*Hue)(PF_ProgPtr effect_ref, PF_Pixel* rgb, A_long* hue);
  PF_Err (*Lightness)(PF_ProgPtr effect_ref, PF_Pixel* rgb, A_long* lightness);
  PF_Err (*Saturation)(PF_ProgPtr effect_ref, PF_Pixel* rgb, A_long* saturation);
};

/// Colours of 16 bits in other systems. Asked for as "PF Color16 Suite", 1.
struct PF_Color16Suite {
  PF_Err (*RGBtoHLS)(PF_ProgPtr effect_ref, PF_Pixel16* rgb, PF_HLS_Pixel hls);
  PF_Err (*HLStoRGB)(PF_ProgPtr effect_ref, PF_HLS_Pixel hls, PF_Pixel16* rgb);
  PF_Err (*RGBtoYIQ)(PF_ProgPtr effect_ref, PF_Pixel16* rgb, PF_YIQ_Pixel yiq);
  PF_Err (*YIQtoRGB)(PF_ProgPtr effect_ref, PF_YIQ_Pixel yiq, PF_Pixel16* rgb);
  PF_Err (*Luminance)(PF_ProgPtr effect_ref, PF_Pixel16* rgb, A_long* lum100);
  PF_Err (*Hue)(PF_ProgPtr effect_ref, PF_Pixel16* rgb, A_long* hue);
  PF_Err (*Lightness)(PF_ProgPtr effect_ref, PF_Pixel16* rgb, A_long* lightness);
  PF_Err (*Saturation)(PF_ProgPtr effect_ref, PF_Pixel16* rgb, A_long* saturation);
};

/// Float colours in other systems. Asked for as "PF ColorFloat Suite", 1.
struct PF_ColorFloatSuite {
  PF_Err (*RGBtoHLS)(PF_ProgPtr effect_ref, PF_PixelFloat* rgb, PF_HLS_Pixel hls);
  PF_Err (*HLStoRGB)(PF_ProgPtr effect_ref, PF_HLS_Pixel hls, PF_PixelFloat* rgb);
  PF_Err (*RGBtoYIQ)(PF_ProgPtr effect_ref, PF_PixelFloat* rgb, PF_YIQ_Pixel yiq);
  PF_Err (*YIQtoRGB)(PF_ProgPtr effect_ref, PF_YIQ_Pixel yiq, PF_PixelFloat* rgb);
  PF_Err (*Luminance)(PF_ProgPtr effect_ref, PF_PixelFloat* rgb, PF_FpShort* lum100);
  PF_Err (*Hue)(PF_ProgPtr effect_ref, PF_PixelFloat* rgb, PF_FpShort* hue);
  PF_Err (*Lightness)(PF_ProgPtr effect_ref, PF_PixelFloat* rgb, PF_FpShort* lightness);
  PF_Err (*Saturation)(PF_ProgPtr effect_ref, PF_PixelFloat* rgb, PF_FpShort* saturation);
};

/// Colours between pixels, 8 bits. Asked for as "PF Sampling8 Suite", 1.
struct PF_Sampling8Suite {
  PF_Err (*nn_sample)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params, PF_Pixel* dst_pixel);
  PF_Err (*subpixel_sample)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                            PF_Pixel* dst_pixel);
  PF_Err (*area_sample)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params, PF_Pixel* dst_pixel);
};

/// Colours between pixels, 16 bits. Asked for as "PF Sampling16 Suite", 1.
struct PF_Sampling16Suite {
  PF_Err (*nn_sample16)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params, PF_Pixel16* dst_pixel);
  PF_Err (*subpixel_sample16)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                              PF_Pixel16* dst_pixel);
  PF_Err (*area_sample16)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                          PF_Pixel16* dst_pixel);
};

/// Colours between pixels, float. Asked for as "PF SamplingFloat Suite", 1.
struct PF_SamplingFloatSuite {
  PF_Err (*nn_sample_float)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                            PF_PixelFloat* dst_pixel);
  PF_Err (*subpixel_sample_float)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                                  PF_PixelFloat* dst_pixel);
  PF_Err (*area_sample_float)(PF_ProgPtr effect_ref, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                              PF_PixelFloat* dst_pixel);
};

// Layout, identical on 64-bit Windows and on Linux x86-64. A compiler that disagrees must not build. WebAssembly has
// pointers of 32 bits; there the module and the host are one program, and no saved byte depends on these records.
#ifndef __wasm32__
static_assert(sizeof(PF_Iterate8Suite) == 40 && alignof(PF_Iterate8Suite) == 8);
static_assert(offsetof(PF_Iterate8Suite, iterate) == 0 && sizeof(PF_Iterate8Suite::iterate) == 8);
static_assert(offsetof(PF_Iterate8Suite, iterate_origin) == 8 && sizeof(PF_Iterate8Suite::iterate_origin) == 8);
static_assert(offsetof(PF_Iterate8Suite, iterate_lut) == 16 && sizeof(PF_Iterate8Suite::iterate_lut) == 8);
static_assert(offsetof(PF_Iterate8Suite, iterate_origin_non_clip_src) == 24 &&
              sizeof(PF_Iterate8Suite::iterate_origin_non_clip_src) == 8);
static_assert(offsetof(PF_Iterate8Suite, iterate_generic) == 32 && sizeof(PF_Iterate8Suite::iterate_generic) == 8);
static_assert(sizeof(PF_Iterate16Suite) == 24 && alignof(PF_Iterate16Suite) == 8);
static_assert(offsetof(PF_Iterate16Suite, iterate) == 0 && sizeof(PF_Iterate16Suite::iterate) == 8);
static_assert(offsetof(PF_Iterate16Suite, iterate_origin) == 8 && sizeof(PF_Iterate16Suite::iterate_origin) == 8);
static_assert(offsetof(PF_Iterate16Suite, iterate_origin_non_clip_src) == 16 &&
              sizeof(PF_Iterate16Suite::iterate_origin_non_clip_src) == 8);
static_assert(sizeof(PF_IterateFloatSuite) == 24 && alignof(PF_IterateFloatSuite) == 8);
static_assert(offsetof(PF_IterateFloatSuite, iterate) == 0 && sizeof(PF_IterateFloatSuite::iterate) == 8);
static_assert(offsetof(PF_IterateFloatSuite, iterate_origin) == 8 && sizeof(PF_IterateFloatSuite::iterate_origin) == 8);
static_assert(offsetof(PF_IterateFloatSuite, iterate_origin_non_clip_src) == 16 &&
              sizeof(PF_IterateFloatSuite::iterate_origin_non_clip_src) == 8);
static_assert(sizeof(PF_PixelDataSuite) == 32 && alignof(PF_PixelDataSuite) == 8);
static_assert(offsetof(PF_PixelDataSuite, get_pixel_data8) == 0 && sizeof(PF_PixelDataSuite::get_pixel_data8) == 8);
static_assert(offsetof(PF_PixelDataSuite, get_pixel_data16) == 8 && sizeof(PF_PixelDataSuite::get_pixel_data16) == 8);
static_assert(offsetof(PF_PixelDataSuite, get_pixel_data_float) == 16 &&
              sizeof(PF_PixelDataSuite::get_pixel_data_float) == 8);
static_assert(offsetof(PF_PixelDataSuite, get_pixel_data_float_gpu) == 24 &&
              sizeof(PF_PixelDataSuite::get_pixel_data_float_gpu) == 8);
static_assert(sizeof(PF_ColorSuite) == 64 && alignof(PF_ColorSuite) == 8);
static_assert(offsetof(PF_ColorSuite, RGBtoHLS) == 0 && sizeof(PF_ColorSuite::RGBtoHLS) == 8);
static_assert(offsetof(PF_ColorSuite, HLStoRGB) == 8 && sizeof(PF_ColorSuite::HLStoRGB) == 8);
static_assert(offsetof(PF_ColorSuite, RGBtoYIQ) == 16 && sizeof(PF_ColorSuite::RGBtoYIQ) == 8);
static_assert(offsetof(PF_ColorSuite, YIQtoRGB) == 24 && sizeof(PF_ColorSuite::YIQtoRGB) == 8);
static_assert(offsetof(PF_ColorSuite, Luminance) == 32 && sizeof(PF_ColorSuite::Luminance) == 8);
static_assert(offsetof(PF_ColorSuite, Hue) == 40 && sizeof(PF_ColorSuite::Hue) == 8);
static_assert(offsetof(PF_ColorSuite, Lightness) == 48 && sizeof(PF_ColorSuite::Lightness) == 8);
static_assert(offsetof(PF_ColorSuite, Saturation) == 56 && sizeof(PF_ColorSuite::Saturation) == 8);
static_assert(sizeof(PF_Color16Suite) == 64 && alignof(PF_Color16Suite) == 8);
static_assert(offsetof(PF_Color16Suite, RGBtoHLS) == 0 && sizeof(PF_Color16Suite::RGBtoHLS) == 8);
static_assert(offsetof(PF_Color16Suite, HLStoRGB) == 8 && sizeof(PF_Color16Suite::HLStoRGB) == 8);
static_assert(offsetof(PF_Color16Suite, RGBtoYIQ) == 16 && sizeof(PF_Color16Suite::RGBtoYIQ) == 8);
static_assert(offsetof(PF_Color16Suite, YIQtoRGB) == 24 && sizeof(PF_Color16Suite::YIQtoRGB) == 8);
static_assert(offsetof(PF_Color16Suite, Luminance) == 32 && sizeof(PF_Color16Suite::Luminance) == 8);
static_assert(offsetof(PF_Color16Suite, Hue) == 40 && sizeof(PF_Color16Suite::Hue) == 8);
static_assert(offsetof(PF_Color16Suite, Lightness) == 48 && sizeof(PF_Color16Suite::Lightness) == 8);
static_assert(offsetof(PF_Color16Suite, Saturation) == 56 && sizeof(PF_Color16Suite::Saturation) == 8);
static_assert(sizeof(PF_ColorFloatSuite) == 64 && alignof(PF_ColorFloatSuite) == 8);
static_assert(offsetof(PF_ColorFloatSuite, RGBtoHLS) == 0 && sizeof(PF_ColorFloatSuite::RGBtoHLS) == 8);
static_assert(offsetof(PF_ColorFloatSuite, HLStoRGB) == 8 && sizeof(PF_ColorFloatSuite::HLStoRGB) == 8);
static_assert(offsetof(PF_ColorFloatSuite, RGBtoYIQ) == 16 && sizeof(PF_ColorFloatSuite::RGBtoYIQ) == 8);
static_assert(offsetof(PF_ColorFloatSuite, YIQtoRGB) == 24 && sizeof(PF_ColorFloatSuite::YIQtoRGB) == 8);
static_assert(offsetof(PF_ColorFloatSuite, Luminance) == 32 && sizeof(PF_ColorFloatSuite::Luminance) == 8);
static_assert(offsetof(PF_ColorFloatSuite, Hue) == 40 && sizeof(PF_ColorFloatSuite::Hue) == 8);
static_assert(offsetof(PF_ColorFloatSuite, Lightness) == 48 && sizeof(PF_ColorFloatSuite::Lightness) == 8);
static_assert(offsetof(PF_ColorFloatSuite, Saturation) == 56 && sizeof(PF_ColorFloatSuite::Saturation) == 8);
static_assert(sizeof(PF_Sampling8Suite) == 24 && alignof(PF_Sampling8Suite) == 8);
static_assert(offsetof(PF_Sampling8Suite, nn_sample) == 0 && sizeof(PF_Sampling8Suite::nn_sample) == 8);
static_assert(offsetof(PF_Sampling8Suite, subpixel_sample) == 8 && sizeof(PF_Sampling8Suite::subpixel_sample) == 8);
static_assert(offsetof(PF_Sampling8Suite, area_sample) == 16 && sizeof(PF_Sampling8Suite::area_sample) == 8);
static_assert(sizeof(PF_Sampling16Suite) == 24 && alignof(PF_Sampling16Suite) == 8);
static_assert(offsetof(PF_Sampling16Suite, nn_sample16) == 0 && sizeof(PF_Sampling16Suite::nn_sample16) == 8);
static_assert(offsetof(PF_Sampling16Suite, subpixel_sample16) == 8 &&
              sizeof(PF_Sampling16Suite::subpixel_sample16) == 8);
static_assert(offsetof(PF_Sampling16Suite, area_sample16) == 16 && sizeof(PF_Sampling16Suite::area_sample16) == 8);
static_assert(sizeof(PF_SamplingFloatSuite) == 24 && alignof(PF_SamplingFloatSuite) == 8);
static_assert(offsetof(PF_SamplingFloatSuite, nn_sample_float) == 0 &&
              sizeof(PF_SamplingFloatSuite::nn_sample_float) == 8);
static_assert(offsetof(PF_SamplingFloatSuite, subpixel_sample_float) == 8 &&
              sizeof(PF_SamplingFloatSuite::subpixel_sample_float) == 8);
static_assert(offsetof(PF_SamplingFloatSuite, area_sample_float) == 16 &&
              sizeof(PF_SamplingFloatSuite::area_sample_float) == 8);
#endif
