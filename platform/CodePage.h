// The code page in which the system's narrow texts stand.
#pragma once

#include <cstdint>

namespace platform {

inline constexpr uint32_t codePageShiftJis = 932;
inline constexpr uint32_t codePageUtf8 = 65001;

/// The system's narrow code page. Where there is no such thing, 932 under a Japanese locale (the first of LC_ALL,
/// LC_CTYPE and LANG that is set and not empty begins with "ja") and 65001 under every other.
uint32_t GetACP();

}  // namespace platform
