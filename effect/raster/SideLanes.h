// The sides of an outline in vector registers (plain SSE2, which every 64-bit x86 processor has): two numbers at a
// time.
//
// A packed sum or product rounds each of its numbers as a single one does, and the packed conversion truncates as
// truncateToInt32 does, the smallest integer for what doesn't fit included. The plain twin of each routine is in
// tests/raster/SideLanesTest.cpp.
#pragma once

#include <emmintrin.h>

#include <cstdint>

#include "effect/raster/SpanTable.h"

namespace vindrel::lanes {

/// The x of two sides, and what a sub-row adds to each. The addition rounds as two separate ones do.
struct SidePair {
  __m128d x, slope;

  SidePair(double x0, double x1, double slope0, double slope1)
      : x(_mm_set_pd(x1, x0)), slope(_mm_set_pd(slope1, slope0)) {}
  void step() { x = _mm_add_pd(x, slope); }
  double first() const { return _mm_cvtsd_f64(x); }
  double second() const { return _mm_cvtsd_f64(_mm_unpackhi_pd(x, x)); }

  /// Stores (start, end) of the sub-row: the lesser x plus 0.5 and the greater minus 0.5, both cut toward zero. Without
  /// an order (one is not a number) the second side comes first, as it does when they are level: that is what these
  /// instructions give. The conversion gives the smallest integer for what doesn't fit, as truncateToInt32 does.
  void storeSpan(int32_t* startAndEnd) const {
    const __m128d turned = _mm_shuffle_pd(x, x, 1);
    const __m128d lesser = _mm_min_sd(x, turned);   // first < second ? first : second
    const __m128d greater = _mm_max_sd(turned, x);  // second > first ? second : first
    const __m128d ends = _mm_add_pd(_mm_unpacklo_pd(lesser, greater), _mm_set_pd(-0.5, 0.5));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(startAndEnd), _mm_cvttpd_epi32(ends));
  }
};

/// Two sides that are stepped together.
class TwoSides {
 public:
  TwoSides(const double* x, const double* slope) : x_(_mm_loadu_pd(x)), slope_(_mm_loadu_pd(slope)) {}
  void step() { x_ = _mm_add_pd(x_, slope_); }
  /// The sub-columns nearest to the two.
  ColumnRun columns() const {
    const __m128i both = _mm_cvttpd_epi32(_mm_add_pd(x_, _mm_set1_pd(0.5)));
    ColumnRun run;
    _mm_storel_epi64(reinterpret_cast<__m128i*>(&run), both);
    return run;
  }
  bool inOrder() const { return _mm_comigt_sd(x_, _mm_unpackhi_pd(x_, x_)) == 0; }
  /// Whether the sides of both stand in order, this one's to the left.
  bool inOrderBefore(const TwoSides& next) const {
    const __m128d middle = _mm_shuffle_pd(x_, next.x_, 1);  // the right one of these, the left one of those
    const __m128d wrong = _mm_or_pd(_mm_cmpgt_pd(x_, middle), _mm_cmpgt_pd(middle, next.x_));
    return _mm_movemask_pd(wrong) == 0;
  }
  void storeTo(double* x) const { _mm_storeu_pd(x, x_); }

 private:
  __m128d x_;
  __m128d slope_;
};

/// truncateToInt32, which is what the conversion instruction answers.
inline int32_t truncated(double value) {
  return _mm_cvttsd_si32(_mm_set_sd(value));
}

/// Brings vertices to their place: (x + placeX) * 8, (y + placeY) * 8, and the sub-row, which is y's half-way rounding
/// cut toward zero. Works on two at a time, so one more of each may be read and written.
inline void placeVertices(const double* x, const double* y, int32_t count, double placeX, double placeY,
                          double* placedX, double* placedY, int32_t* row) {
  const __m128d eight = _mm_set1_pd(8.0), half = _mm_set1_pd(0.5);
  const __m128d toX = _mm_set1_pd(placeX), toY = _mm_set1_pd(placeY);
  for (int32_t k = 0; k < count; k += 2) {
    const __m128d px = _mm_mul_pd(_mm_add_pd(_mm_loadu_pd(x + k), toX), eight);
    const __m128d py = _mm_mul_pd(_mm_add_pd(_mm_loadu_pd(y + k), toY), eight);
    _mm_storeu_pd(placedX + k, px);
    _mm_storeu_pd(placedY + k, py);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(row + k), _mm_cvttpd_epi32(_mm_add_pd(py, half)));
  }
}

/// The sides from each vertex to the next one: slope = dx / dy, and x at the centre of the vertex's sub-row, which
/// takes the place of the vertex's. Of a side that is level neither means anything. Works on two at a time, so two more
/// of each may be read and written.
inline void startSides(int32_t count, double* x, const double* y, const int32_t* row, double* slope) {
  const __m128d half = _mm_set1_pd(0.5);
  for (int32_t k = 0; k + 1 < count; k += 2) {
    const __m128d x0 = _mm_loadu_pd(x + k), y0 = _mm_loadu_pd(y + k);
    const __m128d s = _mm_div_pd(_mm_sub_pd(_mm_loadu_pd(x + k + 1), x0), _mm_sub_pd(_mm_loadu_pd(y + k + 1), y0));
    const __m128d r = _mm_cvtepi32_pd(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(row + k)));
    _mm_storeu_pd(slope + k, s);
    _mm_storeu_pd(x + k, _mm_add_pd(_mm_mul_pd(_mm_sub_pd(_mm_add_pd(r, half), y0), s), x0));
  }
}

}  // namespace vindrel::lanes
