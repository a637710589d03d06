// The slow, plain twin of an effector: its weight at a place and what it does to a dot, worked out from the controls
// anew for each dot, one step after the other and each product and sum in its order. Of the code under test it uses
// only what has tests of its own: the blend modes, the colour conversions and the record of a dot.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "effect/dots/Effector.h"
#include "effect/params/RenderParams.h"
#include "effect/pixel/Blend.h"
#include "effect/pixel/Convert.h"
#include "effect/pixel/Hsv.h"

namespace vindrel::plain {

constexpr double perFixed = 1.52587890625e-05;
constexpr double perDegree = 0.017453292519943295;

inline double linearWeight(const EffectorParams& e, double x, double y) {
  const double degrees = e.angle * perFixed;
  const double a = std::fabs(std::fmod(degrees, 180.0));
  const double sine = a == 0 ? 0.0 : std::sin(degrees * perDegree);
  const double cosine = a == 90.0 ? 0.0 : std::cos(degrees * perDegree);
  const double fade = e.size * (e.falloff / 100);
  const double solid = e.size - e.size * (e.falloff / 100);
  if (fade == 0.0) return 1.0;
  double d = (x - e.position.x * perFixed) * sine - (y - e.position.y * perFixed) * cosine;
  if (e.effectMap != 6 && d < 0) return 1.0;
  d = std::fabs(d);
  if (d > e.size) return 0.0;
  if (d < solid) return 1.0;
  return 1.0 - (d - solid) / fade;
}

inline double radialWeight(const EffectorParams& e, double x, double y) {
  const double dx = x - e.position.x * perFixed;
  const double dy = y - e.position.y * perFixed;
  const double fade = e.size * (e.falloff / 100);
  const double solid = e.size - e.size * (e.falloff / 100);
  double r = std::sqrt(dy * dy + dx * dx);
  if (r > e.size) return 0.0;
  if (fade == 0.0) return 1.0;
  if (e.effectMap == 4) r = r >= e.size * 0.5 ? r * 2.0 - e.size : e.size - r * 2.0;
  if (r < solid) return 1.0;
  return std::cos((r - solid) * 3.141592653589793 / fade) * 0.5 + 0.5;
}

/// The place in a layer, in layer pixels, that lies under a place on the canvas.
struct LayerPosition {
  double u, v;
};

/// The same as column and row, before any tiling.
struct LayerPlace {
  int64_t column, row;
};

inline int64_t nearest(double t) {
  const double raised = t + 0.5;
  if (t > 0) return static_cast<int64_t>(raised);
  if (raised == std::floor(raised)) return static_cast<int64_t>(t);
  return static_cast<int64_t>(t - 0.5);
}

/// There must be a layer.
inline LayerPosition layerPosition(const EffectorParams& e, int32_t canvasWidth, int32_t canvasHeight, double x,
                                   double y) {
  double cx = e.position.x * perFixed;
  double cy = e.position.y * perFixed;
  double degrees = e.angle * perFixed;
  double sx = 1.0;
  double sy = 1.0;
  const int32_t width = e.customMapLayer->width;
  const int32_t height = e.customMapLayer->height;
  if (e.fitToLayer != 0) {
    cx = canvasWidth * 0.5;
    cy = canvasHeight * 0.5;
    degrees = 0.0;
    sx = width / (canvasWidth * 1.0);
    sy = height / (canvasHeight * 1.0);
  }
  const double s = std::sin(degrees * -perDegree);
  const double c = std::cos(degrees * -perDegree);
  const double m00 = sx * c + 0.0 * s;
  const double m01 = 0.0 * c - sx * s;
  const double m10 = 0.0 * c + sy * s;
  const double m11 = sy * c - 0.0 * s;
  const double m02 = (-cy * m01 + -cx * m00) + width * 0.5;
  const double m12 = (-cx * m10 + -cy * m11) + height * 0.5;
  return {(x * m00 + y * m01) + m02, (x * m10 + y * m11) + m12};
}

/// The position must lie within 32 bits.
inline LayerPlace layerPlace(LayerPosition position) {
  return {nearest(position.u), nearest(position.v)};
}

/// One step at a time from the layer's edge, -1 for nothing there.
inline int64_t tiled(int64_t c, int64_t n, int32_t tiling) {
  if (c >= 0 && c < n) return c;
  if (tiling == 1) return -1;
  if (tiling == 4) return c < 0 ? 0 : n - 1;
  if (tiling == 2) {
    while (c < 0) c += n;
    while (c >= n) c -= n;
    return c;
  }
  if (c < 0) c = -c;
  bool turned = false;
  while (c >= n) {
    c -= n;
    turned = !turned;
  }
  return turned ? n - 1 - c : c;
}

/// The pixel of a layer under a place; `outside` where an untiled layer has none. Tilings 1 to 4.
template <class Pixel>
Pixel layerPixel(const EffectorParams& e, LayerPlace place, const Pixel& outside) {
  const PF_EffectWorld& world = *e.customMapLayer;
  const int64_t column = tiled(place.column, world.width, e.tiling);
  const int64_t row = tiled(place.row, world.height, e.tiling);
  if (column < 0 || row < 0) return outside;
  Pixel pixel;
  std::memcpy(
      &pixel,
      reinterpret_cast<const char*>(world.data) + row * world.rowbytes + column * static_cast<int64_t>(sizeof(Pixel)),
      sizeof(Pixel));
  return pixel;
}

template <class Pixel>
double layerWeight(const Pixel& p) {
  const auto green = static_cast<double>(p.green);
  const auto red = static_cast<double>(p.red);
  const auto blue = static_cast<double>(p.blue);
  const auto alpha = static_cast<double>(p.alpha);
  const double mixed = (green * 0.586611 + red * 0.298912) + blue * 0.114478;
  if constexpr (std::is_same_v<Pixel, Pixel32>) {
    return mixed * alpha;
  } else {
    const double scale = sizeof(Pixel) == 4 ? 0.00392156862745098 : 3.0517578125e-05;
    double luminance = mixed * scale;
    if (luminance >= 1.0) luminance = 1.0;
    return (alpha * luminance) * scale;
  }
}

inline double clampedAspect(double percent) {
  return std::fmax(-1.0, std::fmin(1.0, percent / 100));
}

inline int32_t blendCode(int32_t item) {
  constexpr int32_t codes[] = {1, 1, 1, 2, 3, 4, 5, 6, 7, 8, 1, 9, 10, 11, 12};
  return item < 0 || item > 14 ? 1 : codes[item];
}

/// A layer that is there must have pixels; its tiling must be one of 1 to 4.
template <class Pixel>
void applyEffector(const EffectorParams& e, int32_t canvasWidth, int32_t canvasHeight, bool frontOrdering,
                   DotDraft<Pixel>& dot) {
  if (e.enabled == 0) return;

  if (frontOrdering && e.centerDotToFront != 0) {
    const double dx = dot.x - e.position.x * perFixed;
    const double dy = dot.y - e.position.y * perFixed;
    const double d = dx * dx + dy * dy;
    if (dot.frontKey == -1.0 || d < dot.frontKey) dot.frontKey = d;
  }

  double w = 0.0;
  if (e.effectMap == 1) {
    if (e.customMapLayer != nullptr) {
      const LayerPlace place = layerPlace(layerPosition(e, canvasWidth, canvasHeight, dot.x, dot.y));
      const Pixel opaqueBlack{PixelTraits<Pixel>::fullScale, 0, 0, 0};
      if (e.pickSourceColor != 0) dot.color = layerPixel(e, place, dot.color);
      w = layerWeight(layerPixel(e, place, opaqueBlack));
    }
  } else if (e.effectMap == 3 || e.effectMap == 4) {
    w = radialWeight(e, dot.x, dot.y);
  } else {
    w = linearWeight(e, dot.x, dot.y);
  }
  if (w == 0.0) return;

  if (e.absolute != 0) {
    const double u = 1.0 - w;
    dot.size = e.absSize * w + u * dot.size;
    dot.aspect = clampedAspect(e.absAspect) * w + u * dot.aspect;
    dot.rotation = u * dot.rotation + e.absRotation * perFixed * perDegree * w;
    dot.opacity = u * dot.opacity + e.absOpacity / 100 * w;
  }
  const double sizeFactor = (e.ratioSize - 1.0) * w + 1.0;
  const double aspectFactor = (e.ratioAspect - 1.0) * w + 1.0;
  const double rotationFactor = (e.ratioRotation - 1.0) * w + 1.0;
  const double opacityFactor = (e.ratioOpacity - 1.0) * w + 1.0;
  dot.size = sizeFactor * dot.size + e.offsetSize * w;
  dot.aspect = aspectFactor * dot.aspect + clampedAspect(e.offsetAspect) * w;
  dot.rotation = rotationFactor * dot.rotation + e.offsetRotation * perFixed * perDegree * w;
  dot.opacity = opacityFactor * dot.opacity + e.offsetOpacity / 100 * w;

  if (e.color != 0 && e.blendColor.alpha != 0) {
    const PF_Pixel& b = e.blendColor;
    Pixel blended = dot.color;
    blendPixel(blended, pixelFrom8<Pixel>(b.alpha, b.red, b.green, b.blue), blendCode(e.blendMode));
    const auto mix = [w](auto running, auto temporary) {
      const auto start = static_cast<double>(running);
      return narrowChannel<Pixel>((static_cast<double>(temporary) - start) * w + start);
    };
    dot.color = {mix(dot.color.alpha, blended.alpha), mix(dot.color.red, blended.red),
                 mix(dot.color.green, blended.green), mix(dot.color.blue, blended.blue)};
  }

  if (e.shiftHue != 0) {
    Hsv hsv = rgbToHsv(dot.color);
    const double turns = e.shiftHue * perFixed / 360;
    hsv.hue = turns * w + hsv.hue;
    dot.color = hsvToRgb<Pixel>(hsv);
  }
}

}  // namespace vindrel::plain
