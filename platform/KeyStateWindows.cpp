#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include "platform/KeyState.h"

namespace platform {

int16_t GetKeyState(int32_t virtualKey) {
  return ::GetKeyState(virtualKey);
}

}  // namespace platform
