// What the road of the table does with several numbers at once: two sides of an outline in one register, eight runs of
// a layer, eight pixels; the painting is in Lanes.h. Beside each stands its plain twin. The tests compare with the
// twins, and addCounts gives way to its own for columns left of leastColumn.
//
// Exactness. A packed addition rounds each of its sums as a single one does, and the packed conversion truncates as
// truncateToInt32 does, the smallest integer for what doesn't fit included. All else is in integers: of a pixel's eight
// columns from c0 on a run covers min(end + 1, c0 + 8) - max(start, c0), or nothing where that is negative.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "effect/pixel/Truncate.h"
#include "effect/raster/SpanTable.h"

#if defined(__SSE2__) || defined(_M_X64)
#define VINDREL_RUN_VECTORS 1
#include <emmintrin.h>
#endif

// A function that does nothing but ask the memory ahead has no effect that a compiler would see, and the call of it
// would be left out.
#if defined(__GNUC__)
#define VINDREL_ALWAYS_INLINE [[gnu::always_inline]] inline
#else
#define VINDREL_ALWAYS_INLINE inline
#endif

namespace vindrel {

namespace plain_vectors {

/// The columns that addCounts takes begin here.
inline constexpr int32_t leastColumn = std::numeric_limits<int32_t>::min();

inline LayerExtent extentOf(const SpanTable::Layer& layer) {
  LayerExtent extent{layer[0].start, layer[0].start, layer[0].end, layer[0].end};
  for (const ColumnRun& run : layer) {
    extent.leastStart = std::min(extent.leastStart, run.start);
    extent.greatestStart = std::max(extent.greatestStart, run.start);
    extent.leastEnd = std::min(extent.leastEnd, run.end);
    extent.greatestEnd = std::max(extent.greatestEnd, run.end);
  }
  return extent;
}

/// Adds to the counts of eight pixels what the runs cover of them.
/// @param firstPixel  0 or above
inline void addCounts(const SpanTable::Layer& layer, int32_t firstPixel, int16_t* counts) {
  for (int32_t p = 0; p < 8; ++p) {
    const int32_t c0 = (firstPixel + p) * 8;
    for (const ColumnRun& run : layer) {
      const int32_t start = std::max(run.start, c0);
      const int32_t behind = std::min(run.end, c0 + 7) + 1;
      if (start < behind) counts[p] = static_cast<int16_t>(counts[p] + behind - start);
    }
  }
}

/// Tells the memory that the place will be wanted soon. Changes nothing but the time.
inline void fetchAhead(const void*) {}

/// Two sides that are stepped together.
class TwoSides {
 public:
  TwoSides(const double* x, const double* slope) : x_{x[0], x[1]}, slope_{slope[0], slope[1]} {}
  void step() {
    x_[0] += slope_[0];
    x_[1] += slope_[1];
  }
  /// The sub-columns nearest to the two.
  ColumnRun columns() const { return {truncateToInt32(x_[0] + 0.5), truncateToInt32(x_[1] + 0.5)}; }
  bool inOrder() const { return !(x_[0] > x_[1]); }
  /// Whether the sides of both stand in order, this one's to the left.
  bool inOrderBefore(const TwoSides& next) const { return inOrder() && !(x_[1] > next.x_[0]) && next.inOrder(); }
  void storeTo(double* x) const {
    x[0] = x_[0];
    x[1] = x_[1];
  }

 private:
  double x_[2];
  double slope_[2];
};

}  // namespace plain_vectors

#ifdef VINDREL_RUN_VECTORS

namespace sse2_vectors {

// Further left, differences leave the 32-bit range.
inline constexpr int32_t leastColumn = -1073741824;

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

/// Adds what two runs, at the places of 16 bits `place` to place + 3 of `runs`, cover of the eight pixels.
template <int place>
inline __m128i addTwo(__m128i counts, __m128i runs) {
  const __m128i left = _mm_setr_epi16(0, 8, 16, 24, 32, 40, 48, 56);
  const __m128i right = _mm_setr_epi16(8, 16, 24, 32, 40, 48, 56, 64);
  const __m128i twice = place == 0 ? _mm_unpacklo_epi16(runs, runs) : _mm_unpackhi_epi16(runs, runs);
  const __m128i start0 = _mm_shuffle_epi32(twice, 0x00), behind0 = _mm_shuffle_epi32(twice, 0x55);
  const __m128i start1 = _mm_shuffle_epi32(twice, 0xAA), behind1 = _mm_shuffle_epi32(twice, 0xFF);
  counts = _mm_add_epi16(counts, _mm_subs_epu16(_mm_min_epi16(behind0, right), _mm_max_epi16(start0, left)));
  return _mm_add_epi16(counts, _mm_subs_epu16(_mm_min_epi16(behind1, right), _mm_max_epi16(start1, left)));
}

inline void addCounts(const SpanTable::Layer& layer, int32_t firstPixel, int16_t* counts) {
  // Columns from the first pixel's first one on, and what lies beyond the eight pixels drawn in to their rims.
  const int32_t c0 = firstPixel * 8;
  const __m128i base = _mm_setr_epi32(c0, c0 - 1, c0, c0 - 1);
  const __m128i zero = _mm_setzero_si128();
  const __m128i rim = _mm_set1_epi16(64);
  const auto within = [&](int32_t pair) {
    const __m128i packed =
        _mm_packs_epi32(_mm_sub_epi32(twoRuns(layer, pair), base), _mm_sub_epi32(twoRuns(layer, pair + 1), base));
    return _mm_min_epi16(_mm_max_epi16(packed, zero), rim);
  };
  auto* const place = reinterpret_cast<__m128i*>(counts);
  __m128i sum = _mm_loadu_si128(place);
  const __m128i low = within(0), high = within(2);
  sum = addTwo<0>(sum, low);
  sum = addTwo<4>(sum, low);
  sum = addTwo<0>(sum, high);
  sum = addTwo<4>(sum, high);
  _mm_storeu_si128(place, sum);
}

VINDREL_ALWAYS_INLINE void fetchAhead(const void* place) {
  _mm_prefetch(static_cast<const char*>(place), _MM_HINT_T0);
}

class TwoSides {
 public:
  TwoSides(const double* x, const double* slope) : x_(_mm_loadu_pd(x)), slope_(_mm_loadu_pd(slope)) {}
  void step() { x_ = _mm_add_pd(x_, slope_); }
  ColumnRun columns() const {
    const __m128i both = _mm_cvttpd_epi32(_mm_add_pd(x_, _mm_set1_pd(0.5)));
    ColumnRun run;
    _mm_storel_epi64(reinterpret_cast<__m128i*>(&run), both);
    return run;
  }
  bool inOrder() const { return _mm_comigt_sd(x_, _mm_unpackhi_pd(x_, x_)) == 0; }
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

}  // namespace sse2_vectors

namespace vectors = sse2_vectors;
#else
namespace vectors = plain_vectors;
#endif

}  // namespace vindrel
