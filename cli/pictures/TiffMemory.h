/// libtiff on a file in memory.
#pragma once

#include <tiffio.h>

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace cli {

/// What the library reads from or writes into, and its last complaint. Must outlive the Tiff.
struct TiffMemory {
  std::span<const uint8_t> in;
  std::vector<uint8_t> out;
  bool writing = false;
  uint64_t at = 0;
  std::array<char, 300> complaint{};

  uint64_t size() const { return writing ? out.size() : in.size(); }
};

struct TiffCloser {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using Tiff = std::unique_ptr<TIFF, TiffCloser>;

/// @param mode  the library's, "rm" to read and "w" to write
/// @return null, with a complaint, when the library won't
Tiff openTiffMemory(TiffMemory& memory, const char* mode);

/// The library's last complaint as one line.
std::string tiffComplaint(const TiffMemory& memory);

/// A tag's number, or another one where the file has no such tag.
template <class Number>
Number tiffField(TIFF* tiff, uint32_t tag, Number otherwise) {
  Number number = otherwise;
  return TIFFGetFieldDefaulted(tiff, tag, &number) != 0 ? number : otherwise;
}

}  // namespace cli
