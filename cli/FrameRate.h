/// Frames a second as a host counts them.
#pragma once

#include <cstdint>
#include <string>

namespace cli {

/// A frame lasts step units of 1/scale seconds.
struct FrameRate {
  int32_t scale = 24;
  int32_t step = 1;
  double framesPerSecond() const { return static_cast<double>(scale) / step; }
  friend bool operator==(const FrameRate&, const FrameRate&) = default;
};

/// "24", "29.97", which stands for 30000/1001 as its like do, or "24000/1001"; from 1 to 999 frames a second.
/// @throws UserError
FrameRate frameRateFrom(const std::string& text);

}  // namespace cli
