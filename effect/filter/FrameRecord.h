// One frame in flight: what the roads fill, and what all that draws the frame reads.
#pragma once

#include <cstdint>

#include "ae/Constants.h"
#include "ae/InOutData.h"
#include "effect/params/RenderParams.h"
#include "effect/pixel/Int32.h"
#include "effect/share/util/WorldSuite.h"

namespace vindrel {

/// Lives for its frame: on the classic road on the stack of the command, on the smart road as the host's pre-render
/// data. Belongs to one command at a time and is never shared between threads.
struct FrameRecord {
  RenderParams params{};
  PF_InData* in_data = nullptr;
  PF_OutData* out_data = nullptr;
  PF_EffectWorld* input = nullptr;                       ///< the layer that the effect is applied to
  PF_EffectWorld* output = nullptr;                      ///< the world that the host gets back
  PF_PixelFormat pixel_format = PF_PixelFormat_INVALID;  ///< the tag of `input`; invalid while not known
  AEUtil::EffectWorldPtr canvas;                         ///< the world that the dots are drawn on, in layer coordinates
};

struct CanvasSize {
  int32_t width;   ///< pixels
  int32_t height;  ///< pixels
};

/// Numerator over denominator as a factor; 0.5 at half resolution.
inline double scaleFactor(const PF_RationalScale& scale) {
  return static_cast<double>(scale.num) / static_cast<double>(scale.den);
}

/// The size of the whole layer at the current down-sampling, each side rounded to the nearest pixel, and not the size
/// of the worlds that the host hands in: those may be a part of the layer.
inline CanvasSize canvasSize(const PF_InData& in_data) {
  return {truncateToInt32(in_data.width * scaleFactor(in_data.downsample_x) + 0.5),
          truncateToInt32(in_data.height * scaleFactor(in_data.downsample_y) + 0.5)};
}

/// A width, height or origin of a host's world as the frame reads it: the low 16 bits of the 32-bit field, as a signed
/// number. Kept as is: no host makes worlds of more than 30,000 pixels, and an origin beyond that range wraps (see
/// originsCountByTheirLowSixteenBits and sizesCountByTheirLowSixteenBits).
constexpr int32_t lowHalf(int32_t field) {
  return static_cast<int16_t>(static_cast<uint16_t>(field));
}

}  // namespace vindrel
