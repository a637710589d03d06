// Reads a Windows module from its bytes: what it exports, what it imports, which resources it carries.
//
// Written for the tests alone, from the format of the file: it shares nothing with what made the module.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace pe {

using Bytes = std::vector<uint8_t>;

/// Little-endian numbers at an offset; throws std::out_of_range beyond the end.
uint16_t read16(const Bytes& bytes, size_t offset);
uint32_t read32(const Bytes& bytes, size_t offset);

/// Where a resource stands: type and name are numbers, or texts of 16-bit letters (here ASCII).
struct ResourceKey {
  std::string type;  ///< "#5" for the number 5, else the text
  std::string name;
  uint32_t language = 0;
  // clang-tidy 14 takes the comparison with 0 that the compiler writes for one of this source.
  auto operator<=>(const ResourceKey&) const = default;  // NOLINT(modernize-use-nullptr)
};

struct Module {
  uint16_t machine = 0;            ///< 0x8664 for 64-bit
  uint16_t characteristics = 0;    ///< 0x2000 is set for a library
  uint16_t optionalMagic = 0;      ///< 0x20B for 64-bit
  std::set<std::string> exports;   ///< names
  uint32_t exportedFunctions = 0;  ///< with and without a name
  std::set<std::string> imports;   ///< names of libraries, lowercase
  std::map<ResourceKey, Bytes> resources;
};

/// Throws std::runtime_error when the file can't be read or is no module.
Module read(const std::string& path);

}  // namespace pe
