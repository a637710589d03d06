#include "bench/DotLoads.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vindrel::bench {
namespace {

Point turned(double x, double y) {
  const double s = std::sin(loadTurn);
  const double c = std::cos(loadTurn);
  return {x * c - y * s, x * s + y * c};
}

std::vector<Point> circle(double size) {
  const double diagonal = size * std::numbers::sqrt2;
  const int count = std::max(static_cast<int>(diagonal * 2.0 * std::numbers::pi * 0.125), 8);
  std::vector<Point> corners;
  for (int i = 0; i < count; ++i) {
    const double angle = 2.0 * std::numbers::pi * i / count;
    corners.push_back({std::cos(angle) * size * 0.5, std::sin(angle) * size * 0.5});
  }
  return corners;
}

std::vector<Point> cross(double size) {
  const double outer = size * 0.5;
  const double arm = size * 0.15;
  return {{-arm, -outer}, {arm, -outer}, {arm, -arm}, {outer, -arm}, {outer, arm},   {arm, arm},
          {arm, outer},   {-arm, outer}, {-arm, arm}, {-outer, arm}, {-outer, -arm}, {-arm, -arm}};
}

std::vector<Point> star(double size) {
  std::vector<Point> corners;
  for (const double degrees : {-90.0, 126.0, -18.0, 198.0, 54.0}) {
    const double angle = degrees * std::numbers::pi / 180.0;
    corners.push_back({std::cos(angle) * size * 0.5, std::sin(angle) * size * 0.5});
  }
  return corners;
}

std::vector<Point> square(double size) {
  const double half = size * 0.5;
  return {{-half, -half}, {half, -half}, {half, half}, {-half, half}};
}

}  // namespace

const std::vector<DotLoad>& dotLoads() {
  static const std::vector<DotLoad> loads{
      {"W1", "circles 10 on 30", circleShape, 10.0, 30.0, 1.0},
      {"W2", "circles 6 on 6", circleShape, 6.0, 6.0, 1.0},
      {"W3", "circles 2 on 2", circleShape, 2.0, 2.0, 1.0},
      {"W4", "circles 200 on 100, half opaque", circleShape, 200.0, 100.0, 0.5},
      {"W5", "stars 20 on 24", starShape, 20.0, 24.0, 1.0},
      {"W6", "crosses 12 on 16", crossShape, 12.0, 16.0, 1.0},
      {"W7", "squares 8 on 9, half opaque", squareShape, 8.0, 9.0, 0.5},
  };
  return loads;
}

std::vector<Point> dotCenters(const DotLoad& load) {
  const int reach = static_cast<int>((canvasWidth + canvasHeight) / load.pitch);
  std::vector<Point> centers;
  for (int row = -reach; row <= reach; ++row) {
    for (int column = -reach; column <= reach; ++column) {
      const Point place = turned(column * load.pitch, row * load.pitch);
      const double x = place.x + canvasWidth * 0.5;
      const double y = place.y + canvasHeight * 0.5;
      if (x >= 0.0 && x < canvasWidth && y >= 0.0 && y < canvasHeight) centers.push_back({x, y});
    }
  }
  return centers;
}

std::vector<Point> dotCorners(const DotLoad& load) {
  std::vector<Point> corners;
  switch (load.shape) {
    case starShape:
      corners = star(load.size);
      break;
    case crossShape:
      corners = cross(load.size);
      break;
    case squareShape:
      corners = square(load.size);
      break;
    default:
      corners = circle(load.size);
  }
  for (Point& corner : corners) corner = turned(corner.x, corner.y);
  return corners;
}

}  // namespace vindrel::bench
