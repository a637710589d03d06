#include "cli/pictures/ExrHeader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string>

#include "cli/pictures/StoredPicture.h"

namespace cli {
namespace {

constexpr std::size_t sizeOfMagicAndVersion = 8;
constexpr uint8_t severalParts = 0x10;     ///< in the second byte of the version
constexpr int64_t mostRowsOfAChunk = 256;  ///< of any compression there is
constexpr int64_t widestRow = 1'000'000;   ///< pixels; much more than is rendered, and little memory
constexpr int64_t sizeOfPlace = 8;         ///< of a chunk, in their table

class HeaderBytes {
 public:
  explicit HeaderBytes(std::span<const uint8_t> file) : file_(file) {}

  /// A text that a zero ends.
  std::string text() {
    const auto rest = file_.subspan(at_);
    const auto end = std::find(rest.begin(), rest.end(), uint8_t{0});
    if (end == rest.end()) throw BrokenPicture("the file is cut");
    at_ += static_cast<std::size_t>(end - rest.begin()) + 1;
    return {rest.begin(), end};
  }

  int32_t number() {
    int32_t value = 0;
    const auto from = bytes(sizeof value);
    std::memcpy(&value, from.data(), sizeof value);
    return value;
  }

  std::span<const uint8_t> bytes(std::size_t count) {
    if (count > file_.size() - at_) throw BrokenPicture("the file is cut");
    const auto taken = file_.subspan(at_, count);
    at_ += count;
    return taken;
  }

 private:
  std::span<const uint8_t> file_;
  std::size_t at_ = sizeOfMagicAndVersion;
};

/// Whole chunks of `length` that `size` takes, 2^31 at most.
int64_t chunks(int64_t size, int64_t length) {
  return size <= 0 || length <= 0 ? 0 : std::min((size + length - 1) / length, int64_t{1} << 31);
}

/// What the attributes of one part say of its chunks.
struct Part {
  int64_t width = 0;
  int64_t height = 0;
  int64_t tileWidth = 0;  ///< 0: no tiles
  int64_t tileHeight = 0;

  /// At least so many chunks; of a picture with levels, those of the largest.
  int64_t leastChunks() const {
    if (tileWidth == 0) return chunks(height, mostRowsOfAChunk);
    return chunks(width, tileWidth) * chunks(height, tileHeight);
  }
};

void take(const std::string& name, std::span<const uint8_t> value, Part& part) {
  std::array<uint32_t, 4> numbers{};
  std::memcpy(numbers.data(), value.data(), std::min(value.size(), sizeof numbers));
  if (name == "dataWindow" && value.size() == sizeof numbers) {
    const auto at = [&](std::size_t i) { return int64_t{static_cast<int32_t>(numbers[i])}; };
    part.width = at(2) - at(0) + 1;
    part.height = at(3) - at(1) + 1;
    // The library takes memory for some rows before anybody can ask it for their length.
    if (part.width > widestRow) {
      throw BrokenPicture("its rows of " + std::to_string(part.width) + " pixels are too long to be rendered");
    }
  } else if (name == "tiles" && value.size() >= 2 * sizeof(uint32_t)) {
    part.tileWidth = numbers[0];
    part.tileHeight = numbers[1];
  }
}

}  // namespace

void checkExrHeader(std::span<const uint8_t> file) {
  if (file.size() <= sizeOfMagicAndVersion) throw BrokenPicture("the file is cut");
  const bool several = (file[5] & severalParts) != 0;
  HeaderBytes header(file);
  bool first = true;
  while (true) {
    Part part;
    std::string name = header.text();
    // In a file of several parts a header without an attribute is the end of them.
    if (name.empty() && (!several || !first)) return;
    for (; !name.empty(); name = header.text()) {
      static_cast<void>(header.text());  // its type
      const int32_t size = header.number();
      if (size < 0) throw BrokenPicture("the file is cut");
      take(name, header.bytes(static_cast<std::size_t>(size)), part);
    }
    if (part.leastChunks() > static_cast<int64_t>(file.size()) / sizeOfPlace) throw BrokenPicture("the file is cut");
    if (!several) return;
    first = false;
  }
}

}  // namespace cli
