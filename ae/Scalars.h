/// Numbers, handles and opaque pointers of the host's effect interface.
///
/// The interface has 32-bit "long"s on every platform: types here have fixed widths, and every enumeration is an
/// integer type plus constants (Constants.h), never a C++ enum, because enums have another width elsewhere.
#pragma once

#include <cstddef>
#include <cstdint>

// Plain char, signed on every platform that the interface knows.
using A_char = char;
using PF_Boolean = A_char;  ///< one byte; 0 is no, anything else yes
using A_Boolean = uint8_t;

using A_long = int32_t;
using A_u_long = uint32_t;
using A_short = int16_t;
using A_u_short = uint16_t;
using A_u_char = uint8_t;
using A_FpLong = double;
using A_FpShort = float;
using A_Err = int32_t;
using A_Fixed = int32_t;    ///< 16.16
using A_UFixed = uint32_t;  ///< 16.16
using A_intptr_t = int64_t;
using A_u_longlong = uint64_t;
using A_HandleSize = uint64_t;  ///< bytes
using A_UTF16Char = uint16_t;
using PF_Err = int32_t;
using PF_Cmd = int32_t;
using PF_Fixed = int32_t;    ///< 16.16, value times 65536
using PF_UFixed = uint32_t;  ///< 16.16
using PF_FpLong = double;
using PF_FpShort = float;
using PF_ParamIndex = int32_t;
using PF_ParamValue = int32_t;
using PF_ParamType = int32_t;
using PF_ParamFlags = int32_t;
using PF_ParamUIFlags = int32_t;
using PF_ChangeFlags = int32_t;
using PF_OutFlags = int32_t;
using PF_OutFlags2 = int32_t;
using PF_InFlags = int32_t;
using PF_Quality = int32_t;
using PF_ModeFlags = int32_t;
using PF_Field = int32_t;
using PF_Stage = int32_t;
using PF_WorldFlags = int32_t;
using PF_NewWorldFlags = int32_t;
using PF_PixelFormat = int32_t;
using PF_PixLong = uint32_t;
using PF_ValueDisplayFlags = int16_t;
using PF_FSliderFlags = uint32_t;
using PF_PathID = uint32_t;
using PF_TransferMode = int32_t;
using PF_XferMode = int32_t;
using PF_MaskFlags = int32_t;
using PF_ChannelMask = int32_t;
using PF_RenderOutputFlags = int16_t;
using PF_GPU_Framework = int32_t;
using PF_PlatDataID = int32_t;
using PF_CallbackID = int32_t;
using PF_KernelFlags = uint32_t;
using PF_SampleEdgeBehav = uint32_t;
using PF_SoundFormat = int16_t;
using PF_SoundSampleSize = int16_t;
using PF_SoundChannels = int16_t;
using PF_App_ColorType = int16_t;
using PF_CursorType = int32_t;
using PF_FontStyleSheet = int32_t;  ///< 32 bits on the only compiler that hosts are built with
using PF_EyeDropperSampleMode = int16_t;
using PF_TimeDir = int32_t;
using PF_KeyIndex = int32_t;

using SPErr = int32_t;  ///< 0 for success, else a four-letter number
using SPBoolean = int32_t;
using int32 = int32_t;

using PF_Handle = void**;  ///< a block of the host; *handle is its address while it is locked
using PF_ArbitraryH = PF_Handle;
struct PF_ProgressInfo;               ///< never opened
using PF_ProgPtr = PF_ProgressInfo*;  ///< names the instance at every call back
struct PF_Context;                    ///< never opened
using PF_ContextH = PF_Context**;
struct PF_ParamDef;
using PF_ParamDefPtr = PF_ParamDef*;
using PF_ParamList = PF_ParamDef**;
using PF_DeletePreRenderDataFunc = void (*)(void* pre_render_data);

/// A version pair, as of the effect interface that the host speaks (13.0 is the first 64-bit host).
struct PF_SpecVersion {
  A_short major;
  A_short minor;
};

/// A time of value / scale seconds.
struct A_Time {
  A_long value;
  A_u_long scale;
};

// Layout, identical on 64-bit Windows and on Linux x86-64. A compiler that disagrees must not build. WebAssembly has
// pointers of 32 bits; there the module and the host are one program, and no saved byte depends on these records.
#ifndef __wasm32__
static_assert(sizeof(PF_SpecVersion) == 4 && alignof(PF_SpecVersion) == 2);
static_assert(offsetof(PF_SpecVersion, major) == 0 && sizeof(PF_SpecVersion::major) == 2);
static_assert(offsetof(PF_SpecVersion, minor) == 2 && sizeof(PF_SpecVersion::minor) == 2);
static_assert(sizeof(A_Time) == 8 && alignof(A_Time) == 4);
static_assert(offsetof(A_Time, value) == 0 && sizeof(A_Time::value) == 4);
static_assert(offsetof(A_Time, scale) == 4 && sizeof(A_Time::scale) == 4);
#endif
