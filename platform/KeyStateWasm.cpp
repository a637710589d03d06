// Keys belong to the page, which doesn't lend them to the module.
#include "platform/KeyState.h"

namespace platform {

int16_t GetKeyState(int32_t) {
  return 0;
}

}  // namespace platform
