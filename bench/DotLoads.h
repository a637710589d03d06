// The seven loads on which drawing dots is measured: full fields of equal dots on a canvas of 1920 x 1080.
//
// The lattice is turned, so that no row or column of dots shares its place within a pixel. The outlines are told as
// plain polygons too, for rasterisers that know no dots: the same corners at the same places as the effect's own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "effect/raster/DrawDot.h"

namespace vindrel::bench {

inline constexpr int32_t canvasWidth = 1920;  ///< pixels
inline constexpr int32_t canvasHeight = 1080;

struct DotLoad {
  std::string name;   ///< "W1" to "W7"
  std::string shown;  ///< what it is, for a table
  DotShape shape;
  double size;     ///< pixels
  double pitch;    ///< pixels from dot to dot, both ways
  double opacity;  ///< 0.0 to 1.0
};

/// W1 to W7.
const std::vector<DotLoad>& dotLoads();

struct Point {
  double x, y;
};

/// The turn of the lattice and of each dot, radians.
inline constexpr double loadTurn = 0.26;

/// The centres of a load's dots, row by row; all of them lie on the canvas.
std::vector<Point> dotCenters(const DotLoad& load);

/// The corners of one dot of the load around (0, 0), in canvas pixels, turned by loadTurn.
std::vector<Point> dotCorners(const DotLoad& load);

}  // namespace vindrel::bench
