// The option for this effect on the command line of the host process: the language.
#pragma once

#include <cstdint>

namespace vindrel {

inline constexpr uint32_t languageJapanese = 0x4A50;  ///< the letters JP

/// The choice of this process. Made at the first call of ReadCommandLine and never changed while the host runs.
struct LanguageState {
  uint32_t languageCode = 0;  ///< letters of the last -L, the last letter in the low byte; 0 for none
  bool commandLineRead = false;
};
extern LanguageState languageState;

/// Reads the option -L out of a command line. What the line doesn't mention stays as it is.
/// @param text  zero-terminated; the empty text changes nothing.
void readLanguageOption(const char* text, uint32_t& languageCode);

/// Fills `languageState` from the process's command line at the first call; does nothing at later ones.
void ReadCommandLine();

}  // namespace vindrel
