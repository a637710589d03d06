// The profile functions over an ordinary file.
//
// A file is read whole, cut into lines once, and written whole. It is a few kilobytes long and is looked at once per
// control when the host sets the effect up, so that nothing is kept between calls. Memory comes from the C library.
//
// A written file is made beside the old one and then put in its place, under a lock of the folder: whoever reads
// meanwhile reads the old file or the new one, several writers at once lose none of each other's keys, and a full disk
// leaves the old file.
#include <fcntl.h>
#include <libgen.h>
#include <limits.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
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

/// Bytes of a settings file at most; a longer one is none.
constexpr off_t mostBytes = 1'000'000;

/// A file's whole text.
struct FileText {
  TextBlock block;
  size_t length = 0;
  bool isWhole = false;  ///< false, and the text is empty, when the file can't be read or is no settings file

  std::string_view view() const { return {block.get(), length}; }
};

/// A missing file has an empty text.
FileText readFile(const char* path) {
  FileText text;
  // Without O_NONBLOCK a pipe that nobody writes to would hold up the opening itself.
  const int number = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (number < 0) {
    text.isWhole = errno == ENOENT;
    return text;
  }
  const OpenFile file{fdopen(number, "rb")};
  if (!file) {
    close(number);
    return text;
  }
  struct stat facts {};
  if (fstat(number, &facts) != 0 || !S_ISREG(facts.st_mode) || facts.st_size > mostBytes) return text;
  const auto size = static_cast<size_t>(facts.st_size);
  text.block.reset(static_cast<char*>(std::malloc(size + 1)));  // the one more makes a block of an empty file
  if (!text.block || std::fread(text.block.get(), 1, size, file.get()) != size) return text;
  text.length = size;
  text.isWhole = true;
  return text;
}

/// Keeps other writers of a folder's settings waiting while it lives.
class FolderLock {
 public:
  explicit FolderLock(const char* folder) : number_(open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    // Some file systems know no locks; there writers at once may lose each other's keys, as without.
    while (number_ >= 0 && flock(number_, LOCK_EX) != 0 && errno == EINTR) {
    }
  }
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;
  ~FolderLock() {
    if (number_ >= 0) close(number_);
  }

 private:
  int number_;
};

/// A file under a passing name beside its place; removed again unless it was put there.
class FileInTheMaking {
 public:
  explicit FileInTheMaking(const char* place) : place_(place) {
    // A name that is taken is a leftover of a crash, or of somebody who means harm: O_EXCL neither follows nor takes
    // it.
    for (int attempt = 0; attempt < 100 && number_ < 0; ++attempt) {
      const int length =
          std::snprintf(name_, sizeof name_, "%s.%ld-%d.part", place, static_cast<long>(getpid()), attempt);
      if (length < 0 || static_cast<size_t>(length) >= sizeof name_) return;
      number_ = open(name_, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
      if (number_ < 0 && errno != EEXIST) return;
    }
    if (number_ >= 0) file_.reset(fdopen(number_, "wb"));
  }
  FileInTheMaking(const FileInTheMaking&) = delete;
  FileInTheMaking& operator=(const FileInTheMaking&) = delete;
  ~FileInTheMaking() {
    if (number_ >= 0 && !file_ && !closed_) close(number_);
    if (number_ >= 0 && !placed_) unlink(name_);
  }

  std::FILE* file() const { return file_.get(); }

  /// With the owner, if the system lets us, and the mode of the file that is there. False when that one isn't replaced.
  bool putInPlace() {
    struct stat before {};
    if (stat(place_, &before) == 0) {
      static_cast<void>(fchown(number_, before.st_uid, before.st_gid) == 0);
      if (fchmod(number_, before.st_mode & 07777U) != 0) return false;
    }
    closed_ = true;
    if (std::fclose(file_.release()) != 0) return false;
    placed_ = std::rename(name_, place_) == 0;
    return placed_;
  }

 private:
  const char* place_;
  char name_[4200] = "";
  int number_ = -1;
  OpenFile file_;
  bool closed_ = false;
  bool placed_ = false;
};

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

/// Writes the whole text `all` with the key set in it.
bool putWithKey(std::FILE* out, std::string_view all, std::string_view section, std::string_view key,
                std::string_view value) {
  const Place place = find(all, section, key);
  if (place.keyFound) {
    // The name stays as it was spelt in the file.
    const std::string_view line = all.substr(place.lineStart, place.lineEnd - place.lineStart);
    const std::string_view oldName = trimmed(line.substr(0, line.find('=')));
    return put(out, all.substr(0, place.lineStart)) && putKey(out, oldName, value) &&
           put(out, all.substr(place.lineEnd));
  }
  if (place.sectionFound) {
    return put(out, all.substr(0, place.sectionEnd)) && put(out, "\r\n") && putKey(out, key, value) &&
           (place.sectionEnd == all.size() ? put(out, "\r\n") : put(out, all.substr(place.sectionEnd)));
  }
  const bool openLine = !all.empty() && all.back() != '\n' && all.back() != '\r';
  return put(out, all) && put(out, openLine ? "\r\n" : "") && put(out, "[") && put(out, section) && put(out, "]\r\n") &&
         putKey(out, key, value) && put(out, "\r\n");
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
  // A link stays, and what it leads to is replaced; a file that isn't there yet has no other name.
  char place[PATH_MAX] = "";
  if (realpath(path, place) == nullptr) {
    struct stat link {};
    const size_t length = std::strlen(path);
    if (errno != ENOENT || lstat(path, &link) == 0 || length >= sizeof place) return false;
    std::memcpy(place, path, length + 1);
  }
  char folder[PATH_MAX];
  std::memcpy(folder, place, sizeof folder);
  const FolderLock lock(dirname(folder));

  const FileText text = readFile(place);
  if (!text.isWhole) return false;
  FileInTheMaking making(place);
  std::FILE* const out = making.file();
  if (out == nullptr) return false;
  return putWithKey(out, text.view(), trimmed(section), trimmed(key), withoutLeadingBlanks(value)) &&
         making.putInPlace();
}

bool DeleteFileA(const char* path) {
  return std::remove(path) == 0;
}

}  // namespace platform
