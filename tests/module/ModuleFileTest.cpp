// What the built file shows to the system that loads it: names that it gives, libraries that it needs. Read from the
// bytes of the file, by readers that know just enough of the two formats.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

class FileBytes {
 public:
  explicit FileBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    bytes_.resize(static_cast<std::size_t>(std::max<std::streamoff>(file.tellg(), 0)));
    file.seekg(0);
    file.read(bytes_.data(), static_cast<std::streamsize>(bytes_.size()));
  }

  /// A little-endian number of `width` bytes.
  uint64_t number(uint64_t offset, unsigned width) const {
    uint64_t value = 0;
    for (unsigned i = 0; i < width; ++i) {
      value |= static_cast<uint64_t>(static_cast<uint8_t>(bytes_.at(static_cast<std::size_t>(offset + i)))) << (8 * i);
    }
    return value;
  }

  std::string text(uint64_t offset) const {
    std::string text;
    while (bytes_.at(static_cast<std::size_t>(offset)) != '\0') {
      text += bytes_[static_cast<std::size_t>(offset++)];
    }
    return text;
  }

  bool beginsWith(const std::string& start) const {
    return bytes_.size() >= start.size() && std::equal(start.begin(), start.end(), bytes_.begin());
  }

 private:
  std::vector<char> bytes_;
};

struct Surface {
  std::vector<std::string> exported;
  std::set<std::string> needed;  ///< libraries, in small letters
};

std::string inSmallLetters(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return text;
}

/// 64-bit ELF: the dynamic symbols that have a section, and the DT_NEEDED entries.
Surface readElf(const FileBytes& file) {
  Surface surface;
  const uint64_t sections = file.number(0x28, 8);
  const uint64_t sectionBytes = file.number(0x3A, 2);
  const uint64_t sectionCount = file.number(0x3C, 2);
  for (uint64_t i = 0; i < sectionCount; ++i) {
    const uint64_t header = sections + i * sectionBytes;
    const uint64_t type = file.number(header + 4, 4);
    const uint64_t offset = file.number(header + 0x18, 8);
    const uint64_t end = offset + file.number(header + 0x20, 8);
    const uint64_t names = file.number(sections + file.number(header + 0x28, 4) * sectionBytes + 0x18, 8);
    if (type == 11) {  // dynamic symbols, 24 bytes each
      for (uint64_t symbol = offset; symbol < end; symbol += 24) {
        if (file.number(symbol + 6, 2) != 0) {
          surface.exported.push_back(file.text(names + file.number(symbol, 4)));
        }
      }
    } else if (type == 6) {  // dynamic section, 16 bytes an entry
      for (uint64_t entry = offset; entry < end; entry += 16) {
        if (file.number(entry, 8) == 1) {
          surface.needed.insert(inSmallLetters(file.text(names + file.number(entry + 8, 8))));
        }
      }
    }
  }
  return surface;
}

/// 64-bit PE: the names of the export directory and of the import descriptors.
Surface readPe(const FileBytes& file) {
  const uint64_t header = file.number(0x3C, 4);
  const uint64_t sectionCount = file.number(header + 6, 2);
  const uint64_t optional = header + 24;
  const uint64_t sections = optional + file.number(header + 20, 2);
  if (file.number(optional, 2) != 0x20B) {
    throw std::runtime_error("not a 64-bit module");
  }
  const auto fileOffset = [&](uint64_t address) -> uint64_t {
    for (uint64_t i = 0; i < sectionCount; ++i) {
      const uint64_t section = sections + 40 * i;
      const uint64_t start = file.number(section + 12, 4);
      if (address >= start && address < start + file.number(section + 16, 4)) {
        return address - start + file.number(section + 20, 4);
      }
    }
    throw std::runtime_error("an address outside all sections");
  };
  Surface surface;
  const uint64_t exports = fileOffset(file.number(optional + 112, 4));
  const uint64_t nameCount = file.number(exports + 24, 4);
  const uint64_t functionCount = file.number(exports + 20, 4);
  const uint64_t names = fileOffset(file.number(exports + 32, 4));
  for (uint64_t i = 0; i < nameCount; ++i) {
    surface.exported.push_back(file.text(fileOffset(file.number(names + 4 * i, 4))));
  }
  if (functionCount != nameCount) {
    surface.exported.emplace_back("a function without a name");
  }
  for (uint64_t entry = fileOffset(file.number(optional + 120, 4)); file.number(entry + 12, 4) != 0; entry += 20) {
    surface.needed.insert(inSmallLetters(file.text(fileOffset(file.number(entry + 12, 4)))));
  }
  return surface;
}

Surface readModule() {
  const FileBytes file(VINDREL_MODULE_PATH);
  if (file.beginsWith("\x7F"
                      "ELF")) {
    return readElf(file);
  }
  if (file.beginsWith("MZ")) {
    return readPe(file);
  }
  throw std::runtime_error("neither an ELF nor a PE file");
}

TEST(ModuleFile, exportsItsEntryAndNothingElse) {
  EXPECT_EQ(readModule().exported, std::vector<std::string>{"EntryPointFunc"});
}

TEST(ModuleFile, needsOnlyLibrariesThatEverySystemHas) {
  // The C library of each system, and Windows' own. No compiler's run-time library, above all not its C++ library.
  std::set<std::string> allowed = {"libc.so.6",  "libm.so.6", "ld-linux-x86-64.so.2", "kernel32.dll", "msvcrt.dll",
                                   "user32.dll", "gdi32.dll", "advapi32.dll"};
#ifdef VINDREL_SANITIZED
  allowed.insert({"libasan.so.8", "libubsan.so.1"});
#endif
  const std::set<std::string> needed = readModule().needed;
  EXPECT_FALSE(needed.empty());
  for (const std::string& library : needed) {
    EXPECT_TRUE(allowed.count(library) != 0) << library;
  }
}

}  // namespace
