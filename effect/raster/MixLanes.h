// Laying a colour over four neighbouring pixels at a time, in vector registers (plain SSE2): what paintPixel makes of
// each, at every depth.
//
// Each painter says why its arithmetic is exact; tests/raster/RowPainterTest.cpp holds it against paintPixel. Nothing
// here reads or writes a pixel beyond those that it is given.
#pragma once

#include <emmintrin.h>

#include <cstdint>
#include <cstring>
#include <iterator>

#include "effect/pixel/Pixel.h"
#include "effect/raster/PaintPixel.h"
#include "effect/raster/RunLanes.h"

namespace vindrel::lanes {

inline __m128i choose(__m128i mask, __m128i yes, __m128i no) {
  return _mm_or_si128(_mm_and_si128(mask, yes), _mm_andnot_si128(mask, no));
}

/// Paints four neighbouring pixels at a time: `mix` gives what paintPixel makes of each.
/// A painter suits only some colours (`suits`); for others the caller paints pixel by pixel. Pixels that are kept or
/// replaced are the rule, and that part of `mix` is small enough to stand in the loops of the fillers; the sums and
/// divisions are a function of their own.
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
    four.v[0] = choose(nothing, old, choose(replaced, fresh, mixed(old, a)));
    return true;
  }

 private:
  /// What each pixel becomes under opacity a, where both a and its own alpha are above 0 and a is below full.
  [[gnu::noinline]] __m128i mixed(__m128i old, __m128i a) const {
    const __m128i low = _mm_set1_epi32(255);
    const __m128i i = _mm_srli_epi32(_mm_mullo_epi16(_mm_sub_epi32(low, a), _mm_and_si128(old, low)), 8);
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
    return _mm_or_si128(_mm_or_si128(t, _mm_slli_epi32(red, 8)),
                        _mm_or_si128(_mm_slli_epi32(green, 16), _mm_slli_epi32(blue, 24)));
  }

  __m128i color_, red_, green_, blue_, alpha_;
};

/// Two registers. A colour and an old channel, each less 32768, are multiplied with their weights a and i in one
/// instruction on signed numbers; both weights are below 32768 where anything is mixed. What is missing of the sum n is
/// 32768 * t, since a + i is t. Sums go up to 2^31, so they are divided in doubles: cutting (n + 0.5) * (1 / t) is
/// exact since its error stays below 2^-34, and the nearest whole number is 2^-17 away or more. All that is for alphas
/// of at most full scale; mix refuses pixels that have more, where it would have to divide. The opacity is cut in
/// single precision: a count has 7 bits and an alpha 16, so that their product fits its 24, and a 64th of it does too.
template <>
struct Painter<Pixel16> {
  static constexpr int units = 2;
  struct Four {
    __m128i v[2];
  };

  explicit Painter(const Pixel16& color)
      : alphaBySample_(_mm_set1_ps(static_cast<float>(color.alpha) * 0.015625F)),
        redAbove_(_mm_set1_epi32(static_cast<int32_t>(uint32_t{color.red} << 16U))),
        greenBlue_(_mm_set1_epi32(static_cast<int32_t>(uint32_t{color.green} | uint32_t{color.blue} << 16U))),
        red_(_mm_set1_epi32(color.red ^ 0x8000)),
        green_(_mm_set1_epi32(color.green ^ 0x8000)),
        blue_(_mm_set1_epi32(color.blue ^ 0x8000)) {}
  static bool suits(const Pixel16& color) { return color.alpha <= 32768; }
  static bool isOpaque(const Pixel16& color) { return color.alpha == 32768; }

  bool mix(Four& four, FourCounts counts) const {
    const __m128i zero = _mm_setzero_si128();
    const __m128i a = _mm_cvttps_epi32(_mm_mul_ps(_mm_cvtepi32_ps(counts.wide), alphaBySample_));
    const __m128i nothing = _mm_cmpeq_epi32(a, zero);
    if (_mm_movemask_epi8(nothing) == 0xFFFF) return true;  // pays here, where two registers would be put together anew
    const __m128i empty = _mm_cmpeq_epi32(_mm_slli_epi32(halvesOf<0x88>(four), 16), zero);
    const __m128i replaced = _mm_or_si128(empty, _mm_cmpeq_epi32(a, _mm_set1_epi32(32768)));
    if (_mm_movemask_epi8(_mm_or_si128(nothing, replaced)) != 0xFFFF) return mixOver(four, a, nothing, replaced);
    put(four, nothing, _mm_or_si128(redAbove_, a), greenBlue_);
    return true;
  }

 private:
  /// Four pixels of which one at least is neither kept (`nothing`) nor replaced, under opacity a.
  [[gnu::noinline]] bool mixOver(Four& four, __m128i a, __m128i nothing, __m128i replaced) const {
    const __m128i low = _mm_set1_epi32(0xFFFF), full = _mm_set1_epi32(32768);
    const __m128i alphaRed = halvesOf<0x88>(four);
    const __m128i oldAlpha = _mm_and_si128(alphaRed, low);
    if (_mm_movemask_epi8(_mm_cmpgt_epi32(oldAlpha, full)) != 0) return false;
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
  __m128 alphaBySample_;
  __m128i redAbove_, greenBlue_, red_, green_, blue_;
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
