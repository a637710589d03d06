/// Floats to the 16-bit floats of EXR.
#pragma once

#include <cstdint>
#include <span>

namespace cli {

/// Rounds each float to the nearest half, ties to the even one; beyond 65504 it becomes infinite.
/// @param halves  as many as floats
void toHalves(std::span<const float> floats, uint16_t* halves);

}  // namespace cli
