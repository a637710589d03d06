/// Colors with and without their alpha.
#pragma once

#include <algorithm>
#include <cstdint>

namespace cli {

// A channel of color times alpha as one of straight color. Light without cover has no straight form: it stays. Whole
// numbers of 0 to full are rounded to the nearest, halves up.

inline uint8_t straightColor(uint8_t channel, uint8_t alpha) {
  if (alpha == 0) return channel;
  return static_cast<uint8_t>(std::min(255, (channel * 255 + alpha / 2) / alpha));
}

inline uint16_t straightColor(uint16_t channel, uint16_t alpha) {
  if (alpha == 0) return channel;
  const uint64_t whole = (static_cast<uint64_t>(channel) * 65535u + alpha / 2u) / alpha;
  return static_cast<uint16_t>(std::min<uint64_t>(65535u, whole));
}

inline float straightColor(float channel, float alpha) {
  return alpha > 0.0F ? channel / alpha : channel;
}

}  // namespace cli
