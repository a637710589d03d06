#include "host/FrameRequest.h"

namespace standin {

namespace {

// The length at full resolution of which length is the scaled one.
int32_t unscaledLength(int32_t length, const PF_RationalScale& scale) {
  if (scale.num <= 0) return length;
  return static_cast<int32_t>(static_cast<int64_t>(length) * scale.den / scale.num);
}

}  // namespace

int32_t FrameRequest::fullWidth() const {
  return layerWidth != 0 ? layerWidth : unscaledLength(input.width(), downsampleX);
}

int32_t FrameRequest::fullHeight() const {
  return layerHeight != 0 ? layerHeight : unscaledLength(input.height(), downsampleY);
}

PF_LRect FrameRequest::layerRect() const {
  return {0, 0, scaledLength(fullWidth(), downsampleX), scaledLength(fullHeight(), downsampleY)};
}

}  // namespace standin
