// What the probe filter does at which command. The numbers are those of commands that a filter ignores.
#pragma once

#include "ae/Constants.h"

namespace probe {

inline constexpr PF_Cmd swallowFailure = PF_Cmd_EVENT;
inline constexpr PF_Cmd swallowManyFailures = PF_Cmd_GET_EXTERNAL_DEPENDENCIES;  ///< ends with the host's abort call
inline constexpr PF_Cmd pushTwo = PF_Cmd_COMPLETELY_GENERAL;                     ///< 9, then 10
inline constexpr PF_Cmd pushAndFail = PF_Cmd_AUDIO_RENDER;                       ///< 9, and returns 5
inline constexpr PF_Cmd throwOwnException = PF_Cmd_AUDIO_SETUP;                  ///< with the code 123
inline constexpr PF_Cmd throwStandardException = PF_Cmd_AUDIO_SETDOWN;
inline constexpr PF_Cmd throwNumber = PF_Cmd_ARBITRARY_CALLBACK;  ///< 516, as for a missing suite
inline constexpr PF_Err setdownError = 77;  ///< of PF_Cmd_GLOBAL_SETDOWN, which throws while the host wants to abort

}  // namespace probe
