#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include "platform/CodePage.h"

namespace platform {

uint32_t GetACP() {
  return ::GetACP();
}

}  // namespace platform
