// The weight by the distance from a line. Origin (100, 50), reach 40, falloff 25 percent unless a test says otherwise:
// full weight for 30 pixels, then a ramp of 10.
#include "effect/dots/EffectMap.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vindrel {
namespace {

constexpr bool plain = false;
constexpr bool mirror = true;

LinearEffectMap mapAt(double angleDegrees, bool mirrored = plain) {
  return {100.0, 50.0, angleDegrees, 40.0, 0.25, mirrored};
}

TEST(LinearEffectMap, atAngleZeroTheRampRunsUpward) {
  const LinearEffectMap map = mapAt(0.0);
  EXPECT_EQ(map.Evaluate(100.0, 50.0), 1.0);
  EXPECT_EQ(map.Evaluate(100.0, 25.0), 1.0);
  EXPECT_EQ(map.Evaluate(100.0, 20.0), 1.0);
  EXPECT_EQ(map.Evaluate(100.0, 17.5), 0.75);
  EXPECT_EQ(map.Evaluate(100.0, 15.0), 0.5);
  EXPECT_EQ(map.Evaluate(100.0, 12.5), 0.25);
  EXPECT_NEAR(map.Evaluate(100.0, 10.125), 0.0125, 1e-15);
}

TEST(LinearEffectMap, theWeightIsZeroExactlyAtTheReachAndBeyond) {
  const LinearEffectMap map = mapAt(0.0);
  EXPECT_EQ(map.Evaluate(100.0, 10.0), 0.0);
  EXPECT_EQ(map.Evaluate(100.0, 9.999), 0.0);
  EXPECT_EQ(map.Evaluate(100.0, -1e9), 0.0);
}

TEST(LinearEffectMap, behindTheLineTheWeightIsFullHoweverFar) {
  const LinearEffectMap map = mapAt(0.0);
  EXPECT_EQ(map.Evaluate(100.0, 50.001), 1.0);
  EXPECT_EQ(map.Evaluate(100.0, 95.0), 1.0);
  EXPECT_EQ(map.Evaluate(-7e5, 1e12), 1.0);
}

TEST(LinearEffectMap, mirroredItFadesOnBothSides) {
  const LinearEffectMap map = mapAt(0.0, mirror);
  EXPECT_EQ(map.Evaluate(0.0, 15.0), 0.5);
  EXPECT_EQ(map.Evaluate(0.0, 85.0), 0.5);
  EXPECT_EQ(map.Evaluate(0.0, 75.0), 1.0);
  EXPECT_EQ(map.Evaluate(0.0, 91.0), 0.0);
}

TEST(LinearEffectMap, at90DegreesTheRampRunsToTheRight) {
  const LinearEffectMap map = mapAt(90.0);
  EXPECT_EQ(map.Evaluate(135.0, 50.0), 0.5);
  EXPECT_EQ(map.Evaluate(65.0, 50.0), 1.0);
}

TEST(LinearEffectMap, at180DegreesTheRampRunsDownward) {
  const LinearEffectMap map = mapAt(180.0);
  EXPECT_EQ(map.Evaluate(100.0, 85.0), 0.5);
  EXPECT_EQ(map.Evaluate(100.0, 15.0), 1.0);
}

TEST(LinearEffectMap, atRightAnglesTheOtherAxisCountsForNothing) {
  // A sine or cosine of 6e-17 would move the distance by far more than its last bit at 1e15 pixels.
  for (const double degrees : {0.0, 180.0, -180.0, 360.0, 720.0}) {
    const double up = std::cos(degrees * 0.017453292519943295);
    EXPECT_EQ(mapAt(degrees).Evaluate(1e15, 50.0 - up * 35.0), 0.5) << degrees;
  }
  for (const double degrees : {90.0, -90.0, 270.0, -270.0, 450.0}) {
    const double right = std::sin(degrees * 0.017453292519943295);
    EXPECT_EQ(mapAt(degrees).Evaluate(100.0 + right * 35.0, 1e15), 0.5) << degrees;
  }
}

TEST(LinearEffectMap, between45DegreesTheDistanceIsThatToTheLine) {
  // The direction of the ramp is (sin 45, -cos 45), so 35 pixels along it are half weight.
  const double leg = 35.0 * std::sqrt(0.5);
  EXPECT_NEAR(mapAt(45.0).Evaluate(100.0 + leg, 50.0 - leg), 0.5, 1e-12);
  EXPECT_NEAR(mapAt(45.0).Evaluate(100.0 + leg + 8.0, 50.0 - leg + 8.0), 0.5, 1e-12);
}

TEST(LinearEffectMap, withoutFalloffTheWeightIsFullEverywhere) {
  for (const bool mirrored : {plain, mirror}) {
    const LinearEffectMap map(100.0, 50.0, 0.0, 40.0, 0.0, mirrored);
    for (const double y : {50.0, 10.0, 9.0, -1e9, 1e9}) EXPECT_EQ(map.Evaluate(3.0, y), 1.0) << y;
  }
}

TEST(LinearEffectMap, withSizeZeroTheWeightIsFullEverywhere) {
  for (const bool mirrored : {plain, mirror}) {
    const LinearEffectMap map(100.0, 50.0, 0.0, 0.0, 1.0, mirrored);
    for (const double y : {50.0, 49.0, -1e9, 1e9}) EXPECT_EQ(map.Evaluate(3.0, y), 1.0) << y;
  }
}

TEST(LinearEffectMap, aWholeFalloffFadesFromTheLineOn) {
  const LinearEffectMap map(0.0, 0.0, 0.0, 64.0, 1.0, plain);
  EXPECT_EQ(map.Evaluate(0.0, 0.0), 1.0);
  EXPECT_EQ(map.Evaluate(0.0, -16.0), 0.75);
  EXPECT_EQ(map.Evaluate(0.0, -64.0), 0.0);
}

TEST(LinearEffectMap, aFalloffAboveTheReachIsNotClamped) {
  // Ramp of 80 that would begin 40 pixels behind the line: at the line itself half weight is left.
  const LinearEffectMap map(0.0, 0.0, 0.0, 40.0, 2.0, plain);
  EXPECT_EQ(map.Evaluate(0.0, 0.0), 0.5);
  EXPECT_EQ(map.Evaluate(0.0, -20.0), 0.25);
}

}  // namespace
}  // namespace vindrel
