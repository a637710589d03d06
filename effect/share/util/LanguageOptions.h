// The options for this effect on the command line of the host process: the language, and the render engine.
//
// Stands with the utilities because two rooms read it: the texts choose their language by it, and the controls see to
// it that it is read early.
#pragma once

#include <cstdint>

namespace vindrel {

inline constexpr uint32_t languageJapanese = 0x4A50;  ///< the letters JP

/// What the options of a command line said.
struct LanguageOptions {
  uint32_t languageCode = 0;        ///< letters of the last -L, the last letter in the low byte; 0 for none
  bool renderEngineOption = false;  ///< -RE was there. Nobody reads it: the host itself is asked
};

/// The choice of this process. Made at the first call of ReadCommandLine and never changed while the host runs.
struct LanguageState {
  LanguageOptions options;
  bool commandLineRead = false;
};
extern LanguageState languageState;

/// Reads the options -L and -RE out of a command line. What the line doesn't mention stays as it is.
/// @param text  zero-terminated; the empty text changes nothing.
void readLanguageOptions(const char* text, LanguageOptions& options);

/// Fills `languageState` from the process's command line at the first call; does nothing at later ones.
void ReadCommandLine();

}  // namespace vindrel
