// Frames for the tests of the dot field: a plain one to start from, and random ones from a seed. They are told as the
// controls hold them, as are the frames of the plain twins, and become settings by the one way that the effect has.
#pragma once

#include <cmath>
#include <cstdint>
#include <ostream>
#include <random>

#include "effect/dots/FieldSettings.h"
#include "effect/filter/MakeFieldSettings.h"
#include "effect/params/RenderParams.h"
#include "tests/support/Fixed.h"

namespace vindrel::test {

/// The settings of a frame at full resolution, at a time in the host's units; without a time step time stands still.
template <class Pixel>
FieldSettings<Pixel> settingsOf(const RenderParams& params, int32_t currentTime = 0, int32_t timeStep = 0) {
  PF_InData in_data{};
  in_data.downsample_x = in_data.downsample_y = {1, 1};
  in_data.current_time = currentTime;
  in_data.time_step = timeStep;
  return makeFieldSettings<Pixel>(params, in_data);
}

/// The settings of one effector.
template <class Pixel>
EffectorState<Pixel> effectorOf(const EffectorParams& effector) {
  RenderParams params{};
  params.effector[0] = effector;
  return settingsOf<Pixel>(params).effectors[0];
}

inline DotGrid gridOf(const RenderParams& params, int32_t width, int32_t height) {
  return makeDotGrid(settingsOf<Pixel8>(params).lattice, width, height);
}

/// An effector's settings with the map that reads them.
template <class Pixel>
struct MappedEffector {
  explicit MappedEffector(const EffectorParams& effector, int32_t canvasWidth = 100, int32_t canvasHeight = 100)
      : state(effectorOf<Pixel>(effector)), map(MakeEffectMap(state, canvasWidth, canvasHeight)) {}
  MappedEffector(const MappedEffector&) = delete;
  MappedEffector& operator=(const MappedEffector&) = delete;
  ~MappedEffector() = default;

  const LayerEffectMap<Pixel>& layerMap() const { return static_cast<const LayerEffectMap<Pixel>&>(*map); }

  const EffectorState<Pixel> state;
  const EffectMapPtr map;
};

/// Ten-pixel orange circles thirty pixels apart about (0, 0): no turn, no jitter, every ratio 1, all effectors off.
inline RenderParams plainParams() {
  RenderParams params{};
  params.dotShape = 1;
  params.dotColor = {.alpha = 255, .red = 255, .green = 125, .blue = 20};
  params.dotSize = 10.0;
  params.rotationType = 1;
  params.dotOpacity = 100.0;
  params.distanceBetween = 1;
  params.dotDistanceX = 20.0;
  params.dotDistanceY = 20.0;
  params.globalRotationCenter = 1;
  for (EffectorParams& effector : params.effector) {
    effector.effectMap = 3;
    effector.tiling = 1;
    effector.ratioSize = effector.ratioAspect = effector.ratioRotation = effector.ratioOpacity = 1.0;
    effector.blendMode = 1;
  }
  return params;
}

inline void placeCenter(RenderParams& params, double x, double y) {
  params.centerPosition = {fixed(x), fixed(y)};
}

/// A frame and its canvas.
struct RandomField {
  uint32_t seed;
  RenderParams params;
  int32_t width, height;
};

inline std::ostream& operator<<(std::ostream& out, const RandomField& frame) {
  const RenderParams& p = frame.params;
  out << "seed " << frame.seed << ", canvas " << frame.width << " x " << frame.height << "\n"
      << "dotSize " << p.dotSize << ", distanceBetween " << p.distanceBetween << ", distances " << p.dotDistanceX << " "
      << p.dotDistanceY << ", dotAspect " << p.dotAspect << ", dotRotation " << p.dotRotation << ", rotationType "
      << p.rotationType << ", dotOpacity " << p.dotOpacity << "\n"
      << "centerPosition " << p.centerPosition.x << " " << p.centerPosition.y << ", centerDotToFront "
      << int{p.centerDotToFront} << ", globalRotation " << p.globalRotation << ", globalRotationCenter "
      << p.globalRotationCenter << "\n"
      << "randomInterval " << p.randomInterval << ", randomArray " << p.randomArray << ", randomSeed " << p.randomSeed
      << ", random " << p.randomSize << " " << p.randomAspect << " " << p.randomRotation << " " << p.randomOpacity
      << " " << p.randomDistanceX << " " << p.randomDistanceY << ", hue " << p.randomHue << ", saturation "
      << p.randomSaturation << ", value " << p.randomValue << "\n";
  for (const EffectorParams& e : p.effector) {
    out << "effector " << int{e.enabled} << ", position " << e.position.x << " " << e.position.y << ", front "
        << int{e.centerDotToFront} << ", map " << e.effectMap << ", size " << e.size << "\n";
  }
  return out;
}

/// A frame that a slow walk can bear. Its last bits are random too, so that no place is a round number by chance.
inline RandomField randomField(uint32_t seed) {
  std::mt19937 engine(seed);
  // Not the library's distributions, which differ between libraries: frames are the same everywhere.
  const auto next = [&] { return static_cast<uint32_t>(engine()); };
  const auto below = [&](uint32_t count) { return next() % count; };
  const auto between = [&](double low, double high) {
    const double coarse = next() / 4294967296.0;
    return low + (high - low) * (coarse + next() / 4294967296.0 / 4294967296.0);
  };
  const auto orZero = [&](double value) { return below(2) == 0 ? value : 0.0; };
  const auto length = [&] { return below(2) == 0 ? between(0.0, 25.0) : below(20); };

  RandomField frame{seed, plainParams(), static_cast<int32_t>(below(90)), static_cast<int32_t>(below(90))};
  RenderParams& p = frame.params;
  p.dotShape = static_cast<int32_t>(1 + below(6));
  p.dotColor = {.alpha = 255,
                .red = static_cast<uint8_t>(below(256)),
                .green = static_cast<uint8_t>(below(256)),
                .blue = static_cast<uint8_t>(below(256))};
  p.dotSize = length();
  p.dotAspect = orZero(between(-110.0, 110.0));
  p.dotRotation = fixed(between(-720.0, 720.0));
  p.rotationType = static_cast<int32_t>(below(5));
  p.dotOpacity = between(-20.0, 120.0);
  p.distanceBetween = static_cast<int32_t>(below(2) == 0 ? 1 + below(2) : below(4));
  p.dotDistanceX = length();
  p.dotDistanceY = length();
  p.centerPosition = {fixed(between(-150.0, 240.0)), fixed(between(-150.0, 240.0))};
  p.centerDotToFront = static_cast<Bool8>(below(2));
  p.globalRotation = below(3) == 0 ? 0 : fixed(between(-400.0, 400.0));
  p.globalRotationCenter = static_cast<int32_t>(below(6));
  p.randomInterval = static_cast<int32_t>(below(4));
  p.randomArray = static_cast<int32_t>(below(4));
  p.randomSeed = static_cast<int32_t>(below(10001));
  p.randomSize = orZero(between(0.0, 2.0));
  p.randomAspect = orZero(between(0.0, 2.0));
  p.randomRotation = orZero(between(0.0, 2.0));
  p.randomOpacity = orZero(between(0.0, 3.0));
  p.randomDistanceX = orZero(between(0.0, 3.0));
  p.randomDistanceY = orZero(between(0.0, 3.0));
  p.randomHue = below(2) == 0 ? 0 : fixed(between(-800.0, 800.0));
  p.randomSaturation = orZero(between(0.0, 100.0));
  p.randomValue = orZero(between(0.0, 100.0));
  for (EffectorParams& e : p.effector) {
    e.enabled = static_cast<Bool8>(below(2));
    e.effectMap = static_cast<int32_t>(2 + below(5));
    e.angle = fixed(between(-400.0, 400.0));
    e.position = {fixed(between(-60.0, 150.0)), fixed(between(-60.0, 150.0))};
    e.centerDotToFront = static_cast<Bool8>(below(2));
    e.size = between(0.0, 120.0);
    e.falloff = between(0.0, 100.0);
    e.absolute = static_cast<Bool8>(below(2));
    e.absSize = between(0.0, 30.0);
    e.absAspect = between(-120.0, 120.0);
    e.absOpacity = between(0.0, 100.0);
    e.ratioSize = between(0.0, 3.0);
    e.ratioAspect = between(-2.0, 2.0);
    e.ratioRotation = between(-2.0, 2.0);
    e.ratioOpacity = between(0.0, 2.0);
    e.offsetSize = between(-20.0, 20.0);
    e.offsetAspect = between(-50.0, 50.0);
    e.offsetOpacity = between(-50.0, 50.0);
    e.color = static_cast<Bool8>(below(2));
    e.blendMode = static_cast<int32_t>(1 + below(14));
    e.blendColor = {.alpha = 255, .red = 20, .green = static_cast<uint8_t>(below(256)), .blue = 200};
    e.shiftHue = below(2) == 0 ? 0 : fixed(between(-400.0, 400.0));
  }
  return frame;
}

/// Rings beyond which no cell of the lattice can lie in the frame, generously counted.
inline int32_t farthestRing(const RenderParams& p, int32_t width, int32_t height, double pitchX, double pitchY) {
  double farthest = 2.0 * width + 2.0 * height + pitchX * (2.0 * std::abs(p.randomDistanceX) + 4.0) +
                    pitchY * (2.0 * std::abs(p.randomDistanceY) + 4.0) +
                    (std::abs(p.centerPosition.x) + 0.0 + std::abs(p.centerPosition.y)) / 65536.0 * 3.0;
  for (const EffectorParams& e : p.effector) {
    farthest += (std::abs(e.position.x) + 0.0 + std::abs(e.position.y)) / 65536.0 * 2.0;
  }
  return static_cast<int32_t>(farthest / std::fmin(pitchX, pitchY)) + 2;
}

}  // namespace vindrel::test
