// The affine transform between an outline's own space and the canvas.
#pragma once

namespace vindrel {

/// X = a*x + b*y + c and Y = d*x + e*y + f, in canvas pixels. The identity between two dots.
struct PathMatrix {
  double a = 1.0;
  double b = 0.0;
  double c = 0.0;
  double d = 0.0;
  double e = 1.0;
  double f = 0.0;
  friend bool operator==(const PathMatrix&, const PathMatrix&) = default;
};

}  // namespace vindrel
