#include "platform/CodePage.h"

namespace platform {

uint32_t GetACP() {
  return codePageUtf8;
}

}  // namespace platform
