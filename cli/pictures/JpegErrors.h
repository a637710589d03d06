/// How libjpeg reports errors here: by a jump over its own frames, as libpng does.
#pragma once

#include <cstddef>
#include <cstdio>
// The library wants both before its own.
#include <jpeglib.h>

#include <array>
#include <csetjmp>
#include <string>

namespace cli {

struct JpegErrorManager {
  jpeg_error_mgr library;  ///< first, so that the library's pointer is ours
  jmp_buf back;            ///< where an error jumps to
};

[[noreturn]] inline void jpegJumpOut(j_common_ptr jpeg) {
  std::longjmp(reinterpret_cast<JpegErrorManager*>(jpeg->err)->back, 1);
}

inline void jpegPrintNothing(j_common_ptr) {}

/// The library's last complaint.
inline std::string jpegMessage(j_common_ptr jpeg) {
  std::array<char, JMSG_LENGTH_MAX> text{};
  jpeg->err->format_message(jpeg, text.data());
  return text.data();
}

/// What the marker of application data 1 begins with when it holds a camera's notes, or XMP.
inline constexpr std::array<uint8_t, 6> jpegExifHead = {'E', 'x', 'i', 'f', 0, 0};
inline constexpr char jpegXmpHead[] = "http://ns.adobe.com/xap/1.0/";  ///< with its closing 0

}  // namespace cli
