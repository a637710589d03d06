#include "cli/pictures/Exif.h"

#include <cstddef>
#include <optional>

namespace cli {
namespace {

/// Numbers at any place of the block; 0 beyond its end.
class Numbers {
 public:
  explicit Numbers(std::span<const uint8_t> block) : block_(block), littleFirst_(block[0] == 'I') {}

  uint32_t at16(std::size_t place) const { return joined(place, 2); }
  uint32_t at32(std::size_t place) const { return joined(place, 4); }

 private:
  uint32_t joined(std::size_t place, std::size_t count) const {
    if (place > block_.size() || block_.size() - place < count) return 0;
    uint32_t number = 0;
    for (std::size_t i = 0; i < count; ++i) {
      number = number << 8 | block_[place + (littleFirst_ ? count - 1 - i : i)];
    }
    return number;
  }

  std::span<const uint8_t> block_;
  bool littleFirst_;
};

/// Where the number of the orientation stands, 2 bytes in the block's order; nothing when there is none.
std::optional<std::size_t> orientationPlace(std::span<const uint8_t> block) {
  constexpr uint32_t orientationTag = 0x0112;
  constexpr uint32_t shortType = 3;
  constexpr std::size_t entrySize = 12;
  if (block.size() < 8 || block[0] != block[1] || (block[0] != 'I' && block[0] != 'M')) return std::nullopt;
  const Numbers numbers(block);
  if (numbers.at16(2) != 42) return std::nullopt;
  const std::size_t directory = numbers.at32(4);
  const uint32_t entries = numbers.at16(directory);
  for (uint32_t i = 0; i < entries; ++i) {
    const std::size_t entry = directory + 2 + i * entrySize;
    if (numbers.at16(entry) != orientationTag || numbers.at16(entry + 2) != shortType) continue;
    return entry + 10 <= block.size() ? std::optional(entry + 8) : std::nullopt;
  }
  return std::nullopt;
}

}  // namespace

int32_t exifOrientation(std::span<const uint8_t> block) {
  const auto place = orientationPlace(block);
  if (!place) return 1;
  const uint32_t orientation = Numbers(block).at16(*place);
  return orientation >= 1 && orientation <= 8 ? static_cast<int32_t>(orientation) : 1;
}

void makeExifUpright(std::span<uint8_t> block) {
  const auto place = orientationPlace(block);
  if (!place) return;
  const bool littleFirst = block[0] == 'I';
  block[*place] = littleFirst ? 1 : 0;
  block[*place + 1] = littleFirst ? 0 : 1;
}

}  // namespace cli
