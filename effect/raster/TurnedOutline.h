// A convex outline as all dots of one size and turn share it: turned, but not yet put in its place, with what follows
// from its form alone worked out once.
//
// The place is added to each vertex last, and rounded. So the vertices of a dot are those kept here plus its centre,
// to the last bit. That its form stays what it is here (convex, one top, one bottom) needs a proof, since rounding can
// dent an outline. The proof is a margin: the kept coordinates are below 2^11, places below 2^17, so each sum is below
// 2^18 and off by at most 2^-36, and what is computed of a difference by at most 2^-34. A corner's cross product of
// four such differences, each below 2^12, moves by less than 2^-19, its own rounding included. An outline whose cross
// products are all beyond 2^-18, on one side, therefore has corners of that one side in every place; and one whose
// heights differ by 2^-12 or more from vertex to vertex, or not at all, rises and falls in every place where it does
// here. An outline without these margins is judged in its place, by PolygonRasterizer.
#pragma once

#include <cstdint>
#include <vector>

#include "effect/raster/Path.h"

namespace vindrel {

class TurnedOutline {
 public:
  static constexpr int32_t mostVertices = 256;
  static constexpr double coordinateReach = 2048.0;  ///< canvas pixels, of the kept coordinates
  static constexpr double placeReach = 129024.0;     ///< canvas pixels either way, of a place

  /// Forgets the outline.
  void forget() { turned_ = false; }

  /// Takes the outline, read from x and y, under the matrix; does nothing when it has it already under one that
  /// differs by the place alone. The vertices must be the same until `forget`.
  void take(const std::vector<PathVertex>& outline, const PathMatrix& matrix);

  /// Whether the outline is convex with one top and one bottom in any place within reach, this one being such.
  bool holdsAt(double x, double y) const {
    return holds_ && x >= -placeReach && x <= placeReach && y >= -placeReach && y <= placeReach;
  }

  // What holdsAt speaks of. Two chains of vertices, one behind the other: from the top forward through the outline to
  // the bottom, and from the top backward. Heights never fall along a chain.

  int32_t forwardCount() const { return forwardCount_; }  ///< vertices of the first chain
  int32_t count() const { return count_; }                ///< of both
  /// Canvas pixels from the place; one more may be read behind the last.
  const double* x() const { return x_; }
  const double* y() const { return y_; }
  double left() const { return left_; }    ///< the least x
  double right() const { return right_; }  ///< the greatest x

 private:
  void turn(const std::vector<PathVertex>& outline);
  /// Whether the turned vertices, in the order of the outline, have the margins.
  bool hasMargins(int32_t n) const;
  void makeChains(int32_t n);

  bool turned_ = false;  ///< whether the outline is known
  bool holds_ = false;
  PathMatrix matrix_;
  int32_t forwardCount_ = 0, count_ = 0;
  double left_ = 0.0, right_ = 0.0;
  double u_[mostVertices], v_[mostVertices];          ///< in the order of the outline
  double x_[2 * mostVertices], y_[2 * mostVertices];  ///< as chains
};

}  // namespace vindrel
