// There is no process here whose line could be asked for.
#include "platform/CommandLine.h"

namespace platform {

const char* GetCommandLineA() {
  return "";
}

}  // namespace platform
