// One dot: its draws, and the record that its running values give.
#include "effect/dots/MakeDot.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "effect/pixel/Pixel.h"

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
  EXPECT_EQ(drawJitter(0.0), 0.0);
  EXPECT_EQ(drawJitter(0.0), 0.0);
  EXPECT_EQ(drawSize(none.size, 12.5), 12.5);
  EXPECT_EQ(drawJitter(none.aspect), 0.0);
  EXPECT_EQ(drawRotation(none.rotation, 0.7), 0.7);
  EXPECT_EQ(drawOpacity(none.opacity, 0.4), 0.4);
  const Pixel16 color{32768, 32768, 16384, 0};
  EXPECT_EQ(drawColor(none, color), color);
  EXPECT_EQ(randomState, 6735U);
}

template <class Pixel>
DotDraft<Pixel> draft(double size, double aspect, double opacity) {
  DotDraft<Pixel> dot{};
  dot.size = size;
  dot.aspect = aspect;
  dot.opacity = opacity;
  return dot;
}

FinishedDot<Pixel8> finished(double size, double aspect) {
  return finishDot(draft<Pixel8>(size, aspect, 1.0), 0.0);
}

DotGrid turnedAbout(double x, double y, double rotation) {
  DotGrid grid{};
  grid.rotationCenterX = x;
  grid.rotationCenterY = y;
  grid.rotation = rotation;
  return grid;
}

TEST(FinishDot, noAspectLeavesBothExtents) {
  EXPECT_EQ(finished(12.0, 0.0).width, 12.0);
  EXPECT_EQ(finished(12.0, 0.0).height, 12.0);
}

TEST(FinishDot, aNegativeAspectShrinksTheWidthAlone) {
  EXPECT_EQ(finished(12.0, -0.25).width, 9.0);
  EXPECT_EQ(finished(12.0, -0.25).height, 12.0);
}

TEST(FinishDot, aPositiveAspectShrinksTheHeightAlone) {
  EXPECT_EQ(finished(12.0, 0.25).width, 12.0);
  EXPECT_EQ(finished(12.0, 0.25).height, 9.0);
}

TEST(FinishDot, anAspectBeyondOneFlattensToNothingAndNotBeyond) {
  for (const double aspect : {1.0, 1.5, 40.0}) {
    EXPECT_EQ(finished(12.0, aspect).width, 12.0);
    EXPECT_EQ(finished(12.0, aspect).height, 0.0);
    EXPECT_EQ(finished(12.0, -aspect).width, 0.0);
    EXPECT_EQ(finished(12.0, -aspect).height, 12.0);
  }
}

TEST(FinishDot, aNegativeSizeIsNoSize) {
  EXPECT_EQ(finished(-3.0, 0.0).width, 0.0);
  EXPECT_EQ(finished(-3.0, 0.0).height, 0.0);
}

TEST(FinishDot, opacityTakesThePlaceOfAlphaAtEachDepth) {
  DotDraft<Pixel8> dot8 = draft<Pixel8>(1.0, 0.0, 0.5);
  dot8.color = {17, 1, 2, 3};
  EXPECT_EQ(finishDot(dot8, 0.0).color, (Pixel8{127, 1, 2, 3}));
  DotDraft<Pixel16> dot16 = draft<Pixel16>(1.0, 0.0, 0.3);
  dot16.color = {17, 1, 2, 3};
  EXPECT_EQ(finishDot(dot16, 0.0).color, (Pixel16{9830, 1, 2, 3}));  // 0.3 * 32768 = 9830.4
  DotDraft<Pixel32> dot32 = draft<Pixel32>(1.0, 0.0, 0.3);
  dot32.color = {0.5F, 1.5F, -2.0F, 3.0F};
  EXPECT_EQ(finishDot(dot32, 0.0).color, (Pixel32{0.3F, 1.5F, -2.0F, 3.0F}));
}

TEST(FinishDot, opacityIsClampedAtBothEnds) {
  EXPECT_EQ(finishDot(draft<Pixel8>(1.0, 0.0, 1.7), 0.0).color.alpha, 255);
  EXPECT_EQ(finishDot(draft<Pixel8>(1.0, 0.0, -0.2), 0.0).color.alpha, 0);
  EXPECT_EQ(finishDot(draft<Pixel16>(1.0, 0.0, 1.7), 0.0).color.alpha, 32768);
  EXPECT_EQ(finishDot(draft<Pixel32>(1.0, 0.0, 1.7), 0.0).color.alpha, 1.0F);
  EXPECT_EQ(finishDot(draft<Pixel32>(1.0, 0.0, -0.2), 0.0).color.alpha, 0.0F);
}

TEST(FinishDot, theRestIsCopied) {
  DotDraft<Pixel8> dot = draft<Pixel8>(1.0, 0.0, 1.0);
  dot.frontKey = 12.5;
  dot.x = 3.25;
  dot.y = -4.5;
  dot.rotation = 9.0;  // not what the record gets: the angle is
  const FinishedDot<Pixel8> record = finishDot(dot, 0.75);
  EXPECT_EQ(record.frontKey, 12.5);
  EXPECT_EQ(record.x, 3.25);
  EXPECT_EQ(record.y, -4.5);
  EXPECT_EQ(record.angle, 0.75);
}

TEST(FinishDot, normalTurnsTheDotWithTheLattice) {
  EXPECT_EQ(dotAngle(RotationType::normal, turnedAbout(5, 5, 0.25), 9, 9, 0.5), 0.75);
}

TEST(FinishDot, lookAtCenterTurnsTheDotTowardTheRotationCenter) {
  const DotGrid grid = turnedAbout(5, 5, 0.25);
  EXPECT_EQ(dotAngle(RotationType::lookAtCenter, grid, 5, 9, 0.5),
            0.5);  // straight below: no turn, the lattice's plays no part
  EXPECT_EQ(dotAngle(RotationType::lookAtCenter, grid, 9, 5, 0.5), 0.5 - quarterTurn);  // straight right
  EXPECT_EQ(dotAngle(RotationType::lookAtCenter, grid, 5, 1, 0.5), 0.5 - 2 * quarterTurn);
  EXPECT_EQ(dotAngle(RotationType::lookAtCenter, grid, 1, 5, 0.5), 0.5 + quarterTurn);
}

TEST(FinishDot, lookAtCenterLeavesADotOnTheRotationCenterAlone) {
  EXPECT_EQ(dotAngle(RotationType::lookAtCenter, turnedAbout(5, 7, 0.25), 5, 7, 0.5), 0.5);
  EXPECT_EQ(dotAngle(RotationType::lookAtCenter, turnedAbout(5, 7, 0.25), 5, 7.5, 0.5),
            0.5);  // below it: a turn of 0 as well
  EXPECT_EQ(dotAngle(RotationType::lookAtCenter, turnedAbout(5, 7, 0.25), 5.5, 7, 0.5),
            0.5 - quarterTurn);  // beside it: not
}

TEST(FinishDot, fixDotAngleIgnoresTheLattice) {
  EXPECT_EQ(dotAngle(RotationType::fixDotAngle, turnedAbout(5, 5, 0.25), 9, 9, 0.5), 0.5);
}

}  // namespace
}  // namespace vindrel
