// From a dot's running values to its record: the values that each dot starts from, its angle, its two extents, its
// alpha.
#pragma once

#include <cmath>
#include <cstdint>

#include "effect/dots/Effector.h"
#include "effect/dots/Grid.h"
#include "effect/params/RenderParams.h"
#include "effect/pixel/Convert.h"
#include "effect/raster/DotRecord.h"

namespace vindrel {

/// What every dot of a frame is before jitter and effectors.
template <class Pixel>
struct BaseDot {
  double baseSize;      ///< pixels
  double baseAspect;    ///< -1.0 to 1.0
  double baseRotation;  ///< radians
  double baseOpacity;   ///< 1.0 is opaque; limited to 0.0 to 1.0 only when it is drawn from
  Pixel baseColor;
};

template <class Pixel>
BaseDot<Pixel> makeBaseDot(const RenderParams& params) noexcept {
  double aspect = params.dotAspect / 100.0;
  if (aspect < -1.0) aspect = -1.0;
  if (aspect > 1.0) aspect = 1.0;
  const PF_Pixel& color = params.dotColor;
  return {.baseSize = params.dotSize,
          .baseAspect = aspect,
          .baseRotation = params.dotRotation * 1.52587890625e-05 * 0.017453292519943295,
          .baseOpacity = params.dotOpacity / 100.0,
          .baseColor = pixelFrom8<Pixel>(color.alpha, color.red, color.green, color.blue)};
}

/// The angle of a dot at x, y by the rotation type, radians. `rotation` is the dot's own, after jitter and effectors.
inline double dotAngle(int32_t rotationType, const DotGrid& grid, double x, double y, double rotation) noexcept {
  if (rotationType == 1) return rotation + grid.rotation;
  if (rotationType != 2) return rotation;
  // "Look At Center" looks at the centre that the lattice turns about. A dot right on it has nowhere to look.
  if (x == grid.rotationCenterX && y == grid.rotationCenterY) return rotation;
  return rotation + (std::atan2(y - grid.rotationCenterY, x - grid.rotationCenterX) - 1.5707963267948966);
}

/// The record of a dot. Only one of the two extents ever shrinks by the aspect, and none grows: -1.0 flattens the width
/// to nothing, 1.0 the height. Whatever alpha the running colour had gives way to the opacity.
template <class Pixel>
DotRecord<Pixel> finishDot(const DotDraft<Pixel>& dot, double angle, int32_t shape) noexcept {
  const double size = dot.size < 0.0 ? 0.0 : dot.size;
  double widthFactor = 1.0;
  double heightFactor = 1.0;
  if (dot.aspect < 0.0) widthFactor = 1.0 - (-dot.aspect < 1.0 ? -dot.aspect : 1.0);
  if (dot.aspect > 0.0) heightFactor = 1.0 - (dot.aspect < 1.0 ? dot.aspect : 1.0);
  double opacity = dot.opacity;
  if (opacity < 0.0) opacity = 0.0;
  if (opacity > 1.0) opacity = 1.0;

  DotRecord<Pixel> record{};
  record.frontKey = dot.frontKey;
  record.x = dot.x;
  record.y = dot.y;
  record.color = dot.color;
  record.color.alpha = fromUnit<Pixel>(opacity);
  record.width = widthFactor * size;
  record.height = heightFactor * size;
  record.angle = angle;
  record.shape = shape;
  return record;
}

}  // namespace vindrel
