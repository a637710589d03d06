// The texts that the effect shows, in Japanese and in English, the choice between the two, and the About box.
//
// Rests on the command line of the host process and on the system's code page. Texts are constants: nothing is
// translated at run time, and Japanese stands in Shift-JIS, which the host and the dialog show as it is.
#pragma once

#include <cstdint>

#include "ae/InOutData.h"

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

/// One text. Rows stand in ascending order of id.
struct MessageRow {
  int32_t id;
  const char* japanese;
  const char* english;  ///< null: the text is the same in both languages
};

inline constexpr int32_t messageCopyright = 1;
inline constexpr int32_t messageSettings = 3;
inline constexpr int32_t messageSaveDefaults = 5;
inline constexpr int32_t messageRestoreDefaults = 6;

/// The text with this id in the language of this process, never null; "-" for an id that isn't there. The text is a
/// constant of the module.
const char* LookupMessage(int32_t id);

/// Writes name, version and copyright line into `out_data->return_msg`, which the host shows; with the Shift key down
/// also stage and build. Uses the host's sprintf. Returns 0; `params` and `output` are not looked at.
PF_Err About(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output);

}  // namespace vindrel
