/// Newer tables of the host application, of the controls and of the effect's own window; layouts that Suites.h lacks.
#pragma once

#include "ae/Constants.h"
#include "ae/Scalars.h"
#include "ae/Suites.h"

inline constexpr const char* kPFEffectUISuite = "PF Effect UI Suite";  ///< 1

inline constexpr int32 kPFAppSuiteVersion7 = 7;         ///< PFAppSuite5
inline constexpr int32 kPFAppSuiteVersion1 = 1;         ///< PFAppSuite6: on 64 bits, 1 is the newest
inline constexpr int32 kPFParamUtilsSuiteVersion3 = 3;  ///< PF_ParamUtilsSuite3

/// The key index of a parameter without keyframes.
inline constexpr PF_KeyIndex PF_KeyIndex_NONE = -1;

struct PF_AppProgressDialog;  // never opened
using PF_AppProgressDialogP = PF_AppProgressDialog*;

/// What an effect with controls of its own drawing wants to hear of; given to register_ui.
struct PF_CustomUIInfo {
  A_long reserved;
  A_long events;  ///< PF_CustomEFlag_*
  A_long comp_ui_width;
  A_long comp_ui_height;
  A_long comp_ui_alignment;
  A_long layer_ui_width;
  A_long layer_ui_height;
  A_long layer_ui_alignment;
  A_long preview_ui_width;
  A_long preview_ui_height;
  A_long preview_ui_alignment;
};
inline constexpr A_long PF_CustomEFlag_COMP = 1;
inline constexpr A_long PF_CustomEFlag_LAYER = 2;
inline constexpr A_long PF_CustomEFlag_EFFECT = 4;
inline constexpr A_long PF_CustomEFlag_PREVIEW = 8;

/// The host application. Asked for as "PF AE App Suite", 7.
struct PFAppSuite5 {
  PF_Err (*PF_AppGetBgColor)(PF_App_Color* bg_colorP);
  PF_Err (*PF_AppGetColor)(PF_App_ColorType color_type, PF_App_Color* app_colorP);
  PF_Err (*PF_AppGetLanguage)(A_char* lang_tagZ);
  PF_Err (*PF_GetPersonalInfo)(PF_AppPersonalTextInfo* ptiP);
  PF_Err (*PF_GetFontStyleSheet)(PF_FontStyleSheet sheet, PF_FontName* font_nameP0, A_short* font_numPS0,
                                 A_short* sizePS0, A_short* stylePS0);
  PF_Err (*PF_SetCursor)(PF_CursorType cursor);
  PF_Err (*PF_IsRenderEngine)(PF_Boolean* render_enginePB);
  PF_Err (*PF_AppColorPickerDialog)(const A_char* dialog_titleZ0, const PF_PixelFloat* sample_colorP,
                                    PF_Boolean use_ws_to_monitor_xformB, PF_PixelFloat* new_colorP);
  PF_Err (*PF_GetMouse)(PF_Point* pointP);
  PF_Err (*PF_InvalidateRect)(const PF_ContextH contextH, const PF_Rect* rectP0);
  PF_Err (*PF_ConvertLocalToGlobal)(const PF_Point* localP, PF_Point* globalP);
  PF_Err (*PF_GetColorAtGlobalPoint)(const PF_Point* globalP, A_short eyeSize, PF_EyeDropperSampleMode mode,
                                     PF_PixelFloat* outColorP);
};

/// The host application. Asked for as "PF AE App Suite", 1.
struct PFAppSuite6 {
  PF_Err (*PF_AppGetBgColor)(PF_App_Color* bg_colorP);
  PF_Err (*PF_AppGetColor)(PF_App_ColorType color_type, PF_App_Color* app_colorP);
  PF_Err (*PF_AppGetLanguage)(A_char* lang_tagZ);
  PF_Err (*PF_GetPersonalInfo)(PF_AppPersonalTextInfo* ptiP);
  PF_Err (*PF_GetFontStyleSheet)(PF_FontStyleSheet sheet, PF_FontName* font_nameP0, A_short* font_numPS0,
                                 A_short* sizePS0, A_short* stylePS0);
  PF_Err (*PF_SetCursor)(PF_CursorType cursor);
  PF_Err (*PF_IsRenderEngine)(PF_Boolean* render_enginePB);
  PF_Err (*PF_AppColorPickerDialog)(const A_char* dialog_titleZ0, const PF_PixelFloat* sample_colorP,
                                    PF_Boolean use_ws_to_monitor_xformB, PF_PixelFloat* new_colorP);
  PF_Err (*PF_GetMouse)(PF_Point* pointP);
  PF_Err (*PF_InvalidateRect)(const PF_ContextH contextH, const PF_Rect* rectP0);
  PF_Err (*PF_ConvertLocalToGlobal)(const PF_Point* localP, PF_Point* globalP);
  PF_Err (*PF_GetColorAtGlobalPoint)(const PF_Point* globalP, A_short eyeSize, PF_EyeDropperSampleMode mode,
                                     PF_PixelFloat* outColorP);
  PF_Err (*PF_CreateNewAppProgressDialog)(const A_UTF16Char* titleZ, const A_UTF16Char* cancel_strZ0,
                                          PF_Boolean indeterminateB, PF_AppProgressDialogP* prog_dlgPP);
  PF_Err (*PF_AppProgressDialogUpdate)(PF_AppProgressDialogP prog_dlgP, A_long countL, A_long totalL);
  PF_Err (*PF_DisposeAppProgressDialog)(PF_AppProgressDialogP prog_dlgP);
};

/// The parameters as the user sees them. Asked for as "PF Param Utils Suite", 3.
struct PF_ParamUtilsSuite3 {
  PF_Err (*PF_UpdateParamUI)(PF_ProgPtr effect_ref, PF_ParamIndex param_index, const PF_ParamDef* defP);
  PF_Err (*PF_GetCurrentState)(PF_ProgPtr effect_ref, PF_ParamIndex param_index, const A_Time* startPT0,
                               const A_Time* durationPT0, PF_State* stateP);
  PF_Err (*PF_AreStatesIdentical)(PF_ProgPtr effect_ref, const PF_State* state1P, const PF_State* state2P,
                                  A_Boolean* samePB);
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

/// The effect's place in the host's window. Asked for as "PF Effect UI Suite", 1.
struct PF_EffectUISuite {
  PF_Err (*PF_SetOptionsButtonName)(PF_ProgPtr effect_ref, const A_char* nameZ);
};

// Layout, identical on 64-bit Windows and on Linux x86-64. A compiler that disagrees must not build. WebAssembly has
// pointers of 32 bits; there the module and the host are one program, and no saved byte depends on these records.
#ifndef __wasm32__
static_assert(sizeof(PF_CustomUIInfo) == 44 && alignof(PF_CustomUIInfo) == 4);
static_assert(offsetof(PF_CustomUIInfo, events) == 4 && offsetof(PF_CustomUIInfo, comp_ui_alignment) == 16);
static_assert(offsetof(PF_CustomUIInfo, layer_ui_width) == 20 && offsetof(PF_CustomUIInfo, preview_ui_width) == 32);
static_assert(offsetof(PF_CustomUIInfo, preview_ui_alignment) == 40);
static_assert(sizeof(PFAppSuite5) == 96 && alignof(PFAppSuite5) == 8);
static_assert(offsetof(PFAppSuite5, PF_AppGetBgColor) == 0 && sizeof(PFAppSuite5::PF_AppGetBgColor) == 8);
static_assert(offsetof(PFAppSuite5, PF_AppGetColor) == 8 && sizeof(PFAppSuite5::PF_AppGetColor) == 8);
static_assert(offsetof(PFAppSuite5, PF_AppGetLanguage) == 16 && sizeof(PFAppSuite5::PF_AppGetLanguage) == 8);
static_assert(offsetof(PFAppSuite5, PF_GetPersonalInfo) == 24 && sizeof(PFAppSuite5::PF_GetPersonalInfo) == 8);
static_assert(offsetof(PFAppSuite5, PF_GetFontStyleSheet) == 32 && sizeof(PFAppSuite5::PF_GetFontStyleSheet) == 8);
static_assert(offsetof(PFAppSuite5, PF_SetCursor) == 40 && sizeof(PFAppSuite5::PF_SetCursor) == 8);
static_assert(offsetof(PFAppSuite5, PF_IsRenderEngine) == 48 && sizeof(PFAppSuite5::PF_IsRenderEngine) == 8);
static_assert(offsetof(PFAppSuite5, PF_AppColorPickerDialog) == 56 &&
              sizeof(PFAppSuite5::PF_AppColorPickerDialog) == 8);
static_assert(offsetof(PFAppSuite5, PF_GetMouse) == 64 && sizeof(PFAppSuite5::PF_GetMouse) == 8);
static_assert(offsetof(PFAppSuite5, PF_InvalidateRect) == 72 && sizeof(PFAppSuite5::PF_InvalidateRect) == 8);
static_assert(offsetof(PFAppSuite5, PF_ConvertLocalToGlobal) == 80 &&
              sizeof(PFAppSuite5::PF_ConvertLocalToGlobal) == 8);
static_assert(offsetof(PFAppSuite5, PF_GetColorAtGlobalPoint) == 88 &&
              sizeof(PFAppSuite5::PF_GetColorAtGlobalPoint) == 8);
static_assert(sizeof(PFAppSuite6) == 120 && alignof(PFAppSuite6) == 8);
static_assert(offsetof(PFAppSuite6, PF_AppGetBgColor) == 0 && sizeof(PFAppSuite6::PF_AppGetBgColor) == 8);
static_assert(offsetof(PFAppSuite6, PF_AppGetColor) == 8 && sizeof(PFAppSuite6::PF_AppGetColor) == 8);
static_assert(offsetof(PFAppSuite6, PF_AppGetLanguage) == 16 && sizeof(PFAppSuite6::PF_AppGetLanguage) == 8);
static_assert(offsetof(PFAppSuite6, PF_GetPersonalInfo) == 24 && sizeof(PFAppSuite6::PF_GetPersonalInfo) == 8);
static_assert(offsetof(PFAppSuite6, PF_GetFontStyleSheet) == 32 && sizeof(PFAppSuite6::PF_GetFontStyleSheet) == 8);
static_assert(offsetof(PFAppSuite6, PF_SetCursor) == 40 && sizeof(PFAppSuite6::PF_SetCursor) == 8);
static_assert(offsetof(PFAppSuite6, PF_IsRenderEngine) == 48 && sizeof(PFAppSuite6::PF_IsRenderEngine) == 8);
static_assert(offsetof(PFAppSuite6, PF_AppColorPickerDialog) == 56 &&
              sizeof(PFAppSuite6::PF_AppColorPickerDialog) == 8);
static_assert(offsetof(PFAppSuite6, PF_GetMouse) == 64 && sizeof(PFAppSuite6::PF_GetMouse) == 8);
static_assert(offsetof(PFAppSuite6, PF_InvalidateRect) == 72 && sizeof(PFAppSuite6::PF_InvalidateRect) == 8);
static_assert(offsetof(PFAppSuite6, PF_ConvertLocalToGlobal) == 80 &&
              sizeof(PFAppSuite6::PF_ConvertLocalToGlobal) == 8);
static_assert(offsetof(PFAppSuite6, PF_GetColorAtGlobalPoint) == 88 &&
              sizeof(PFAppSuite6::PF_GetColorAtGlobalPoint) == 8);
static_assert(offsetof(PFAppSuite6, PF_CreateNewAppProgressDialog) == 96 &&
              sizeof(PFAppSuite6::PF_CreateNewAppProgressDialog) == 8);
static_assert(offsetof(PFAppSuite6, PF_AppProgressDialogUpdate) == 104 &&
              sizeof(PFAppSuite6::PF_AppProgressDialogUpdate) == 8);
static_assert(offsetof(PFAppSuite6, PF_DisposeAppProgressDialog) == 112 &&
              sizeof(PFAppSuite6::PF_DisposeAppProgressDialog) == 8);
static_assert(sizeof(PF_ParamUtilsSuite3) == 72 && alignof(PF_ParamUtilsSuite3) == 8);
static_assert(offsetof(PF_ParamUtilsSuite3, PF_UpdateParamUI) == 0 &&
              sizeof(PF_ParamUtilsSuite3::PF_UpdateParamUI) == 8);
static_assert(offsetof(PF_ParamUtilsSuite3, PF_GetCurrentState) == 8 &&
              sizeof(PF_ParamUtilsSuite3::PF_GetCurrentState) == 8);
static_assert(offsetof(PF_ParamUtilsSuite3, PF_AreStatesIdentical) == 16 &&
              sizeof(PF_ParamUtilsSuite3::PF_AreStatesIdentical) == 8);
static_assert(offsetof(PF_ParamUtilsSuite3, PF_IsIdenticalCheckout) == 24 &&
              sizeof(PF_ParamUtilsSuite3::PF_IsIdenticalCheckout) == 8);
static_assert(offsetof(PF_ParamUtilsSuite3, PF_FindKeyframeTime) == 32 &&
              sizeof(PF_ParamUtilsSuite3::PF_FindKeyframeTime) == 8);
static_assert(offsetof(PF_ParamUtilsSuite3, PF_GetKeyframeCount) == 40 &&
              sizeof(PF_ParamUtilsSuite3::PF_GetKeyframeCount) == 8);
static_assert(offsetof(PF_ParamUtilsSuite3, PF_CheckoutKeyframe) == 48 &&
              sizeof(PF_ParamUtilsSuite3::PF_CheckoutKeyframe) == 8);
static_assert(offsetof(PF_ParamUtilsSuite3, PF_CheckinKeyframe) == 56 &&
              sizeof(PF_ParamUtilsSuite3::PF_CheckinKeyframe) == 8);
static_assert(offsetof(PF_ParamUtilsSuite3, PF_KeyIndexToTime) == 64 &&
              sizeof(PF_ParamUtilsSuite3::PF_KeyIndexToTime) == 8);
static_assert(sizeof(PF_EffectUISuite) == 8 && alignof(PF_EffectUISuite) == 8);
static_assert(offsetof(PF_EffectUISuite, PF_SetOptionsButtonName) == 0 &&
              sizeof(PF_EffectUISuite::PF_SetOptionsButtonName) == 8);
#endif
