// Painting in fours and in wider registers, against paintPixel.

#include "effect/raster/RowPainter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "effect/raster/PaintPixel.h"
#include "effect/raster/WideLanes.h"
#include "tests/support/TestCanvas.h"

namespace vindrel {
namespace {

using test::AllPixels;
using test::sameBytes;
using test::textOf;

// The division of Painter<Pixel8>, over every weight t and every sum n up to 255 * t.
TEST(RowPainterAt8Bits, cuttingAProductWithTheReciprocalDividesBytesExactly) {
  for (int32_t t = 1; t <= 255; ++t) {
    const float share = 1.0F / static_cast<float>(t);
    for (int32_t n = 0; n <= 255 * t; ++n) {
      ASSERT_EQ(static_cast<int32_t>((static_cast<float>(n) + 0.5F) * share), n / t) << n << " / " << t;
    }
  }
}

template <class Pixel>
class RowPainterAtDepth : public ::testing::Test {};
TYPED_TEST_SUITE(RowPainterAtDepth, AllPixels);

template <class Pixel, class Random>
Pixel anyPixel(Random& random, bool legal) {
  if constexpr (sizeof(Pixel) == sizeof(Pixel32)) {
    const auto channel = [&]() -> float {
      const float share = static_cast<float>(random() % 65536U) / 65535.0F;
      if (legal) return random() % 4 == 0 ? 0.0F : random() % 4 == 0 ? 1.0F : share;
      const float odd[] = {HUGE_VALF, -HUGE_VALF, std::nanf(""), -share, 1e-42F, 3e38F, 2.0F, -0.0F, share};
      return odd[random() % 9];
    };
    return {channel(), channel(), channel(), channel()};
  } else {
    using Channel = typename PixelTraits<Pixel>::Channel;
    const uint32_t most = legal ? uint32_t{PixelTraits<Pixel>::fullScale} : std::numeric_limits<Channel>::max();
    const auto channel = [&]() -> Channel {
      const auto kind = random() % 6;
      return static_cast<Channel>(kind == 0 ? 0U : kind == 1 ? most : random() % (most + 1U));
    };
    return {channel(), channel(), channel(), channel()};
  }
}

/// Bytes, but which of the values that aren't numbers comes out is nobody's business.
template <class Pixel>
bool sameValue(const Pixel& a, const Pixel& b) {
  if (sameBytes(a, b)) return true;
  if constexpr (sizeof(Pixel) == sizeof(Pixel32)) {
    const auto same = [](float x, float y) {
      return (std::isnan(x) && std::isnan(y)) || std::bit_cast<uint32_t>(x) == std::bit_cast<uint32_t>(y);
    };
    return same(a.alpha, b.alpha) && same(a.red, b.red) && same(a.green, b.green) && same(a.blue, b.blue);
  }
  return false;
}

/// Whether all are; if not, which is the first that isn't.
template <class Pixels>
::testing::AssertionResult sameValues(const Pixels& pixels, const Pixels& expected) {
  for (std::size_t i = 0; i < std::size(pixels); ++i) {
    if (sameValue(pixels[i], expected[i])) continue;
    return ::testing::AssertionFailure() << "pixel " << i << ": " << textOf(pixels[i]) << ", should be "
                                         << textOf(expected[i]);
  }
  return ::testing::AssertionSuccess();
}

lanes::FourCounts fourCounts(const int32_t (&counts)[4]) {
  lanes::FourCounts four;
  std::memcpy(&four.wide, counts, sizeof counts);
  return four;
}

TYPED_TEST(RowPainterAtDepth, paintsAsPaintPixelDoesAndNothingBeside) {
  constexpr unsigned seed = 20250302;
  std::mt19937 random(seed);
  for (int round = 0; round < 30000; ++round) {
    const bool legal = round % 3 != 0;
    const auto color = anyPixel<TypeParam>(random, legal);
    TypeParam pixels[40], expected[40];
    for (TypeParam& p : pixels) {
      p = anyPixel<TypeParam>(random, legal);
      if (random() % 2 == 0) p = random() % 2 == 0 ? TypeParam{} : pixels[0];
    }
    std::copy(pixels, pixels + 40, expected);
    int32_t counts[4];
    for (int32_t& c : counts) c = static_cast<int32_t>(random() % 3 == 0 ? 64 : random() % 65);
    RowPainter<TypeParam> painter(color);
    const auto n = static_cast<int32_t>(random() % 4 + 1);
    painter.paintUpToFour(pixels + 1, n, fourCounts(counts));
    for (int32_t i = 0; i < n; ++i) paintPixel(expected[1 + i], color, counts[i]);
    const auto whole = static_cast<int32_t>(random() % 20);
    painter.paintWhole(pixels + 19, whole);
    for (int32_t i = 0; i < whole; ++i) paintPixel(expected[19 + i], color, 64);
    ASSERT_TRUE(sameValues(pixels, expected)) << "seed " << seed << ", round " << round << ", in " << textOf(color);
  }
}

// Stretches of a few colours each, so that what is remembered comes again, and goes out of date.
template <class Pixel, class Random>
std::vector<Pixel> stretches(Random& random, std::size_t count, bool legal) {
  Pixel palette[3];
  for (Pixel& p : palette) p = random() % 4 == 0 ? Pixel{} : anyPixel<Pixel>(random, legal);
  std::vector<Pixel> pixels;
  while (pixels.size() < count) {
    const Pixel p = random() % 5 == 0 ? anyPixel<Pixel>(random, legal) : palette[random() % 3];
    pixels.insert(pixels.end(), random() % 24 + 1, p);
  }
  pixels.resize(count);
  return pixels;
}

TYPED_TEST(RowPainterAtDepth, paintsLongStretchesAsPaintPixelDoes) {
  constexpr unsigned seed = 20250307;
  std::mt19937 random(seed);
  for (int round = 0; round < 6000; ++round) {
    const bool legal = round % 3 != 0;
    const auto color = anyPixel<TypeParam>(random, legal);
    RowPainter<TypeParam> painter(color);
    for (int row = 0; row < 3; ++row) {
      std::vector<TypeParam> pixels = stretches<TypeParam>(random, 120, legal);
      std::vector<TypeParam> expected = pixels;
      const std::size_t begin = random() % 9, n = random() % 100;
      painter.paintWhole(pixels.data() + begin, static_cast<int32_t>(n));
      for (std::size_t i = 0; i < n; ++i) paintPixel(expected[begin + i], color, 64);
      ASSERT_TRUE(sameValues(pixels, expected)) << "seed " << seed << ", round " << round << ", in " << textOf(color);
    }
  }
}

// The wide painter by itself; the fours are reached by the test above with stretches too short for it. A processor
// without the wide registers would stop at its first instruction: there the fours, which paint in its place, are tried
// in its place.
TYPED_TEST(RowPainterAtDepth, hasAPainterOfLongStretchesThatPaintsAsPaintPixelDoes) {
  const auto paint = [](TypeParam* pixels, int32_t n, const TypeParam& color, wide_lanes::Remembered& last) {
    if (wide_lanes::available()) return wide_lanes::paintWhole(pixels, n, color, last);
    RowPainter<TypeParam>(color).paintWhole(pixels, n);
    return n;
  };
  constexpr unsigned seed = 20250308;
  std::mt19937 random(seed);
  int64_t painted = 0;
  for (int round = 0; round < 20000; ++round) {
    const bool legal = round % 4 != 0;
    const auto color = anyPixel<TypeParam>(random, legal);
    if (!lanes::Painter<TypeParam>::suits(color) || color.alpha == 0) continue;
    wide_lanes::Remembered last;
    for (int row = 0; row < 3; ++row) {
      std::vector<TypeParam> pixels = stretches<TypeParam>(random, 40, legal);
      std::vector<TypeParam> expected = pixels;
      const auto n = static_cast<int32_t>(random() % 41);
      const int32_t done = paint(pixels.data(), n, color, last);
      ASSERT_LE(done, n);
      ASSERT_GT(done, legal ? n - 8 : -1) << round;
      painted += done;
      for (int32_t i = 0; i < done; ++i) paintPixel(expected[static_cast<std::size_t>(i)], color, 64);
      ASSERT_TRUE(sameValues(pixels, expected)) << "seed " << seed << ", round " << round << ", in " << textOf(color);
    }
  }
  EXPECT_GT(painted, 500000);
}

TEST(RowPainterAt16Bits, cutsTheOpacityOfEveryAlphaAndCountAsWholeNumbersAre) {
  for (int32_t alpha = 0; alpha <= 32768; ++alpha) {
    const RowPainter<Pixel16> painter({static_cast<uint16_t>(alpha), 1, 2, 3});
    for (int32_t count = 0; count <= 64; count += 4) {
      const int32_t counts[4] = {count, std::min(count + 1, 64), std::min(count + 2, 64), std::min(count + 3, 64)};
      Pixel16 pixels[4] = {};
      painter.paintFour(pixels, fourCounts(counts));
      for (int i = 0; i < 4; ++i) ASSERT_EQ(pixels[i].alpha, alpha * counts[i] / 64) << alpha << ' ' << counts[i];
    }
  }
}

// Pixels of more than full alpha beside such as are kept and replaced, in every place of a four.
TEST(RowPainterAt16Bits, paintsPixelsOfMoreThanFullAlphaAsPaintPixelDoes) {
  constexpr unsigned seed = 20250310;
  std::mt19937 random(seed);
  const auto word = [&random](uint32_t from, uint32_t to) {
    return static_cast<uint16_t>(from + random() % (to - from + 1));
  };
  for (int round = 0; round < 40000; ++round) {
    const uint16_t alpha = random() % 2 == 0 ? uint16_t{32768} : word(0, 32768);
    const Pixel16 color{alpha, word(0, 65535), word(0, 65535), word(0, 65535)};
    Pixel16 pixels[4], expected[4];
    int32_t counts[4];
    for (int i = 0; i < 4; ++i) {
      const auto kind = random() % 3;
      const uint16_t old = kind == 0 ? uint16_t{0} : kind == 1 ? word(1, 32768) : word(32769, 65535);
      pixels[i] = expected[i] = {old, word(0, 65535), word(0, 65535), word(0, 65535)};
      counts[i] = random() % 3 == 0 ? 0 : random() % 2 == 0 ? 64 : static_cast<int32_t>(random() % 65);
    }
    RowPainter<Pixel16>(color).paintFour(pixels, fourCounts(counts));
    for (int i = 0; i < 4; ++i) {
      paintPixel(expected[i], color, counts[i]);
      ASSERT_EQ(pixels[i], expected[i]) << "seed " << seed << ", round " << round << ", pixel " << i;
    }
  }
}

// Both divisions of 16 bits, where the quotient is just whole, or just not yet: an old channel is sought for which the
// sum leaves the least or the greatest rest, or nearly.
TEST(RowPainterAt16Bits, dividesExactlyAroundWholeQuotients) {
  constexpr unsigned seed = 20250309;
  std::mt19937 random(seed);
  for (int round = 0; round < 40000; ++round) {
    const auto a = static_cast<uint32_t>(random() % 32767 + 1);
    const auto oldAlpha = static_cast<uint32_t>(random() % 32768 + 1);
    const uint32_t i = ((32768 - a) * oldAlpha) >> 15U;
    const uint32_t t = a + i;
    const auto red = static_cast<uint32_t>(random() % 32769);
    uint32_t least = t, greatest = 0, atLeast = 0, atGreatest = 0;
    for (int attempt = 0; attempt < 60; ++attempt) {
      const auto old = static_cast<uint32_t>(random() % 32769);
      const uint32_t rest = (red * a + old * i) % t;
      if (rest < least) least = rest, atLeast = old;
      if (rest >= greatest) greatest = rest, atGreatest = old;
    }
    const auto word = [](uint32_t v) { return static_cast<uint16_t>(v); };
    const Pixel16 color{word(a), word(red), word(red), 65535};
    std::vector<Pixel16> pixels(24, {word(oldAlpha), word(atLeast), word(atGreatest), 65535});
    std::vector<Pixel16> expected = pixels;
    for (Pixel16& p : expected) paintPixel(p, color, 64);
    RowPainter<Pixel16> painter(color);
    painter.paintWhole(pixels.data(), 16);
    painter.paintWhole(pixels.data() + 16, 8);
    ASSERT_EQ(pixels, expected) << "seed " << seed << ", round " << round << ": " << textOf(pixels[0]) << ' '
                                << textOf(pixels[20]) << ", should be " << textOf(expected[0]);
  }
}

}  // namespace
}  // namespace vindrel
