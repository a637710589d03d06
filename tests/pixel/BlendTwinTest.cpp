// The blend modes against plain twins: exact fractions, floored once, over all pairs of 8-bit channels; and in float
// step by step, each step rounded to single precision by itself.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "effect/pixel/Blend.h"

namespace vindrel {
namespace {

int64_t floorDivide(int64_t numerator, int64_t denominator) {
  const int64_t quotient = numerator / denominator;
  return numerator % denominator < 0 ? quotient - 1 : quotient;
}

/// A mode for opaque source and pixel, written as fractions. `unit` is what a product of two channels is divided by
/// (256 or 32768), `full` the largest channel. Channels inside the full scale only; Soft Light is not among them.
int64_t twinMode(int32_t code, int64_t d, int64_t s, int64_t full, int64_t unit) {
  const int64_t doubled = floorDivide(2 * d * s, unit);
  const int64_t doubledScreen = full - floorDivide(2 * (full - d) * (full - s), unit);
  switch (code) {
    case addBlend:
      return std::min(d + floorDivide(s * full, unit), full);
    case subtractBlend:
      return std::max<int64_t>(d - floorDivide(s * full, unit), 0);
    case multiplyBlend:
      return floorDivide(d * s, unit);
    case screenBlend:
      return floorDivide(full * d + full * s - d * s, unit);
    case overlayBlend:
      return 2 * d <= full ? doubled : doubledScreen;
    case hardLightBlend:
      return 2 * s <= full ? doubled : doubledScreen;
    case darkenBlend:
      return d < s ? d : s;
    case lightenBlend:
      return d < s ? s : d;
    case differenceBlend:
      return d < s ? s - d : d - s;
    case exclusionBlend:
      return floorDivide(full * d + full * s - 2 * d * s, unit);
    default:
      return s;
  }
}

const char* const modeNames[] = {"",           "Normal",     "Add",    "Subtract", "Multiply",   "Screen",   "Overlay",
                                 "Hard Light", "Soft Light", "Darken", "Lighten",  "Difference", "Exclusion"};

class BlendMode8 : public testing::TestWithParam<int32_t> {};

TEST_P(BlendMode8, agreesWithItsTwinForAllPairsOfChannels) {
  for (int d = 0; d < 256; ++d) {
    for (int s = 0; s < 256; ++s) {
      Pixel8 pixel{255, static_cast<uint8_t>(d), static_cast<uint8_t>(s), 0};
      blendPixel(pixel, Pixel8{255, static_cast<uint8_t>(s), static_cast<uint8_t>(d), 0}, GetParam());
      ASSERT_EQ(pixel.red, twinMode(GetParam(), d, s, 255, 256)) << modeNames[GetParam()] << " d " << d << " s " << s;
      ASSERT_EQ(pixel.green, twinMode(GetParam(), s, d, 255, 256)) << modeNames[GetParam()] << " d " << s << " s " << d;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Exact, BlendMode8, testing::Values(1, 2, 3, 4, 5, 6, 7, 9, 10, 11, 12));

class BlendMode16 : public testing::TestWithParam<int32_t> {};

TEST_P(BlendMode16, agreesWithItsTwinForRandomAndExtremeChannels) {
  constexpr unsigned seed = 51329;
  std::mt19937 random(seed);
  const auto channel = [&] {
    constexpr uint16_t extremes[] = {0, 1, 16383, 16384, 16385, 32767, 32768};
    return random() % 4U == 0 ? extremes[random() % 7U] : static_cast<uint16_t>(random() % 32769U);
  };
  for (int round = 0; round < 100000; ++round) {
    const uint16_t d = channel();
    const uint16_t s = channel();
    Pixel16 pixel{32768, 0, d, s};
    blendPixel(pixel, Pixel16{32768, 0, s, d}, GetParam());
    ASSERT_EQ(pixel.green, twinMode(GetParam(), d, s, 32768, 32768))
        << modeNames[GetParam()] << " d " << d << " s " << s << ", seed " << seed;
    ASSERT_EQ(pixel.blue, twinMode(GetParam(), s, d, 32768, 32768))
        << modeNames[GetParam()] << " d " << s << " s " << d << ", seed " << seed;
  }
}

INSTANTIATE_TEST_SUITE_P(Exact, BlendMode16, testing::Values(1, 2, 3, 4, 5, 6, 7, 9, 10, 11, 12));

/// Soft Light in more digits than the code under test has.
long double twinSoftLight(long double A, long double B) {
  long double T = std::sqrt(A) - A;
  if (A < 0.125L) T = (A - A * A) * (3 - 8 * A);
  if (B < 0.5L) T = A - A * A;
  return T * (2 * B - 1) + A;
}

TEST(BlendSoftLight8, agreesWithItsTwinForAllPairsOfChannels) {
  for (int d = 0; d < 256; ++d) {
    for (int s = 0; s < 256; ++s) {
      const long double exact = twinSoftLight(d / 255.0L, s / 255.0L) * 255.0L;
      const int result = softLightChannel<Pixel8>(static_cast<uint8_t>(d), static_cast<uint8_t>(s));
      const long double nearest = std::round(exact);
      // Next to a whole level the last bits of a double decide; anywhere else the floor is one value.
      if (std::abs(exact - nearest) < 1e-10L) {
        ASSERT_TRUE(result == static_cast<int>(nearest) || result == static_cast<int>(nearest) - 1)
            << "d " << d << " s " << s;
      } else {
        ASSERT_EQ(result, static_cast<int>(std::floor(exact))) << "d " << d << " s " << s;
      }
    }
  }
}

TEST(NormalOver8, agreesWithItsTwinForAllColorsAndSourceAlphas) {
  for (const int P : {0, 1, 128, 254, 255}) {
    for (int a = 1; a < 255; ++a) {
      const int64_t i = floorDivide(int64_t{255 - a} * P, 256);
      for (int s = 0; s < 256; s += 3) {
        for (int d = 0; d < 256; d += 5) {
          Pixel8 pixel{static_cast<uint8_t>(P), static_cast<uint8_t>(d), static_cast<uint8_t>(255 - d), 0};
          normalOver(pixel, Pixel8{static_cast<uint8_t>(a), static_cast<uint8_t>(s), static_cast<uint8_t>(s), 255});
          ASSERT_EQ(pixel.red, (s * a + d * i) / (i + a)) << "P " << P << " a " << a << " s " << s << " d " << d;
          ASSERT_EQ(pixel.green, (s * a + (255 - d) * i) / (i + a)) << "P " << P << " a " << a << " s " << s;
          ASSERT_EQ(pixel.blue, (255 * a) / (i + a)) << "P " << P << " a " << a;
          ASSERT_EQ(pixel.alpha, P);
        }
      }
    }
  }
}

TEST(NormalOver16, agreesWithItsTwinForRandomPixels) {
  constexpr unsigned seed = 9907;
  std::mt19937 random(seed);
  const auto channel = [&](uint32_t low) { return static_cast<uint16_t>(low + random() % (32769U - low)); };
  for (int round = 0; round < 100000; ++round) {
    const Pixel16 before{channel(0), channel(0), channel(0), channel(0)};
    const Pixel16 source{channel(1), channel(0), channel(0), channel(0)};
    Pixel16 pixel = before;
    normalOver(pixel, source);
    const int64_t a = source.alpha;
    const int64_t i = (32768 - a) * before.alpha / 32768;
    const auto mix = [=](int64_t s, int64_t d) { return (s * a + d * i) / (a + i); };
    ASSERT_EQ(pixel.red, mix(source.red, before.red)) << "seed " << seed << ", round " << round;
    ASSERT_EQ(pixel.green, mix(source.green, before.green)) << "seed " << seed << ", round " << round;
    ASSERT_EQ(pixel.blue, mix(source.blue, before.blue)) << "seed " << seed << ", round " << round;
    ASSERT_EQ(pixel.alpha, before.alpha);
  }
}

/// The single-precision number nearest to one sum, product or quotient of two such numbers: a double holds it with so
/// many bits to spare that rounding twice makes no difference.
double single(double number) {
  return static_cast<double>(static_cast<float>(number));
}

/// A float mode for one channel, before the source's alpha weighs it. Soft Light is not among them.
double twinFloatMode(int32_t code, double d, double s) {
  const double doubled = single(single(d * s) * 2.0);
  const double screened = single(single(1.0 - d) * single(1.0 - s));
  const double doubledScreen = single(1.0 - single(screened * 2.0));
  switch (code) {
    case multiplyBlend:
      return std::fmin(single(d * s), 1.0);
    case screenBlend:
      return single(1.0 - screened);
    case overlayBlend:
      return std::fmin(d > 0.5 ? doubledScreen : doubled, 1.0);
    case hardLightBlend:
      return s > 0.5 ? doubledScreen : doubled;
    case darkenBlend:
      return std::fmin(d, s);
    case lightenBlend:
      return std::fmax(d, s);
    case differenceBlend:
      return std::fabs(single(d - s));
    case exclusionBlend:
      return single(single(single(1.0 - d) * s) + single(single(1.0 - s) * d));
    default:
      return s;
  }
}

/// One channel of a whole blend in float: `a` and `P` are the alphas of the source and of the pixel.
double twinFloatBlend(int32_t code, double d, double s, double a, double P) {
  if (code == addBlend) return std::fmin(single(single(a * s) + d), 1.0);
  if (code == subtractBlend) return std::fmax(single(d - single(a * s)), 0.0);
  const double result = twinFloatMode(code, d, s);
  if (a == 1.0) return result;
  const double i = single(single(1.0 - a) * P);
  return single(single(single(result * a) + single(d * i)) / single(i + a));
}

class BlendModeFloat : public testing::TestWithParam<int32_t> {};

TEST_P(BlendModeFloat, isRoundedToSinglePrecisionAtEveryStep) {
  constexpr unsigned seed = 60617;
  std::mt19937 random(seed);
  const auto channel = [&](double low, double high) {
    return static_cast<float>(low + (high - low) * (static_cast<double>(random()) / 4294967296.0));
  };
  for (int round = 0; round < 50000; ++round) {
    const float alpha = random() % 4U == 0 ? 1.0F : channel(0.001, 1.0);
    const Pixel32 source{alpha, channel(0.0, 1.0), channel(-0.5, 3.0), channel(0.4, 0.6)};
    const Pixel32 before{channel(0.0, 1.0), channel(0.0, 1.0), channel(-0.5, 3.0), channel(0.4, 0.6)};
    Pixel32 pixel = before;
    blendPixel(pixel, source, GetParam());
    const auto expected = [&](float d, float s) {
      return static_cast<float>(twinFloatBlend(GetParam(), static_cast<double>(d), static_cast<double>(s),
                                               static_cast<double>(alpha), static_cast<double>(before.alpha)));
    };
    ASSERT_EQ(pixel.red, expected(before.red, source.red)) << modeNames[GetParam()] << ", round " << round;
    ASSERT_EQ(pixel.green, expected(before.green, source.green)) << modeNames[GetParam()] << ", round " << round;
    ASSERT_EQ(pixel.blue, expected(before.blue, source.blue)) << modeNames[GetParam()] << ", round " << round;
    ASSERT_EQ(pixel.alpha, before.alpha);
  }
}

INSTANTIATE_TEST_SUITE_P(StepByStep, BlendModeFloat, testing::Values(1, 2, 3, 4, 5, 6, 7, 9, 10, 11, 12));

}  // namespace
}  // namespace vindrel
