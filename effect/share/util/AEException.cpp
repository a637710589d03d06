#include "effect/share/util/AEException.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>

namespace AEUtil {

namespace {
constexpr std::size_t messageBytes = 2048;  // of each of the two steps, the closing zero included
}

AEException::AEException(PF_Err code, const char* file, int line, const char* format, ...) : code_(code) {
  char text[messageBytes];
  std::snprintf(text, sizeof(text), "%s(%d): ", file, line);
  message_ = text;
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof(text), format, arguments);
  va_end(arguments);
  message_ += text;
}

}  // namespace AEUtil
