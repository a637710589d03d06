// The eight runs of a pixel row in vector registers (plain SSE2): how far they reach, and how many samples of each
// pixel they cover.
//
// But for the truncation of the sides' x, which is that of truncateToInt32, all of it is arithmetic on integers: exact
// as long as no sum wraps and nothing is cut that counts, which is shown at each. The plain twins are in
// tests/raster/RunLanesTest.cpp.
#pragma once

#include <emmintrin.h>

#include <cstdint>

#include "effect/raster/SpanTable.h"

namespace vindrel::lanes {

/// A run of sub-columns on each of the eight sub-rows of a pixel row, both ends inclusive; a run whose start is behind
/// its end is empty.
struct EightRuns {
  __m128i start[2], end[2];  ///< four sub-rows each
};

/// The runs between two sides, each given by its x on eight sub-rows: as SidePair::storeSpan gives them, in an order of
/// the sub-rows of their own. Reads each x by itself, since a register full of numbers that were stored one by one just
/// before would have to wait until all of them have reached the memory.
inline EightRuns runsBetween(const double* first, const double* second) {
  const __m128d half = _mm_set1_pd(0.5);
  const auto two = [](const double* from) { return _mm_loadh_pd(_mm_load_sd(from), from + 4); };
  EightRuns runs;
  for (int i = 0; i < 2; ++i) {
    __m128i start[2], end[2];
    for (int j = 0; j < 2; ++j) {
      const __m128d a = two(first + 2 * i + j), b = two(second + 2 * i + j);
      start[j] = _mm_cvttpd_epi32(_mm_add_pd(_mm_min_pd(a, b), half));
      end[j] = _mm_cvttpd_epi32(_mm_sub_pd(_mm_max_pd(b, a), half));
    }
    runs.start[i] = _mm_unpacklo_epi64(start[0], start[1]);
    runs.end[i] = _mm_unpacklo_epi64(end[0], end[1]);
  }
  return runs;
}

/// From eight pairs of start and end in memory.
inline EightRuns loadRuns(const int32_t* startsAndEnds) {
  EightRuns runs;
  for (int half = 0; half < 2; ++half) {
    const auto* const from = reinterpret_cast<const __m128i*>(startsAndEnds + half * 8);
    const __m128 a = _mm_castsi128_ps(_mm_loadu_si128(from));
    const __m128 b = _mm_castsi128_ps(_mm_loadu_si128(from + 1));
    runs.start[half] = _mm_castps_si128(_mm_shuffle_ps(a, b, 0x88));
    runs.end[half] = _mm_castps_si128(_mm_shuffle_ps(a, b, 0xDD));
  }
  return runs;
}

/// Whether any of the eight pairs of start and inclusive end ends beyond `limit`.
inline bool anyEndsBeyond(const int32_t* runs, int32_t limit) {
  int mask = 0;
  for (int i = 0; i < 4; ++i) {
    const __m128i pairs = _mm_loadu_si128(reinterpret_cast<const __m128i*>(runs) + i);
    mask |= _mm_movemask_ps(_mm_castsi128_ps(_mm_cmpgt_epi32(pairs, _mm_set1_epi32(limit))));
  }
  return (mask & 0b1010) != 0;
}

inline __m128i lesser(__m128i a, __m128i b) {
  const __m128i above = _mm_cmpgt_epi32(a, b);
  return _mm_or_si128(_mm_and_si128(above, b), _mm_andnot_si128(above, a));
}

inline __m128i greater(__m128i a, __m128i b) {
  const __m128i above = _mm_cmpgt_epi32(a, b);
  return _mm_or_si128(_mm_and_si128(above, a), _mm_andnot_si128(above, b));
}

/// Runs 2 * pair and 2 * pair + 1: start, end, start, end.
inline __m128i twoRuns(const SpanTable::Layer& layer, int32_t pair) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(&layer[2 * pair]));
}

inline __m128i swapHalves(__m128i v) {
  return _mm_shuffle_epi32(v, _MM_SHUFFLE(1, 0, 3, 2));
}

/// How far the eight runs reach, empty ones included.
inline LayerExtent extentOf(const SpanTable::Layer& layer) {
  const __m128i a = twoRuns(layer, 0), b = twoRuns(layer, 1), c = twoRuns(layer, 2), d = twoRuns(layer, 3);
  __m128i low = lesser(lesser(a, b), lesser(c, d));
  __m128i high = greater(greater(a, b), greater(c, d));
  low = lesser(low, swapHalves(low));
  high = greater(high, swapHalves(high));
  return {_mm_cvtsi128_si32(low), _mm_cvtsi128_si32(high), _mm_cvtsi128_si32(_mm_shuffle_epi32(low, 1)),
          _mm_cvtsi128_si32(_mm_shuffle_epi32(high, 1))};
}

/// Of four neighbouring pixels, 32 bits each.
struct FourCounts {
  __m128i wide;
  static FourCounts none() { return {_mm_setzero_si128()}; }
  static FourCounts all64() { return {_mm_set1_epi32(64)}; }
  friend FourCounts operator+(FourCounts a, FourCounts b) { return {_mm_add_epi32(a.wide, b.wide)}; }
  /// With 0 behind the first n; n is 1 or more.
  FourCounts onlyFirst(int32_t n) const {
    return {_mm_and_si128(wide, _mm_cmpgt_epi32(_mm_set1_epi32(n), _mm_setr_epi32(0, 1, 2, 3)))};
  }
  void storeTo(int32_t* counts) const { _mm_storeu_si128(reinterpret_cast<__m128i*>(counts), wide); }
};

/// One run of sub-columns for each of the eight sub-rows of a pixel row, relative to the left edge of a window of up to
/// 4,080 pixels, so that they fit 16 bits. start is inclusive, end is not; end <= start is an empty run.
struct Slots {
  static constexpr int32_t widest = 4080;  ///< pixels
  __m128i start, end;

  Slots() = default;
  /// @param runs   in the canvas's sub-columns; ends below 2^31 - 1
  /// @param left   the window's first pixel, not negative
  /// @param width  the window's pixels, at most 4080
  /// A pixel's count depends only on what of a run lies inside the pixel, so cutting runs to the window changes none.
  Slots(const EightRuns& runs, int32_t left, int32_t width) {
    const __m128i base = _mm_set1_epi32(left * 8);
    const __m128i one = _mm_set1_epi32(1);
    __m128i s[2], e[2];
    for (int half = 0; half < 2; ++half) {
      // Neither is negative, so the differences don't overflow.
      s[half] = _mm_sub_epi32(notNegative(runs.start[half]), base);
      e[half] = _mm_sub_epi32(notNegative(_mm_add_epi32(runs.end[half], one)), base);
    }
    const __m128i limit = _mm_set1_epi16(static_cast<int16_t>(width * 8));
    const __m128i zero = _mm_setzero_si128();
    start = _mm_min_epi16(_mm_max_epi16(_mm_packs_epi32(s[0], s[1]), zero), limit);
    end = _mm_min_epi16(_mm_max_epi16(_mm_packs_epi32(e[0], e[1]), zero), limit);
  }

  static __m128i notNegative(__m128i v) { return _mm_andnot_si128(_mm_srai_epi32(v, 31), v); }
};

/// What all eight slots say together, in sub-columns of the window.
struct SlotReach {
  int32_t leastStart, greatestEnd;  ///< over the slots with a run; leastStart >= greatestEnd when there is none
  int32_t greatestStart, leastEnd;  ///< over all slots: between them every sub-row is covered
};

inline SlotReach reachOf(const Slots& slots) {
  const __m128i filled = _mm_cmpgt_epi16(slots.end, slots.start);
  const __m128i none = _mm_set1_epi16(32767);
  // Minima are maxima of what is left to 32767, so that all four can be drawn together in one go.
  const __m128i starts = _mm_or_si128(_mm_and_si128(filled, slots.start), _mm_andnot_si128(filled, none));
  const __m128i leastStart = _mm_sub_epi16(none, starts);
  const __m128i greatestEnd = _mm_and_si128(filled, slots.end);
  const __m128i leastEnd = _mm_sub_epi16(none, slots.end);
  const __m128i a =
      _mm_max_epi16(_mm_unpacklo_epi16(leastStart, greatestEnd), _mm_unpackhi_epi16(leastStart, greatestEnd));
  const __m128i b = _mm_max_epi16(_mm_unpacklo_epi16(slots.start, leastEnd), _mm_unpackhi_epi16(slots.start, leastEnd));
  __m128i all = _mm_max_epi16(_mm_unpacklo_epi32(a, b), _mm_unpackhi_epi32(a, b));
  all = _mm_max_epi16(all, _mm_srli_si128(all, 8));
  return {32767 - _mm_extract_epi16(all, 0), _mm_extract_epi16(all, 1), _mm_extract_epi16(all, 2),
          32767 - _mm_extract_epi16(all, 3)};
}

/// Counts samples in a strip of up to 16 pixels. Packing to bytes saturates at 0 and 255, which cuts the runs to what
/// may matter there. Up to a sub-column e behind a pixel's left edge, min(e, 8) of its columns lie; so the pixel's
/// count is the sum of that over all ends less the sum over all starts, once each end is at its start at least.
class Strip {
 public:
  Strip() = default;
  /// @param first  the strip's first pixel in the window of the slots
  Strip(const Slots& slots, int32_t first) {
    const __m128i base = _mm_set1_epi16(static_cast<int16_t>(first * 8));
    set(_mm_sub_epi16(slots.start, base), _mm_sub_epi16(slots.end, base));
  }

  /// @param firstColumn  the strip's first sub-column; all runs lie within 2^30 of it
  Strip(const EightRuns& runs, int32_t firstColumn) {
    const __m128i base = _mm_set1_epi32(firstColumn);
    const __m128i last = _mm_set1_epi32(firstColumn - 1);
    set(_mm_packs_epi32(_mm_sub_epi32(runs.start[0], base), _mm_sub_epi32(runs.start[1], base)),
        _mm_packs_epi32(_mm_sub_epi32(runs.end[0], last), _mm_sub_epi32(runs.end[1], last)));
  }

  /// Of pixels 4 * four to 4 * four + 3 of the strip; four is 0 to 3.
  FourCounts counts(int32_t four) const {
    const __m128i eight = _mm_set1_epi8(8), zero = _mm_setzero_si128();
    const __m128i from = _mm_subs_epu8(edges_, _mm_set1_epi8(static_cast<char>(32 * four)));
    const auto sums = [&](int32_t pixel) {
      return _mm_sad_epu8(_mm_min_epu8(_mm_subs_epu8(from, _mm_set1_epi8(static_cast<char>(8 * pixel))), eight), zero);
    };
    const __m128i low = _mm_or_si128(sums(0), _mm_slli_epi64(sums(1), 32));
    const __m128i high = _mm_or_si128(sums(2), _mm_slli_epi64(sums(3), 32));
    return {_mm_sub_epi32(_mm_unpackhi_epi64(low, high), _mm_unpacklo_epi64(low, high))};
  }

 private:
  /// @param starts, ends  in sub-columns from the strip's first one on; the ends are not inclusive
  void set(__m128i starts, __m128i ends) {
    const __m128i both = _mm_packus_epi16(starts, ends);
    edges_ = _mm_max_epu8(both, _mm_slli_si128(both, 8));
  }

  __m128i edges_;  ///< eight starts, eight ends, in sub-columns of the strip
};

}  // namespace vindrel::lanes
