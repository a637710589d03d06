#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include "platform/CodePage.h"

namespace platform {

uint32_t GetACP() {
  // The variables and not setlocale: a host need not have asked for its locale, and may have asked for "C".
  for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* const locale = std::getenv(name);
    if (!locale || !*locale) continue;
    return std::strncmp(locale, "ja", 2) == 0 ? codePageShiftJis : codePageUtf8;
  }
  return codePageUtf8;
}

}  // namespace platform
