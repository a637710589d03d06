#include "effect/options/Messages.h"

#include <algorithm>
#include <iterator>

#include "effect/share/util/Identity.h"
#include "platform/CodePage.h"
#include "platform/CommandLine.h"
#include "platform/KeyState.h"

namespace vindrel {

LanguageState languageState;

namespace {

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

bool isBlank(char c) {
  return c == ' ' || c == '\t';
}

bool endsCode(char c) {
  return isBlank(c) || c == '\0';
}

/// Reads the value of -L, from the letter L on. Returns the first character behind the code.
const char* readLanguageCode(const char* at, uint32_t& code) {
  ++at;
  while (isBlank(*at)) ++at;
  code = 0;
  for (; !endsCode(*at); ++at) {
    // Kept as is: a character beyond ASCII is negative and fills the upper bytes with ones. Such a code is no known
    // language, and English. Held by aCharacterBeyondAsciiFillsTheUpperBytes.
    code = (code << 8) | static_cast<uint32_t>(static_cast<int32_t>(static_cast<int8_t>(upper(*at))));
  }
  return at;
}

// Japanese is written as the bytes of Shift-JIS, so that no compiler's idea of the source's encoding gets at it.
// Ids are never given again. No control shows rows 0, 2 and 4; they stay for whoever looks up by number.
constexpr MessageRow messageRows[] = {
    {0, effectName, nullptr},
    {messageCopyright, "(c) 2026 The Vindrel Developers  https://vindrel.example", nullptr},
    {2, "path", nullptr},
    // 設定 （次回起動から有効になります）
    {messageSettings,
     "\x90\xDD\x92\xE8 \x81i\x8E\x9F\x89\xF1\x8BN\x93\xAE"
     "\x82\xA9\x82\xE7\x97L\x8C\xF8\x82\xC9\x82\xC8\x82\xE8\x82\xDC"
     "\x82\xB7\x81j",
     "Settings (Valid from next start-up)"},
    // カラーキー関連のパラメータを階層化する
    {4,
     "\x83J\x83\x89\x81[\x83L\x81[\x8A\xD6\x98"
     "A\x82\xCC"
     "\x83p\x83\x89\x83\x81\x81[\x83^\x82\xF0\x8AK\x91w"
     "\x89\xBB\x82\xB7\x82\xE9",
     "Group color key parameters"},
    // 現在のパラメータ設定をデフォルト値として記憶する
    {messageSaveDefaults,
     "\x8C\xBB\x8D\xDD\x82\xCC\x83p\x83\x89\x83\x81\x81[\x83^"
     "\x90\xDD\x92\xE8\x82\xF0\x83"
     "f\x83t\x83H\x83\x8B\x83g"
     "\x92l\x82\xC6\x82\xB5\x82\xC4\x8BL\x89\xAF\x82\xB7\x82\xE9",
     "Set current parameter values to default"},
    // パラメータのデフォルト値設定を初期状態に復帰する
    {messageRestoreDefaults,
     "\x83p\x83\x89\x83\x81\x81[\x83^\x82\xCC\x83"
     "f\x83t"
     "\x83H\x83\x8B\x83g\x92l\x90\xDD\x92\xE8\x82\xF0\x8F\x89"
     "\x8A\xFA\x8F\xF3\x91\xD4\x82\xC9\x95\x9C\x8B"
     "A\x82\xB7\x82\xE9",
     "Restore initial default parameter values"},
};

}  // namespace

void readLanguageOption(const char* text, uint32_t& languageCode) {
  // Kept as is: a double quote is a character like any other, so that an option inside a quoted path, behind a blank,
  // is taken too; and an option at the very start is not, since no blank stands before it. Command lines that people
  // have in their shortcuts rest on both. Held by anOptionInsideQuotesIsTaken and anOptionAtTheVeryStartIsNotSeen.
  bool afterBlank = false;
  for (const char* at = text; *at; ++at) {
    if (*at == '-') {
      ++at;
      if (afterBlank && upper(*at) == 'L') at = readLanguageCode(at, languageCode);
    }
    afterBlank = endsCode(*at);
    if (!*at) return;
  }
}

void ReadCommandLine() {
  if (languageState.commandLineRead) return;
  languageState.commandLineRead = true;
  readLanguageOption(platform::GetCommandLineA(), languageState.languageCode);
}

const char* LookupMessage(int32_t id) {
  const auto* const row = std::find_if(std::begin(messageRows), std::end(messageRows),
                                       [id](const MessageRow& candidate) { return candidate.id == id; });
  if (row == std::end(messageRows)) return "-";
  if (!row->english) return row->japanese;
  ReadCommandLine();
  const uint32_t code = languageState.languageCode;
  const bool japanese = code != 0 ? code == languageJapanese : platform::GetACP() == platform::codePageShiftJis;
  return japanese ? row->japanese : row->english;
}

PF_Err About(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef*[], PF_LayerDef*) {
  const bool shiftDown = platform::GetKeyState(platform::keyShift) < 0;
  const char* const copyright = LookupMessage(messageCopyright);
  // The empty text is the place of a note on the edition, of which there is one only. The host breaks the line at a
  // carriage return.
  if (shiftDown) {
    in_data->utils->ansi.sprintf(out_data->return_msg, "%s %d.%d.%d %s build:%d %s\r\r%s", effectName, versionMajor,
                                 versionMinor, versionBugFix, versionStageName, versionBuild, "", copyright);
  } else {
    in_data->utils->ansi.sprintf(out_data->return_msg, "%s %d.%d.%d %s\r\r%s", effectName, versionMajor, versionMinor,
                                 versionBugFix, "", copyright);
  }
  return PF_Err_NONE;
}

}  // namespace vindrel
