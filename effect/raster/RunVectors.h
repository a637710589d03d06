// What the road of the table does with several numbers at once: two sides of an outline in one register, and the eight
// runs of a layer; counting and painting are in Lanes.h. The plain twin of each is in tests/raster/RunVectorsTest.cpp.
//
// Exactness. A packed addition rounds each of its sums as a single one does, and the packed conversion truncates as
// truncateToInt32 does, the smallest integer for what doesn't fit included. Extents are integers.
#pragma once

#include <emmintrin.h>

#include <cstdint>

#include "effect/raster/SpanTable.h"

// A function that does nothing but ask the memory ahead has no effect that a compiler would see, and the call of it
// would be left out.
#if defined(__GNUC__)
#define VINDREL_ALWAYS_INLINE [[gnu::always_inline]] inline
#else
#define VINDREL_ALWAYS_INLINE inline
#endif

namespace vindrel {

namespace vectors {

inline __m128i least(__m128i a, __m128i b) {
  const __m128i greater = _mm_cmpgt_epi32(a, b);
  return _mm_or_si128(_mm_and_si128(greater, b), _mm_andnot_si128(greater, a));
}

inline __m128i greatest(__m128i a, __m128i b) {
  const __m128i greater = _mm_cmpgt_epi32(a, b);
  return _mm_or_si128(_mm_and_si128(greater, a), _mm_andnot_si128(greater, b));
}

/// Runs 2 * pair and 2 * pair + 1: start, end, start, end.
inline __m128i twoRuns(const SpanTable::Layer& layer, int32_t pair) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(&layer[2 * pair]));
}

inline __m128i swapHalves(__m128i v) {
  return _mm_shuffle_epi32(v, _MM_SHUFFLE(1, 0, 3, 2));
}

inline LayerExtent extentOf(const SpanTable::Layer& layer) {
  const __m128i a = twoRuns(layer, 0), b = twoRuns(layer, 1), c = twoRuns(layer, 2), d = twoRuns(layer, 3);
  __m128i low = least(least(a, b), least(c, d));
  __m128i high = greatest(greatest(a, b), greatest(c, d));
  low = least(low, swapHalves(low));
  high = greatest(high, swapHalves(high));
  return {_mm_cvtsi128_si32(low), _mm_cvtsi128_si32(high), _mm_cvtsi128_si32(_mm_shuffle_epi32(low, 1)),
          _mm_cvtsi128_si32(_mm_shuffle_epi32(high, 1))};
}

/// Tells the memory that the place will be wanted soon. Changes nothing but the time.
VINDREL_ALWAYS_INLINE void fetchAhead(const void* place) {
  _mm_prefetch(static_cast<const char*>(place), _MM_HINT_T0);
}

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

}  // namespace vectors

}  // namespace vindrel
