/// The three forms that pixels have, and what differs between them.
#pragma once

#include <cstdint>
#include <optional>

#include "ae/Constants.h"
#include "ae/Pixels.h"

namespace standin {

/// Bits a channel; the number is what the host writes as bitdepth.
enum class Depth : int32_t { k8 = 8, k16 = 16, k32 = 32 };

inline constexpr Depth kAllDepths[] = {Depth::k8, Depth::k16, Depth::k32};

/// Bytes of one pixel: 4, 8 or 16.
constexpr int32_t pixelBytes(Depth depth) {
  return static_cast<int32_t>(depth) / 2;
}

constexpr PF_PixelFormat pixelFormat(Depth depth) {
  return depth == Depth::k8    ? PF_PixelFormat_ARGB32
         : depth == Depth::k16 ? PF_PixelFormat_ARGB64
                               : PF_PixelFormat_ARGB128;
}

/// The depth of a pixel format, or nothing for a format that is none of the three.
constexpr std::optional<Depth> depthOf(PF_PixelFormat format) {
  if (format == PF_PixelFormat_ARGB32) return Depth::k8;
  if (format == PF_PixelFormat_ARGB64) return Depth::k16;
  if (format == PF_PixelFormat_ARGB128) return Depth::k32;
  return std::nullopt;
}

/// What a pixel type is: its depth, the type of a channel and the value of a full channel.
template <class Pixel>
struct PixelFacts;

template <>
struct PixelFacts<PF_Pixel> {
  using Channel = A_u_char;
  static constexpr Depth depth = Depth::k8;
  static constexpr Channel full = 255;
};

template <>
struct PixelFacts<PF_Pixel16> {
  using Channel = A_u_short;
  static constexpr Depth depth = Depth::k16;
  static constexpr Channel full = 32768;
};

template <>
struct PixelFacts<PF_PixelFloat> {
  using Channel = PF_FpShort;
  static constexpr Depth depth = Depth::k32;
  static constexpr Channel full = 1.0F;
};

/// Calls work with a value-initialised pixel of the depth: withPixelOf(depth, [&](auto pixel) { using P =
/// decltype(pixel); ... }).
template <class Work>
decltype(auto) withPixelOf(Depth depth, Work&& work) {
  if (depth == Depth::k8) return work(PF_Pixel{});
  if (depth == Depth::k16) return work(PF_Pixel16{});
  return work(PF_PixelFloat{});
}

}  // namespace standin
