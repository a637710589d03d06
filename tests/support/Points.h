// Outlines as tests write them down.
#pragma once

#include <ios>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "effect/raster/Path.h"

namespace vindrel::test {

/// Pixels, x before y.
using Points = std::vector<std::pair<double, double>>;

/// The four corners, clockwise from the upper left one.
inline Points box(double left, double top, double right, double bottom) {
  return {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
}

/// The vertices of an outline that is put where it stands.
inline std::vector<PathVertex> verticesOf(const Points& points) {
  std::vector<PathVertex> vertices;
  for (const auto& [x, y] : points) {
    PathVertex v;
    v.x = v.tx = x;
    v.y = v.ty = y;
    vertices.push_back(v);
  }
  return vertices;
}

/// As it would stand in a test, to the last bit.
inline std::string textOf(const Points& points) {
  std::ostringstream out;
  out << std::hexfloat;
  for (const auto& [x, y] : points) out << '{' << x << ", " << y << "}, ";
  return out.str();
}

}  // namespace vindrel::test
