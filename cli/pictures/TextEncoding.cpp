#include "cli/pictures/TextEncoding.h"

namespace cli {

std::string utf8FromLatin1(std::string_view text) {
  std::string utf8;
  for (const char letter : text) {
    const auto code = static_cast<unsigned char>(letter);
    if (code < 0x80) {
      utf8 += letter;
    } else {
      utf8 += static_cast<char>(0xC0U | code >> 6U);
      utf8 += static_cast<char>(0x80U | (code & 0x3FU));
    }
  }
  return utf8;
}

std::optional<std::string> latin1FromUtf8(std::string_view text) {
  std::string latin1;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto code = static_cast<unsigned char>(text[i]);
    if (code < 0x80) {
      latin1 += text[i];
      continue;
    }
    const auto next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0U;
    if ((code != 0xC2 && code != 0xC3) || (next & 0xC0U) != 0x80U) return std::nullopt;
    latin1 += static_cast<char>((code & 3U) << 6U | (next & 0x3FU));
    ++i;
  }
  return latin1;
}

}  // namespace cli
