// The pixels that are drawn on.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vindrel {

/// One frame's canvas in memory: straight colour, top row first. Owns nothing.
/// @tparam Pixel  Pixel8, Pixel16 or Pixel32.
template <class Pixel>
struct CanvasView {
  Pixel* pixels = nullptr;  ///< first pixel; `height` rows, `rowBytes` apart
  int32_t width = 0;        ///< pixels, below 2^28
  int32_t height = 0;       ///< pixels, below 2^28
  int32_t rowBytes = 0;     ///< may exceed width * sizeof(Pixel), and need not be a multiple of it

  /// The first pixel of a row, which must lie on the canvas.
  Pixel* row(int32_t y) const {
    const auto offset = static_cast<std::ptrdiff_t>(rowBytes) * y;
    return reinterpret_cast<Pixel*>(reinterpret_cast<std::byte*>(pixels) + offset);
  }
};

}  // namespace vindrel
