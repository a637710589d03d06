#include "cli/pictures/HalfFloats.h"

#include <half.h>

#if defined(__x86_64__)
#include <cpuid.h>
#include <immintrin.h>
#endif

namespace cli {
namespace {

void oneByOne(std::span<const float> floats, uint16_t* halves) {
  for (const float number : floats) *halves++ = imath_float_to_half(number);
}

#if defined(__x86_64__)
/// Eight at a time by the processor, which rounds alike.
[[gnu::target("avx,f16c")]] void eightByEight(std::span<const float> floats, uint16_t* halves) {
  std::size_t i = 0;
  for (; i + 8 <= floats.size(); i += 8) {
    const __m128i packed = _mm256_cvtps_ph(_mm256_loadu_ps(floats.data() + i), _MM_FROUND_TO_NEAREST_INT);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(halves + i), packed);
  }
  oneByOne(floats.subspan(i), halves + i);
}

/// Not every compiler has a name for the conversions, so the processor is asked for them by its own number.
bool convertsHalves() {
  unsigned a = 0, b = 0, c = 0, d = 0;
  return __builtin_cpu_supports("avx") != 0 && __get_cpuid(1, &a, &b, &c, &d) != 0 && (c & bit_F16C) != 0;
}
#endif

}  // namespace

void toHalves(std::span<const float> floats, uint16_t* halves) {
#if defined(__x86_64__)
  static const bool byProcessor = convertsHalves();
  if (byProcessor) {
    eightByEight(floats, halves);
    return;
  }
#endif
  oneByOne(floats, halves);
}

}  // namespace cli
