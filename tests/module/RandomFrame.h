// Frames with random values of all controls, random layers and random sizes; the same ones for the same seed on every
// machine.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "host/FrameRequest.h"
#include "host/ParameterValues.h"

namespace vindrel::test {

struct RandomFrame {
  standin::FrameRequest request;
  standin::ParameterValues values;
  bool smartRoad = false;

  /// Everything that the frame depends on, one value a line; pictures by their size, depth, padding and origin.
  std::string text() const;
};

class RandomFrames {
 public:
  RandomFrames(uint64_t seed, const std::vector<standin::Control>& controls)
      : seed_(seed), controls_(&controls), engine_(seed) {}

  /// A frame of at most 48 x 48 pixels that is drawn in some milliseconds. Values are mostly where a user would put
  /// them, now and then anywhere in their range, and, one time in ten or so, beyond it; layers are missing, of no size,
  /// of one pixel, odd, padded, of another depth or with an origin of their own. Every number is finite.
  RandomFrame next();

  uint64_t seed() const { return seed_; }

  /// 0 to below 1.
  double unit() { return static_cast<double>(engine_() >> 11) / 9007199254740992.0; }
  bool happens(double chance) { return unit() < chance; }
  /// least to most, both included.
  int32_t whole(int32_t least, int32_t most) {
    return least + static_cast<int32_t>(unit() * (static_cast<double>(most) - least + 1));
  }
  double between(double least, double most) { return least + unit() * (most - least); }

  /// A picture of the depth with random pixels: much of it opaque or empty, float colours up to 3.
  standin::Image picture(standin::Depth depth, int32_t width, int32_t height);

 private:
  standin::ParameterValues::Value valueOf(const standin::Control& control, const standin::FrameRequest& request);
  double number(double validLeast, double validMost, double usualLeast, double usualMost, double usual);
  int32_t choice(int32_t count);
  double angle();
  standin::PointValue point(const standin::FrameRequest& request);
  standin::LayerValue layer(const standin::FrameRequest& request);
  standin::FrameRequest request();

  uint64_t seed_;
  const std::vector<standin::Control>* controls_;
  std::mt19937_64 engine_;
};

}  // namespace vindrel::test
