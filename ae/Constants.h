/// Numbers of the host's effect interface: commands, errors, flags, modes, pixel formats, limits.
///
/// Each has the integer type of the field or argument that it goes into. Reserved values are left out.
#pragma once

#include "ae/Scalars.h"

// Commands.
inline constexpr PF_Cmd PF_Cmd_ABOUT = 0;
inline constexpr PF_Cmd PF_Cmd_GLOBAL_SETUP = 1;
inline constexpr PF_Cmd PF_Cmd_UNUSED_0 = 2;
inline constexpr PF_Cmd PF_Cmd_GLOBAL_SETDOWN = 3;
inline constexpr PF_Cmd PF_Cmd_PARAMS_SETUP = 4;
inline constexpr PF_Cmd PF_Cmd_SEQUENCE_SETUP = 5;
inline constexpr PF_Cmd PF_Cmd_SEQUENCE_RESETUP = 6;
inline constexpr PF_Cmd PF_Cmd_SEQUENCE_FLATTEN = 7;
inline constexpr PF_Cmd PF_Cmd_SEQUENCE_SETDOWN = 8;
inline constexpr PF_Cmd PF_Cmd_DO_DIALOG = 9;
inline constexpr PF_Cmd PF_Cmd_FRAME_SETUP = 10;
inline constexpr PF_Cmd PF_Cmd_RENDER = 11;
inline constexpr PF_Cmd PF_Cmd_FRAME_SETDOWN = 12;
inline constexpr PF_Cmd PF_Cmd_USER_CHANGED_PARAM = 13;
inline constexpr PF_Cmd PF_Cmd_UPDATE_PARAMS_UI = 14;
inline constexpr PF_Cmd PF_Cmd_EVENT = 15;
inline constexpr PF_Cmd PF_Cmd_GET_EXTERNAL_DEPENDENCIES = 16;
inline constexpr PF_Cmd PF_Cmd_COMPLETELY_GENERAL = 17;
inline constexpr PF_Cmd PF_Cmd_QUERY_DYNAMIC_FLAGS = 18;
inline constexpr PF_Cmd PF_Cmd_AUDIO_RENDER = 19;
inline constexpr PF_Cmd PF_Cmd_AUDIO_SETUP = 20;
inline constexpr PF_Cmd PF_Cmd_AUDIO_SETDOWN = 21;
inline constexpr PF_Cmd PF_Cmd_ARBITRARY_CALLBACK = 22;
inline constexpr PF_Cmd PF_Cmd_SMART_PRE_RENDER = 23;
inline constexpr PF_Cmd PF_Cmd_SMART_RENDER = 24;
inline constexpr PF_Cmd PF_Cmd_GET_FLATTENED_SEQUENCE_DATA = 28;
inline constexpr PF_Cmd PF_Cmd_TRANSLATE_PARAMS_TO_PREFS = 29;
inline constexpr PF_Cmd PF_Cmd_SMART_RENDER_GPU = 31;
inline constexpr PF_Cmd PF_Cmd_GPU_DEVICE_SETUP = 32;
inline constexpr PF_Cmd PF_Cmd_GPU_DEVICE_SETDOWN = 33;
inline constexpr PF_Cmd PF_Cmd_NUM_CMDS = 34;

// Errors. Anything but 0 ends a command.
inline constexpr PF_Err PF_Err_NONE = 0;
inline constexpr PF_Err PF_Err_OUT_OF_MEMORY = 4;
inline constexpr PF_Err PF_Err_INTERNAL_STRUCT_DAMAGED = 512;
inline constexpr PF_Err PF_Err_INVALID_INDEX = 513;
inline constexpr PF_Err PF_Err_UNRECOGNIZED_PARAM_TYPE = 514;
inline constexpr PF_Err PF_Err_INVALID_CALLBACK = 515;
inline constexpr PF_Err PF_Err_BAD_CALLBACK_PARAM = 516;
inline constexpr PF_Err PF_Interrupt_CANCEL = 517;  ///< the user wants no more of this frame
inline constexpr PF_Err PF_Err_CANNOT_PARSE_KEYFRAME_TEXT = 518;

// Types of parameters.
inline constexpr PF_ParamType PF_Param_LAYER = 0;
inline constexpr PF_ParamType PF_Param_SLIDER = 1;
inline constexpr PF_ParamType PF_Param_FIX_SLIDER = 2;
inline constexpr PF_ParamType PF_Param_ANGLE = 3;
inline constexpr PF_ParamType PF_Param_CHECKBOX = 4;
inline constexpr PF_ParamType PF_Param_COLOR = 5;
inline constexpr PF_ParamType PF_Param_POINT = 6;
inline constexpr PF_ParamType PF_Param_POPUP = 7;
inline constexpr PF_ParamType PF_Param_CUSTOM = 8;
inline constexpr PF_ParamType PF_Param_NO_DATA = 9;
inline constexpr PF_ParamType PF_Param_FLOAT_SLIDER = 10;
inline constexpr PF_ParamType PF_Param_ARBITRARY_DATA = 11;
inline constexpr PF_ParamType PF_Param_PATH = 12;
inline constexpr PF_ParamType PF_Param_GROUP_START = 13;
inline constexpr PF_ParamType PF_Param_GROUP_END = 14;
inline constexpr PF_ParamType PF_Param_BUTTON = 15;
inline constexpr PF_ParamType PF_Param_POINT_3D = 18;

// PF_ParamDef::flags.
inline constexpr PF_ParamFlags PF_ParamFlag_CANNOT_TIME_VARY = 0x00000002;
inline constexpr PF_ParamFlags PF_ParamFlag_CANNOT_INTERP = 0x00000004;
inline constexpr PF_ParamFlags PF_ParamFlag_COLLAPSE_TWIRLY = 0x00000020;
inline constexpr PF_ParamFlags PF_ParamFlag_SUPERVISE = 0x00000040;
inline constexpr PF_ParamFlags PF_ParamFlag_START_COLLAPSED = 0x00000020;
inline constexpr PF_ParamFlags PF_ParamFlag_USE_VALUE_FOR_OLD_PROJECTS = 0x00000080;
inline constexpr PF_ParamFlags PF_ParamFlag_LAYER_PARAM_IS_TRACKMATTE = 0x00000080;
inline constexpr PF_ParamFlags PF_ParamFlag_EXCLUDE_FROM_HAVE_INPUTS_CHANGED = 0x00000100;
inline constexpr PF_ParamFlags PF_ParamFlag_SKIP_REVEAL_WHEN_UNHIDDEN = 0x00000200;

// PF_ParamDef::ui_flags.
inline constexpr PF_ParamUIFlags PF_PUI_NONE = 0x00000000;
inline constexpr PF_ParamUIFlags PF_PUI_TOPIC = 0x00000001;
inline constexpr PF_ParamUIFlags PF_PUI_CONTROL = 0x00000002;
inline constexpr PF_ParamUIFlags PF_PUI_STD_CONTROL_ONLY = 0x00000004;
inline constexpr PF_ParamUIFlags PF_PUI_NO_ECW_UI = 0x00000008;
inline constexpr PF_ParamUIFlags PF_PUI_ECW_SEPARATOR = 0x00000010;
inline constexpr PF_ParamUIFlags PF_PUI_DISABLED = 0x00000020;
inline constexpr PF_ParamUIFlags PF_PUI_DONT_ERASE_TOPIC = 0x00000040;
inline constexpr PF_ParamUIFlags PF_PUI_DONT_ERASE_CONTROL = 0x00000080;
inline constexpr PF_ParamUIFlags PF_PUI_RADIO_BUTTON = 0x00000100;
inline constexpr PF_ParamUIFlags PF_PUI_INVISIBLE = 0x00000200;

// PF_ParamDef::uu.change_flags.
inline constexpr PF_ChangeFlags PF_ChangeFlag_NONE = 0x00000000;
inline constexpr PF_ChangeFlags PF_ChangeFlag_CHANGED_VALUE = 0x00000001;
inline constexpr PF_ChangeFlags PF_ChangeFlag_SET_TO_VARY = 0x00000004;
inline constexpr PF_ChangeFlags PF_ChangeFlag_SET_TO_CONSTANT = 0x00000008;

// PF_OutData::out_flags.
inline constexpr PF_OutFlags PF_OutFlag_NONE = 0x00000000;
inline constexpr PF_OutFlags PF_OutFlag_KEEP_RESOURCE_OPEN = 0x00000001;
inline constexpr PF_OutFlags PF_OutFlag_WIDE_TIME_INPUT = 0x00000002;
inline constexpr PF_OutFlags PF_OutFlag_NON_PARAM_VARY = 0x00000004;
inline constexpr PF_OutFlags PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING = 0x00000010;
inline constexpr PF_OutFlags PF_OutFlag_I_DO_DIALOG = 0x00000020;
inline constexpr PF_OutFlags PF_OutFlag_USE_OUTPUT_EXTENT = 0x00000040;
inline constexpr PF_OutFlags PF_OutFlag_SEND_DO_DIALOG = 0x00000080;
inline constexpr PF_OutFlags PF_OutFlag_DISPLAY_ERROR_MESSAGE = 0x00000100;
inline constexpr PF_OutFlags PF_OutFlag_I_EXPAND_BUFFER = 0x00000200;
inline constexpr PF_OutFlags PF_OutFlag_PIX_INDEPENDENT = 0x00000400;
inline constexpr PF_OutFlags PF_OutFlag_I_WRITE_INPUT_BUFFER = 0x00000800;
inline constexpr PF_OutFlags PF_OutFlag_I_SHRINK_BUFFER = 0x00001000;
inline constexpr PF_OutFlags PF_OutFlag_WORKS_IN_PLACE = 0x00002000;
inline constexpr PF_OutFlags PF_OutFlag_CUSTOM_UI = 0x00008000;
inline constexpr PF_OutFlags PF_OutFlag_REFRESH_UI = 0x00020000;
inline constexpr PF_OutFlags PF_OutFlag_NOP_RENDER = 0x00040000;
inline constexpr PF_OutFlags PF_OutFlag_I_USE_SHUTTER_ANGLE = 0x00080000;
inline constexpr PF_OutFlags PF_OutFlag_I_USE_AUDIO = 0x00100000;
inline constexpr PF_OutFlags PF_OutFlag_I_AM_OBSOLETE = 0x00200000;
inline constexpr PF_OutFlags PF_OutFlag_FORCE_RERENDER = 0x00400000;
inline constexpr PF_OutFlags PF_OutFlag_PiPL_OVERRIDES_OUTDATA_OUTFLAGS = 0x00800000;
inline constexpr PF_OutFlags PF_OutFlag_I_HAVE_EXTERNAL_DEPENDENCIES = 0x01000000;
inline constexpr PF_OutFlags PF_OutFlag_DEEP_COLOR_AWARE = 0x02000000;
inline constexpr PF_OutFlags PF_OutFlag_SEND_UPDATE_PARAMS_UI = 0x04000000;
inline constexpr PF_OutFlags PF_OutFlag_AUDIO_FLOAT_ONLY = 0x08000000;
inline constexpr PF_OutFlags PF_OutFlag_AUDIO_IIR = 0x10000000;
inline constexpr PF_OutFlags PF_OutFlag_I_SYNTHESIZE_AUDIO = 0x20000000;
inline constexpr PF_OutFlags PF_OutFlag_AUDIO_EFFECT_TOO = 0x40000000;
inline constexpr PF_OutFlags PF_OutFlag_AUDIO_EFFECT_ONLY = static_cast<PF_OutFlags>(0x80000000u);

// PF_OutData::out_flags2.
inline constexpr PF_OutFlags2 PF_OutFlag2_NONE = 0x00000000;
inline constexpr PF_OutFlags2 PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS = 0x00000001;
inline constexpr PF_OutFlags2 PF_OutFlag2_I_USE_3D_CAMERA = 0x00000002;
inline constexpr PF_OutFlags2 PF_OutFlag2_I_USE_3D_LIGHTS = 0x00000004;
inline constexpr PF_OutFlags2 PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG = 0x00000008;
inline constexpr PF_OutFlags2 PF_OutFlag2_I_AM_THREADSAFE = 0x00000010;
inline constexpr PF_OutFlags2 PF_OutFlag2_CAN_COMBINE_WITH_DESTINATION = 0x00000020;
inline constexpr PF_OutFlags2 PF_OutFlag2_DOESNT_NEED_EMPTY_PIXELS = 0x00000040;
inline constexpr PF_OutFlags2 PF_OutFlag2_REVEALS_ZERO_ALPHA = 0x00000080;
inline constexpr PF_OutFlags2 PF_OutFlag2_PRESERVES_FULLY_OPAQUE_PIXELS = 0x00000100;
inline constexpr PF_OutFlags2 PF_OutFlag2_SUPPORTS_SMART_RENDER = 0x00000400;
inline constexpr PF_OutFlags2 PF_OutFlag2_FLOAT_COLOR_AWARE = 0x00001000;
inline constexpr PF_OutFlags2 PF_OutFlag2_I_USE_COLORSPACE_ENUMERATION = 0x00002000;
inline constexpr PF_OutFlags2 PF_OutFlag2_I_AM_DEPRECATED = 0x00004000;
inline constexpr PF_OutFlags2 PF_OutFlag2_PPRO_DO_NOT_CLONE_SEQUENCE_DATA_FOR_RENDER = 0x00008000;
inline constexpr PF_OutFlags2 PF_OutFlag2_AUTOMATIC_WIDE_TIME_INPUT = 0x00020000;
inline constexpr PF_OutFlags2 PF_OutFlag2_I_USE_TIMECODE = 0x00040000;
inline constexpr PF_OutFlags2 PF_OutFlag2_DEPENDS_ON_UNREFERENCED_MASKS = 0x00080000;
inline constexpr PF_OutFlags2 PF_OutFlag2_OUTPUT_IS_WATERMARKED = 0x00100000;
inline constexpr PF_OutFlags2 PF_OutFlag2_I_MIX_GUID_DEPENDENCIES = 0x00200000;
inline constexpr PF_OutFlags2 PF_OutFlag2_AE13_5_THREADSAFE = 0x00400000;
inline constexpr PF_OutFlags2 PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA = 0x00800000;
inline constexpr PF_OutFlags2 PF_OutFlag2_CUSTOM_UI_ASYNC_MANAGER = 0x01000000;
inline constexpr PF_OutFlags2 PF_OutFlag2_SUPPORTS_GPU_RENDER_F32 = 0x02000000;
inline constexpr PF_OutFlags2 PF_OutFlag2_SUPPORTS_THREADED_RENDERING = 0x08000000;
inline constexpr PF_OutFlags2 PF_OutFlag2_MUTABLE_RENDER_SEQUENCE_DATA_SLOWER = 0x10000000;

// PF_InData::in_flags.
inline constexpr PF_InFlags PF_InFlag_NONE = 0x00000000;
inline constexpr PF_InFlags PF_InFlag_PROJECT_IS_RENDER_ONLY = 0x00000001;

// PF_EffectWorld::world_flags.
inline constexpr PF_WorldFlags PF_WorldFlag_DEEP = 0x00000001;
inline constexpr PF_WorldFlags PF_WorldFlag_WRITEABLE = 0x00000002;

// PF_WorldSuite1::new_world.
inline constexpr PF_NewWorldFlags PF_NewWorldFlag_NONE = 0x00000000;
inline constexpr PF_NewWorldFlags PF_NewWorldFlag_CLEAR_PIXELS = 0x00000001;
inline constexpr PF_NewWorldFlags PF_NewWorldFlag_DEEP_PIXELS = 0x00000002;

// Stage of a version word.
inline constexpr PF_Stage PF_Stage_DEVELOP = 0;
inline constexpr PF_Stage PF_Stage_ALPHA = 1;
inline constexpr PF_Stage PF_Stage_BETA = 2;
inline constexpr PF_Stage PF_Stage_RELEASE = 3;

// Quality of the layer.
inline constexpr PF_Quality PF_Quality_DRAWING_AUDIO = -1;
inline constexpr PF_Quality PF_Quality_LO = 0;
inline constexpr PF_Quality PF_Quality_HI = 1;

// Whether colours are multiplied by alpha.
inline constexpr PF_ModeFlags PF_MF_Alpha_PREMUL = 0;
inline constexpr PF_ModeFlags PF_MF_Alpha_STRAIGHT = 1;

// Fields of an interlaced frame.
inline constexpr PF_Field PF_Field_FRAME = 0;
inline constexpr PF_Field PF_Field_UPPER = 1;
inline constexpr PF_Field PF_Field_LOWER = 2;

// How a world goes over another; the modes above SCREEN have no use here.
inline constexpr PF_TransferMode PF_Xfer_NONE = -1;
inline constexpr PF_TransferMode PF_Xfer_COPY = 0;
inline constexpr PF_TransferMode PF_Xfer_BEHIND = 1;
inline constexpr PF_TransferMode PF_Xfer_IN_FRONT = 2;  ///< over what is there
inline constexpr PF_TransferMode PF_Xfer_DISSOLVE = 3;
inline constexpr PF_TransferMode PF_Xfer_ADD = 4;
inline constexpr PF_TransferMode PF_Xfer_MULTIPLY = 5;
inline constexpr PF_TransferMode PF_Xfer_SCREEN = 6;

// Kernels of convolve; what is not set is two dimensions, the sum taken as it is, results cut off, a row.
inline constexpr PF_KernelFlags PF_KernelFlag_1D = 1;
inline constexpr PF_KernelFlags PF_KernelFlag_NORMALIZED = 2;
inline constexpr PF_KernelFlags PF_KernelFlag_NO_CLAMP = 4;
inline constexpr PF_KernelFlags PF_KernelFlag_USE_CHAR = 8;
inline constexpr PF_KernelFlags PF_KernelFlag_USE_FIXED = 16;
inline constexpr PF_KernelFlags PF_KernelFlag_VERTICAL = 32;
inline constexpr PF_KernelFlags PF_KernelFlag_REPLICATE_BORDERS = 64;
inline constexpr PF_KernelFlags PF_KernelFlag_ALPHA_WEIGHT_CONVOLVE = 128;

// PF_EffectWorld::dephault: which layer a new instance takes.
inline constexpr A_long PF_LayerDefault_MYSELF = -1;
inline constexpr A_long PF_LayerDefault_NONE = 0;

// How a slider shows its value; 16 bits.
inline constexpr PF_ValueDisplayFlags PF_ValueDisplayFlag_NONE = 0;
inline constexpr PF_ValueDisplayFlags PF_ValueDisplayFlag_PERCENT = 1;
inline constexpr PF_ValueDisplayFlags PF_ValueDisplayFlag_PIXEL = 2;
inline constexpr PF_ValueDisplayFlags PF_ValueDisplayFlag_REVERSE = 8;

// PF_FloatSliderDef::fs_flags.
inline constexpr PF_FSliderFlags PF_FSliderFlag_NONE = 0;
inline constexpr PF_FSliderFlags PF_FSliderFlag_WANT_PHASE = 1;

// Which channels are wanted.
inline constexpr PF_ChannelMask PF_ChannelMask_ALPHA = 1;
inline constexpr PF_ChannelMask PF_ChannelMask_RED = 2;
inline constexpr PF_ChannelMask PF_ChannelMask_GREEN = 4;
inline constexpr PF_ChannelMask PF_ChannelMask_BLUE = 8;
inline constexpr PF_ChannelMask PF_ChannelMask_ARGB = 15;

// Newer hosts only.
inline constexpr PF_GPU_Framework PF_GPU_Framework_NONE = 0;
inline constexpr PF_GPU_Framework PF_GPU_Framework_OPENCL = 1;
inline constexpr PF_GPU_Framework PF_GPU_Framework_METAL = 2;
inline constexpr PF_GPU_Framework PF_GPU_Framework_CUDA = 3;

// PF_PreRenderOutput::flags; 16 bits.
inline constexpr PF_RenderOutputFlags PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS = 1;
inline constexpr PF_RenderOutputFlags PF_RenderOutputFlag_GPU_RENDER_POSSIBLE = 2;

// PF_MaskWorld::what_is_mask.
inline constexpr PF_MaskFlags PF_MaskFlag_NONE = 0;
inline constexpr PF_MaskFlags PF_MaskFlag_INVERTED = 1;
inline constexpr PF_MaskFlags PF_MaskFlag_LUMINANCE = 2;

// Forms of pixels. The first letter lies in the lowest byte, so that the four letters can be read in memory; a C
// literal of four letters would have them the other way round.
inline constexpr PF_PixelFormat PF_PixelFormat_ARGB32 = 0x62677261;
inline constexpr PF_PixelFormat PF_PixelFormat_ARGB64 = 0x36316561;
inline constexpr PF_PixelFormat PF_PixelFormat_ARGB128 = 0x32336561;
inline constexpr PF_PixelFormat PF_PixelFormat_INVALID = 0x66646162;

// PF_InData::appl_id. Here the first letter lies in the highest byte.
inline constexpr A_long kAppIdAfterEffects = 0x46585443;  ///< 'FXTC'
inline constexpr A_long kAppIdPremiere = 0x50724D72;      ///< 'PrMr'

// What get_platform_data gives, and what it writes at data.
inline constexpr PF_PlatDataID PF_PlatData_MAIN_WND = 0;                  ///< one window handle
inline constexpr PF_PlatDataID PF_PlatData_EXE_FILE_PATH_DEPRECATED = 1;  ///< A_char[260], the module
inline constexpr PF_PlatDataID PF_PlatData_RES_FILE_PATH_DEPRECATED =
    2;  ///< A_char[260], the file with the module's resources
inline constexpr PF_PlatDataID PF_PlatData_RES_REFNUM = 3;
inline constexpr PF_PlatDataID PF_PlatData_RES_DLLINSTANCE = 4;  ///< one module handle
inline constexpr PF_PlatDataID PF_PlatData_SP_PLUG_REF = 5;
inline constexpr PF_PlatDataID PF_PlatData_BUNDLE_REF = 6;
inline constexpr PF_PlatDataID PF_PlatData_EXE_FILE_PATH_W = 7;  ///< A_UTF16Char[260]; newer hosts only
inline constexpr PF_PlatDataID PF_PlatData_RES_FILE_PATH_W = 8;  ///< A_UTF16Char[260]; newer hosts only

// Limits. Lengths of texts leave out the closing zero.
inline constexpr A_long PF_FIRST_ERR = 512;
inline constexpr A_long PF_MAX_EFFECT_NAME_LEN = 31;
inline constexpr A_long PF_MAX_EFFECT_CATEGORY_NAME_LEN = 31;
inline constexpr A_long PF_MAX_EFFECT_PARAM_NAME_LEN = 31;
inline constexpr A_long PF_MAX_PARAM_DESCRIPTION_LEN = 31;
inline constexpr A_long PF_MAX_PARAM_VALUE_LEN = 31;
inline constexpr A_long PF_MAX_EFFECT_MSG_LEN = 255;
inline constexpr A_long PF_MAX_WORLD_WIDTH = 30000;
inline constexpr A_long PF_MAX_WORLD_HEIGHT = 30000;
inline constexpr A_long PF_MAX_CHAN8 = 255;
inline constexpr A_long PF_HALF_CHAN8 = 128;
inline constexpr A_long PF_MAX_CHAN16 = 32768;
inline constexpr A_long PF_HALF_CHAN16 = 16384;
inline constexpr A_long AEFX_MAX_PATH = 260;

// Places that no parameter has.
inline constexpr PF_ParamIndex PF_ParamIndex_NONE = -1;
inline constexpr PF_ParamIndex PF_ParamIndex_CHECK_ALL = -2;
inline constexpr PF_ParamIndex PF_ParamIndex_CHECK_ALL_EXCEPT_LAYER_PARAMS = -3;
inline constexpr PF_ParamIndex PF_ParamIndex_CHECK_ALL_HONOR_EXCLUDE = -4;
