/// Texts as the notes of picture files have them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cli {

/// Latin-1, as a PNG's plain notes have it, to UTF-8.
std::string utf8FromLatin1(std::string_view text);

/// UTF-8 to Latin-1; nothing when a letter isn't of it or the text is no UTF-8.
std::optional<std::string> latin1FromUtf8(std::string_view text);

}  // namespace cli
