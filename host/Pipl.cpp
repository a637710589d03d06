#include "host/Pipl.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace standin {

namespace {

constexpr size_t kHeaderBytes = 10;    // a 16-bit 1, a 32-bit 0, a 32-bit count
constexpr size_t kPropertyBytes = 16;  // vendor, key, id, length

uint32_t word(const unsigned char* at) {
  return static_cast<uint32_t>(at[0]) | static_cast<uint32_t>(at[1]) << 8 | static_cast<uint32_t>(at[2]) << 16 |
         static_cast<uint32_t>(at[3]) << 24;
}

// A length byte, then the text; zero bytes to a multiple of four behind it.
std::string countedText(const unsigned char* data, size_t length) {
  if (length == 0) return {};
  const size_t count = std::min<size_t>(data[0], length - 1);
  return {reinterpret_cast<const char*>(data + 1), count};
}

std::string closedText(const unsigned char* data, size_t length) {
  const unsigned char* end = std::find(data, data + length, static_cast<unsigned char>(0));
  return {reinterpret_cast<const char*>(data), static_cast<size_t>(end - data)};
}

}  // namespace

std::optional<PiplFacts> readPipl(const void* bytes, size_t size) {
  const auto* at = static_cast<const unsigned char*>(bytes);
  if (at == nullptr || size < kHeaderBytes || at[0] != 1 || at[1] != 0 || word(at + 2) != 0) return std::nullopt;
  PiplFacts facts;
  const uint32_t count = word(at + 6);
  size_t offset = kHeaderBytes;
  for (uint32_t i = 0; i < count; ++i) {
    if (offset + kPropertyBytes > size) return std::nullopt;
    // Four-letter names lie in the file with their letters reversed.
    const std::string_view key(reinterpret_cast<const char*>(at + offset + 4), 4);
    const size_t length = word(at + offset + 12);
    const unsigned char* data = at + offset + kPropertyBytes;
    if (length > size - offset - kPropertyBytes) return std::nullopt;
    if (key == "dnik" && length == 4) {
      facts.kind.assign(data, data + 4);
      std::reverse(facts.kind.begin(), facts.kind.end());
    } else if (key == "eman") {
      facts.name = countedText(data, length);
    } else if (key == "gtac") {
      facts.category = countedText(data, length);
    } else if (key == "ANMe") {
      facts.matchName = countedText(data, length);
    } else if (key == "4668") {
      facts.entryName = closedText(data, length);
    } else if (key == "REVe" && length == 4) {
      facts.version = word(data);
    } else if (key == "OLGe" && length == 4) {
      facts.outFlags = static_cast<int32_t>(word(data));
    } else if (key == "2LGe" && length == 4) {
      facts.outFlags2 = static_cast<int32_t>(word(data));
    }
    ++facts.propertyCount;
    offset += (kPropertyBytes + length + 3) / 4 * 4;
  }
  return facts;
}

}  // namespace standin
