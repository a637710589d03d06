// The three pixel types and the numbers that go with each depth.
//
// Every step of the render path exists once, as a template over one of these types. The layout is the host's own:
// alpha, red, green, blue, straight colour (never multiplied by alpha). Nothing here knows the host.
#pragma once

#include <cstdint>

namespace vindrel {

/// 8 bits a channel, full scale 255.
struct Pixel8 {
  uint8_t alpha, red, green, blue;
  friend bool operator==(const Pixel8&, const Pixel8&) = default;
};

/// 16 bits a channel, full scale 32768 (not 65535).
struct Pixel16 {
  uint16_t alpha, red, green, blue;
  friend bool operator==(const Pixel16&, const Pixel16&) = default;
};

/// 32-bit float channels, full scale 1.0; values below 0 and above 1 are legal and go through as they are.
struct Pixel32 {
  float alpha, red, green, blue;
  friend bool operator==(const Pixel32&, const Pixel32&) = default;
};

static_assert(sizeof(Pixel8) == 4 && sizeof(Pixel16) == 8 && sizeof(Pixel32) == 16);

/// What differs by depth. `weightShift` stands in for a division by full scale: exact at 16 bits, one level short of
/// exact at 8 bits, and that loss is part of the look.
template <class Pixel>
struct PixelTraits;

template <>
struct PixelTraits<Pixel8> {
  using Channel = uint8_t;
  static constexpr Channel fullScale = 255;
  static constexpr double toUnit = 0.00392156862745098;  ///< factor from a channel to the unit range, as it stands
  static constexpr double fromUnit = 255.0;              ///< factor from the unit range to a channel, then truncated
  static constexpr int weightShift = 8;
  static constexpr int halfWeightShift = 7;
};

template <>
struct PixelTraits<Pixel16> {
  using Channel = uint16_t;
  static constexpr Channel fullScale = 32768;
  static constexpr double toUnit = 3.0517578125e-05;
  static constexpr double fromUnit = 32768.0;
  static constexpr int weightShift = 15;
  static constexpr int halfWeightShift = 14;
};

template <>
struct PixelTraits<Pixel32> {
  using Channel = float;
  static constexpr Channel fullScale = 1.0F;
};

}  // namespace vindrel
