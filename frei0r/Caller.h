/// Who calls the filter.
#pragma once

#include <string_view>

namespace video {

/// True when the code at this address belongs to ffmpeg or its library of filters. These tell the time of a frame in
/// milliseconds, while the interface has it in seconds, and so do other programs.
bool tellsMilliseconds(const void* codeOfCaller);

/// The same by the file that the code lies in: "libavfilter.so.8", or a program such as "ffmpeg" that bears the library
/// within itself.
bool tellsMilliseconds(std::string_view fileOfCaller);

}  // namespace video
