// What is done in vector registers, against the plain form of each.

#include "effect/raster/Lanes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "effect/pixel/Truncate.h"
#include "effect/raster/RowPainter.h"
#include "effect/raster/WideLanes.h"
#include "tests/raster/TestCanvas.h"

namespace vindrel {
namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

TEST(Lanes, aSpanIsTheLesserAndTheGreaterSideCutTowardZero) {
  const double numbers[] = {0.0,      -0.0,      0.5,  -0.5,         0.49999999999999994, 1.5,  -1.5,
                            7.25,     1e9,       -1e9, 2147483647.0, -2147483648.5,       3e10, -3e10,
                            infinite, -infinite, 4.0,  notANumber};
  for (const double a : numbers) {
    for (const double b : numbers) {
      int32_t span[2];
      lanes::SidePair(a, b, 0.0, 0.0).storeSpan(span);
      const bool inOrder = b > a;
      EXPECT_EQ(span[0], truncateToInt32((inOrder ? a : b) + 0.5)) << a << ' ' << b;
      EXPECT_EQ(span[1], truncateToInt32((inOrder ? b : a) - 0.5)) << a << ' ' << b;
    }
    EXPECT_EQ(lanes::truncated(a), truncateToInt32(a)) << a;
  }
}

TEST(Lanes, aStepAddsEachSlopeOnce) {
  lanes::SidePair sides(0.1, -7.3, 0.2, -1e-3);
  double a = 0.1, b = -7.3;
  for (int n = 0; n < 1000; ++n) {
    sides.step();
    a += 0.2;
    b += -1e-3;
  }
  EXPECT_EQ(sides.first(), a);
  EXPECT_EQ(sides.second(), b);
}

// An odd and an even number of vertices, level sides among them.
TEST(Lanes, placingVerticesAndBeginningTheirSidesIsWhatEachWouldGetByItself) {
  std::mt19937_64 random(20250304);
  const auto number = [&random](double from, double to) {
    return from + (to - from) * static_cast<double>(random() >> 11U) * 0x1p-53;
  };
  for (int round = 0; round < 2000; ++round) {
    const auto count = static_cast<int32_t>(2 + random() % 12);
    double x[20] = {}, y[20] = {}, placedX[20] = {}, placedY[20] = {}, slope[20] = {};
    int32_t row[20] = {};
    for (int32_t k = 0; k < count; ++k) {
      x[k] = number(-50.0, 50.0);
      y[k] = k > 0 && random() % 5 == 0 ? y[k - 1] : number(-50.0, 50.0);
    }
    const double toX = number(-3000.0, 3000.0), toY = number(-3000.0, 3000.0);
    lanes::placeVertices(x, y, count, toX, toY, placedX, placedY, row);
    double sideX[20];
    std::copy(placedX, placedX + 20, sideX);
    lanes::startSides(count, sideX, placedY, row, slope);
    for (int32_t k = 0; k < count; ++k) {
      ASSERT_EQ(placedX[k], (x[k] + toX) * 8.0);
      ASSERT_EQ(placedY[k], (y[k] + toY) * 8.0);
      ASSERT_EQ(row[k], truncateToInt32(placedY[k] + 0.5));
    }
    for (int32_t k = 0; k + 1 < count; ++k) {
      const double dy = placedY[k + 1] - placedY[k];
      if (dy == 0.0) continue;
      const double expected = (placedX[k + 1] - placedX[k]) / dy;
      ASSERT_EQ(slope[k], expected);
      ASSERT_EQ(sideX[k], ((row[k] + 0.5) - placedY[k]) * expected + placedX[k]);
    }
  }
}

TEST(Lanes, onlyEndsAreAskedWhetherTheyLieBeyondALimit) {
  int32_t runs[16] = {INT32_MAX, 5, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0, -1, -1, -1};
  EXPECT_FALSE(lanes::anyEndsBeyond(runs, 9));
  for (int slot = 0; slot < 8; ++slot) {
    int32_t with[16];
    std::copy(runs, runs + 16, with);
    with[2 * slot + 1] = 10;
    EXPECT_TRUE(lanes::anyEndsBeyond(with, 9)) << slot;
  }
}

int32_t plainCount(const int32_t* runs, int32_t pixel) {
  int32_t count = 0;
  for (int32_t column = pixel * 8; column < pixel * 8 + 8; ++column) {
    for (int slot = 0; slot < 8; ++slot) count += runs[2 * slot] <= column && column <= runs[2 * slot + 1];
  }
  return count;
}

// Windows at the left edge and far to the right, runs of every kind, and ends of the 32-bit range.
TEST(Lanes, countsAndReachAreThoseOfTheColumnsOneByOne) {
  constexpr unsigned seed = 20250301;
  std::mt19937 random(seed);
  const auto pick = [&random](int32_t from, int32_t to) {
    return from + static_cast<int32_t>(random() % static_cast<uint32_t>(to - from + 1));
  };
  for (int round = 0; round < 20000; ++round) {
    const int32_t left = pick(0, 2) == 0 ? 4080 * pick(1, 60000) : 0;
    const int32_t width = pick(0, 3) == 0 ? 4080 : pick(1, 60);
    const int32_t first = left * 8;
    const int32_t wide = pick(0, 1) == 0 ? 200 : width * 8;
    int32_t runs[16];
    for (int slot = 0; slot < 8; ++slot) {
      int32_t& start = runs[2 * slot];
      int32_t& end = runs[2 * slot + 1];
      start = first + pick(-20, wide);
      end = start - 1 + pick(0, wide);
      const int32_t odd = pick(0, 30);
      if (odd == 0) start = end = -1;
      if (odd == 1) start = INT32_MIN;
      if (odd == 2) end = INT32_MIN;
      if (odd == 3) end = INT32_MAX - 8;
      if (odd == 4) start = INT32_MAX - 8, end = INT32_MAX - 9;
    }
    const lanes::Slots slots(lanes::loadRuns(runs), left, width);
    const lanes::SlotReach reach = lanes::reachOf(slots);
    const int32_t from = pick(0, width - 1);
    const lanes::Strip strip(slots, from);
    int32_t counts[16];
    for (int32_t four = 0; four < 4; ++four) strip.counts(four).storeTo(counts + 4 * four);
    for (int32_t i = 0; i < 16 && from + i < width; ++i) {
      const int32_t expected = plainCount(runs, left + from + i);
      ASSERT_EQ(counts[i], expected) << "seed " << seed << ", round " << round << ", pixel " << i;
      const int32_t column = (from + i) * 8;
      if (expected > 0) {
        ASSERT_LT(reach.leastStart, column + 8) << round;
        ASSERT_GT(reach.greatestEnd, column) << round;
      }
      ASSERT_EQ(column >= reach.greatestStart && column + 8 <= reach.leastEnd, expected == 64) << round;
    }
  }
}

/// All runs as (start, end), sorted, since their order is the lanes' own.
std::vector<std::pair<int32_t, int32_t>> sorted(const lanes::EightRuns& runs) {
  int32_t start[8], end[8];
  std::memcpy(start, runs.start, sizeof start);
  std::memcpy(end, runs.end, sizeof end);
  std::vector<std::pair<int32_t, int32_t>> result;
  result.reserve(8);
  for (int i = 0; i < 8; ++i) result.emplace_back(start[i], end[i]);
  std::sort(result.begin(), result.end());
  return result;
}

TEST(Lanes, theRunsBetweenTwoSidesAreTheSpansOfThePair) {
  std::mt19937_64 random(20250305);
  for (int round = 0; round < 5000; ++round) {
    double first[8], second[8];
    int32_t spans[16];
    for (int i = 0; i < 8; ++i) {
      first[i] = (static_cast<double>(random() % 4000) - 500.0) / 8.0;
      second[i] = random() % 6 == 0 ? first[i] : (static_cast<double>(random() % 4000) - 500.0) / 8.0;
      if (random() % 50 == 0) second[i] = 3e10;
      lanes::SidePair(first[i], second[i], 0.0, 0.0).storeSpan(spans + 2 * i);
    }
    ASSERT_EQ(sorted(lanes::runsBetween(first, second)), sorted(lanes::loadRuns(spans))) << round;
  }
}

TEST(Lanes, countsOfAStripAreThoseOfTheColumnsOneByOne) {
  std::mt19937 random(20250306);
  const auto pick = [&random](int32_t from, int32_t to) {
    return from + static_cast<int32_t>(random() % static_cast<uint32_t>(to - from + 1));
  };
  for (int round = 0; round < 20000; ++round) {
    const int32_t firstPixel = pick(0, 5000);
    int32_t runs[16];
    for (int slot = 0; slot < 8; ++slot) {
      int32_t& start = runs[2 * slot];
      int32_t& end = runs[2 * slot + 1];
      start = firstPixel * 8 + pick(-20, 140);
      end = start + pick(-3, 140);
      const int32_t odd = pick(0, 20);
      if (odd == 0) start = 0, end = -1;
      if (odd == 1) start -= 40000;
      if (odd == 2) end += 40000;
      if (odd == 3) start += 40000, end += 40000;
    }
    const lanes::Strip strip(lanes::loadRuns(runs), firstPixel * 8);
    for (int32_t four = 0; four < 4; ++four) {
      int32_t counts[4];
      strip.counts(four).storeTo(counts);
      for (int32_t i = 0; i < 4; ++i) {
        ASSERT_EQ(counts[i], plainCount(runs, firstPixel + 4 * four + i)) << "round " << round << ", pixel " << i;
      }
    }
  }
}

// The division of Painter<Pixel8>, over every weight t and every sum n up to 255 * t.
TEST(Lanes, cuttingAProductWithTheReciprocalDividesBytesExactly) {
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
    for (int32_t i = 0; i < 40; ++i) {
      ASSERT_TRUE(sameValue(pixels[i], expected[i])) << "seed " << seed << ", round " << round << ", pixel " << i
                                                     << ": " << text(pixels[i]) << ", should be " << text(expected[i]);
    }
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
      for (std::size_t i = 0; i < pixels.size(); ++i) {
        ASSERT_TRUE(sameValue(pixels[i], expected[i]))
            << "seed " << seed << ", round " << round << ", pixel " << i << ": " << text(pixels[i]) << ", should be "
            << text(expected[i]) << ", in " << text(color);
      }
    }
  }
}

// The wide painter by itself; the fours are reached by the test above with stretches too short for it. A processor
// without the wide registers would stop at the first call, so there is nothing to hold there: all its stretches go by
// the fours, and the test above holds those.
TYPED_TEST(RowPainterAtDepth, hasAWidePainterThatPaintsAsPaintPixelDoes) {
  if (!wide_lanes::available()) GTEST_SKIP() << "no AVX2: all stretches go by fours, nothing calls this painter";
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
      const int32_t done = wide_lanes::paintWhole(pixels.data(), n, color, last);
      ASSERT_LE(done, n);
      ASSERT_GT(done, legal ? n - 8 : -1) << round;
      painted += done;
      for (int32_t i = 0; i < done; ++i) paintPixel(expected[static_cast<std::size_t>(i)], color, 64);
      for (std::size_t i = 0; i < pixels.size(); ++i) {
        ASSERT_TRUE(sameValue(pixels[i], expected[i]))
            << "seed " << seed << ", round " << round << ", pixel " << i << ": " << text(pixels[i]) << ", should be "
            << text(expected[i]) << ", in " << text(color);
      }
    }
  }
  EXPECT_GT(painted, 500000);
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
    ASSERT_EQ(pixels, expected) << "seed " << seed << ", round " << round << ": " << text(pixels[0]) << ' '
                                << text(pixels[20]) << ", should be " << text(expected[0]);
  }
}

}  // namespace
}  // namespace vindrel
