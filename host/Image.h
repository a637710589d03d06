/// A picture that owns its pixels, and the window on it that an effect is given.
///
/// Pixels are alpha, red, green, blue, straight colour; full scale 255, 32768 or 1.0 by depth. Behind each row, before
/// the first and behind the last row lie guard bytes of a known value, so that a write outside the picture shows.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "ae/Worlds.h"
#include "host/Depth.h"

namespace standin {

class Image {
 public:
  static constexpr uint8_t kGuardByte = 0x5D;       ///< what every byte outside the picture holds
  static constexpr int32_t kLeastGuardLength = 64;  ///< bytes before and behind the rows; keeps pixels aligned

  /// An 8-bit picture of no size.
  Image() = default;

  /// A picture of width x height transparent black pixels. Sizes below 0 count as 0.
  /// @param rowPadding  bytes behind each row, rounded up to whole channels; guard bytes
  /// @param fill        what every byte of every pixel holds, where it is not to be black
  /// @param guardLength bytes before the first and behind the last row, rounded up to a multiple of the least
  Image(Depth depth, int32_t width, int32_t height, int32_t rowPadding = 0, uint8_t fill = 0,
        int32_t guardLength = kLeastGuardLength);

  Depth depth() const { return depth_; }
  int32_t width() const { return width_; }    ///< pixels
  int32_t height() const { return height_; }  ///< pixels
  int32_t rowBytes() const { return rowBytes_; }
  bool empty() const { return width_ == 0 || height_ == 0; }

  /// Layer coordinates at the current resolution of the top left pixel; what the world of this picture bears.
  int32_t originX = 0;
  int32_t originY = 0;

  /// Width of a pixel : height of a pixel.
  PF_RationalScale pixelAspect{1, 1};

  /// The first byte of row y, 0 <= y < height.
  uint8_t* rowStart(int32_t y);
  const uint8_t* rowStart(int32_t y) const;

  /// The pixels of row y. Pixel must be the type of depth().
  template <class Pixel>
  Pixel* row(int32_t y) {
    assert(PixelFacts<Pixel>::depth == depth_);
    return reinterpret_cast<Pixel*>(rowStart(y));
  }
  template <class Pixel>
  const Pixel* row(int32_t y) const {
    assert(PixelFacts<Pixel>::depth == depth_);
    return reinterpret_cast<const Pixel*>(rowStart(y));
  }

  /// The pixel in column x of row y, both inside the picture. Pixel must be the type of depth().
  template <class Pixel>
  Pixel& at(int32_t x, int32_t y) {
    assert(x >= 0 && x < width_);
    return row<Pixel>(y)[x];
  }
  template <class Pixel>
  const Pixel& at(int32_t x, int32_t y) const {
    assert(x >= 0 && x < width_);
    return row<Pixel>(y)[x];
  }

  /// The world of the whole picture: data, rowbytes, sizes, origin, aspect, flags (writeable; deep at 16 bits) and an
  /// extent hint of the whole. It stays good while the picture lives and is neither moved nor assigned to.
  PF_EffectWorld view() const;

  /// False once a byte around the pixels or between the rows has changed.
  bool guardsIntact() const;

  /// The same picture at another depth: to 8 or 16 bits rounded to nearest and cut off at full scale, to float exact to
  /// the last bit; origin kept, no padding.
  Image converted(Depth depth) const;

  /// The picture at another size, as a host gives a layer at a lower resolution. When the sizes divide evenly each
  /// pixel is the mean of its block, colours weighed by their alpha; else the pixel whose place is nearest. The origin
  /// is set to 0.
  Image resized(int32_t width, int32_t height) const;

  /// The part of the picture inside rect (columns and rows of this picture, ends exclusive, cut to the picture), with
  /// the origin moved along.
  Image part(const PF_Rect& rect) const;

 private:
  Depth depth_ = Depth::k8;
  int32_t width_ = 0;
  int32_t height_ = 0;
  int32_t rowBytes_ = 0;
  int32_t guardLength_ = kLeastGuardLength;
  std::vector<uint8_t> bytes_;  ///< guard, rows, guard
};

/// True when depth, size and every pixel byte are equal; padding and origin do not count.
bool samePixels(const Image& a, const Image& b);

/// Whole pixels of length pixels at num / den of full resolution: truncated after adding a half, at least 0.
int32_t scaledLength(int32_t length, const PF_RationalScale& scale);

}  // namespace standin
