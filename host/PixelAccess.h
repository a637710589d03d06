/// Reads and writes the pixels of a world, and divides as the host's pixel services do.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ae/Worlds.h"
#include "host/Depth.h"

namespace standin {

/// The first pixel of row y of a world of Pixel's depth; 0 <= y < height.
template <class Pixel>
Pixel* worldRow(const PF_EffectWorld& world, int32_t y) {
  // Through bytes: rows lie rowbytes apart, which need not be a whole number of pixels.
  auto* bytes = reinterpret_cast<unsigned char*>(world.data) + static_cast<ptrdiff_t>(y) * world.rowbytes;
  return reinterpret_cast<Pixel*>(bytes);
}

inline PF_LRect wholeOf(const PF_EffectWorld& world) {
  return world.data == nullptr ? PF_LRect{0, 0, 0, 0} : PF_LRect{0, 0, world.width, world.height};
}

/// value / by to nearest, halves up; by > 0.
constexpr uint64_t roundedQuotient(uint64_t value, uint64_t by) {
  return (value + by / 2) / by;
}

/// The four channels of a pixel by number: 0 is alpha, 1 to 3 red, green, blue.
template <class Pixel>
auto& channel(Pixel& pixel, int number) {
  return number == 0 ? pixel.alpha : number == 1 ? pixel.red : number == 2 ? pixel.green : pixel.blue;
}

}  // namespace standin
