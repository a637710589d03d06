// Who the effect is: the numbers and names that its resource and its code must tell alike.
//
// Before it loads the module the host reads them from the resource, afterwards from the answer to the global set-up;
// it refuses a module that says two different things.
#pragma once

#include "ae/Constants.h"

namespace vindrel {

inline constexpr const char* effectName = "Vindrel";
inline constexpr const char* effectCategory = "QUILM";
inline constexpr const char* effectMatchName = "QUILM VINDREL";  ///< by which projects find the effect; never changes
inline constexpr const char* entryPointName = "EntryPointFunc";

/// Version 1, subversion 5, bug-fix 1, stage 3 (release), build 7, packed as the host packs versions.
inline constexpr A_u_long effectVersion = 0x000A8E07;
static_assert(effectVersion == ((1U << 19) | (5U << 15) | (1U << 11) | (3U << 9) | 7U));

/// The format of the stored defaults; the numbers of the settings file's section.
inline constexpr int settingsMajor = 1;
inline constexpr int settingsMinor = 5;

/// Wide time input is only the default: the dynamic flags clear it while the jitter stands still.
inline constexpr PF_OutFlags globalOutFlags = PF_OutFlag_WIDE_TIME_INPUT | PF_OutFlag_I_DO_DIALOG |
                                              PF_OutFlag_USE_OUTPUT_EXTENT | PF_OutFlag_DEEP_COLOR_AWARE |
                                              PF_OutFlag_SEND_UPDATE_PARAMS_UI;
inline constexpr PF_OutFlags2 globalOutFlags2 =
    PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS | PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG |
    PF_OutFlag2_I_AM_THREADSAFE | PF_OutFlag2_SUPPORTS_SMART_RENDER | PF_OutFlag2_FLOAT_COLOR_AWARE;
static_assert(globalOutFlags == 0x06000062 && globalOutFlags2 == 0x00001419);

}  // namespace vindrel
