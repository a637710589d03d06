// A layer for tests: pixels in a block of memory that ends with the last pixel, so that a sanitizer sees a read too
// far.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "ae/Worlds.h"
#include "effect/dots/LayerEffectMap.h"

namespace vindrel::test {

/// @tparam Pixel  the depth of the layer
template <class Pixel>
class LayerWorld {
 public:
  /// All pixels zero. `rowPadding` bytes stand after each row but the last; an odd number makes later rows unaligned.
  LayerWorld(int32_t width, int32_t height, int32_t rowPadding = 0) {
    const auto rowBytes = static_cast<size_t>(width) * sizeof(Pixel) + static_cast<size_t>(rowPadding);
    const size_t size =
        width > 0 && height > 0 ? static_cast<size_t>(height) * rowBytes - static_cast<size_t>(rowPadding) : 0;
    bytes_.assign(size, 0xEE);
    bytes_.shrink_to_fit();
    world_.data = reinterpret_cast<PF_Pixel*>(bytes_.data());
    world_.rowbytes = static_cast<int32_t>(rowBytes);
    world_.width = width;
    world_.height = height;
    view_ = {reinterpret_cast<const std::byte*>(bytes_.data()), width, height, world_.rowbytes};
    for (int32_t row = 0; row < height; ++row) {
      for (int32_t column = 0; column < width; ++column) set(column, row, Pixel{});
    }
  }
  LayerWorld(const LayerWorld&) = delete;
  LayerWorld& operator=(const LayerWorld&) = delete;

  void set(int32_t column, int32_t row, const Pixel& pixel) {
    std::memcpy(bytes_.data() + row * world_.rowbytes + column * static_cast<int32_t>(sizeof(Pixel)), &pixel,
                sizeof pixel);
  }

  void fill(const Pixel& pixel) {
    for (int32_t row = 0; row < world_.height; ++row) {
      for (int32_t column = 0; column < world_.width; ++column) set(column, row, pixel);
    }
  }

  /// Each pixel says where it is: red is its column, green its row.
  void number() {
    for (int32_t row = 0; row < world_.height; ++row) {
      for (int32_t column = 0; column < world_.width; ++column) {
        using Channel = decltype(Pixel::red);
        set(column, row, Pixel{1, static_cast<Channel>(column), static_cast<Channel>(row), 7});
      }
    }
  }

  /// As the controls hold it.
  PF_EffectWorld* world() { return &world_; }
  /// As the field sees it.
  LayerView<Pixel>& view() { return view_; }

 private:
  std::vector<unsigned char> bytes_;
  PF_EffectWorld world_{};
  LayerView<Pixel> view_;
};

}  // namespace vindrel::test
