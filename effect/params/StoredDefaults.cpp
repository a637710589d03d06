#include "effect/params/StoredDefaults.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <system_error>

#include "ae/Constants.h"
#include "effect/params/ParamGetter.h"
#include "effect/params/ParamObjects.h"
#include "effect/share/util/Identity.h"
#include "platform/ProfileFile.h"

namespace vindrel {

char versionLine[128] = "";

namespace {

/// Longest text of a number that is read, the closing zero included.
constexpr uint32_t valueTextSize = 128;

/// What strtod answers when the number at `begin` is beyond a double: nothing when it is too small, else infinity.
/// No text that comes here has enough digits to do that without an exponent, so the exponent's sign decides.
double beyondRange(const char* begin, const char* end) {
  for (const char* at = begin; at + 1 < end; ++at) {
    if ((*at == 'e' || *at == 'E') && at[1] == '-') return 0.0;
  }
  return std::numeric_limits<double>::infinity();
}

bool isBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

bool useStoredDefaults(const PF_InData* in_data, const char* path) {
  return path != nullptr && !isOldHost(in_data);
}

}  // namespace

bool isOldHost(const PF_InData* in_data) {
  if (in_data->appl_id != kAppIdAfterEffects) return false;
  const PF_SpecVersion& version = in_data->version;
  return version.major < 12 || (version.major == 12 && version.minor < 12);
}

bool settingsPath(PF_InData* in_data, char (&path)[settingsPathSize]) {
  std::memset(path, 0, sizeof path);
  if (in_data->utils->get_platform_data(in_data->effect_ref, PF_PlatData_RES_FILE_PATH_DEPRECATED, path) !=
      PF_Err_NONE) {
    return false;
  }
  path[settingsPathSize - 1] = '\0';
  char* const dot = std::strrchr(path, '.');
  if (dot == nullptr) return false;
  const auto room = static_cast<size_t>(path + settingsPathSize - (dot + 1));
  std::snprintf(dot + 1, room, "ini");
  return true;
}

const char* PrepareStoredDefaults(PF_InData* in_data, char (&path)[settingsPathSize]) {
  if (isOldHost(in_data)) {
    versionLine[0] = '\0';
    return nullptr;
  }
  const bool known = settingsPath(in_data, path);
  std::snprintf(versionLine, sizeof versionLine, "Version=%d.%d", versionMajor, versionMinor);
  return known ? path : nullptr;
}

void SaveDefaults(PF_ParamDef** params, const char* path) {
  if (path == nullptr) return;
  GetParamFromArray getter(params);
  FetchAll(nullptr, getter);
  ReleaseAll(getter);
  SaveAll(path);
}

void RestoreDefaults(const char* path) {
  platform::DeleteFileA(path);
}

int32_t storedInteger(const PF_InData* in_data, const char* key, int32_t builtIn, const char* path) {
  if (!useStoredDefaults(in_data, path)) return builtIn;
  return static_cast<int32_t>(platform::GetPrivateProfileIntA(versionLine, key, builtIn, path));
}

double storedNumber(const PF_InData* in_data, const char* key, double builtIn, const char* path) {
  if (!useStoredDefaults(in_data, path)) return builtIn;
  char builtInText[decimalTextSize];
  writeDecimal(builtInText, builtIn);
  char text[valueTextSize] = "";
  platform::GetPrivateProfileStringA(versionLine, key, builtInText, text, valueTextSize, path);
  return readDecimal(text);
}

void storeInteger(const char* key, int32_t value, const char* path) {
  char text[16];
  std::snprintf(text, sizeof text, "%d", value);
  platform::WritePrivateProfileStringA(versionLine, key, text, path);
}

void storeNumber(const char* key, double value, const char* path) {
  char text[decimalTextSize];
  writeDecimal(text, value);
  platform::WritePrivateProfileStringA(versionLine, key, text, path);
}

void writeDecimal(char (&text)[decimalTextSize], double value) {
  const auto result = std::to_chars(text, text + decimalTextSize - 1, value, std::chars_format::fixed, 6);
  *(result.ec == std::errc{} ? result.ptr : text) = '\0';
}

double readDecimal(const char* text) {
  while (isBlank(*text)) ++text;
  const bool negative = *text == '-';
  if (negative || *text == '+') ++text;
  // A second sign is no number; from_chars would take a minus.
  if (*text == '-') return 0.0;
  const char* const end = text + std::strlen(text);
  double value = 0.0;
  const auto result = std::from_chars(text, end, value);
  if (result.ec == std::errc::result_out_of_range) {
    value = beyondRange(text, result.ptr);
  } else if (result.ec != std::errc{}) {
    value = 0.0;
  }
  return std::copysign(value, negative ? -1.0 : 1.0);
}

}  // namespace vindrel
