// The profile functions over an ordinary file.
//
// A file is read whole, cut into lines once, and written whole. It is a few kilobytes long and is looked at once per
// control when the host sets the effect up, so that nothing is kept between calls. Memory comes from the C library.
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include "platform/ProfileFile.h"

namespace platform {

namespace {

struct FreeBlock {
  void operator()(void* block) const { std::free(block); }
};
using TextBlock = std::unique_ptr<char, FreeBlock>;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

/// A file's whole text; empty when it can't be read.
struct FileText {
  TextBlock block;
  size_t length = 0;

  std::string_view view() const { return {block.get(), length}; }
};

FileText readFile(const char* path) {
  const OpenFile file{std::fopen(path, "rb")};
  if (!file || std::fseek(file.get(), 0, SEEK_END) != 0) return {};
  const long size = std::ftell(file.get());
  if (size <= 0 || std::fseek(file.get(), 0, SEEK_SET) != 0) return {};
  FileText text;
  text.block.reset(static_cast<char*>(std::malloc(static_cast<size_t>(size))));
  if (!text.block) return {};
  text.length = std::fread(text.block.get(), 1, static_cast<size_t>(size), file.get());
  return text;
}

// What Windows takes for a blank: white space, and the end-of-file character of old editors.
bool isBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r') || c == '\x1a';
}

std::string_view withoutLeadingBlanks(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  return text;
}

std::string_view trimmed(std::string_view text) {
  text = withoutLeadingBlanks(text);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool sameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (lower(a[i]) != lower(b[i])) return false;
  }
  return true;
}

/// Where things stand in a file's text, as offsets from its start.
struct Place {
  bool sectionFound = false;
  bool keyFound = false;
  size_t sectionEnd = 0;  ///< one past the section's last line with something on it
  size_t lineStart = 0;   ///< the key's line, without its line end
  size_t lineEnd = 0;
  std::string_view value;  ///< the key's value, trimmed, quotes still on
};

/// The name of a line that opens a section; false for every other line.
bool isSectionLine(std::string_view line, std::string_view& name) {
  line = withoutLeadingBlanks(line);
  if (line.empty() || line.front() != '[') return false;
  const size_t close = line.rfind(']');
  if (close == std::string_view::npos) return false;
  name = line.substr(1, close - 1);
  return true;
}

/// The first section of that name counts, and in it the first key of that name.
Place find(std::string_view text, std::string_view section, std::string_view key) {
  Place place;
  bool inside = false;
  for (size_t start = 0; start < text.size();) {
    const size_t newline = text.find_first_of("\r\n", start);
    const size_t end = newline == std::string_view::npos ? text.size() : newline;
    const std::string_view line = text.substr(start, end - start);
    std::string_view name;
    if (isSectionLine(line, name)) {
      if (inside) break;
      inside = sameName(name, section);
      place.sectionFound = inside;
    } else if (inside && !place.keyFound) {
      const size_t equals = line.find('=');
      if (equals != std::string_view::npos && sameName(trimmed(line.substr(0, equals)), key)) {
        place.keyFound = true;
        place.lineStart = start;
        place.lineEnd = end;
        place.value = trimmed(line.substr(equals + 1));
      }
    }
    if (inside && !trimmed(line).empty()) place.sectionEnd = end;
    start = end + 1;
  }
  return place;
}

std::string_view withoutQuotes(std::string_view value) {
  const bool quoted =
      value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front();
  return quoted ? value.substr(1, value.size() - 2) : value;
}

/// The number at the start of a text, as the system's own conversion reads it; wraps at 32 bits.
uint32_t numberOf(std::string_view text) {
  text = withoutLeadingBlanks(text);
  bool negative = false;
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  uint32_t base = 10;
  if (text.size() >= 2 && text[0] == '0') {
    if (text[1] == 'x') base = 16;
    if (text[1] == 'o') base = 8;
    if (text[1] == 'b') base = 2;
    if (base != 10) text.remove_prefix(2);
  }
  uint32_t number = 0;
  for (const char c : text) {
    uint32_t digit = base;
    if (c >= '0' && c <= '9') digit = static_cast<uint32_t>(c - '0');
    if (lower(c) >= 'a' && lower(c) <= 'f') digit = static_cast<uint32_t>(lower(c) - 'a') + 10;
    if (digit >= base) break;
    number = number * base + digit;
  }
  return negative ? 0u - number : number;
}

bool put(std::FILE* file, std::string_view text) {
  // An empty text may have no address at all.
  return text.empty() || std::fwrite(text.data(), 1, text.size(), file) == text.size();
}

bool putKey(std::FILE* file, std::string_view key, std::string_view value) {
  return put(file, key) && put(file, "=") && put(file, value);
}

}  // namespace

uint32_t GetPrivateProfileStringA(const char* section, const char* key, const char* defaultValue, char* buffer,
                                  uint32_t size, const char* path) {
  const FileText text = readFile(path);
  const Place place = find(text.view(), trimmed(section), trimmed(key));
  std::string_view value = place.value;
  if (!place.keyFound) {
    value = defaultValue;
    while (!value.empty() && value.back() == ' ') value.remove_suffix(1);
  }
  value = withoutQuotes(value).substr(0, size - 1);
  if (!value.empty()) std::memcpy(buffer, value.data(), value.size());
  buffer[value.size()] = '\0';
  return static_cast<uint32_t>(value.size());
}

uint32_t GetPrivateProfileIntA(const char* section, const char* key, int32_t defaultValue, const char* path) {
  char value[30];
  const uint32_t length = GetPrivateProfileStringA(section, key, "", value, sizeof value, path);
  return length == 0 ? static_cast<uint32_t>(defaultValue) : numberOf({value, length});
}

bool WritePrivateProfileStringA(const char* section, const char* key, const char* value, const char* path) {
  const FileText text = readFile(path);
  const std::string_view all = text.view();
  const std::string_view sectionName = trimmed(section);
  const std::string_view keyName = trimmed(key);
  const std::string_view newValue = withoutLeadingBlanks(value);
  const Place place = find(all, sectionName, keyName);
  const OpenFile file{std::fopen(path, "wb")};
  if (!file) return false;
  std::FILE* const out = file.get();
  bool written = true;
  if (place.keyFound) {
    // The name stays as it was spelt in the file.
    const std::string_view line = all.substr(place.lineStart, place.lineEnd - place.lineStart);
    const std::string_view oldName = trimmed(line.substr(0, line.find('=')));
    written = put(out, all.substr(0, place.lineStart)) && putKey(out, oldName, newValue) &&
              put(out, all.substr(place.lineEnd));
  } else if (place.sectionFound) {
    written = put(out, all.substr(0, place.sectionEnd)) && put(out, "\r\n") && putKey(out, keyName, newValue) &&
              (place.sectionEnd == all.size() ? put(out, "\r\n") : put(out, all.substr(place.sectionEnd)));
  } else {
    const bool openLine = !all.empty() && all.back() != '\n' && all.back() != '\r';
    written = put(out, all) && put(out, openLine ? "\r\n" : "") && put(out, "[") && put(out, sectionName) &&
              put(out, "]\r\n") && putKey(out, keyName, newValue) && put(out, "\r\n");
  }
  return std::fflush(out) == 0 && written;
}

bool DeleteFileA(const char* path) {
  return std::remove(path) == 0;
}

}  // namespace platform
