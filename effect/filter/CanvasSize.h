// How large the canvas of a frame is.
#pragma once

#include <cstdint>

#include "ae/InOutData.h"
#include "effect/pixel/Truncate.h"

namespace vindrel {

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

}  // namespace vindrel
