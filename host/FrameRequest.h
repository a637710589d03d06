/// What frame is wanted, and what came of it; the same for both roads.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "ae/Constants.h"
#include "ae/SmartRender.h"
#include "host/Image.h"

namespace standin {

struct FrameRequest {
  /// The layer's pixels at the current resolution. Its depth is the depth of the frame; its origin is where it lies in
  /// the layer. It may be smaller than the layer or empty.
  Image input;

  /// The layer at full resolution, pixels. 0 means: the input's size times downsample's den / num.
  int32_t layerWidth = 0;
  int32_t layerHeight = 0;

  PF_RationalScale downsampleX{1, 1};  ///< 1/2 at half resolution
  PF_RationalScale downsampleY{1, 1};

  A_long currentTime = 0;  ///< layer time in 1/timeScale seconds
  A_long timeStep = 1;     ///< length of a frame in 1/timeScale seconds
  A_u_long timeScale = 30;
  A_long totalTime = 300;

  PF_Quality quality = PF_Quality_HI;

  /// in_data->extent_hint and the output world's. Without a value: the whole output.
  std::optional<PF_Rect> extent;

  int32_t outputPadding = 0;  ///< bytes behind each row of the output

  /// Classic road only: size and origin of the output world. Sizes of 0 mean the input's.
  int32_t outputWidth = 0;
  int32_t outputHeight = 0;
  int32_t outputOriginX = 0;
  int32_t outputOriginY = 0;

  /// Smart road only: the wanted part of the output, layer coordinates at the current resolution. Without a value: the
  /// whole layer.
  std::optional<PF_LRect> requestRect;

  Depth depth() const { return input.depth(); }
  int32_t fullWidth() const;  ///< layerWidth with its rule
  int32_t fullHeight() const;
  PF_LRect layerRect() const;  ///< 0, 0, the layer's size at the current resolution
};

struct RenderResult {
  PF_Err error = 0;       ///< of the first command that failed
  bool rendered = false;  ///< false when an earlier command failed or nothing was to be drawn
  Image output;           ///< of size 0 when rendered is false
};

/// One call of checkout_layer in a pre-render.
struct LayerCheckout {
  PF_ParamIndex index = 0;
  A_long id = 0;
  PF_RenderRequest request{};
  A_long time = 0;
  A_long timeStep = 0;
  A_u_long timeScale = 0;
  PF_CheckoutResult result{};
  PF_Err error = 0;
  bool pixelsTaken = false;      ///< checkout_layer_pixels was called and gave success
  bool pixelsGivenBack = false;  ///< checkin_layer_pixels was called
};

}  // namespace standin
