/// What only a TIFF can hold.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace cli {

struct TiffFacts {
  std::vector<std::pair<uint32_t, std::string>> texts;            ///< by tag
  std::vector<std::pair<uint32_t, std::vector<uint8_t>>> blocks;  ///< by tag, bytes as they are
};

/// The notes that other formats have too: the tag, and the key under which PNG has it.
struct TiffNote {
  uint32_t tag;
  const char* key;
};
inline constexpr TiffNote tiffNotes[] = {
    {270, "Description"}, {315, "Author"}, {33432, "Copyright"}, {305, "Software"}, {269, "Title"}};

}  // namespace cli
