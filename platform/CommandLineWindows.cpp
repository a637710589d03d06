#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include "platform/CommandLine.h"

namespace platform {

const char* GetCommandLineA() {
  return ::GetCommandLineA();
}

}  // namespace platform
