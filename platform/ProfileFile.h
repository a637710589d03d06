// Settings files in the profile format: sections in brackets, lines of "name=value".
//
// On Windows these are the system's own functions. Elsewhere the same meaning is kept, so that one file gives the same
// values everywhere: names are found without regard to the case of ASCII letters; blanks around names and values don't
// count; a pair of single or double quotes around a value is taken off; lines end with carriage return and line feed
// when written and with either when read. Paths must be full: a bare name means a system folder on Windows.
//
// All texts are zero-terminated and not null, in the system's narrow code page. Nothing here takes memory from the
// global operator new, which in the module belongs to the host.
#pragma once

#include <cstdint>

namespace platform {

/// The number of a key: blanks, a sign, then digits up to the first character that is none (also 0x, 0o and 0b forms).
/// `defaultValue` when file, section or key is missing or the value is empty; 0 when the value is no number. Only the
/// first 29 characters count; a number beyond 32 bits wraps.
uint32_t GetPrivateProfileIntA(const char* section, const char* key, int32_t defaultValue, const char* path);

/// The text of a key, or `defaultValue` without its trailing blanks when file, section or key is missing.
/// @param buffer  `size` bytes; receives at most size - 1 characters and the closing zero. Needs size >= 1.
/// @return characters written, the closing zero not counted.
uint32_t GetPrivateProfileStringA(const char* section, const char* key, const char* defaultValue, char* buffer,
                                  uint32_t size, const char* path);

/// Sets a key: a value is replaced in place, a key is appended to its section, a section to the file, and the file is
/// made when it isn't there. False when it can't be written.
bool WritePrivateProfileStringA(const char* section, const char* key, const char* value, const char* path);

/// False when there is no such file or it can't be deleted.
bool DeleteFileA(const char* path);

}  // namespace platform
