// The user's own defaults: a profile file beside the module, with the module's name and the extension "ini".
//
// One section per version of the effect, one key per value. The controls read it when they are added to the host and
// write it when the option dialog asks for that; the host sees a change at its next start. Rests on
// platform/ProfileFile.h.
#pragma once

#include <cstdint>

#include "ae/InOutData.h"
#include "ae/Params.h"

namespace vindrel {

/// Name of the section, "Version=1.5"; empty until the set-up of the controls, and on a host that is too old.
extern char versionLine[128];

/// Bytes of a path, the closing zero included.
inline constexpr int32_t settingsPathSize = 260;

/// True for After Effects before 12.12. Such a host gets the built-in defaults only. Any other host is never too old.
bool isOldHost(const PF_InData* in_data);

/// Works out the path of the settings file: the module's own path with what follows the last dot replaced by "ini".
/// @return false when the host does not tell the module's path or there is no dot in it; `path` is then without meaning
bool settingsPath(PF_InData* in_data, char (&path)[settingsPathSize]);

/// What comes before the controls are added: writes the version line and works out the path.
/// @return `path`, or null when the built-in defaults are to be used
const char* PrepareStoredDefaults(PF_InData* in_data, char (&path)[settingsPathSize]);

/// Makes the values in `params` the defaults of new instances. Keys that exist are replaced in place. A failure to
/// write is not reported. Nothing happens when `path` is null.
void SaveDefaults(PF_ParamDef** params, const char* path);

/// Deletes the settings file, and with it the sections of other versions. Silent when there is none.
void RestoreDefaults(const char* path);

/// The stored value of a key, or the built-in one when the file, the section or the key is missing, when the host is
/// too old, or when `path` is null. Not tested against any range.
int32_t storedInteger(const PF_InData* in_data, const char* key, int32_t builtIn, const char* path);

/// Likewise for a number with decimals. With a path the built-in value passes through a text of six decimals too.
double storedNumber(const PF_InData* in_data, const char* key, double builtIn, const char* path);

/// Writes one key as a whole number, or as a number of six decimals.
void storeInteger(const char* key, int32_t value, const char* path);
void storeNumber(const char* key, double value, const char* path);

// Numbers as the file spells them: what "%f" writes and atof reads in the "C" locale, whatever locale the host has
// chosen for the process. With the C library's own, a comma as decimal sign would spoil files made elsewhere.

/// Room for the longest double with six decimals: a sign, 309 digits, a point, six digits and the closing zero.
inline constexpr int decimalTextSize = 320;

/// Writes `value` with six decimals, zero-ended.
void writeDecimal(char (&text)[decimalTextSize], double value);

/// The number at the start of a zero-ended text, blanks before it skipped; what follows it does not count. 0 when the
/// text begins with no number; infinite when the number is beyond a double.
double readDecimal(const char* text);

}  // namespace vindrel
