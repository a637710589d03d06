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

/// Version 1, subversion 5, bug-fix 1, stage 3 (release), build 7, packed as the host packs versions. The version is
/// told here alone: the build reads it out of this line.
inline constexpr A_u_long effectVersion = 0x000A8E07;

// Its parts. Major and minor also name the section of the settings file.
inline constexpr int versionMajor = effectVersion >> 19 & 7;
inline constexpr int versionMinor = effectVersion >> 15 & 15;
inline constexpr int versionBugFix = effectVersion >> 11 & 15;
inline constexpr int versionBuild = effectVersion & 511;
inline constexpr const char* versionStageName = "Release";
static_assert((effectVersion >> 9 & 3) == PF_Stage_RELEASE);

/// Wide time input is only the default: the dynamic flags clear it while the jitter stands still.
inline constexpr PF_OutFlags globalOutFlags = PF_OutFlag_WIDE_TIME_INPUT | PF_OutFlag_I_DO_DIALOG |
                                              PF_OutFlag_USE_OUTPUT_EXTENT | PF_OutFlag_DEEP_COLOR_AWARE |
                                              PF_OutFlag_SEND_UPDATE_PARAMS_UI;
inline constexpr PF_OutFlags2 globalOutFlags2 =
    PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS | PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG |
    PF_OutFlag2_I_AM_THREADSAFE | PF_OutFlag2_SUPPORTS_SMART_RENDER | PF_OutFlag2_FLOAT_COLOR_AWARE;
static_assert(globalOutFlags == 0x06000062 && globalOutFlags2 == 0x00001419);

}  // namespace vindrel
