// The items of the mask popup.
#pragma once

#include <cstdint>

namespace vindrel {

inline constexpr int32_t maskNormal = 1;  ///< the source's own alpha holds the dots back
inline constexpr int32_t maskNone = 2;
inline constexpr int32_t maskLayer = 3;  ///< another layer holds them back

}  // namespace vindrel
