// Whether a key is held down.
#pragma once

#include <cstdint>

namespace platform {

inline constexpr int32_t keyShift = 16;  ///< either Shift key

/// Negative when the key of this virtual key number was down at the last input event of the calling thread.
/// Where there is no keyboard to ask, Shift is down when the environment variable VINDREL_SHIFT_KEY says "down", and
/// no other key ever is.
int16_t GetKeyState(int32_t virtualKey);

}  // namespace platform
