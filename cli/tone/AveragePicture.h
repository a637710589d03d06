/// Means over a patch around each pixel of a picture, and pictures at other sizes.
#pragma once

#include <cstdint>
#include <vector>

#include "host/Image.h"

namespace cli {

/// A vector in pixels.
struct Edge {
  double x = 0.0;
  double y = 0.0;
  friend bool operator==(const Edge&, const Edge&) = default;
};

/// The parallelogram to average over: its two edges. It lies with its middle on the pixel.
struct Patch {
  Edge first;
  Edge second;
  friend bool operator==(const Patch&, const Patch&) = default;
};

/// A picture as numbers: so many floats a pixel, rows from the top.
struct Plane {
  int32_t width = 0;
  int32_t height = 0;
  int32_t channels = 0;
  std::vector<float> values;
};

/// The mean of each channel over the patch. Outside, the plane's edge goes on. Each edge of the patch is walked in
/// steps of a pixel along its longer side, reading between two pixels across it; the last steps count as far as the
/// patch reaches. It costs the sum of both longer sides for each pixel.
Plane averaged(const Plane& plane, const Patch& patch);

/// Red, green, blue and alpha in unit floats, colours times alpha.
Plane premultiplied(const standin::Image& picture);

/// The picture of a plane of premultiplied(); float, straight colours.
standin::Image pictureOf(const Plane& plane);

/// The plane at another size: the part from (left, top), right and bottom exclusive, of its pixels, stretched. Means of
/// what each new pixel covers where it becomes smaller, between the pixels where it becomes larger.
Plane resampled(const Plane& plane, double left, double top, double right, double bottom, int32_t width,
                int32_t height);

}  // namespace cli
