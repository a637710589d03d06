// What the rasteriser does in vector registers, but for the runs of the general road (RunVectors.h): plain SSE2, which
// every 64-bit x86 processor has.
//
// Each routine gives, to the last bit, what the plain form beside it in tests/raster/LanesTest.cpp gives; what is said
// here is why. Nothing here reads or writes a pixel beyond those that it is given.
#pragma once

#include <emmintrin.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "effect/pixel/Pixel.h"
#include "effect/raster/PaintPixel.h"

namespace vindrel::lanes {

// ---------------------------------------------------------------------------------------- the sides of an outline

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

// ----------------------------------------------------------------------------------------------- counting samples

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

/// Whether any of the eight pairs of start and inclusive end ends beyond `limit`.
inline bool anyEndsBeyond(const int32_t* runs, int32_t limit) {
  int mask = 0;
  for (int i = 0; i < 4; ++i) {
    const __m128i pairs = _mm_loadu_si128(reinterpret_cast<const __m128i*>(runs) + i);
    mask |= _mm_movemask_ps(_mm_castsi128_ps(_mm_cmpgt_epi32(pairs, _mm_set1_epi32(limit))));
  }
  return (mask & 0b1010) != 0;
}

// -------------------------------------------------------------------------------------------------------- painting

inline __m128i choose(__m128i mask, __m128i yes, __m128i no) {
  return _mm_or_si128(_mm_and_si128(mask, yes), _mm_andnot_si128(mask, no));
}

/// Paints four neighbouring pixels at a time: `mix` gives what paintPixel makes of each.
/// A painter suits only some colours (`suits`); for others the caller paints pixel by pixel.
template <class Pixel>
struct Painter;

/// Four pixels of 8 bits are one register. Opacity is (alpha * count) >> 6: all are integers, and none is negative. The
/// products are below 2^16. For n <= 255 * t and t <= 255, cutting (n + 0.5) * (1 / t) in single precision gives n / t
/// for every n and t (tried over all in the tests).
template <>
struct Painter<Pixel8> {
  static constexpr int units = 1;  ///< registers that hold four pixels
  struct Four {
    __m128i v[1];
  };

  explicit Painter(const Pixel8& color) {
    uint32_t bits;
    std::memcpy(&bits, &color, 4);
    color_ = _mm_set1_epi32(static_cast<int32_t>(bits & 0xFFFFFF00U));
    red_ = _mm_set1_epi32(color.red);
    green_ = _mm_set1_epi32(color.green);
    blue_ = _mm_set1_epi32(color.blue);
    alpha_ = _mm_set1_epi32(color.alpha);
  }
  static bool suits(const Pixel8&) { return true; }
  static bool isOpaque(const Pixel8& color) { return color.alpha == 255; }

  bool mix(Four& four, FourCounts counts) const {
    const __m128i zero = _mm_setzero_si128();
    const __m128i a = _mm_srli_epi32(_mm_mullo_epi16(alpha_, counts.wide), 6);
    const __m128i old = four.v[0];
    const __m128i low = _mm_set1_epi32(255);
    const __m128i oldAlpha = _mm_and_si128(old, low);
    const __m128i nothing = _mm_cmpeq_epi32(a, zero);
    const __m128i replaced = _mm_or_si128(_mm_cmpeq_epi32(oldAlpha, zero), _mm_cmpeq_epi32(a, low));
    const __m128i fresh = _mm_or_si128(color_, a);
    if (_mm_movemask_epi8(_mm_or_si128(nothing, replaced)) == 0xFFFF) {
      four.v[0] = choose(nothing, old, fresh);
      return true;
    }
    const __m128i i = _mm_srli_epi32(_mm_mullo_epi16(_mm_sub_epi32(low, a), oldAlpha), 8);
    const __m128i t = _mm_add_epi32(a, i);
    const __m128 share = _mm_div_ps(_mm_set1_ps(1.0F), _mm_cvtepi32_ps(t));
    const __m128i weights = _mm_or_si128(a, _mm_slli_epi32(i, 16));
    const auto channel = [&](__m128i c, __m128i o) {  // o stands in the upper half of each lane
      const __m128i n = _mm_madd_epi16(_mm_or_si128(c, o), weights);
      return _mm_cvttps_epi32(_mm_mul_ps(_mm_add_ps(_mm_cvtepi32_ps(n), _mm_set1_ps(0.5F)), share));
    };
    const __m128i high = _mm_set1_epi32(0x00FF0000);
    const __m128i red = channel(red_, _mm_and_si128(_mm_slli_epi32(old, 8), high));
    const __m128i green = channel(green_, _mm_and_si128(old, high));
    const __m128i blue = channel(blue_, _mm_and_si128(_mm_srli_epi32(old, 8), high));
    const __m128i mixed = _mm_or_si128(_mm_or_si128(t, _mm_slli_epi32(red, 8)),
                                       _mm_or_si128(_mm_slli_epi32(green, 16), _mm_slli_epi32(blue, 24)));
    four.v[0] = choose(nothing, old, choose(replaced, fresh, mixed));
    return true;
  }

 private:
  __m128i color_, red_, green_, blue_, alpha_;
};

/// Two registers. A colour and an old channel, each less 32768, are multiplied with their weights a and i in one
/// instruction on signed numbers; both weights are below 32768 where anything is mixed. What is missing of the sum n is
/// 32768 * t, since a + i is t. Sums go up to 2^31, so they are divided in doubles: cutting (n + 0.5) * (1 / t) is
/// exact since its error stays below 2^-34, and the nearest whole number is 2^-17 away or more. All that is for alphas
/// of at most full scale; mix refuses pixels that have more.
template <>
struct Painter<Pixel16> {
  static constexpr int units = 2;
  struct Four {
    __m128i v[2];
  };

  explicit Painter(const Pixel16& color)
      : alpha_(_mm_set1_epi32(color.alpha)),
        redAbove_(_mm_set1_epi32(static_cast<int32_t>(uint32_t{color.red} << 16U))),
        greenBlue_(_mm_set1_epi32(static_cast<int32_t>(uint32_t{color.green} | uint32_t{color.blue} << 16U))),
        red_(_mm_set1_epi32(color.red ^ 0x8000)),
        green_(_mm_set1_epi32(color.green ^ 0x8000)),
        blue_(_mm_set1_epi32(color.blue ^ 0x8000)) {}
  static bool suits(const Pixel16& color) { return color.alpha <= 32768; }
  static bool isOpaque(const Pixel16& color) { return color.alpha == 32768; }

  bool mix(Four& four, FourCounts counts) const {
    const __m128i low = _mm_set1_epi32(0xFFFF), full = _mm_set1_epi32(32768), zero = _mm_setzero_si128();
    const __m128i a = _mm_srli_epi32(product(alpha_, counts.wide), 6);
    const __m128i alphaRed = halvesOf<0x88>(four);
    const __m128i oldAlpha = _mm_and_si128(alphaRed, low);
    const __m128i nothing = _mm_cmpeq_epi32(a, zero);
    const __m128i replaced = _mm_or_si128(_mm_cmpeq_epi32(oldAlpha, zero), _mm_cmpeq_epi32(a, full));
    const __m128i simple = _mm_or_si128(nothing, replaced);
    if (_mm_movemask_epi8(_mm_cmpgt_epi32(oldAlpha, full)) != 0) return false;
    if (_mm_movemask_epi8(simple) == 0xFFFF) {
      put(four, nothing, _mm_or_si128(redAbove_, a), greenBlue_);
      return true;
    }
    const __m128i greenBlue = halvesOf<0xDD>(four);
    const __m128i i = _mm_srli_epi32(product(_mm_sub_epi32(full, a), oldAlpha), 15);
    const __m128i t = _mm_add_epi32(a, i);
    const __m128i weights = _mm_or_si128(a, _mm_slli_epi32(i, 16));
    const __m128i missing = _mm_slli_epi32(t, 15);
    const __m128d one = _mm_set1_pd(1.0);
    const __m128d share0 = _mm_div_pd(one, _mm_cvtepi32_pd(t));
    const __m128d share1 = _mm_div_pd(one, _mm_cvtepi32_pd(_mm_shuffle_epi32(t, 0xEE)));
    const auto channel = [&](__m128i c, __m128i o) {  // o stands in the upper half of each lane
      const __m128i both = _mm_or_si128(c, _mm_xor_si128(o, _mm_set1_epi32(INT32_MIN)));
      const __m128i n = _mm_add_epi32(_mm_madd_epi16(both, weights), missing);
      const __m128d half = _mm_set1_pd(0.5);
      const __m128d n0 = _mm_add_pd(_mm_cvtepi32_pd(n), half);
      const __m128d n1 = _mm_add_pd(_mm_cvtepi32_pd(_mm_shuffle_epi32(n, 0xEE)), half);
      return _mm_unpacklo_epi64(_mm_cvttpd_epi32(_mm_mul_pd(n0, share0)), _mm_cvttpd_epi32(_mm_mul_pd(n1, share1)));
    };
    const __m128i red = channel(red_, _mm_andnot_si128(low, alphaRed));
    const __m128i green = channel(green_, _mm_slli_epi32(greenBlue, 16));
    const __m128i blue = channel(blue_, _mm_andnot_si128(low, greenBlue));
    const __m128i mixedAlphaRed = _mm_or_si128(t, _mm_slli_epi32(red, 16));
    const __m128i mixedGreenBlue = _mm_or_si128(green, _mm_slli_epi32(blue, 16));
    put(four, nothing, choose(replaced, _mm_or_si128(redAbove_, a), mixedAlphaRed),
        choose(replaced, greenBlue_, mixedGreenBlue));
    return true;
  }

 private:
  /// Of numbers below 2^16, one in each lane.
  static __m128i product(__m128i x, __m128i y) {
    return _mm_or_si128(_mm_mullo_epi16(x, y), _mm_slli_epi32(_mm_mulhi_epu16(x, y), 16));
  }
  /// Of the four pixels alpha and red (which = 0x88), or green and blue (0xDD).
  template <int which>
  static __m128i halvesOf(const Four& four) {
    return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(four.v[0]), _mm_castsi128_ps(four.v[1]), which));
  }
  /// Stores pixels made of the two halves, but for those that stay.
  static void put(Four& four, __m128i stay, __m128i alphaRed, __m128i greenBlue) {
    four.v[0] = choose(_mm_unpacklo_epi32(stay, stay), four.v[0], _mm_unpacklo_epi32(alphaRed, greenBlue));
    four.v[1] = choose(_mm_unpackhi_epi32(stay, stay), four.v[1], _mm_unpackhi_epi32(alphaRed, greenBlue));
  }
  __m128i alpha_, redAbove_, greenBlue_, red_, green_, blue_;
};

/// A pixel a register. The same single-precision operations as paintPixel, four channels at once. The opacity's scaling
/// by 1/64 may be in single precision too: it is rounded once either way.
template <>
struct Painter<Pixel32> {
  static constexpr int units = 4;
  struct Four {
    __m128i v[4];
  };

  explicit Painter(const Pixel32& color)
      : color_(_mm_set_ps(color.blue, color.green, color.red, color.alpha)), alpha_(_mm_set1_ps(color.alpha)) {}
  static bool suits(const Pixel32& color) { return emptyCountPaintsNothing(color); }
  static bool isOpaque(const Pixel32& color) { return color.alpha == 1.0F; }

  bool mix(Four& four, FourCounts counts) const {
    const __m128 wide = _mm_cvtepi32_ps(counts.wide);
    const __m128 a4 = _mm_mul_ps(_mm_mul_ps(wide, alpha_), _mm_set1_ps(0.015625F));
    mixOne(four.v[0], _mm_shuffle_ps(a4, a4, 0x00));
    mixOne(four.v[1], _mm_shuffle_ps(a4, a4, 0x55));
    mixOne(four.v[2], _mm_shuffle_ps(a4, a4, 0xAA));
    mixOne(four.v[3], _mm_shuffle_ps(a4, a4, 0xFF));
    return true;
  }

 private:
  void mixOne(__m128i& pixel, __m128 a) const {
    const __m128 old = _mm_castsi128_ps(pixel);
    const __m128 one = _mm_set1_ps(1.0F);
    const float opacity = _mm_cvtss_f32(a), oldAlpha = _mm_cvtss_f32(old);
    if (opacity == 0.0F) return;
    if (oldAlpha == 0.0F || opacity == 1.0F) {
      pixel = _mm_castps_si128(_mm_move_ss(color_, a));
      return;
    }
    const __m128 i = _mm_mul_ps(_mm_sub_ps(one, a), _mm_shuffle_ps(old, old, 0));
    const __m128 t = _mm_add_ps(i, a);
    const __m128 mixed = _mm_div_ps(_mm_add_ps(_mm_mul_ps(a, color_), _mm_mul_ps(i, old)), t);
    pixel = _mm_castps_si128(_mm_move_ss(mixed, t));
  }
  __m128 color_, alpha_;
};

/// Four pixels from memory that need not be aligned, and back.
template <class Pixel>
typename Painter<Pixel>::Four loadFour(const Pixel* pixels) {
  typename Painter<Pixel>::Four four;
  for (int u = 0; u < Painter<Pixel>::units; ++u) {
    four.v[u] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels) + u);
  }
  return four;
}

template <class Pixel>
void storeFour(Pixel* pixels, const typename Painter<Pixel>::Four& four) {
  for (int u = 0; u < Painter<Pixel>::units; ++u) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(pixels) + u, four.v[u]);
  }
}

template <class Four>
bool sameFour(const Four& a, const Four& b) {
  __m128i same = _mm_cmpeq_epi8(a.v[0], b.v[0]);
  for (std::size_t u = 1; u < std::size(a.v); ++u) {
    same = _mm_and_si128(same, _mm_cmpeq_epi8(a.v[u], b.v[u]));
  }
  return _mm_movemask_epi8(same) == 0xFFFF;
}

}  // namespace vindrel::lanes
