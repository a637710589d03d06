#include "effect/dots/DotJitter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "effect/pixel/Pixel.h"
#include "tests/dots/Frames.h"

namespace vindrel {
namespace {

// With these words before a draw, the draw is a known share of the range: the draw of 32768 is the middle, that of
// 49152 half way up, that of 16384 half way down. Found by walking the whole period.
uint32_t stateBefore(uint32_t draw) {
  randomState = 0;
  uint32_t before = 0;
  do {
    before = randomState;
  } while (NextRandom() != draw);
  return before;
}

// J(1) = draw / 32768 - 1.
void nextJitterIs(double jitter) {
  randomState = stateBefore(static_cast<uint32_t>((jitter + 1.0) * 32768.0));
}

TEST(DotJitter, amountsAreTakenInTheirOwnUnits) {
  RenderParams params{};
  params.randomDistanceX = 1.0;
  params.randomDistanceY = 2.0;
  params.randomSize = 3.0;
  params.randomAspect = 4.0;
  params.randomRotation = 5.0;
  params.randomOpacity = 6.0;
  params.randomHue = testing::fixed(90.0);
  params.randomSaturation = 50.0;
  params.randomValue = 25.0;
  const JitterAmounts amounts = makeJitterAmounts(params);
  EXPECT_EQ(amounts.distanceX, 1.0);
  EXPECT_EQ(amounts.distanceY, 2.0);
  EXPECT_EQ(amounts.size, 3.0);
  EXPECT_EQ(amounts.aspect, 4.0);
  EXPECT_EQ(amounts.rotation, 5.0);
  EXPECT_EQ(amounts.opacity, 6.0);
  EXPECT_EQ(amounts.hueAmount, 0.25);
  EXPECT_EQ(amounts.saturationAmount, 0.5);
  EXPECT_EQ(amounts.valueAmount, 0.25);
}

TEST(DotJitter, sizeSpreadsByItsOwnShare) {
  nextJitterIs(0.5);
  EXPECT_EQ(drawSize(1.0, 10.0), 15.0);
  nextJitterIs(-0.5);
  EXPECT_EQ(drawSize(1.0, 10.0), 5.0);
}

TEST(DotJitter, aSizeBelowZeroIsZero) {
  nextJitterIs(-0.5);
  EXPECT_EQ(drawSize(4.0, 10.0), 0.0);
}

TEST(DotJitter, rotationSpreadsInTurns) {
  nextJitterIs(0.5);
  EXPECT_NEAR(drawRotation(1.0, 0.25), 0.25 + 3.141592653589793, 1e-12);
  nextJitterIs(-0.5);
  EXPECT_NEAR(drawRotation(1.0, 0.25), 0.25 - 3.141592653589793, 1e-12);
}

TEST(DotJitter, eachTermOfTheRotationIsTurnedByItself) {
  randomState = 0;  // the draw is 7
  const double spread = 0.6 * 7.0 * 1.52587890625e-05 * 6.283185307179586;
  const double low = -0.3 * 6.283185307179586;
  EXPECT_EQ(drawRotation(0.3, 0.1), (spread + low) + 0.1);
}

TEST(DotJitter, tooMuchOpacityFoldsBackDown) {
  nextJitterIs(0.5);
  EXPECT_EQ(drawOpacity(0.5, 0.875), 0.875);  // 0.875 + 0.25 = 1.125, folded to 0.875
  nextJitterIs(0.5);
  EXPECT_EQ(drawOpacity(1.0, 1.0), 0.5);
}

TEST(DotJitter, tooLittleOpacityEndsAtZero) {
  nextJitterIs(-0.5);
  EXPECT_EQ(drawOpacity(1.0, 0.25), 0.0);
}

TEST(DotJitter, opacityFoldedBelowZeroEndsAtZero) {
  nextJitterIs(0.5);
  EXPECT_EQ(drawOpacity(6.0, 0.5), 0.0);  // 3.5 folds to -1.5
}

TEST(DotJitter, theBaseOpacityIsLimitedBeforeItsJitter) {
  nextJitterIs(-0.5);
  EXPECT_EQ(drawOpacity(0.5, 1.5), 0.75);
  nextJitterIs(0.5);
  EXPECT_EQ(drawOpacity(0.5, -3.0), 0.25);
}

TEST(DotJitter, theFoldHasAPeriodOfTwo) {
  EXPECT_EQ(foldIntoUnit(0.0), 0.0);
  EXPECT_EQ(foldIntoUnit(0.25), 0.25);
  EXPECT_EQ(foldIntoUnit(-0.25), 0.25);
  EXPECT_EQ(foldIntoUnit(1.0), 1.0);
  EXPECT_EQ(foldIntoUnit(1.25), 0.75);
  EXPECT_EQ(foldIntoUnit(-1.25), 0.75);
  EXPECT_EQ(foldIntoUnit(2.0), 0.0);
  EXPECT_EQ(foldIntoUnit(2.25), 0.25);
  EXPECT_EQ(foldIntoUnit(3.5), 0.5);
  EXPECT_EQ(foldIntoUnit(-101.25), 0.75);
}

TEST(DotJitter, theFoldBearsWhatIsNoNumberOrTooLarge) {
  EXPECT_TRUE(std::isnan(foldIntoUnit(std::numeric_limits<double>::quiet_NaN())));
  // Beyond 32 bits the truncation gives the smallest integer: 1e12 + 2^32 lies above 1 and is taken from 2.
  EXPECT_EQ(foldIntoUnit(1e12), 2.0 - (1e12 + 4294967296.0));
}

TEST(DotJitter, colorTakesThreeDrawsInTheOrderHueSaturationValue) {
  JitterAmounts amounts{};
  amounts.hueAmount = 0.5;
  amounts.saturationAmount = 0.25;
  amounts.valueAmount = 0.125;
  // Red: hue 0, saturation 1, value 1. Draws 7, 14434, 60673 of state 0 give:
  const double hue = 1.0 * 7.0 / 65536.0 - 0.5;                           // wraps to just above half a turn
  const double saturation = 1.0 + (0.5 * 14434.0 / 65536.0 - 0.25);       // 0.86
  const double value = 2.0 - (1.0 + (0.25 * 60673.0 / 65536.0 - 0.125));  // 0.89, folded down
  // In the fourth sixth of the circle: red is the least, green falls, blue is the value.
  const double sixth = (hue + 1.0) * 6.0 - 3.0;
  randomState = 0;
  const Pixel32 color = drawColor(amounts, Pixel32{0.0F, 1.0F, 0.0F, 0.0F});
  EXPECT_EQ(randomState, 60673U);
  EXPECT_NEAR(static_cast<double>(color.blue), value, 1e-6);
  EXPECT_NEAR(static_cast<double>(color.red), (1.0 - saturation) * value, 1e-6);
  EXPECT_NEAR(static_cast<double>(color.green), (1.0 - sixth * saturation) * value, 1e-6);
}

TEST(DotJitter, noJitterStillCostsAGreyItsLevel) {
  randomState = 0;
  EXPECT_EQ(drawColor(JitterAmounts{}, Pixel8{0, 33, 33, 33}), (Pixel8{255, 32, 32, 32}));
  EXPECT_EQ(drawColor(JitterAmounts{}, Pixel8{0, 32, 32, 32}), (Pixel8{255, 32, 32, 32}));
}

TEST(DotJitter, noJitterNeverRaisesAGrey) {
  for (int level = 0; level < 256; ++level) {
    const auto grey = static_cast<uint8_t>(level);
    const Pixel8 color = drawColor(JitterAmounts{}, Pixel8{0, grey, grey, grey});
    EXPECT_LE(color.red, grey);
    EXPECT_GE(color.red + 1, level);
  }
}

TEST(DotJitter, allAmountsZeroJitterNothingAndTakeNineDraws) {
  const JitterAmounts none{};
  randomState = 0;
  EXPECT_EQ(drawJitter(none.distanceX), 0.0);
  EXPECT_EQ(drawJitter(none.distanceY), 0.0);
  EXPECT_EQ(drawSize(none.size, 12.5), 12.5);
  EXPECT_EQ(drawJitter(none.aspect), 0.0);
  EXPECT_EQ(drawRotation(none.rotation, 0.7), 0.7);
  EXPECT_EQ(drawOpacity(none.opacity, 0.4), 0.4);
  const Pixel16 color{32768, 32768, 16384, 0};
  EXPECT_EQ(drawColor(none, color), color);
  EXPECT_EQ(randomState, 6735U);
}

}  // namespace
}  // namespace vindrel
