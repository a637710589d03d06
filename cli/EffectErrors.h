/// The effect's error codes in words.
#pragma once

#include <string>

#include "host/StandInHost.h"

namespace cli {

/// Does nothing when the code is 0.
/// @param host    that sent the command
/// @param during  what was being done: "while drawing"
/// @throws EffectError with the code by name and the effect's own message if it left one
void checkEffect(const standin::StandInHost& host, PF_Err code, const std::string& during);

/// "PF_Err_OUT_OF_MEMORY (4)", or "error 77" for a code that has no name.
std::string errorName(PF_Err code);

}  // namespace cli
