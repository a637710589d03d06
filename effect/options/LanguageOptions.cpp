#include "effect/options/LanguageOptions.h"

#include "platform/CommandLine.h"

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

}  // namespace vindrel
