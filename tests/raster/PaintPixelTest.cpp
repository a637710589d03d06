#include "effect/raster/PaintPixel.h"
#include "tests/support/TestCanvas.h"

#include <gtest/gtest.h>

#include <limits>

namespace vindrel {
namespace {

using test::AllPixels;
using test::opaqueRed;

template <class Pixel>
Pixel painted(Pixel pixel, const Pixel& color, int32_t count) {
  paintPixel(pixel, color, count);
  return pixel;
}

template <class Pixel>
class PaintPixelAtDepth : public ::testing::Test {};
TYPED_TEST_SUITE(PaintPixelAtDepth, AllPixels);

TYPED_TEST(PaintPixelAtDepth, aWholePixelInFullOpacityIsReplaced) {
  const TypeParam red = opaqueRed<TypeParam>();
  EXPECT_EQ(painted(TypeParam{1, 1, 1, 1}, red, 64), red);
}

TYPED_TEST(PaintPixelAtDepth, aCountOfZeroPaintsNothing) {
  const TypeParam old{1, 1, 0, 1};
  EXPECT_EQ(painted(old, opaqueRed<TypeParam>(), 0), old);
}

TYPED_TEST(PaintPixelAtDepth, aColorWithoutOpacityPaintsNothing) {
  const TypeParam old{1, 1, 0, 1};
  TypeParam clear = opaqueRed<TypeParam>();
  clear.alpha = 0;
  EXPECT_EQ(painted(old, clear, 64), old);
}

TYPED_TEST(PaintPixelAtDepth, theColorOfAnEmptyPixelNeverEnters) {
  TypeParam expected = opaqueRed<TypeParam>();
  expected.alpha = static_cast<decltype(expected.alpha)>(expected.alpha / 2);  // 127, 16384, 0.5
  EXPECT_EQ(painted(TypeParam{0, 0, 1, 1}, opaqueRed<TypeParam>(), 32), expected);
}

TYPED_TEST(PaintPixelAtDepth, alphaNeverExceedsFullScale) {
  using Channel = typename PixelTraits<TypeParam>::Channel;
  constexpr Channel full = PixelTraits<TypeParam>::fullScale;
  for (int oldStep = 0; oldStep <= 32; ++oldStep) {
    for (int step = 0; step <= 32; ++step) {
      for (int32_t count = 0; count <= 64; ++count) {
        const auto old = static_cast<Channel>(full * static_cast<Channel>(oldStep) / 32);
        const auto alpha = static_cast<Channel>(full * static_cast<Channel>(step) / 32);
        const TypeParam result = painted(TypeParam{old, full, full, full}, TypeParam{alpha, full, full, full}, count);
        ASSERT_LE(result.alpha, full) << +old << ' ' << +alpha << ' ' << count;
        ASSERT_GE(result.alpha, 0) << +old << ' ' << +alpha << ' ' << count;
      }
    }
  }
}

TEST(PaintPixel8, halfAPixelHasAnOpacityOf127) {
  EXPECT_EQ(painted(Pixel8{}, Pixel8{255, 10, 20, 30}, 32), (Pixel8{127, 10, 20, 30}));
}

TEST(PaintPixel8, softEdgesOfAFaintDotAreLost) {
  const Pixel8 old{200, 1, 2, 3};
  EXPECT_EQ(painted(old, Pixel8{1, 255, 255, 255}, 32), old);
}

// i = (127 * 128) >> 8 = 63, t = 128 + 63. Red: (200 * 128 + 100 * 63) / 191 = 31900 / 191 = 167.01...
TEST(PaintPixel8, aDotOverAnIdenticalHalfDotEndsAt191) {
  EXPECT_EQ(painted(Pixel8{128, 100, 0, 255}, Pixel8{128, 200, 0, 255}, 64), (Pixel8{191, 167, 0, 255}));
}

// i = (127 * 255) >> 8 = 126, not 127.
TEST(PaintPixel8, an8BitPixelUnderHalfADotEndsOneLevelShort) {
  EXPECT_EQ(painted(Pixel8{255, 0, 0, 0}, Pixel8{128, 0, 0, 0}, 64).alpha, 254);
}

// a = 64, i = (191 * 255) >> 8 = 190, t = 254: (10 * 64 + 99 * 190) / 254 = 19450 / 254 = 76.57...
TEST(PaintPixel8, channelsAreCutAndNotRounded) {
  EXPECT_EQ(painted(Pixel8{255, 99, 0, 0}, Pixel8{64, 10, 0, 0}, 64).red, 76);
}

TEST(PaintPixel16, fullOpacityIs32768) {
  EXPECT_EQ(painted(Pixel16{5, 5, 5, 5}, Pixel16{32768, 1, 2, 3}, 64), (Pixel16{32768, 1, 2, 3}));
}

// i = (16384 * 32768) >> 15 = 16384, t = 32768: red (32768 * 16384) / 32768, blue (3 * 16384 + 4 * 16384) / 32768
// = 3.5.
TEST(PaintPixel16, halfADotOverAFullPixelStaysFull) {
  EXPECT_EQ(painted(Pixel16{32768, 0, 8, 4}, Pixel16{16384, 32768, 8, 3}, 64), (Pixel16{32768, 16384, 8, 3}));
}

// a = trunc(1000 * 21 / 64) = 328; i = (32440 * 20000) >> 15 = 19799; t = 20127.
TEST(PaintPixel16, theOpacityIsCutToALevel) {
  EXPECT_EQ(painted(Pixel16{20000, 0, 0, 0}, Pixel16{1000, 0, 0, 0}, 21).alpha, 20127);
}

TEST(PaintPixel32, colorsBeyondTheRangeGoThrough) {
  EXPECT_EQ(painted(Pixel32{1.0F, 0.5F, -1.0F, 0.0F}, Pixel32{0.5F, 2.5F, -3.0F, 1.0F}, 64),
            (Pixel32{1.0F, 1.5F, -2.0F, 0.5F}));
}

// a = 0.25, i = 0.75 * 0.5, t = 0.625; red (0.25 * 1 + 0.375 * 0) / 0.625.
TEST(PaintPixel32, colorsStayStraightByTheNewWeight) {
  EXPECT_EQ(painted(Pixel32{0.5F, 0.0F, 0.0F, 0.0F}, Pixel32{0.5F, 1.0F, 0.0F, 0.0F}, 32),
            (Pixel32{0.625F, 0.25F / 0.625F, 0.0F, 0.0F}));
}

// 25 * 0.1F is 2.5000000372..., nearer to 2.5F than to the next float.
TEST(PaintPixel32, theWeightedOpacityIsASingleFloat) {
  EXPECT_EQ(painted(Pixel32{}, Pixel32{0.1F, 0.0F, 0.0F, 0.0F}, 25).alpha, 0.0390625F);
}

// 1 - a is rounded to float before it meets the old alpha: 1 - 2^-30 becomes 1, so nothing of the old weight is lost.
TEST(PaintPixel32, everyStepIsRoundedToFloat) {
  const Pixel32 result = painted(Pixel32{0.75F, 0.5F, 0.0F, 0.0F}, Pixel32{0x1p-30F, 1.0F, 0.0F, 0.0F}, 64);
  EXPECT_EQ(result.alpha, 0.75F);
  EXPECT_EQ(result.red, 0.5F);
}

TEST(PaintPixel32, onlyAFiniteOpacityPaintsNothingAtACountOfZero) {
  EXPECT_TRUE(emptyCountPaintsNothing(Pixel32{0.5F, 0.0F, 0.0F, 0.0F}));
  EXPECT_FALSE(emptyCountPaintsNothing(Pixel32{std::numeric_limits<float>::quiet_NaN(), 0.0F, 0.0F, 0.0F}));
  EXPECT_FALSE(emptyCountPaintsNothing(Pixel32{std::numeric_limits<float>::infinity(), 0.0F, 0.0F, 0.0F}));
  EXPECT_TRUE(emptyCountPaintsNothing(Pixel8{255, 0, 0, 0}));
}

}  // namespace
}  // namespace vindrel
