// The slow, plain twin of a frame's records: one long function that does one thing after the other, on the slow walk.
// Of the code under test it uses only what has tests of its own: the blend modes and the colour conversions.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "effect/dots/MakeDot.h"
#include "effect/params/RenderParams.h"
#include "effect/pixel/Convert.h"
#include "effect/pixel/Hsv.h"
#include "tests/dots/PlainEffector.h"
#include "tests/dots/PlainGridWalk.h"

namespace vindrel::plain {

template <class Pixel>
struct Field {
  std::vector<FinishedDot<Pixel>> records;
  bool frontOrdering = true;
};

inline double fold(double x) {
  double m = x > 0 ? x : -x;
  m = m - static_cast<int32_t>(m * 0.5) * 2.0;
  if (m > 1.0) m = 2.0 - m;
  return m;
}

/// The times must not be such that a division overflows.
template <class Pixel>
Field<Pixel> collectDots(const RenderParams& p, int32_t currentTime, int32_t timeStep, int32_t width, int32_t height,
                         int32_t ringLimit) {
  const Grid grid = makeGrid(p, width, height);

  Generator generator;
  generator.state = static_cast<uint32_t>(p.randomSeed);
  if (p.randomInterval != 0 && timeStep != 0) {
    int32_t pattern = currentTime / timeStep / p.randomInterval;
    if (p.randomArray != 0) pattern = pattern % p.randomArray;
    generator.state += static_cast<uint32_t>(pattern);
  }
  const int32_t warmUp = static_cast<int32_t>(generator.state) % 10;
  for (int32_t i = 0; i < warmUp; ++i) generator.next();

  const double hueAmount = p.randomHue * 1.52587890625e-05 / 360;
  const double saturationAmount = p.randomSaturation / 100;
  const double valueAmount = p.randomValue / 100;
  const double baseAspect = std::fmax(-1.0, std::fmin(1.0, p.dotAspect / 100));
  const double baseRotation = p.dotRotation * 1.52587890625e-05 * 0.017453292519943295;
  const double baseOpacity = p.dotOpacity / 100;
  const Pixel baseColor = pixelFrom8<Pixel>(p.dotColor.alpha, p.dotColor.red, p.dotColor.green, p.dotColor.blue);

  Field<Pixel> field;
  walkGrid(grid, generator, ringLimit, [&](double X, double Y, int32_t, int32_t, int32_t) {
    DotDraft<Pixel> dot{};
    dot.x = X + generator.jitter(p.randomDistanceX) * grid.pitchX;
    dot.y = Y + generator.jitter(p.randomDistanceY) * grid.pitchY;
    dot.frontKey = -1.0;
    if (field.frontOrdering && p.centerDotToFront != 0) {
      dot.frontKey = (dot.x - grid.gridCenterX) * (dot.x - grid.gridCenterX) +
                     (dot.y - grid.gridCenterY) * (dot.y - grid.gridCenterY);
    }
    dot.size = generator.jitter(p.randomSize) * p.dotSize + p.dotSize;
    if (dot.size < 0) dot.size = 0;
    dot.aspect = generator.jitter(p.randomAspect) + baseAspect;
    const double a = p.randomRotation;
    dot.rotation =
        (a - (-a)) * generator.next() * 1.52587890625e-05 * 6.283185307179586 + (-a) * 6.283185307179586 + baseRotation;
    dot.opacity = std::fmax(0.0, std::fmin(1.0, baseOpacity)) + generator.jitter(p.randomOpacity);
    if (dot.opacity > 1) dot.opacity = 2.0 - dot.opacity;
    if (dot.opacity < 0) dot.opacity = 0;
    dot.color = baseColor;
    for (const EffectorParams& effector : p.effector) {
      plain::applyEffector(effector, width, height, field.frontOrdering, dot);
    }

    Hsv hsv = rgbToHsv(dot.color);
    hsv.hue = generator.jitter(hueAmount) + hsv.hue;
    hsv.saturation = fold(generator.jitter(saturationAmount) + hsv.saturation);
    hsv.value = fold(generator.jitter(valueAmount) + hsv.value);
    dot.color = hsvToRgb<Pixel>(hsv);

    double angle = dot.rotation;
    if (p.rotationType == 1) angle = dot.rotation + grid.rotation;
    if (p.rotationType == 2 && !(dot.x == grid.rotationCenterX && dot.y == grid.rotationCenterY)) {
      angle =
          dot.rotation + (std::atan2(dot.y - grid.rotationCenterY, dot.x - grid.rotationCenterX) - 1.5707963267948966);
    }
    if (field.frontOrdering && dot.frontKey == -1.0) field.frontOrdering = false;

    if (dot.size < 0) dot.size = 0;
    double widthFactor = 1.0;
    double heightFactor = 1.0;
    if (dot.aspect < 0) widthFactor = 1.0 - std::fmin(-dot.aspect, 1.0);
    if (dot.aspect > 0) heightFactor = 1.0 - std::fmin(dot.aspect, 1.0);
    dot.color.alpha = fromUnit<Pixel>(std::fmax(0.0, std::fmin(1.0, dot.opacity)));
    field.records.push_back(
        {dot.frontKey, dot.x, dot.y, widthFactor * dot.size, heightFactor * dot.size, angle, dot.color});
  });
  return field;
}

}  // namespace vindrel::plain
