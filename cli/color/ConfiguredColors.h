/// What the program part for color configurations offers.
#pragma once

#include <cstddef>

#include "cli/color/ColorConversion.h"

namespace cli {

inline constexpr char makeConfiguredColorsName[] = "vindrelMakeConfiguredColors";

/// A conversion between two spaces of the configuration that the environment names in OCIO.
/// @param complaint  gets what is wrong, in one line closed by a 0, when null is given back
/// @return owned by the caller
using MakeConfiguredColors = ColorConversion*(const char* from, const char* to, char* complaint, std::size_t size);

}  // namespace cli
