// The property list by which the host knows the effect before it loads the module ("PiPL").
//
// Made at compile time from the constants that the code itself uses, so that the two can't differ. The Windows module
// carries the bytes as resource PIPL 16000, language 1033.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "effect/share/util/Identity.h"

namespace vindrel {

/// Bytes of the whole list. A list of another size does not compile.
inline constexpr size_t propertyListSize = 282;

/// Writes a list, little-endian, from its first byte to its last.
///
/// A list is a 16-bit 1, a 32-bit 0, the 32-bit count of properties, then the properties. A property is the vendor, the
/// key (four letters each, stored in reverse), a 32-bit 0, the 32-bit length of the data, the data, and zeros up to a
/// multiple of four. Texts are padded too, but their padding counts in the length.
class PropertyListWriter {
 public:
  constexpr PropertyListWriter() {
    put16(1);
    put32(0);
    put32(0);
  }

  constexpr void code(std::string_view storedKey, std::string_view fourLetters) {
    head(storedKey, 4);
    putText(fourLetters);
  }

  constexpr void number(std::string_view storedKey, uint32_t value) {
    head(storedKey, 4);
    put32(value);
  }

  constexpr void pair(std::string_view storedKey, uint16_t first, uint16_t second) {
    head(storedKey, 4);
    put16(first);
    put16(second);
  }

  /// One 16-bit number. Its padding is the only one that the length leaves out.
  constexpr void shortNumber(std::string_view storedKey, uint16_t value) {
    head(storedKey, 2);
    put16(value);
    put16(0);
  }

  /// A text behind a byte with its length.
  constexpr void countedText(std::string_view storedKey, std::string_view text) {
    const size_t length = roundedUp(1 + text.size());
    head(storedKey, static_cast<uint32_t>(length));
    put8(static_cast<uint8_t>(text.size()));
    putText(text);
    putZeros(length - 1 - text.size());
  }

  /// A text with at least one zero behind it.
  constexpr void zeroEndedText(std::string_view storedKey, std::string_view text) {
    const size_t length = roundedUp(text.size() + 1);
    head(storedKey, static_cast<uint32_t>(length));
    putText(text);
    putZeros(length - text.size());
  }

  /// The bytes, once everything is written.
  constexpr std::array<uint8_t, propertyListSize> bytes() const {
    // Not a constant expression, hence no program, when the list came out longer or shorter.
    if (size_ != propertyListSize) throw "the property list has another size";
    return bytes_;
  }

 private:
  static constexpr size_t roundedUp(size_t length) { return (length + 3) / 4 * 4; }

  constexpr void head(std::string_view storedKey, uint32_t length) {
    putText("MIB8");
    putText(storedKey);
    put32(0);
    put32(length);
    // The count is one byte of the header as long as there are fewer than 256 properties.
    ++bytes_[6];
  }
  constexpr void put8(uint8_t value) { bytes_[size_++] = value; }
  constexpr void put16(uint16_t value) {
    put8(static_cast<uint8_t>(value & 0xFF));
    put8(static_cast<uint8_t>(value >> 8));
  }
  constexpr void put32(uint32_t value) {
    put16(static_cast<uint16_t>(value & 0xFFFF));
    put16(static_cast<uint16_t>(value >> 16));
  }
  constexpr void putText(std::string_view text) {
    for (const char c : text) put8(static_cast<uint8_t>(c));
  }
  constexpr void putZeros(size_t count) {
    for (size_t i = 0; i < count; ++i) put8(0);
  }

  std::array<uint8_t, propertyListSize> bytes_{};
  size_t size_ = 0;
};

/// The effect's own list.
consteval std::array<uint8_t, propertyListSize> propertyList() {
  PropertyListWriter list;
  list.code("dnik", "TKFe");  // an effect
  list.countedText("eman", effectName);
  list.countedText("gtac", effectCategory);
  list.zeroEndedText("4668", entryPointName);
  list.pair("RVPe", 2, 0);   // form of this list
  list.pair("RVSe", 13, 0);  // of the host's interface: the first 64-bit one
  list.number("REVe", effectVersion);
  list.shortNumber("FNIe", 0);
  list.number("OLGe", static_cast<uint32_t>(globalOutFlags));
  list.number("2LGe", static_cast<uint32_t>(globalOutFlags2));
  list.countedText("ANMe", effectMatchName);
  list.number("LFea", 0);
  return list.bytes();
}

}  // namespace vindrel
