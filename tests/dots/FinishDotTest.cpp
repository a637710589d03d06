#include "effect/dots/FinishDot.h"

#include <gtest/gtest.h>

#include <cmath>

#include "effect/pixel/Pixel.h"
#include "tests/dots/Frames.h"

namespace vindrel {
namespace {

using testing::fixed;
using testing::plainParams;

constexpr double quarterTurn = 1.5707963267948966;

template <class Pixel>
DotDraft<Pixel> draft(double size, double aspect, double opacity) {
  DotDraft<Pixel> dot{};
  dot.size = size;
  dot.aspect = aspect;
  dot.opacity = opacity;
  return dot;
}

DotRecord<Pixel8> finished(double size, double aspect) {
  return finishDot(draft<Pixel8>(size, aspect, 1.0), 0.0, circleShape);
}

DotGrid turnedAbout(double x, double y, double rotation) {
  DotGrid grid{};
  grid.rotationCenterX = x;
  grid.rotationCenterY = y;
  grid.rotation = rotation;
  return grid;
}

TEST(FinishDot, theBaseIsMadeFromTheControls) {
  RenderParams params = plainParams();
  params.dotSize = 12.25;
  params.dotAspect = -40.0;
  params.dotRotation = fixed(30.5);
  params.dotOpacity = 150.0;
  const BaseDot<Pixel8> base = makeBaseDot<Pixel8>(params);
  EXPECT_EQ(base.baseSize, 12.25);
  EXPECT_EQ(base.baseAspect, -40.0 / 100.0);
  EXPECT_EQ(base.baseRotation, 30.5 * 0.017453292519943295);
  EXPECT_EQ(base.baseOpacity, 1.5);  // limited only where it is drawn from
  EXPECT_EQ(base.baseColor, (Pixel8{255, 255, 125, 20}));
}

TEST(FinishDot, anAspectBeyondAHundredPercentIsClamped) {
  RenderParams params = plainParams();
  params.dotAspect = 250.0;
  EXPECT_EQ(makeBaseDot<Pixel8>(params).baseAspect, 1.0);
  params.dotAspect = -100.5;
  EXPECT_EQ(makeBaseDot<Pixel8>(params).baseAspect, -1.0);
}

TEST(FinishDot, theBaseColorHasTheScaleOfItsDepth) {
  const RenderParams params = plainParams();
  EXPECT_EQ(makeBaseDot<Pixel16>(params).baseColor,
            (Pixel16{32768, 32768, 16062, 2570}));  // 125 / 255 * 32768 = 16062.7, 20 / 255 * 32768 = 2570.04
  EXPECT_EQ(makeBaseDot<Pixel32>(params).baseColor.green, static_cast<float>(125.0 / 255.0));
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
  EXPECT_EQ(finishDot(dot8, 0.0, circleShape).color, (Pixel8{127, 1, 2, 3}));
  DotDraft<Pixel16> dot16 = draft<Pixel16>(1.0, 0.0, 0.3);
  dot16.color = {17, 1, 2, 3};
  EXPECT_EQ(finishDot(dot16, 0.0, circleShape).color, (Pixel16{9830, 1, 2, 3}));  // 0.3 * 32768 = 9830.4
  DotDraft<Pixel32> dot32 = draft<Pixel32>(1.0, 0.0, 0.3);
  dot32.color = {0.5F, 1.5F, -2.0F, 3.0F};
  EXPECT_EQ(finishDot(dot32, 0.0, circleShape).color, (Pixel32{0.3F, 1.5F, -2.0F, 3.0F}));
}

TEST(FinishDot, opacityIsClampedAtBothEnds) {
  EXPECT_EQ(finishDot(draft<Pixel8>(1.0, 0.0, 1.7), 0.0, circleShape).color.alpha, 255);
  EXPECT_EQ(finishDot(draft<Pixel8>(1.0, 0.0, -0.2), 0.0, circleShape).color.alpha, 0);
  EXPECT_EQ(finishDot(draft<Pixel16>(1.0, 0.0, 1.7), 0.0, circleShape).color.alpha, 32768);
  EXPECT_EQ(finishDot(draft<Pixel32>(1.0, 0.0, 1.7), 0.0, circleShape).color.alpha, 1.0F);
  EXPECT_EQ(finishDot(draft<Pixel32>(1.0, 0.0, -0.2), 0.0, circleShape).color.alpha, 0.0F);
}

TEST(FinishDot, theRestIsCopied) {
  DotDraft<Pixel8> dot = draft<Pixel8>(1.0, 0.0, 1.0);
  dot.frontKey = 12.5;
  dot.x = 3.25;
  dot.y = -4.5;
  dot.rotation = 9.0;  // not what the record gets: the angle is
  const DotRecord<Pixel8> record = finishDot(dot, 0.75, starShape);
  EXPECT_EQ(record.frontKey, 12.5);
  EXPECT_EQ(record.x, 3.25);
  EXPECT_EQ(record.y, -4.5);
  EXPECT_EQ(record.angle, 0.75);
  EXPECT_EQ(record.shape, 5);
}

TEST(FinishDot, normalTurnsTheDotWithTheLattice) {
  EXPECT_EQ(dotAngle(1, turnedAbout(5, 5, 0.25), 9, 9, 0.5), 0.75);
}

TEST(FinishDot, lookAtCenterTurnsTheDotTowardTheRotationCenter) {
  const DotGrid grid = turnedAbout(5, 5, 0.25);
  EXPECT_EQ(dotAngle(2, grid, 5, 9, 0.5), 0.5);                // straight below: no turn, the lattice's plays no part
  EXPECT_EQ(dotAngle(2, grid, 9, 5, 0.5), 0.5 - quarterTurn);  // straight right
  EXPECT_EQ(dotAngle(2, grid, 5, 1, 0.5), 0.5 - 2 * quarterTurn);
  EXPECT_EQ(dotAngle(2, grid, 1, 5, 0.5), 0.5 + quarterTurn);
}

TEST(FinishDot, lookAtCenterLeavesADotOnTheRotationCenterAlone) {
  EXPECT_EQ(dotAngle(2, turnedAbout(5, 7, 0.25), 5, 7, 0.5), 0.5);
  EXPECT_EQ(dotAngle(2, turnedAbout(5, 7, 0.25), 5, 7.5, 0.5), 0.5);                // below it: a turn of 0 as well
  EXPECT_EQ(dotAngle(2, turnedAbout(5, 7, 0.25), 5.5, 7, 0.5), 0.5 - quarterTurn);  // beside it: not
}

TEST(FinishDot, fixDotAngleAndAnyOtherTypeIgnoreTheLattice) {
  for (const int32_t type : {3, 0, 4, -1}) EXPECT_EQ(dotAngle(type, turnedAbout(5, 5, 0.25), 9, 9, 0.5), 0.5) << type;
}

}  // namespace
}  // namespace vindrel
