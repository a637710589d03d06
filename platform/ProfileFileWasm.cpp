// There are no files here: every file is missing, and none can be written.
#include <cstring>
#include <string_view>

#include "platform/ProfileFile.h"

namespace platform {

uint32_t GetPrivateProfileIntA(const char*, const char*, int32_t defaultValue, const char*) {
  return static_cast<uint32_t>(defaultValue);
}

uint32_t GetPrivateProfileStringA(const char*, const char*, const char* defaultValue, char* buffer, uint32_t size,
                                  const char*) {
  std::string_view value = defaultValue;
  while (!value.empty() && value.back() == ' ') value.remove_suffix(1);
  value = value.substr(0, size - 1);
  if (!value.empty()) std::memcpy(buffer, value.data(), value.size());
  buffer[value.size()] = '\0';
  return static_cast<uint32_t>(value.size());
}

bool WritePrivateProfileStringA(const char*, const char*, const char*, const char*) {
  return false;
}

bool DeleteFileA(const char*) {
  return false;
}

}  // namespace platform
