/// What only a PNG can hold.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace cli {

/// The key of the note that holds XMP.
inline constexpr char pngXmpKey[] = "XML:com.adobe.xmp";

struct PngFacts {
  std::optional<int32_t> gamma;       ///< in 100000ths
  std::optional<int32_t> srgbIntent;  ///< 0 to 3

  /// A chunk that this program doesn't know but may copy, as its name tells.
  struct Chunk {
    std::array<uint8_t, 5> name{};  ///< closed by a 0
    std::vector<uint8_t> data;
    uint8_t place = 0;  ///< as libpng tells where it stood
  };
  std::vector<Chunk> chunks;
};

}  // namespace cli
