// The slow, plain twin of the lattice's walk: every cell of every ring's square is passed by, every draw is taken, one
// by one. Its cost grows with the cube of the ring count. It shares no code with effect/dots.
#pragma once

#include <cmath>
#include <cstdint>

#include "effect/params/RenderParams.h"

namespace vindrel::plain {

/// The generator, one step at a time.
struct Generator {
  uint32_t state = 0;

  uint32_t next() {
    state = (state * 2061 + 7) & 65535;
    return state;
  }

  double jitter(double a) { return (a - (-a)) * next() * 1.52587890625e-05 + (-a); }
};

/// What a walk needs, worked out step by step from the controls.
struct Grid {
  double gridCenterX = 0, gridCenterY = 0;
  double rotationCenterX = 0, rotationCenterY = 0;
  double pitchX = 1, pitchY = 1;
  double rotation = 0;
  double boundLeft = 0, boundTop = 0, boundRight = 0, boundBottom = 0;
};

inline Grid makeGrid(const RenderParams& p, int32_t width, int32_t height) {
  Grid g;
  g.gridCenterX = p.centerPosition.x * 1.52587890625e-05;
  g.gridCenterY = p.centerPosition.y * 1.52587890625e-05;
  if (p.globalRotationCenter == 1) {
    g.rotationCenterX = g.gridCenterX;
    g.rotationCenterY = g.gridCenterY;
  }
  for (int i = 0; i < 3; ++i) {
    if (p.globalRotationCenter == i + 2) {
      g.rotationCenterX = p.effector[i].position.x * 1.52587890625e-05;
      g.rotationCenterY = p.effector[i].position.y * 1.52587890625e-05;
    }
  }
  if (p.distanceBetween == 1) {
    g.pitchX = p.dotSize + p.dotDistanceX;
    g.pitchY = p.dotSize + p.dotDistanceY;
  } else if (p.distanceBetween == 2) {
    g.pitchX = p.dotDistanceX;
    g.pitchY = p.dotDistanceY;
  }
  if (g.pitchX < 1.0) g.pitchX = 1.0;
  if (g.pitchY < 1.0) g.pitchY = 1.0;
  g.rotation = p.globalRotation * 1.52587890625e-05 * 0.017453292519943295;
  const double marginX = g.pitchX * p.randomDistanceX + g.pitchX;
  const double marginY = g.pitchY * p.randomDistanceY + g.pitchY;
  g.boundLeft = 0 - marginX;
  g.boundRight = marginX + width;
  g.boundTop = 0 - marginY;
  g.boundBottom = marginY + height;
  return g;
}

/// Walks ring after ring and calls makeDot(X, Y, ring, row, column) for each accepted cell; makeDot takes nine draws.
/// @param ringLimit  where to give up while there is no dot at all. The walk itself knows no such limit.
/// @returns the rings that were walked.
template <class MakeDot>
int32_t walkGrid(const Grid& g, Generator& generator, int32_t ringLimit, MakeDot makeDot) {
  const double c = std::cos(g.rotation);
  const double s = std::sin(g.rotation);
  int64_t dotCount = 0;
  for (int32_t ring = 0;; ++ring) {
    if (dotCount == 0 && ring == ringLimit) return ring;
    bool ringMadeDot = false;
    const double left = g.gridCenterX - ring * g.pitchX;
    const double top = g.gridCenterY - ring * g.pitchY;
    const int32_t n = 2 * ring;
    double y = top;
    for (int32_t j = 0; j <= n; ++j) {
      const double dy = y - g.rotationCenterY;
      double x = left;
      for (int32_t k = 0; k <= n; ++k) {
        if (j == 0 || j == n || k == 0 || k == n) {
          const double dx = x - g.rotationCenterX;
          const double X = (dx * c - dy * s) + g.rotationCenterX;
          const double Y = (dx * s + dy * c) + g.rotationCenterY;
          if (g.boundLeft <= X && X < g.boundRight && g.boundTop <= Y && Y < g.boundBottom) {
            makeDot(X, Y, ring, j, k);
            ++dotCount;
            ringMadeDot = true;
          } else {
            for (int draw = 0; draw < 9; ++draw) generator.next();
          }
        }
        x += g.pitchX;
      }
      y += g.pitchY;
    }
    if (dotCount != 0 && !ringMadeDot) return ring + 1;
  }
}

}  // namespace vindrel::plain
