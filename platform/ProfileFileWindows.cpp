// The system's own profile functions.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include "platform/ProfileFile.h"

namespace platform {

uint32_t GetPrivateProfileIntA(const char* section, const char* key, int32_t defaultValue, const char* path) {
  return ::GetPrivateProfileIntA(section, key, defaultValue, path);
}

uint32_t GetPrivateProfileStringA(const char* section, const char* key, const char* defaultValue, char* buffer,
                                  uint32_t size, const char* path) {
  return ::GetPrivateProfileStringA(section, key, defaultValue, buffer, size, path);
}

bool WritePrivateProfileStringA(const char* section, const char* key, const char* value, const char* path) {
  return ::WritePrivateProfileStringA(section, key, value, path) != FALSE;
}

bool DeleteFileA(const char* path) {
  return ::DeleteFileA(path) != FALSE;
}

}  // namespace platform
