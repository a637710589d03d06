// The one exception that brings a host error code out of the module.
#pragma once

#include <exception>
#include <string>

#include "ae/Scalars.h"

#if defined(__GNUC__)
#define VINDREL_PRINTF_LIKE(formatIndex, firstArgument) __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define VINDREL_PRINTF_LIKE(formatIndex, firstArgument)
#endif

namespace AEUtil {

/// The message is for whoever catches it under a debugger; it is never shown to the user.
class AEException : public std::exception {
 public:
  /// The message is "file(line): " and the formatted text behind it, each cut to 2,047 bytes.
  AEException(PF_Err code, const char* file, int line, const char* format, ...) VINDREL_PRINTF_LIKE(5, 6);
  const char* what() const noexcept override { return message_.c_str(); }
  PF_Err code() const noexcept { return code_; }

 private:
  PF_Err code_;
  std::string message_;
};

}  // namespace AEUtil
