#include "effect/raster/WideLanes.h"

#include "effect/pixel/Pixel.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include <cstring>

// For single functions, so that nothing else of the module comes to need the registers.
#define VINDREL_WIDE [[gnu::target("avx2")]]

namespace vindrel::wide_lanes {

bool available() {
  // Looked up in what was found out as the module was loaded; a value kept here would need a lock.
  return __builtin_cpu_supports("avx2") != 0;
}

namespace {

VINDREL_WIDE inline __m256i load(const void* place) {
  return _mm256_loadu_si256(static_cast<const __m256i*>(place));
}

VINDREL_WIDE inline void store(void* place, __m256i v) {
  _mm256_storeu_si256(static_cast<__m256i*>(place), v);
}

/// What is remembered, in registers for as long as a stretch lasts.
class Memory {
 public:
  VINDREL_WIDE explicit Memory(const Remembered& last)
      : before_(load(last.before)), after_(load(last.after)), sameBytes_(last.known ? -1 : never) {}
  VINDREL_WIDE bool holds(__m256i pixels) const {
    return _mm256_movemask_epi8(_mm256_cmpeq_epi8(pixels, before_)) == sameBytes_;
  }
  VINDREL_WIDE __m256i after() const { return after_; }
  VINDREL_WIDE void learn(__m256i before, __m256i after) {
    before_ = before;
    after_ = after;
    sameBytes_ = -1;
  }
  VINDREL_WIDE void keepIn(Remembered& last) const {
    store(last.before, before_);
    store(last.after, after_);
    last.known = sameBytes_ == -1;
  }

 private:
  static constexpr int64_t never = int64_t{1} << 32U;
  __m256i before_, after_;
  int64_t sameBytes_;  ///< what a comparison gives that finds all bytes alike
};

// ------------------------------------------------------------------------------------------------------------ 8 bits

/// (color * a + old * i) / t for eight pixels, exact as in Painter<Pixel8>. `old` and `color` stand in the upper and
/// the lower half of each lane, and so do their weights.
VINDREL_WIDE inline __m256i mixBytes(__m256i color, __m256i old, __m256i weights, __m256 share) {
  const __m256i n = _mm256_madd_epi16(_mm256_or_si256(color, old), weights);
  return _mm256_cvttps_epi32(_mm256_mul_ps(_mm256_add_ps(_mm256_cvtepi32_ps(n), _mm256_set1_ps(0.5F)), share));
}

VINDREL_WIDE int32_t paintBytes(Pixel8* pixels, int32_t count, const Pixel8& color, Remembered& last) {
  uint32_t bits;
  std::memcpy(&bits, &color, 4);
  const __m256i fresh = _mm256_set1_epi32(static_cast<int32_t>(bits));
  const __m256i a = _mm256_set1_epi32(color.alpha);
  const __m256i rest = _mm256_set1_epi32(255 - color.alpha);
  const __m256i red = _mm256_set1_epi32(color.red), green = _mm256_set1_epi32(color.green);
  const __m256i blue = _mm256_set1_epi32(color.blue);
  const __m256i low = _mm256_set1_epi32(255), high = _mm256_set1_epi32(0x00FF0000);
  Memory memory(last);
  int32_t p = 0;
  for (; p + 8 <= count; p += 8) {
    const __m256i old = load(pixels + p);
    if (memory.holds(old)) {
      store(pixels + p, memory.after());
      continue;
    }
    const __m256i oldAlpha = _mm256_and_si256(old, low);
    const __m256i i = _mm256_srli_epi32(_mm256_mullo_epi16(rest, oldAlpha), 8);
    const __m256i t = _mm256_add_epi32(a, i);
    const __m256 share = _mm256_div_ps(_mm256_set1_ps(1.0F), _mm256_cvtepi32_ps(t));
    const __m256i weights = _mm256_or_si256(a, _mm256_slli_epi32(i, 16));
    const __m256i r = mixBytes(red, _mm256_and_si256(_mm256_slli_epi32(old, 8), high), weights, share);
    const __m256i g = mixBytes(green, _mm256_and_si256(old, high), weights, share);
    const __m256i b = mixBytes(blue, _mm256_and_si256(_mm256_srli_epi32(old, 8), high), weights, share);
    const __m256i mixed = _mm256_or_si256(_mm256_or_si256(t, _mm256_slli_epi32(r, 8)),
                                          _mm256_or_si256(_mm256_slli_epi32(g, 16), _mm256_slli_epi32(b, 24)));
    const __m256i empty = _mm256_cmpeq_epi32(oldAlpha, _mm256_setzero_si256());
    const __m256i painted = _mm256_blendv_epi8(mixed, fresh, empty);
    memory.learn(old, painted);
    store(pixels + p, painted);
  }
  memory.keepIn(last);
  return p;
}

// ----------------------------------------------------------------------------------------------------------- 16 bits

// A pixel a lane of 64 bits. A channel becomes a double by way of its bits, and the whole number that is nearest to a
// double stands in the lowest bits of its sum with 1.5 * 2^52. What is rounded so is ((old - 0.5) * i + color * a + 0.5
// - 0.5 * a) / t, which is (n + 0.5) / t - 0.5 for the sum n of Painter<Pixel16>: all terms are multiples of 0.5 below
// 2^33, so that they are exact; and the quotient lies 2^-17 or more on the inner side of the halves around n / t, cut,
// while it is off by 2^-34 at most.
constexpr double toWhole = 0x1.8p52;
constexpr int64_t halvesBits = 0x4320000000000000;  // of 2^51, whose last bit is worth 0.5
constexpr double halves = 0x1p51;

/// @param old  the channel in the lowest 16 bits of each lane, anything above
VINDREL_WIDE inline __m256i mixWords(__m256d colorTerm, __m256i old, __m256d i, __m256d share) {
  const __m256i twice = _mm256_and_si256(_mm256_add_epi64(old, old), _mm256_set1_epi64x(0x1FFFE));
  const __m256d number = _mm256_castsi256_pd(_mm256_or_si256(twice, _mm256_set1_epi64x(halvesBits)));
  const __m256d lessAHalf = _mm256_sub_pd(number, _mm256_set1_pd(halves + 0.5));
  const __m256d quotient = _mm256_mul_pd(_mm256_add_pd(_mm256_mul_pd(lessAHalf, i), colorTerm), share);
  const __m256i whole = _mm256_castpd_si256(_mm256_add_pd(quotient, _mm256_set1_pd(toWhole)));
  return _mm256_and_si256(whole, _mm256_set1_epi64x(0xFFFF));
}

/// Of whole numbers below 2^32.
VINDREL_WIDE inline __m256d numberOf(__m256i whole) {
  const __m256i twice = _mm256_add_epi64(whole, whole);
  return _mm256_sub_pd(_mm256_castsi256_pd(_mm256_or_si256(twice, _mm256_set1_epi64x(halvesBits))),
                       _mm256_set1_pd(halves));
}

VINDREL_WIDE int32_t paintWords(Pixel16* pixels, int32_t count, const Pixel16& color, Remembered& last) {
  int64_t bits;
  std::memcpy(&bits, &color, 8);
  const __m256i fresh = _mm256_set1_epi64x(bits);
  const __m256i a = _mm256_set1_epi64x(color.alpha);
  const __m256i rest = _mm256_set1_epi64x(32768 - color.alpha);
  const double alpha = color.alpha;
  const double half = 0.5 - 0.5 * alpha;
  const __m256d red = _mm256_set1_pd(alpha * color.red + half);
  const __m256d green = _mm256_set1_pd(alpha * color.green + half);
  const __m256d blue = _mm256_set1_pd(alpha * color.blue + half);
  const __m256i low = _mm256_set1_epi64x(0xFFFF), full = _mm256_set1_epi64x(32768);
  Memory memory(last);
  int32_t p = 0;
  for (; p + 4 <= count; p += 4) {
    const __m256i old = load(pixels + p);
    if (memory.holds(old)) {
      store(pixels + p, memory.after());
      continue;
    }
    const __m256i oldAlpha = _mm256_and_si256(old, low);
    if (_mm256_movemask_epi8(_mm256_cmpgt_epi32(oldAlpha, full)) != 0) break;
    const __m256i i = _mm256_srli_epi64(_mm256_mul_epu32(rest, oldAlpha), 15);
    const __m256i t = _mm256_add_epi64(a, i);
    const __m256d share = _mm256_div_pd(_mm256_set1_pd(1.0), numberOf(t));
    const __m256d weight = numberOf(i);
    const __m256i r = mixWords(red, _mm256_srli_epi64(old, 16), weight, share);
    const __m256i g = mixWords(green, _mm256_srli_epi64(old, 32), weight, share);
    const __m256i b = mixWords(blue, _mm256_srli_epi64(old, 48), weight, share);
    const __m256i mixed = _mm256_or_si256(_mm256_or_si256(t, _mm256_slli_epi64(r, 16)),
                                          _mm256_or_si256(_mm256_slli_epi64(g, 32), _mm256_slli_epi64(b, 48)));
    const __m256i empty = _mm256_cmpeq_epi64(oldAlpha, _mm256_setzero_si256());
    const __m256i painted = _mm256_blendv_epi8(mixed, fresh, empty);
    memory.learn(old, painted);
    store(pixels + p, painted);
  }
  memory.keepIn(last);
  return p;
}

// ------------------------------------------------------------------------------------------------------------- float

/// Two pixels a register, the operations of Painter<Pixel32>.
VINDREL_WIDE int32_t paintFloats(Pixel32* pixels, int32_t count, const Pixel32& color, Remembered& last) {
  const float opacity = 64.0F * color.alpha * 0.015625F;
  const __m256 a = _mm256_set1_ps(opacity);
  const __m256 rest = _mm256_set1_ps(1.0F - opacity);
  const __m256 colors =
      _mm256_setr_ps(color.alpha, color.red, color.green, color.blue, color.alpha, color.red, color.green, color.blue);
  const __m256 colorTerm = _mm256_mul_ps(a, colors);
  const __m256 fresh = _mm256_blend_ps(colors, a, 0x11);
  Memory memory(last);
  int32_t p = 0;
  for (; p + 2 <= count; p += 2) {
    const __m256i oldBits = load(pixels + p);
    if (memory.holds(oldBits)) {
      store(pixels + p, memory.after());
      continue;
    }
    const __m256 old = _mm256_castsi256_ps(oldBits);
    const __m256 oldAlpha = _mm256_shuffle_ps(old, old, 0);
    const __m256 i = _mm256_mul_ps(rest, oldAlpha);
    const __m256 t = _mm256_add_ps(i, a);
    const __m256 mixed = _mm256_div_ps(_mm256_add_ps(colorTerm, _mm256_mul_ps(i, old)), t);
    const __m256 empty = _mm256_cmp_ps(oldAlpha, _mm256_setzero_ps(), _CMP_EQ_OQ);
    const __m256i painted = _mm256_castps_si256(_mm256_blendv_ps(_mm256_blend_ps(mixed, t, 0x11), fresh, empty));
    memory.learn(oldBits, painted);
    store(pixels + p, painted);
  }
  memory.keepIn(last);
  return p;
}

}  // namespace

int32_t paintWhole(Pixel8* pixels, int32_t n, const Pixel8& color, Remembered& last) {
  return paintBytes(pixels, n, color, last);
}

int32_t paintWhole(Pixel16* pixels, int32_t n, const Pixel16& color, Remembered& last) {
  return paintWords(pixels, n, color, last);
}

int32_t paintWhole(Pixel32* pixels, int32_t n, const Pixel32& color, Remembered& last) {
  return paintFloats(pixels, n, color, last);
}

}  // namespace vindrel::wide_lanes

#else

namespace vindrel::wide_lanes {

bool available() {
  return false;
}

int32_t paintWhole(Pixel8*, int32_t, const Pixel8&, Remembered&) {
  return 0;
}
int32_t paintWhole(Pixel16*, int32_t, const Pixel16&, Remembered&) {
  return 0;
}
int32_t paintWhole(Pixel32*, int32_t, const Pixel32&, Remembered&) {
  return 0;
}

}  // namespace vindrel::wide_lanes

#endif
