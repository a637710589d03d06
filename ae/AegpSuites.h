/// Tables that the host lends to effects and to general modules alike: registration, memory, queue, loops.
#pragma once

#include "ae/PixelSuites.h"
#include "ae/Scalars.h"

inline constexpr const char* kAEGPUtilitySuite = "AEGP Utility Suite";           ///< 7; 3 and 5 are shorter
inline constexpr const char* kAEGPRenderQueueSuite = "AEGP Render Queue Suite";  ///< 1
inline constexpr const char* kAEGPMemorySuite = "AEGP Memory Suite";             ///< 1
inline constexpr const char* kAEGPPFInterfaceSuite = "AEGP PF Interface Suite";  ///< 1
inline constexpr const char* kAEGPIterateSuite = "AEGP Iterate Suite";           ///< 1 and 2, one layout

using AEGP_PluginID = int32_t;
using AEGP_MemSize = uint32_t;  ///< bytes
using AEGP_MemFlag = int32_t;
using AEGP_RenderQueueState = uint32_t;
using AEGP_GlobalRefcon = void*;
using AEGP_MemHandle = void**;  ///< only to be locked, never to be dereferenced
using AEGP_CompH = void**;
using AEGP_LayerH = void**;
using AEGP_EffectRefH = void**;

inline constexpr AEGP_MemFlag AEGP_MemFlag_NONE = 0;
inline constexpr AEGP_MemFlag AEGP_MemFlag_CLEAR = 1;  ///< the memory is zero
inline constexpr AEGP_MemFlag AEGP_MemFlag_QUIET = 2;  ///< a failure isn't told to the user

inline constexpr AEGP_RenderQueueState AEGP_RenderQueueState_STOPPED = 0;
inline constexpr AEGP_RenderQueueState AEGP_RenderQueueState_PAUSED = 1;
inline constexpr AEGP_RenderQueueState AEGP_RenderQueueState_RENDERING = 2;

/// A state of the host's error reports; only the host reads it.
struct AEGP_ErrReportState {
  A_long reservedAL[12];
};

/// Four rows of four.
struct A_Matrix4 {
  A_FpLong mat[4][4];
};

/// Registration of a module, and odds and ends. Asked for as "AEGP Utility Suite", 7; 5 and 3 end after members 18
/// and 8. Members without arguments here are listed for their places only.
struct AEGP_UtilitySuite {
  A_Err (*AEGP_ReportInfo)(AEGP_PluginID id, const A_char* text);
  A_Err (*AEGP_GetDriverPluginInitFuncVersion)();
  A_Err (*AEGP_GetDriverImplementationVersion)();
  A_Err (*AEGP_StartQuietErrors)(AEGP_ErrReportState* state);
  A_Err (*AEGP_EndQuietErrors)(A_Boolean report, AEGP_ErrReportState* state);
  A_Err (*AEGP_StartUndoGroup)(const A_char* name);
  A_Err (*AEGP_EndUndoGroup)();
  A_Err (*AEGP_RegisterWithAEGP)(AEGP_GlobalRefcon refcon, const A_char* name, AEGP_PluginID* id_out);
  A_Err (*AEGP_GetMainHWND)(void* hwnd_out);
  A_Err (*AEGP_ShowHideAllFloaters)();
  A_Err (*AEGP_PaintPalGetForeColor)();
  A_Err (*AEGP_PaintPalGetBackColor)();
  A_Err (*AEGP_PaintPalSetForeColor)();
  A_Err (*AEGP_PaintPalSetBackColor)();
  A_Err (*AEGP_CharPalGetFillColor)();
  A_Err (*AEGP_CharPalGetStrokeColor)();
  A_Err (*AEGP_CharPalSetFillColor)();
  A_Err (*AEGP_CharPalSetStrokeColor)();
  A_Err (*AEGP_CharPalIsFillColorUIFrontmost)();
  A_Err (*AEGP_ConvertFpLongToHSFRatio)();
  A_Err (*AEGP_ConvertHSFRatioToFpLong)();
  A_Err (*AEGP_CauseIdleRoutinesToBeCalled)();
  A_Err (*AEGP_GetSuppressInteractiveUI)(A_Boolean* out);
  A_Err (*AEGP_WriteToOSConsole)(const A_char* text);
  A_Err (*AEGP_WriteToDebugLog)(const A_char* subsystem, const A_char* event, const A_char* text);
};

/// The queue of compositions to be rendered. Asked for as "AEGP Render Queue Suite", 1.
struct AEGP_RenderQueueSuite {
  A_Err (*AEGP_AddCompToRenderQueue)(AEGP_CompH comp, const A_char* pathZ);
  A_Err (*AEGP_SetRenderQueueState)(AEGP_RenderQueueState state);
  A_Err (*AEGP_GetRenderQueueState)(AEGP_RenderQueueState* stateP);
};

/// Memory that is moved while it is not locked. Asked for as "AEGP Memory Suite", 1.
struct AEGP_MemorySuite {
  A_Err (*AEGP_NewMemHandle)(AEGP_PluginID plugin_id, const A_char* whatZ, AEGP_MemSize size, AEGP_MemFlag flags,
                             AEGP_MemHandle* memPH);
  A_Err (*AEGP_FreeMemHandle)(AEGP_MemHandle memH);
  A_Err (*AEGP_LockMemHandle)(AEGP_MemHandle memH, void** ptr_to_ptr);
  A_Err (*AEGP_UnlockMemHandle)(AEGP_MemHandle memH);
  A_Err (*AEGP_GetMemHandleSize)(AEGP_MemHandle memH, AEGP_MemSize* sizeP);
  A_Err (*AEGP_ResizeMemHandle)(const A_char* whatZ, AEGP_MemSize new_size, AEGP_MemHandle memH);
  A_Err (*AEGP_SetMemReportingOn)(A_Boolean turn_OnB);
  A_Err (*AEGP_GetMemStats)(AEGP_PluginID plugin_id, A_long* countPL, A_long* sizePL);
};

/// From an effect to the layer that it lies on. Asked for as "AEGP PF Interface Suite", 1.
struct AEGP_PFInterfaceSuite {
  A_Err (*AEGP_GetEffectLayer)(PF_ProgPtr effect_pp_ref, AEGP_LayerH* layerPH);
  A_Err (*AEGP_GetNewEffectForEffect)(AEGP_PluginID aegp_plugin_id, PF_ProgPtr effect_pp_ref,
                                      AEGP_EffectRefH* effect_refPH);
  A_Err (*AEGP_ConvertEffectToCompTime)(PF_ProgPtr effect_pp_ref, A_long what_timeL, A_u_long time_scaleLu,
                                        A_Time* comp_timePT);
  A_Err (*AEGP_GetEffectCamera)(PF_ProgPtr effect_pp_ref, const A_Time* comp_timePT, AEGP_LayerH* camera_layerPH);
  A_Err (*AEGP_GetEffectCameraMatrix)(PF_ProgPtr effect_pp_ref, const A_Time* comp_timePT, A_Matrix4* camera_matrixP,
                                      A_FpLong* dist_to_image_planePF, A_short* image_plane_widthPL,
                                      A_short* image_plane_heightPL);
};

/// Loops over the host's threads. Asked for as "AEGP Iterate Suite", 1 or 2.
struct AEGP_IterateSuite {
  A_Err (*AEGP_GetNumThreads)(A_long* num_threadsPL);
  A_Err (*AEGP_IterateGeneric)(A_long iterationsL, void* refconPV, PF_GenericFunc fn_func);
};

// Layout, identical on 64-bit Windows and on Linux x86-64. A compiler that disagrees must not build. WebAssembly has
// pointers of 32 bits; there the module and the host are one program, and no saved byte depends on these records.
#ifndef __wasm32__
static_assert(sizeof(AEGP_ErrReportState) == 48 && alignof(AEGP_ErrReportState) == 4);
static_assert(sizeof(A_Matrix4) == 128 && alignof(A_Matrix4) == 8);
static_assert(sizeof(AEGP_UtilitySuite) == 200 && alignof(AEGP_UtilitySuite) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_ReportInfo) == 0 && sizeof(AEGP_UtilitySuite::AEGP_ReportInfo) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_GetDriverPluginInitFuncVersion) == 8 &&
              sizeof(AEGP_UtilitySuite::AEGP_GetDriverPluginInitFuncVersion) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_GetDriverImplementationVersion) == 16 &&
              sizeof(AEGP_UtilitySuite::AEGP_GetDriverImplementationVersion) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_StartQuietErrors) == 24 &&
              sizeof(AEGP_UtilitySuite::AEGP_StartQuietErrors) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_EndQuietErrors) == 32 &&
              sizeof(AEGP_UtilitySuite::AEGP_EndQuietErrors) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_StartUndoGroup) == 40 &&
              sizeof(AEGP_UtilitySuite::AEGP_StartUndoGroup) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_EndUndoGroup) == 48 &&
              sizeof(AEGP_UtilitySuite::AEGP_EndUndoGroup) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_RegisterWithAEGP) == 56 &&
              sizeof(AEGP_UtilitySuite::AEGP_RegisterWithAEGP) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_GetMainHWND) == 64 && sizeof(AEGP_UtilitySuite::AEGP_GetMainHWND) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_ShowHideAllFloaters) == 72 &&
              sizeof(AEGP_UtilitySuite::AEGP_ShowHideAllFloaters) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_PaintPalGetForeColor) == 80 &&
              sizeof(AEGP_UtilitySuite::AEGP_PaintPalGetForeColor) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_PaintPalGetBackColor) == 88 &&
              sizeof(AEGP_UtilitySuite::AEGP_PaintPalGetBackColor) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_PaintPalSetForeColor) == 96 &&
              sizeof(AEGP_UtilitySuite::AEGP_PaintPalSetForeColor) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_PaintPalSetBackColor) == 104 &&
              sizeof(AEGP_UtilitySuite::AEGP_PaintPalSetBackColor) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_CharPalGetFillColor) == 112 &&
              sizeof(AEGP_UtilitySuite::AEGP_CharPalGetFillColor) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_CharPalGetStrokeColor) == 120 &&
              sizeof(AEGP_UtilitySuite::AEGP_CharPalGetStrokeColor) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_CharPalSetFillColor) == 128 &&
              sizeof(AEGP_UtilitySuite::AEGP_CharPalSetFillColor) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_CharPalSetStrokeColor) == 136 &&
              sizeof(AEGP_UtilitySuite::AEGP_CharPalSetStrokeColor) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_CharPalIsFillColorUIFrontmost) == 144 &&
              sizeof(AEGP_UtilitySuite::AEGP_CharPalIsFillColorUIFrontmost) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_ConvertFpLongToHSFRatio) == 152 &&
              sizeof(AEGP_UtilitySuite::AEGP_ConvertFpLongToHSFRatio) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_ConvertHSFRatioToFpLong) == 160 &&
              sizeof(AEGP_UtilitySuite::AEGP_ConvertHSFRatioToFpLong) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_CauseIdleRoutinesToBeCalled) == 168 &&
              sizeof(AEGP_UtilitySuite::AEGP_CauseIdleRoutinesToBeCalled) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_GetSuppressInteractiveUI) == 176 &&
              sizeof(AEGP_UtilitySuite::AEGP_GetSuppressInteractiveUI) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_WriteToOSConsole) == 184 &&
              sizeof(AEGP_UtilitySuite::AEGP_WriteToOSConsole) == 8);
static_assert(offsetof(AEGP_UtilitySuite, AEGP_WriteToDebugLog) == 192 &&
              sizeof(AEGP_UtilitySuite::AEGP_WriteToDebugLog) == 8);
static_assert(sizeof(AEGP_RenderQueueSuite) == 24 && alignof(AEGP_RenderQueueSuite) == 8);
static_assert(offsetof(AEGP_RenderQueueSuite, AEGP_AddCompToRenderQueue) == 0 &&
              sizeof(AEGP_RenderQueueSuite::AEGP_AddCompToRenderQueue) == 8);
static_assert(offsetof(AEGP_RenderQueueSuite, AEGP_SetRenderQueueState) == 8 &&
              sizeof(AEGP_RenderQueueSuite::AEGP_SetRenderQueueState) == 8);
static_assert(offsetof(AEGP_RenderQueueSuite, AEGP_GetRenderQueueState) == 16 &&
              sizeof(AEGP_RenderQueueSuite::AEGP_GetRenderQueueState) == 8);
static_assert(sizeof(AEGP_MemorySuite) == 64 && alignof(AEGP_MemorySuite) == 8);
static_assert(offsetof(AEGP_MemorySuite, AEGP_NewMemHandle) == 0 && sizeof(AEGP_MemorySuite::AEGP_NewMemHandle) == 8);
static_assert(offsetof(AEGP_MemorySuite, AEGP_FreeMemHandle) == 8 && sizeof(AEGP_MemorySuite::AEGP_FreeMemHandle) == 8);
static_assert(offsetof(AEGP_MemorySuite, AEGP_LockMemHandle) == 16 &&
              sizeof(AEGP_MemorySuite::AEGP_LockMemHandle) == 8);
static_assert(offsetof(AEGP_MemorySuite, AEGP_UnlockMemHandle) == 24 &&
              sizeof(AEGP_MemorySuite::AEGP_UnlockMemHandle) == 8);
static_assert(offsetof(AEGP_MemorySuite, AEGP_GetMemHandleSize) == 32 &&
              sizeof(AEGP_MemorySuite::AEGP_GetMemHandleSize) == 8);
static_assert(offsetof(AEGP_MemorySuite, AEGP_ResizeMemHandle) == 40 &&
              sizeof(AEGP_MemorySuite::AEGP_ResizeMemHandle) == 8);
static_assert(offsetof(AEGP_MemorySuite, AEGP_SetMemReportingOn) == 48 &&
              sizeof(AEGP_MemorySuite::AEGP_SetMemReportingOn) == 8);
static_assert(offsetof(AEGP_MemorySuite, AEGP_GetMemStats) == 56 && sizeof(AEGP_MemorySuite::AEGP_GetMemStats) == 8);
static_assert(sizeof(AEGP_PFInterfaceSuite) == 40 && alignof(AEGP_PFInterfaceSuite) == 8);
static_assert(offsetof(AEGP_PFInterfaceSuite, AEGP_GetEffectLayer) == 0 &&
              sizeof(AEGP_PFInterfaceSuite::AEGP_GetEffectLayer) == 8);
static_assert(offsetof(AEGP_PFInterfaceSuite, AEGP_GetNewEffectForEffect) == 8 &&
              sizeof(AEGP_PFInterfaceSuite::AEGP_GetNewEffectForEffect) == 8);
static_assert(offsetof(AEGP_PFInterfaceSuite, AEGP_ConvertEffectToCompTime) == 16 &&
              sizeof(AEGP_PFInterfaceSuite::AEGP_ConvertEffectToCompTime) == 8);
static_assert(offsetof(AEGP_PFInterfaceSuite, AEGP_GetEffectCamera) == 24 &&
              sizeof(AEGP_PFInterfaceSuite::AEGP_GetEffectCamera) == 8);
static_assert(offsetof(AEGP_PFInterfaceSuite, AEGP_GetEffectCameraMatrix) == 32 &&
              sizeof(AEGP_PFInterfaceSuite::AEGP_GetEffectCameraMatrix) == 8);
static_assert(sizeof(AEGP_IterateSuite) == 16 && alignof(AEGP_IterateSuite) == 8);
static_assert(offsetof(AEGP_IterateSuite, AEGP_GetNumThreads) == 0 &&
              sizeof(AEGP_IterateSuite::AEGP_GetNumThreads) == 8);
static_assert(offsetof(AEGP_IterateSuite, AEGP_IterateGeneric) == 8 &&
              sizeof(AEGP_IterateSuite::AEGP_IterateGeneric) == 8);
#endif
