/// The tables of functions that the host lends by name and version.
///
/// The integer asked for is not the number in the name of the table: the constants below tie them together.
/// A table belongs to the host and is good from AcquireSuite to ReleaseSuite.
#pragma once

#include "ae/Params.h"
#include "ae/Pixels.h"
#include "ae/Scalars.h"
#include "ae/Worlds.h"

inline constexpr const char* kPFHandleSuite = "PF Handle Suite";
inline constexpr const char* kPFWorldSuite = "PF World Suite";
inline constexpr const char* kPFFillMatteSuite = "PF Fill Matte Suite";
inline constexpr const char* kPFWorldTransformSuite = "PF World Transform Suite";
inline constexpr const char* kPFAppSuite = "PF AE App Suite";
inline constexpr const char* kPFParamUtilsSuite = "PF Param Utils Suite";

inline constexpr int32 kPFHandleSuiteVersion2 = 2;          ///< PF_HandleSuite1
inline constexpr int32 kPFWorldSuiteVersion1 = 1;           ///< PF_WorldSuite1
inline constexpr int32 kPFWorldSuiteVersion2 = 2;           ///< PF_WorldSuite2
inline constexpr int32 kPFFillMatteSuiteVersion2 = 2;       ///< PF_FillMatteSuite2
inline constexpr int32 kPFWorldTransformSuiteVersion1 = 1;  ///< PF_WorldTransformSuite1
inline constexpr int32 kPFAppSuiteVersion6 = 6;             ///< PFAppSuite4
inline constexpr int32 kPFParamUtilsSuiteVersion2 = 2;      ///< PF_ParamUtilsSuite1

inline constexpr SPErr kSPNoError = 0;
inline constexpr SPErr kSPUnimplementedError = 0x21494D50;  ///< '!IMP'
inline constexpr SPErr kSPBadParameterError = 0x5061726D;   ///< 'Parm'
inline constexpr SPErr kSPSuiteNotFoundError = 0x53214664;  ///< 'S!Fd'
inline constexpr SPErr kSPOutOfMemoryError = static_cast<SPErr>(0xFFFFFF6Cu);

/// The suite of suites. Every AcquireSuite that gives 0 needs one ReleaseSuite of the same name and version.
struct SPBasicSuite {
  SPErr (*AcquireSuite)(const char* name, int32 version,
                        const void** suite);  ///< 0 for success; what *suite holds after a failure is not known
  SPErr (*ReleaseSuite)(const char* name, int32 version);
  SPBoolean (*IsEqual)(const char* token1, const char* token2);
  SPErr (*AllocateBlock)(size_t size, void** block);
  SPErr (*FreeBlock)(void* block);
  SPErr (*ReallocateBlock)(void* block, size_t newSize, void** newblock);
  SPErr (*Undefined)();  ///< never called
};

/// Memory that the host owns and can move while it isn't locked. Asked for as "PF Handle Suite", 2.
struct PF_HandleSuite1 {
  PF_Handle (*host_new_handle)(A_HandleSize size);                            ///< bytes; null when there is no memory
  void* (*host_lock_handle)(PF_Handle pf_handle);                             ///< address of the block, or null
  void (*host_unlock_handle)(PF_Handle pf_handle);                            ///< once for each lock
  void (*host_dispose_handle)(PF_Handle pf_handle);                           ///< the handle is gone afterwards
  A_HandleSize (*host_get_handle_size)(PF_Handle pf_handle);                  ///< bytes
  PF_Err (*host_resize_handle)(A_HandleSize new_sizeL, PF_Handle* handlePH);  ///< the address of the block may change
};

/// Worlds of 8 and 16 bits. Asked for as "PF World Suite", 1.
struct PF_WorldSuite1 {
  PF_Err (*new_world)(PF_ProgPtr effect_ref, A_long width, A_long height, PF_NewWorldFlags flags,
                      PF_EffectWorld* world);  ///< flags: PF_NewWorldFlag_*
  PF_Err (*dispose_world)(PF_ProgPtr effect_ref,
                          PF_EffectWorld* world);  ///< frees the pixels and leaves the record to its owner
};

/// Worlds of every depth. Asked for as "PF World Suite", 2.
struct PF_WorldSuite2 {
  PF_Err (*PF_NewWorld)(PF_ProgPtr effect_ref, A_long widthL, A_long heightL, PF_Boolean clear_pixB,
                        PF_PixelFormat pixel_format, PF_EffectWorld* worldP);  ///< clear_pixB not 0: transparent black
  PF_Err (*PF_DisposeWorld)(PF_ProgPtr effect_ref,
                            PF_EffectWorld* worldP);  ///< frees the pixels and leaves the record to its owner
  PF_Err (*PF_GetPixelFormat)(const PF_EffectWorld* worldP, PF_PixelFormat* pixel_formatP);  ///< takes no effect_ref
};

/// Filling with one colour. Asked for as "PF Fill Matte Suite", 2. A null colour clears, a null rectangle is the whole
/// world.
struct PF_FillMatteSuite2 {
  PF_Err (*fill)(PF_ProgPtr effect_ref, const PF_Pixel* color, const PF_Rect* dst_rect, PF_EffectWorld* world);
  PF_Err (*fill16)(PF_ProgPtr effect_ref, const PF_Pixel16* color, const PF_Rect* dst_rect, PF_EffectWorld* world);
  PF_Err (*fill_float)(PF_ProgPtr effect_ref, const PF_PixelFloat* color, const PF_Rect* dst_rect,
                       PF_EffectWorld* world);
  PF_Err (*premultiply)(PF_ProgPtr effect_ref, A_long forward, PF_EffectWorld* dst);
  PF_Err (*premultiply_color)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Pixel* color, A_long forward,
                              PF_EffectWorld* dst);
  PF_Err (*premultiply_color16)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Pixel16* color, A_long forward,
                                PF_EffectWorld* dst);
  PF_Err (*premultiply_color_float)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_PixelFloat* color,
                                    A_long forward, PF_EffectWorld* dst);
};

/// Copying and laying over. Asked for as "PF World Transform Suite", 1.
struct PF_WorldTransformSuite1 {
  PF_Err (*composite_rect)(PF_ProgPtr effect_ref, PF_Rect* src_rect, A_long src_opacity, PF_EffectWorld* source_wld,
                           A_long dest_x, A_long dest_y, PF_Field field_rdr, PF_XferMode xfer_mode,
                           PF_EffectWorld* dest_wld);
  PF_Err (*blend)(PF_ProgPtr effect_ref, const PF_EffectWorld* src1, const PF_EffectWorld* src2, PF_Fixed ratio,
                  PF_EffectWorld* dst);
  PF_Err (*convolve)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Rect* area, PF_KernelFlags flags,
                     A_long kernel_size, void* a_kernel, void* r_kernel, void* g_kernel, void* b_kernel,
                     PF_EffectWorld* dst);
  PF_Err (*copy)(PF_ProgPtr effect_ref, PF_EffectWorld* src, PF_EffectWorld* dst, PF_Rect* src_r,
                 PF_Rect* dst_r);  ///< null rectangles mean the whole world; different sizes stretch
  PF_Err (*copy_hq)(PF_ProgPtr effect_ref, PF_EffectWorld* src, PF_EffectWorld* dst, PF_Rect* src_r,
                    PF_Rect* dst_r);  ///< as copy, but interpolates when it stretches
  PF_Err (*transfer_rect)(PF_ProgPtr effect_ref, PF_Quality quality, PF_ModeFlags m_flags, PF_Field field,
                          const PF_Rect* src_rec, const PF_EffectWorld* src_world, const PF_CompositeMode* comp_mode,
                          const PF_MaskWorld* mask_world0, A_long dest_x, A_long dest_y,
                          PF_EffectWorld* dst_world);  ///< mask_world0 may be null
  PF_Err (*transform_world)(PF_ProgPtr effect_ref, PF_Quality quality, PF_ModeFlags m_flags, PF_Field field,
                            const PF_EffectWorld* src_world, const PF_CompositeMode* comp_mode,
                            const PF_MaskWorld* mask_world0, const PF_FloatMatrix* matrices, A_long num_matrices,
                            PF_Boolean src2dst_matrix, const PF_Rect* dest_rect, PF_EffectWorld* dst_world);
};

/// A zero-ended name of a type face.
struct PF_FontName {
  A_char font_nameAC[256];
};

/// A colour of the host's own window, 16 bits a channel.
struct PF_App_Color {
  A_u_short red;
  A_u_short green;
  A_u_short blue;
};

/// Whom the host is licensed to; zero-ended texts.
struct PF_AppPersonalTextInfo {
  A_char name[64];
  A_char org[64];
  A_char serial_str[64];
};

/// The host application. Asked for as "PF AE App Suite", 6: that number is not the one in the name of the table.
struct PFAppSuite4 {
  PF_Err (*PF_AppGetBgColor)(PF_App_Color* bg_colorP);
  PF_Err (*PF_AppGetColor)(PF_App_ColorType color_type, PF_App_Color* app_colorP);
  PF_Err (*PF_GetPersonalInfo)(PF_AppPersonalTextInfo* ptiP);
  PF_Err (*PF_GetFontStyleSheet)(PF_FontStyleSheet sheet, PF_FontName* font_nameP0, A_short* font_numPS0,
                                 A_short* sizePS0, A_short* stylePS0);
  PF_Err (*PF_SetCursor)(PF_CursorType cursor);
  PF_Err (*PF_IsRenderEngine)(PF_Boolean* render_enginePB);  ///< writes one byte: not 0 when nobody sits at the screen
  PF_Err (*PF_AppColorPickerDialog)(const A_char* dialog_titleZ0, const PF_PixelFloat* sample_colorP,
                                    PF_Boolean use_ws_to_monitor_xformB, PF_PixelFloat* new_colorP);
  PF_Err (*PF_GetMouse)(PF_Point* pointP);
  PF_Err (*PF_InvalidateRect)(const PF_ContextH contextH, const PF_Rect* rectP0);
  PF_Err (*PF_ConvertLocalToGlobal)(const PF_Point* localP, PF_Point* globalP);
  PF_Err (*PF_GetColorAtGlobalPoint)(const PF_Point* globalP, A_short eyeSize, PF_EyeDropperSampleMode mode,
                                     PF_PixelFloat* outColorP);
};

/// An opaque mark of the state of an effect's inputs; only the host reads it.
struct PF_State {
  A_long reservedAL[4];
};

/// The parameters as the user sees them. Asked for as "PF Param Utils Suite", 2.
struct PF_ParamUtilsSuite1 {
  PF_Err (*PF_UpdateParamUI)(
      PF_ProgPtr effect_ref, PF_ParamIndex param_index,
      const PF_ParamDef* defP);  ///< takes over from a copy: the DISABLED bit, the name, slider ends; never index 0
  PF_Err (*PF_GetCurrentStateObsolete)(PF_ProgPtr effect_ref, PF_State* stateP);
  PF_Err (*PF_HasParamChangedObsolete)(PF_ProgPtr effect_ref, const PF_State* stateP, PF_ParamIndex param_index,
                                       PF_Boolean* changedPB);
  PF_Err (*PF_HaveInputsChangedOverTimeSpanObsolete)(PF_ProgPtr effect_ref, const PF_State* stateP,
                                                     const A_Time* startPT0, const A_Time* durationPT0,
                                                     PF_Boolean* changedPB);
  PF_Err (*PF_IsIdenticalCheckout)(PF_ProgPtr effect_ref, PF_ParamIndex param_index, A_long what_time1,
                                   A_long time_step1, A_u_long time_scale1, A_long what_time2, A_long time_step2,
                                   A_u_long time_scale2, PF_Boolean* identicalPB);
  PF_Err (*PF_FindKeyframeTime)(PF_ProgPtr effect_ref, PF_ParamIndex param_index, A_long what_time, A_u_long time_scale,
                                PF_TimeDir time_dir, PF_Boolean* foundPB, PF_KeyIndex* key_indexP0, A_long* key_timeP0,
                                A_u_long* key_timescaleP0);
  PF_Err (*PF_GetKeyframeCount)(PF_ProgPtr effect_ref, PF_ParamIndex param_index, PF_KeyIndex* key_countP);
  PF_Err (*PF_CheckoutKeyframe)(PF_ProgPtr effect_ref, PF_ParamIndex param_index, PF_KeyIndex key_index,
                                A_long* key_timeP0, A_u_long* key_timescaleP0, PF_ParamDef* paramP0);
  PF_Err (*PF_CheckinKeyframe)(PF_ProgPtr effect_ref, PF_ParamDef* paramP);
  PF_Err (*PF_KeyIndexToTime)(PF_ProgPtr effect_ref, PF_ParamIndex param_index, PF_KeyIndex key_indexP,
                              A_long* key_timeP, A_u_long* key_timescaleP);
};

// Layout, identical on 64-bit Windows and on Linux x86-64. A compiler that disagrees must not build. WebAssembly has
// pointers of 32 bits; there the module and the host are one program, and no saved byte depends on these records.
#ifndef __wasm32__
static_assert(sizeof(SPBasicSuite) == 56 && alignof(SPBasicSuite) == 8);
static_assert(offsetof(SPBasicSuite, AcquireSuite) == 0 && sizeof(SPBasicSuite::AcquireSuite) == 8);
static_assert(offsetof(SPBasicSuite, ReleaseSuite) == 8 && sizeof(SPBasicSuite::ReleaseSuite) == 8);
static_assert(offsetof(SPBasicSuite, IsEqual) == 16 && sizeof(SPBasicSuite::IsEqual) == 8);
static_assert(offsetof(SPBasicSuite, AllocateBlock) == 24 && sizeof(SPBasicSuite::AllocateBlock) == 8);
static_assert(offsetof(SPBasicSuite, FreeBlock) == 32 && sizeof(SPBasicSuite::FreeBlock) == 8);
static_assert(offsetof(SPBasicSuite, ReallocateBlock) == 40 && sizeof(SPBasicSuite::ReallocateBlock) == 8);
static_assert(offsetof(SPBasicSuite, Undefined) == 48 && sizeof(SPBasicSuite::Undefined) == 8);
static_assert(sizeof(PF_HandleSuite1) == 48 && alignof(PF_HandleSuite1) == 8);
static_assert(offsetof(PF_HandleSuite1, host_new_handle) == 0 && sizeof(PF_HandleSuite1::host_new_handle) == 8);
static_assert(offsetof(PF_HandleSuite1, host_lock_handle) == 8 && sizeof(PF_HandleSuite1::host_lock_handle) == 8);
static_assert(offsetof(PF_HandleSuite1, host_unlock_handle) == 16 && sizeof(PF_HandleSuite1::host_unlock_handle) == 8);
static_assert(offsetof(PF_HandleSuite1, host_dispose_handle) == 24 &&
              sizeof(PF_HandleSuite1::host_dispose_handle) == 8);
static_assert(offsetof(PF_HandleSuite1, host_get_handle_size) == 32 &&
              sizeof(PF_HandleSuite1::host_get_handle_size) == 8);
static_assert(offsetof(PF_HandleSuite1, host_resize_handle) == 40 && sizeof(PF_HandleSuite1::host_resize_handle) == 8);
static_assert(sizeof(PF_WorldSuite1) == 16 && alignof(PF_WorldSuite1) == 8);
static_assert(offsetof(PF_WorldSuite1, new_world) == 0 && sizeof(PF_WorldSuite1::new_world) == 8);
static_assert(offsetof(PF_WorldSuite1, dispose_world) == 8 && sizeof(PF_WorldSuite1::dispose_world) == 8);
static_assert(sizeof(PF_WorldSuite2) == 24 && alignof(PF_WorldSuite2) == 8);
static_assert(offsetof(PF_WorldSuite2, PF_NewWorld) == 0 && sizeof(PF_WorldSuite2::PF_NewWorld) == 8);
static_assert(offsetof(PF_WorldSuite2, PF_DisposeWorld) == 8 && sizeof(PF_WorldSuite2::PF_DisposeWorld) == 8);
static_assert(offsetof(PF_WorldSuite2, PF_GetPixelFormat) == 16 && sizeof(PF_WorldSuite2::PF_GetPixelFormat) == 8);
static_assert(sizeof(PF_FillMatteSuite2) == 56 && alignof(PF_FillMatteSuite2) == 8);
static_assert(offsetof(PF_FillMatteSuite2, fill) == 0 && sizeof(PF_FillMatteSuite2::fill) == 8);
static_assert(offsetof(PF_FillMatteSuite2, fill16) == 8 && sizeof(PF_FillMatteSuite2::fill16) == 8);
static_assert(offsetof(PF_FillMatteSuite2, fill_float) == 16 && sizeof(PF_FillMatteSuite2::fill_float) == 8);
static_assert(offsetof(PF_FillMatteSuite2, premultiply) == 24 && sizeof(PF_FillMatteSuite2::premultiply) == 8);
static_assert(offsetof(PF_FillMatteSuite2, premultiply_color) == 32 &&
              sizeof(PF_FillMatteSuite2::premultiply_color) == 8);
static_assert(offsetof(PF_FillMatteSuite2, premultiply_color16) == 40 &&
              sizeof(PF_FillMatteSuite2::premultiply_color16) == 8);
static_assert(offsetof(PF_FillMatteSuite2, premultiply_color_float) == 48 &&
              sizeof(PF_FillMatteSuite2::premultiply_color_float) == 8);
static_assert(sizeof(PF_WorldTransformSuite1) == 56 && alignof(PF_WorldTransformSuite1) == 8);
static_assert(offsetof(PF_WorldTransformSuite1, composite_rect) == 0 &&
              sizeof(PF_WorldTransformSuite1::composite_rect) == 8);
static_assert(offsetof(PF_WorldTransformSuite1, blend) == 8 && sizeof(PF_WorldTransformSuite1::blend) == 8);
static_assert(offsetof(PF_WorldTransformSuite1, convolve) == 16 && sizeof(PF_WorldTransformSuite1::convolve) == 8);
static_assert(offsetof(PF_WorldTransformSuite1, copy) == 24 && sizeof(PF_WorldTransformSuite1::copy) == 8);
static_assert(offsetof(PF_WorldTransformSuite1, copy_hq) == 32 && sizeof(PF_WorldTransformSuite1::copy_hq) == 8);
static_assert(offsetof(PF_WorldTransformSuite1, transfer_rect) == 40 &&
              sizeof(PF_WorldTransformSuite1::transfer_rect) == 8);
static_assert(offsetof(PF_WorldTransformSuite1, transform_world) == 48 &&
              sizeof(PF_WorldTransformSuite1::transform_world) == 8);
static_assert(sizeof(PF_App_Color) == 6 && alignof(PF_App_Color) == 2);
static_assert(offsetof(PF_App_Color, red) == 0 && sizeof(PF_App_Color::red) == 2);
static_assert(offsetof(PF_App_Color, green) == 2 && sizeof(PF_App_Color::green) == 2);
static_assert(offsetof(PF_App_Color, blue) == 4 && sizeof(PF_App_Color::blue) == 2);
static_assert(sizeof(PF_AppPersonalTextInfo) == 192 && alignof(PF_AppPersonalTextInfo) == 1);
static_assert(offsetof(PF_AppPersonalTextInfo, name) == 0 && sizeof(PF_AppPersonalTextInfo::name) == 64);
static_assert(offsetof(PF_AppPersonalTextInfo, org) == 64 && sizeof(PF_AppPersonalTextInfo::org) == 64);
static_assert(offsetof(PF_AppPersonalTextInfo, serial_str) == 128 && sizeof(PF_AppPersonalTextInfo::serial_str) == 64);
static_assert(sizeof(PFAppSuite4) == 88 && alignof(PFAppSuite4) == 8);
static_assert(offsetof(PFAppSuite4, PF_AppGetBgColor) == 0 && sizeof(PFAppSuite4::PF_AppGetBgColor) == 8);
static_assert(offsetof(PFAppSuite4, PF_AppGetColor) == 8 && sizeof(PFAppSuite4::PF_AppGetColor) == 8);
static_assert(offsetof(PFAppSuite4, PF_GetPersonalInfo) == 16 && sizeof(PFAppSuite4::PF_GetPersonalInfo) == 8);
static_assert(offsetof(PFAppSuite4, PF_GetFontStyleSheet) == 24 && sizeof(PFAppSuite4::PF_GetFontStyleSheet) == 8);
static_assert(offsetof(PFAppSuite4, PF_SetCursor) == 32 && sizeof(PFAppSuite4::PF_SetCursor) == 8);
static_assert(offsetof(PFAppSuite4, PF_IsRenderEngine) == 40 && sizeof(PFAppSuite4::PF_IsRenderEngine) == 8);
static_assert(offsetof(PFAppSuite4, PF_AppColorPickerDialog) == 48 &&
              sizeof(PFAppSuite4::PF_AppColorPickerDialog) == 8);
static_assert(offsetof(PFAppSuite4, PF_GetMouse) == 56 && sizeof(PFAppSuite4::PF_GetMouse) == 8);
static_assert(offsetof(PFAppSuite4, PF_InvalidateRect) == 64 && sizeof(PFAppSuite4::PF_InvalidateRect) == 8);
static_assert(offsetof(PFAppSuite4, PF_ConvertLocalToGlobal) == 72 &&
              sizeof(PFAppSuite4::PF_ConvertLocalToGlobal) == 8);
static_assert(offsetof(PFAppSuite4, PF_GetColorAtGlobalPoint) == 80 &&
              sizeof(PFAppSuite4::PF_GetColorAtGlobalPoint) == 8);
static_assert(sizeof(PF_State) == 16 && alignof(PF_State) == 4);
static_assert(offsetof(PF_State, reservedAL) == 0 && sizeof(PF_State::reservedAL) == 16);
static_assert(sizeof(PF_ParamUtilsSuite1) == 80 && alignof(PF_ParamUtilsSuite1) == 8);
static_assert(offsetof(PF_ParamUtilsSuite1, PF_UpdateParamUI) == 0 &&
              sizeof(PF_ParamUtilsSuite1::PF_UpdateParamUI) == 8);
static_assert(offsetof(PF_ParamUtilsSuite1, PF_GetCurrentStateObsolete) == 8 &&
              sizeof(PF_ParamUtilsSuite1::PF_GetCurrentStateObsolete) == 8);
static_assert(offsetof(PF_ParamUtilsSuite1, PF_HasParamChangedObsolete) == 16 &&
              sizeof(PF_ParamUtilsSuite1::PF_HasParamChangedObsolete) == 8);
static_assert(offsetof(PF_ParamUtilsSuite1, PF_HaveInputsChangedOverTimeSpanObsolete) == 24 &&
              sizeof(PF_ParamUtilsSuite1::PF_HaveInputsChangedOverTimeSpanObsolete) == 8);
static_assert(offsetof(PF_ParamUtilsSuite1, PF_IsIdenticalCheckout) == 32 &&
              sizeof(PF_ParamUtilsSuite1::PF_IsIdenticalCheckout) == 8);
static_assert(offsetof(PF_ParamUtilsSuite1, PF_FindKeyframeTime) == 40 &&
              sizeof(PF_ParamUtilsSuite1::PF_FindKeyframeTime) == 8);
static_assert(offsetof(PF_ParamUtilsSuite1, PF_GetKeyframeCount) == 48 &&
              sizeof(PF_ParamUtilsSuite1::PF_GetKeyframeCount) == 8);
static_assert(offsetof(PF_ParamUtilsSuite1, PF_CheckoutKeyframe) == 56 &&
              sizeof(PF_ParamUtilsSuite1::PF_CheckoutKeyframe) == 8);
static_assert(offsetof(PF_ParamUtilsSuite1, PF_CheckinKeyframe) == 64 &&
              sizeof(PF_ParamUtilsSuite1::PF_CheckinKeyframe) == 8);
static_assert(offsetof(PF_ParamUtilsSuite1, PF_KeyIndexToTime) == 72 &&
              sizeof(PF_ParamUtilsSuite1::PF_KeyIndexToTime) == 8);
#endif
