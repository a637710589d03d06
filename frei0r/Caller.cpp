#include "frei0r/Caller.h"

#include <dlfcn.h>

namespace video {

bool tellsMilliseconds(const void* codeOfCaller) {
  Dl_info facts{};
  return dladdr(codeOfCaller, &facts) != 0 && facts.dli_fname != nullptr &&
         tellsMilliseconds(std::string_view(facts.dli_fname));
}

bool tellsMilliseconds(std::string_view fileOfCaller) {
  const std::string_view name = fileOfCaller.substr(fileOfCaller.rfind('/') + 1);
  return name.starts_with("libavfilter") || name.starts_with("ffmpeg") || name.starts_with("ffplay");
}

}  // namespace video
