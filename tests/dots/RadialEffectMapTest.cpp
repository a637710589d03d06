// The weight by the distance from a point. Centre (10, 20), reach 40, falloff 50 percent unless a test says otherwise:
// full weight for 20 pixels, then a raised cosine over 20.
#include "effect/dots/EffectMap.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vindrel {
namespace {

constexpr bool plain = false;
constexpr bool mirror = true;

TEST(RadialEffectMap, fullWeightNearTheCentreThenARaisedCosine) {
  const RadialEffectMap map(10.0, 20.0, 40.0, 0.5, plain);
  EXPECT_EQ(map.Evaluate(10.0, 20.0), 1.0);
  EXPECT_EQ(map.Evaluate(29.0, 20.0), 1.0);
  EXPECT_EQ(map.Evaluate(30.0, 20.0), 1.0);
  // A quarter, a half and three quarters down: (1 + cos 45, 90, 135 degrees) / 2.
  EXPECT_NEAR(map.Evaluate(35.0, 20.0), 0.5 + std::sqrt(0.125), 1e-15);
  EXPECT_NEAR(map.Evaluate(40.0, 20.0), 0.5, 1e-15);
  EXPECT_NEAR(map.Evaluate(45.0, 20.0), 0.5 - std::sqrt(0.125), 1e-15);
}

TEST(RadialEffectMap, theFadeIsACosineAndNotALinearRamp) {
  const RadialEffectMap map(0.0, 0.0, 40.0, 0.5, plain);
  EXPECT_GT(map.Evaluate(25.0, 0.0), 0.84);  // a ramp would give 0.75
}

TEST(RadialEffectMap, allDirectionsAreAlike) {
  const RadialEffectMap map(10.0, 20.0, 40.0, 0.5, plain);
  const double expected = map.Evaluate(45.0, 20.0);
  EXPECT_EQ(map.Evaluate(-25.0, 20.0), expected);
  EXPECT_EQ(map.Evaluate(10.0, 55.0), expected);
  EXPECT_EQ(map.Evaluate(10.0, -15.0), expected);
  EXPECT_EQ(map.Evaluate(10.0 + 21.0, 20.0 - 28.0), expected);  // 21, 28, 35
}

TEST(RadialEffectMap, theWeightIsZeroExactlyAtTheReachAndBeyond) {
  const RadialEffectMap map(10.0, 20.0, 40.0, 0.5, plain);
  EXPECT_EQ(map.Evaluate(50.0, 20.0), 0.0);
  EXPECT_EQ(map.Evaluate(50.001, 20.0), 0.0);
  EXPECT_EQ(map.Evaluate(-1e9, 1e9), 0.0);
}

TEST(RadialEffectMap, withoutFalloffTheWeightIsFullWithinTheReachAndZeroBeyond) {
  for (const bool mirrored : {plain, mirror}) {
    const RadialEffectMap map(10.0, 20.0, 40.0, 0.0, mirrored);
    EXPECT_EQ(map.Evaluate(10.0, 20.0), 1.0);
    EXPECT_EQ(map.Evaluate(50.0, 20.0), 1.0);
    EXPECT_EQ(map.Evaluate(50.001, 20.0), 0.0);
  }
}

TEST(RadialEffectMap, withSizeZeroTheWeightIsFullOnTheCentreOnly) {
  const RadialEffectMap map(10.0, 20.0, 0.0, 1.0, plain);
  EXPECT_EQ(map.Evaluate(10.0, 20.0), 1.0);
  EXPECT_EQ(map.Evaluate(10.0, 20.0001), 0.0);
  EXPECT_EQ(map.Evaluate(9.9999, 20.0), 0.0);
}

TEST(RadialEffectMap, mirroredTheFullWeightLiesOnTheRingAtHalfTheReach) {
  const RadialEffectMap map(0.0, 0.0, 40.0, 1.0, mirror);
  EXPECT_EQ(map.Evaluate(20.0, 0.0), 1.0);
  EXPECT_EQ(map.Evaluate(0.0, 0.0), 0.0);
  EXPECT_EQ(map.Evaluate(40.0, 0.0), 0.0);
  // A tenth of the way out and in: (1 + cos 18 degrees) / 2.
  EXPECT_NEAR(map.Evaluate(22.0, 0.0), 0.97552825814757678, 1e-15);
  EXPECT_NEAR(map.Evaluate(18.0, 0.0), 0.97552825814757678, 1e-15);
  // Half way from the ring to the centre and to the rim.
  EXPECT_NEAR(map.Evaluate(10.0, 0.0), 0.5, 1e-15);
  EXPECT_NEAR(map.Evaluate(30.0, 0.0), 0.5, 1e-15);
}

TEST(RadialEffectMap, mirroredWithHalfAFalloffTheRingIsBroad) {
  const RadialEffectMap map(0.0, 0.0, 40.0, 0.5, mirror);
  EXPECT_EQ(map.Evaluate(11.0, 0.0), 1.0);  // 40 - 22 = 18, below 20
  EXPECT_EQ(map.Evaluate(29.0, 0.0), 1.0);
  EXPECT_NEAR(map.Evaluate(5.0, 0.0), 0.5, 1e-15);  // 40 - 10 = 30, half way down
  EXPECT_NEAR(map.Evaluate(35.0, 0.0), 0.5, 1e-15);
  EXPECT_EQ(map.Evaluate(0.0, 0.0), 0.0);
}

}  // namespace
}  // namespace vindrel
