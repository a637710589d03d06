#include <cstdlib>
#include <cstring>

#include "platform/KeyState.h"

namespace platform {

int16_t GetKeyState(int32_t virtualKey) {
  if (virtualKey != keyShift) return 0;
  const char* const shift = std::getenv("VINDREL_SHIFT_KEY");
  return shift && std::strcmp(shift, "down") == 0 ? INT16_MIN : int16_t{0};
}

}  // namespace platform
