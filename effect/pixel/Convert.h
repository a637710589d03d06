// Channels to the unit range and back, and the 8-bit colours of the controls at each depth.
//
// Every way back truncates. A channel that goes through the unit range can lose one level at 8 bits (33 comes back as
// 32), and pictures are made with that loss: the factors stand as they are in PixelTraits, and nothing here rounds.
#pragma once

#include <cstdint>
#include <type_traits>

#include "effect/pixel/Int32.h"
#include "effect/pixel/Pixel.h"

namespace vindrel {

template <class Pixel>
using Channel = typename PixelTraits<Pixel>::Channel;

/// True for the two depths with integer channels.
template <class Pixel>
inline constexpr bool hasIntegerChannels = std::is_integral_v<Channel<Pixel>>;

/// A channel in the unit range: 0 to 1 for the integer depths, whatever the channel holds in float.
template <class Pixel>
constexpr double toUnit(Channel<Pixel> channel) noexcept {
  if constexpr (hasIntegerChannels<Pixel>) {
    return static_cast<double>(channel) * PixelTraits<Pixel>::toUnit;
  } else {
    return static_cast<double>(channel);
  }
}

/// A number in the channel's own scale becomes a channel: truncated at the integer depths, where what doesn't fit
/// keeps its low bits, and narrowed in float.
template <class Pixel>
constexpr Channel<Pixel> narrowChannel(double scaled) noexcept {
  if constexpr (hasIntegerChannels<Pixel>) {
    return static_cast<Channel<Pixel>>(truncateToInt32(scaled));
  } else {
    return static_cast<Channel<Pixel>>(scaled);
  }
}

/// A value of the unit range becomes a channel, by narrowChannel. Nothing is clamped.
template <class Pixel>
constexpr Channel<Pixel> fromUnit(double unit) noexcept {
  if constexpr (hasIntegerChannels<Pixel>) {
    return narrowChannel<Pixel>(unit * PixelTraits<Pixel>::fromUnit);
  } else {
    return narrowChannel<Pixel>(unit);
  }
}

/// One 8-bit channel of a colour control, 0 to 255, as a channel of the depth.
template <class Pixel>
constexpr Channel<Pixel> channelFrom8(uint8_t value) noexcept {
  return fromUnit<Pixel>(value / 255.0);
}

/// The four bytes of a colour control as a pixel of the depth.
template <class Pixel>
constexpr Pixel pixelFrom8(uint8_t alpha, uint8_t red, uint8_t green, uint8_t blue) noexcept {
  return {channelFrom8<Pixel>(alpha), channelFrom8<Pixel>(red), channelFrom8<Pixel>(green), channelFrom8<Pixel>(blue)};
}

}  // namespace vindrel
