/// How libpng reports errors here: by a jump over its own frames. So what must outlive a jump lies in an object, and
/// functions that are jumped out of hold nothing that wants to be destroyed.
#pragma once

#include <png.h>

#include <cstdio>

namespace cli {

inline constexpr std::size_t pngMessageSize = 200;

/// The error pointer is a char[pngMessageSize].
[[noreturn]] inline void pngJumpOut(png_structp png, png_const_charp text) {
  auto* const message = static_cast<char*>(png_get_error_ptr(png));
  std::snprintf(message, pngMessageSize, "%s", text);
  png_longjmp(png, 1);
}

inline void pngKeepQuiet(png_structp, png_const_charp) {}

}  // namespace cli
