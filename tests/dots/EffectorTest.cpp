// What an effector does to a dot: each change by hand, at given weights, and effectors in a row.
#include "effect/dots/Effector.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <utility>

#include "effect/dots/LayerEffectMap.h"
#include "effect/pixel/Blend.h"
#include "effect/pixel/Convert.h"
#include "tests/dots/ExpectDraft.h"
#include "tests/dots/Frames.h"
#include "tests/dots/LayerWorld.h"
#include "tests/support/AllPixels.h"

namespace vindrel {
namespace {

using test::effectorOf;
using test::expectSame;
using test::fixed;
using test::LayerWorld;
using test::MappedEffector;

constexpr double degree = 0.017453292519943295;

/// The same weight everywhere.
class EvenMap final : public BaseEffectMap {
 public:
  explicit EvenMap(double weight) : weight_(weight) {}
  double Evaluate(double, double) const noexcept override { return weight_; }

 private:
  double weight_;
};

/// Enabled, and changes nothing.
EffectorParams idle() {
  EffectorParams params{};
  params.enabled = 1;
  params.effectMap = 3;
  params.tiling = 1;
  params.ratioSize = params.ratioAspect = params.ratioRotation = params.ratioOpacity = 1.0;
  params.blendMode = 1;
  params.blendColor = {255, 255, 255, 255};
  return params;
}

template <class Pixel>
DotDraft<Pixel> draft(const Pixel& color) {
  return {.frontKey = noFrontKey,
          .x = 30.0,
          .y = 40.0,
          .size = 8.0,
          .aspect = 0.25,
          .rotation = 0.5,
          .opacity = 0.75,
          .color = color};
}

constexpr Pixel8 orange{255, 200, 100, 20};

template <class Pixel>
DotDraft<Pixel> after(const EffectorParams& params, const BaseEffectMap& map, DotDraft<Pixel> dot,
                      bool frontOrderingPossible = true) {
  applyEffector(effectorOf<Pixel>(params), map, frontOrderingPossible, dot);
  return dot;
}

DotDraft<Pixel8> after(const EffectorParams& params, double weight) {
  return after(params, EvenMap(weight), draft(orange));
}

// No change.

TEST(Effector, withAllRatiosOneAndNothingElseItChangesNothing) {
  for (const double weight : {0.0, 0.25, 1.0, 3.0}) expectSame(after(idle(), weight), draft(orange));
}

// Absolute.

TEST(EffectorAbsolute, atFullWeightTheTargetReplacesTheDotAndRatioAndOffsetActOnTheTarget) {
  EffectorParams params = idle();
  params.absolute = 1;
  params.absSize = 20.0;
  params.ratioSize = 1.5;
  params.offsetSize = 4.0;
  params.absAspect = 50.0;
  params.ratioAspect = 0.5;
  params.offsetAspect = 25.0;
  params.absOpacity = 50.0;
  params.ratioOpacity = 0.5;
  params.offsetOpacity = 50.0;
  params.absRotation = fixed(90.0);
  params.ratioRotation = 2.0;
  const DotDraft<Pixel8> dot = after(params, 1.0);
  EXPECT_EQ(dot.size, 34.0);
  EXPECT_EQ(dot.aspect, 0.5);
  EXPECT_EQ(dot.opacity, 0.75);
  EXPECT_EQ(dot.rotation, 180.0 * degree);
}

TEST(EffectorAbsolute, atAQuarterWeightADotGoesAQuarterOfTheWay) {
  EffectorParams params = idle();
  params.absolute = 1;
  params.absSize = 20.0;
  params.absAspect = -75.0;
  params.absOpacity = 25.0;
  params.absRotation = fixed(180.0);
  const DotDraft<Pixel8> dot = after(params, 0.25);
  EXPECT_EQ(dot.size, 11.0);      // 5 + 6
  EXPECT_EQ(dot.aspect, 0.0);     // -0.1875 + 0.1875
  EXPECT_EQ(dot.opacity, 0.625);  // 0.5625 + 0.0625
  EXPECT_EQ(dot.rotation, 0.375 + 180.0 * degree * 0.25);
}

TEST(EffectorAbsolute, offTheTargetsCountForNothing) {
  EffectorParams params = idle();
  params.absSize = 20.0;
  params.absAspect = -75.0;
  params.absOpacity = 25.0;
  params.absRotation = fixed(180.0);
  expectSame(after(params, 1.0), draft(orange));
}

// Ratio and offset.

TEST(EffectorRatio, growsFromOneToTheWholeFactorWithTheWeight) {
  EffectorParams params = idle();
  params.ratioSize = 3.0;
  params.ratioAspect = -1.0;
  params.ratioOpacity = 0.0;
  DotDraft<Pixel8> dot = after(params, 1.0);
  EXPECT_EQ(dot.size, 24.0);
  EXPECT_EQ(dot.aspect, -0.25);
  EXPECT_EQ(dot.opacity, 0.0);
  dot = after(params, 0.5);
  EXPECT_EQ(dot.size, 16.0);
  EXPECT_EQ(dot.aspect, 0.0);
  EXPECT_EQ(dot.opacity, 0.375);
}

TEST(EffectorRatio, ofRotationMultipliesTheWholeAngle) {
  EffectorParams params = idle();
  params.ratioRotation = 0.0;
  EXPECT_EQ(after(params, 1.0).rotation, 0.0);
  params.ratioRotation = 3.0;
  EXPECT_EQ(after(params, 1.0).rotation, 1.5);
}

TEST(EffectorOffset, isAddedByItsWeight) {
  EffectorParams params = idle();
  params.offsetSize = 4.0;
  params.offsetAspect = 50.0;
  params.offsetRotation = fixed(180.0);
  params.offsetOpacity = 25.0;
  DotDraft<Pixel8> dot = after(params, 1.0);
  EXPECT_EQ(dot.size, 12.0);
  EXPECT_EQ(dot.aspect, 0.75);
  EXPECT_EQ(dot.rotation, 0.5 + 180.0 * degree);
  EXPECT_EQ(dot.opacity, 1.0);
  dot = after(params, 0.5);
  EXPECT_EQ(dot.size, 10.0);
  EXPECT_EQ(dot.aspect, 0.5);
  EXPECT_EQ(dot.rotation, 0.5 + 180.0 * degree * 0.5);
  EXPECT_EQ(dot.opacity, 0.875);
}

TEST(EffectorOffset, isNotMultipliedByTheRatio) {
  EffectorParams params = idle();
  params.ratioSize = 2.0;
  params.offsetSize = 5.0;
  EXPECT_EQ(after(params, 1.0).size, 21.0);
}

TEST(Effector, nothingIsClampedOnTheWay) {
  EffectorParams params = idle();
  params.offsetSize = -100.0;
  params.ratioAspect = 20.0;
  params.ratioOpacity = -4.0;
  const DotDraft<Pixel8> dot = after(params, 1.0);
  EXPECT_EQ(dot.size, -92.0);
  EXPECT_EQ(dot.aspect, 5.0);
  EXPECT_EQ(dot.opacity, -3.0);
}

// In a row.

TEST(EffectorsInARow, theSecondActsOnTheSizeThatTheFirstLeft) {
  EffectorParams first = idle();
  first.offsetSize = 2.0;
  EffectorParams second = idle();
  second.ratioSize = 3.0;
  const EvenMap full(1.0);
  EXPECT_EQ(after(second, full, after(first, full, draft(orange))).size, 30.0);  // (8 + 2) * 3
  EXPECT_EQ(after(first, full, after(second, full, draft(orange))).size, 26.0);  // 8 * 3 + 2
}

TEST(EffectorsInARow, twoRatiosOfTwoMakeFour) {
  EffectorParams params = idle();
  params.ratioSize = 2.0;
  const EvenMap full(1.0);
  EXPECT_EQ(after(params, full, after(params, full, draft(orange))).size, 32.0);
}

TEST(EffectorsInARow, theSecondActsOnTheColorThatTheFirstLeft) {
  EffectorParams first = idle();
  first.color = 1;
  first.blendColor = {255, 10, 20, 30};
  EffectorParams second = idle();
  second.color = 1;
  second.blendMode = 13;  // difference
  second.blendColor = {255, 100, 100, 100};
  const EvenMap full(1.0);
  EXPECT_EQ(after(second, full, after(first, full, draft(orange))).color, (Pixel8{255, 90, 80, 70}));
}

TEST(EffectorsInARow, aNegativeSizeIsWorkedOn) {
  EffectorParams first = idle();
  first.offsetSize = -10.0;
  EffectorParams second = idle();
  second.ratioSize = -4.0;
  const EvenMap full(1.0);
  EXPECT_EQ(after(second, full, after(first, full, draft(orange))).size, 8.0);
}

// Weights above 1 extrapolate.

TEST(EffectorWeight, aboveOneTheFormulasExtrapolate) {
  EffectorParams params = idle();
  params.absolute = 1;
  params.absSize = 10.0;
  params.absOpacity = 75.0;
  params.absAspect = 25.0;
  EXPECT_EQ(after(params, 3.0).size, 14.0);  // 10 * 3 - 2 * 8
  params = idle();
  params.ratioSize = 2.0;
  params.offsetSize = 1.0;
  EXPECT_EQ(after(params, 3.0).size, 35.0);  // (1 * 3 + 1) * 8 + 3
}

TEST(EffectorWeight, belowZeroTheFormulasExtrapolateToo) {
  // A float layer darker than black gives such a weight; only exactly 0.0 leaves the dot alone.
  EffectorParams params = idle();
  params.ratioSize = 3.0;
  params.offsetOpacity = 50.0;
  const DotDraft<Pixel8> dot = after(params, -0.25);
  EXPECT_EQ(dot.size, 4.0);  // (2 * -0.25 + 1) * 8
  EXPECT_EQ(dot.opacity, 0.625);
}

TEST(EffectorWeight, anOverbrightFloatLayerExtrapolates) {
  LayerWorld<Pixel32> layer(2, 2);
  layer.fill(Pixel32{2.0F, 0.0F, 2.0F, 0.0F});
  EffectorParams params = idle();
  params.effectMap = 1;
  params.customMapLayer = layer.world();
  params.position = {fixed(30.0), fixed(40.0)};
  params.offsetSize = 10.0;
  const MappedEffector<Pixel32> mapped(params);
  // Weight 4 * 0.586611, so ten pixels become 23.46444.
  EXPECT_DOUBLE_EQ(after(params, *mapped.map, draft(Pixel32{1.0F, 0.0F, 0.0F, 0.0F})).size, 31.46444);
}

TEST(EffectorWeight, aboveOneAFloatColorGoesBeyondTheBlend) {
  EffectorParams params = idle();
  params.color = 1;
  params.blendColor = {255, 255, 255, 0};
  const DotDraft<Pixel32> dot = after(params, EvenMap(2.0), draft(Pixel32{0.5F, 0.25F, 1.0F, 0.25F}));
  EXPECT_EQ(dot.color, (Pixel32{0.5F, 1.75F, 1.0F, -0.25F}));
}

TEST(EffectorWeight, aboveOneAnIntegerChannelKeepsItsLowBits) {
  EffectorParams params = idle();
  params.color = 1;
  params.blendColor = {255, 250, 100, 0};
  const DotDraft<Pixel8> dot = after(params, EvenMap(2.0), draft(Pixel8{255, 100, 100, 100}));
  EXPECT_EQ(dot.color, (Pixel8{255, 144, 100, 156}));  // 400 - 256, and -100 + 256
}

// The colour blend.

TEST(EffectorColor, atFullWeightTheDotTakesTheBlend) {
  EffectorParams params = idle();
  params.color = 1;
  params.blendColor = {255, 11, 22, 33};
  EXPECT_EQ(after(params, 1.0).color, (Pixel8{255, 11, 22, 33}));
}

TEST(EffectorColor, atHalfWeightTheMixIsTruncated) {
  EffectorParams params = idle();
  params.color = 1;
  params.blendColor = {255, 101, 201, 20};
  // 200 - 49.5 = 150.5; 100 + 50.5 = 150.5; 20 stays.
  EXPECT_EQ(after(params, 0.5).color, (Pixel8{255, 150, 150, 20}));
}

TEST(EffectorColor, offTheBlendCountsForNothing) {
  EffectorParams params = idle();
  params.blendColor = {255, 11, 22, 33};
  EXPECT_EQ(after(params, 1.0).color, orange);
}

TEST(EffectorColor, aBlendColorOfAlphaZeroHasNoEffectUnderAnyModeAtAnyDepth) {
  EffectorParams params = idle();
  params.color = 1;
  params.blendColor = {0, 250, 128, 3};
  const Pixel16 color16{1200, 30000, 20000, 10};
  // Alpha 0 here too: in float a division by zero would show.
  const Pixel32 color32{0.0F, 2.5F, 0.5F, -1.0F};
  for (int32_t item = 0; item <= 15; ++item) {
    params.blendMode = item;
    for (const double weight : {0.3, 1.0}) {
      EXPECT_EQ(after(params, weight).color, orange) << "item " << item;
      EXPECT_EQ(after(params, EvenMap(weight), draft(color16)).color, color16) << "item " << item;
      EXPECT_EQ(after(params, EvenMap(weight), draft(color32)).color, color32) << "item " << item;
    }
  }
}

TEST(EffectorColor, eachPopupItemHasItsModeAndSeparatorsAreNormal) {
  // Two channels of one opaque blend tell all twelve modes apart; by hand, the notes are those of red.
  const struct {
    int32_t item;
    int red;   // 200 under 90
    int blue;  // 20 under 90
  } rows[] = {
      {1, 90, 90},    // the source
      {2, 90, 90},    // a separator
      {3, 255, 109},  // 200 + ((90 * 255) >> 8 = 89), cut
      {4, 111, 0},    // 200 - 89
      {5, 70, 7},     // 18000 >> 8
      {6, 218, 102},  // (65025 - 55 * 165) >> 8
      {7, 185, 14},   // 255 - ((55 * 165) >> 7)
      {8, 140, 14},   // 18000 >> 7
      {9, 187, 14},   // A = .78431, B = .35294: (.16917 * -.29412 + .78431) * 255 = 187.3
      {10, 90, 90},   // a separator
      {11, 90, 20},   // the smaller
      {12, 200, 90},  // the larger
      {13, 110, 70},  // the distance
      {14, 148, 95},  // (165 * 200 + 55 * 90) >> 8
      {0, 90, 90},   {15, 90, 90}, {-3, 90, 90}, {999, 90, 90},  // no items at all
  };
  EffectorParams params = idle();
  params.color = 1;
  params.blendColor = {255, 90, 90, 90};
  for (const auto& row : rows) {
    params.blendMode = row.item;
    const Pixel8 color = after(params, 1.0).color;
    EXPECT_EQ(color.red, row.red) << "item " << row.item;
    EXPECT_EQ(color.blue, row.blue) << "item " << row.item;
  }
}

// The hue shift.

TEST(EffectorHue, aThirdOfATurnMakesRedGreen) {
  EffectorParams params = idle();
  params.shiftHue = fixed(120.0);
  const Pixel8 red{7, 255, 0, 0};
  EXPECT_EQ(after(params, EvenMap(1.0), draft(red)).color, (Pixel8{255, 0, 255, 0}));
}

TEST(EffectorHue, atHalfWeightTheTurnIsHalf) {
  EffectorParams params = idle();
  params.shiftHue = fixed(120.0);
  const Pixel8 red{7, 255, 0, 0};
  EXPECT_EQ(after(params, EvenMap(0.5), draft(red)).color, (Pixel8{255, 255, 255, 0}));
}

TEST(EffectorHue, aGreyKeepsItsLookAndItsAlphaBecomesFull) {
  EffectorParams params = idle();
  params.shiftHue = fixed(77.0);
  EXPECT_EQ(after(params, EvenMap(1.0), draft(Pixel8{3, 102, 102, 102})).color, (Pixel8{255, 102, 102, 102}));
  EXPECT_EQ(after(params, EvenMap(1.0), draft(Pixel16{3, 999, 999, 999})).color, (Pixel16{32768, 999, 999, 999}));
  EXPECT_EQ(after(params, EvenMap(1.0), draft(Pixel32{0.5F, 0.25F, 0.25F, 0.25F})).color,
            (Pixel32{1.0F, 0.25F, 0.25F, 0.25F}));
}

TEST(EffectorHue, withoutAShiftTheColorDoesNotPassThroughHueAtAll) {
  const Pixel8 level33{3, 33, 33, 33};  // would come back as 32
  EXPECT_EQ(after(idle(), EvenMap(1.0), draft(level33)).color, level33);
}

TEST(EffectorHue, comesAfterTheColorBlend) {
  EffectorParams params = idle();
  params.color = 1;
  params.blendColor = {255, 255, 0, 0};
  params.shiftHue = fixed(120.0);
  EXPECT_EQ(after(params, 1.0).color, (Pixel8{255, 0, 255, 0}));
}

// The front key.

EffectorParams frontCenter(double x, double y) {
  EffectorParams params = idle();
  params.centerDotToFront = 1;
  params.position = {fixed(x), fixed(y)};
  return params;
}

TEST(EffectorFrontKey, isTheSquaredDistanceToThePosition) {
  EXPECT_EQ(after(frontCenter(27.0, 36.0), 1.0).frontKey, 25.0);
}

TEST(EffectorFrontKey, aDotOnThePositionHasKeyZero) {
  EXPECT_EQ(after(frontCenter(30.0, 40.0), 1.0).frontKey, 0.0);
}

TEST(EffectorFrontKey, theWeightHasNoInfluence) {
  EXPECT_EQ(after(frontCenter(27.0, 36.0), 0.0).frontKey, 25.0);
  EXPECT_EQ(after(frontCenter(27.0, 36.0), 0.1).frontKey, 25.0);
}

TEST(EffectorFrontKey, ofTwoPositionsTheNearerRanks) {
  const EvenMap map(0.0);
  EXPECT_EQ(after(frontCenter(30.0, 50.0), map, after(frontCenter(27.0, 36.0), map, draft(orange))).frontKey, 25.0);
  EXPECT_EQ(after(frontCenter(27.0, 36.0), map, after(frontCenter(30.0, 50.0), map, draft(orange))).frontKey, 25.0);
}

TEST(EffectorFrontKey, aKeyOfZeroIsKept) {
  const EvenMap map(0.0);
  EXPECT_EQ(after(frontCenter(0.0, 0.0), map, after(frontCenter(30.0, 40.0), map, draft(orange))).frontKey, 0.0);
}

TEST(EffectorFrontKey, isNotWrittenWithoutTheFlag) {
  EffectorParams params = frontCenter(27.0, 36.0);
  params.centerDotToFront = 0;
  EXPECT_EQ(after(params, 1.0).frontKey, noFrontKey);
}

TEST(EffectorFrontKey, isNotWrittenOnceTheOrderingIsGivenUp) {
  EXPECT_EQ(after(frontCenter(27.0, 36.0), EvenMap(1.0), draft(orange), false).frontKey, noFrontKey);
}

// The picked colour. A layer of 4 by 4 whose centre sits on the dot.

template <class Pixel>
struct Picking {
  Picking() {
    params.effectMap = 1;
    params.customMapLayer = layer.world();
    params.pickSourceColor = 1;
    params.position = {fixed(30.0), fixed(40.0)};
  }
  DotDraft<Pixel> apply(const DotDraft<Pixel>& dot) const {
    return after(params, *MappedEffector<Pixel>(params).map, dot);
  }
  LayerWorld<Pixel> layer{4, 4};
  EffectorParams params = idle();
};

TEST(EffectorPick, aDotTakesTheColorOfTheLayerUnderIt) {
  Picking<Pixel8> pick;
  pick.layer.set(2, 2, Pixel8{128, 1, 2, 3});
  EXPECT_EQ(pick.apply(draft(orange)).color, (Pixel8{128, 1, 2, 3}));
}

TEST(EffectorPick, aDotOfWeightZeroStillTakesIt) {
  Picking<Pixel8> pick;
  pick.layer.fill(Pixel8{0, 1, 2, 3});  // transparent, so no weight
  pick.params.ratioSize = 3.0;
  const DotDraft<Pixel8> dot = pick.apply(draft(orange));
  EXPECT_EQ(dot.color, (Pixel8{0, 1, 2, 3}));
  EXPECT_EQ(dot.size, 8.0);
}

TEST(EffectorPick, untiledADotOutsideTheLayerKeepsItsColor) {
  Picking<Pixel8> pick;
  pick.layer.fill(Pixel8{255, 1, 2, 3});
  DotDraft<Pixel8> dot = draft(orange);
  dot.x = 90.0;
  EXPECT_EQ(pick.apply(dot).color, orange);
}

TEST(EffectorPick, tiledADotOutsideTheLayerTakesTheTilesColor) {
  Picking<Pixel8> pick;
  pick.layer.fill(Pixel8{255, 1, 2, 3});
  DotDraft<Pixel8> dot = draft(orange);
  dot.x = 90.0;
  for (const int32_t tiling : {2, 3, 4}) {
    pick.params.tiling = tiling;
    EXPECT_EQ(pick.apply(dot).color, (Pixel8{255, 1, 2, 3})) << "tiling " << tiling;
  }
}

TEST(EffectorPick, comesBeforeTheColorBlend) {
  Picking<Pixel16> pick;
  pick.layer.fill(Pixel16{32768, 32768, 32768, 32768});
  pick.params.color = 1;
  pick.params.blendMode = 13;                 // difference
  pick.params.blendColor = {255, 255, 0, 0};  // leaves nothing of white's red
  EXPECT_EQ(pick.apply(draft(Pixel16{32768, 0, 0, 0})).color, (Pixel16{32768, 0, 32768, 32768}));
}

TEST(EffectorPick, withoutTheFlagTheColorStays) {
  Picking<Pixel8> pick;
  pick.layer.fill(Pixel8{255, 1, 2, 3});
  pick.params.pickSourceColor = 0;
  EXPECT_EQ(pick.apply(draft(orange)).color, orange);
}

TEST(EffectorPick, underAnotherMapTheLayerIsNotLookedAt) {
  Picking<Pixel8> pick;
  pick.layer.fill(Pixel8{255, 1, 2, 3});
  for (const int32_t item : {2, 3, 4, 5, 6}) {
    pick.params.effectMap = item;
    EXPECT_EQ(pick.apply(draft(orange)).color, orange) << "item " << item;
  }
}

template <class Pixel>
class EffectorLayer : public ::testing::Test {};
TYPED_TEST_SUITE(EffectorLayer, test::AllPixels);

TYPED_TEST(EffectorLayer, withoutOneThereIsNoWeightAndNoColorIsPicked) {
  const TypeParam color{0, 1, 0, 1};
  Picking<TypeParam> pick;
  pick.params.customMapLayer = nullptr;
  pick.params.ratioSize = 3.0;
  for (const Bool8 fit : {Bool8{0}, Bool8{1}}) {
    pick.params.fitToLayer = fit;
    for (const int32_t tiling : {1, 2, 3, 4, 0}) {
      pick.params.tiling = tiling;
      expectSame(pick.apply(draft(color)), draft(color));
    }
  }
}

TYPED_TEST(EffectorLayer, oneOfNoSizeIsAsNone) {
  const TypeParam color{0, 1, 0, 1};
  Picking<TypeParam> pick;
  pick.params.ratioSize = 3.0;
  for (const auto& [width, height] : {std::pair{0, 4}, std::pair{4, 0}}) {
    LayerWorld<TypeParam> layer(width, height);
    pick.params.customMapLayer = layer.world();
    for (const Bool8 fit : {Bool8{0}, Bool8{1}}) {
      pick.params.fitToLayer = fit;
      for (const int32_t tiling : {1, 2, 3, 4, 0}) {
        pick.params.tiling = tiling;
        expectSame(pick.apply(draft(color)), draft(color));
      }
    }
  }
}

// Random effectors. Not the library's distributions, which differ between libraries.

class RandomEffectors {
 public:
  explicit RandomEffectors(uint32_t seed) : engine_(seed) {}

  uint32_t below(uint32_t count) { return draw() % count; }
  double between(double low, double high) { return low + (high - low) * (draw() / 4294967296.0); }

  EffectorParams next() {
    EffectorParams params = idle();
    params.centerDotToFront = static_cast<Bool8>(below(2));
    params.effectMap = 1 + static_cast<int32_t>(below(6));
    params.angle = fixed(between(-400.0, 400.0));
    params.position = {fixed(between(-50.0, 150.0)), fixed(between(-50.0, 150.0))};
    params.size = between(0.0, 100.0);
    params.falloff = between(0.0, 100.0);
    params.fitToLayer = static_cast<Bool8>(below(2));
    params.pickSourceColor = static_cast<Bool8>(below(2));
    params.tiling = 1 + static_cast<int32_t>(below(4));
    params.absolute = static_cast<Bool8>(below(2));
    params.absSize = between(0.0, 50.0);
    params.absAspect = between(-100.0, 100.0);
    params.absRotation = fixed(between(-400.0, 400.0));
    params.absOpacity = between(0.0, 100.0);
    params.ratioSize = between(-2.0, 4.0);
    params.ratioAspect = between(-2.0, 4.0);
    params.ratioRotation = between(-2.0, 4.0);
    params.ratioOpacity = between(-2.0, 4.0);
    params.offsetSize = between(-50.0, 50.0);
    params.offsetAspect = between(-100.0, 100.0);
    params.offsetRotation = fixed(between(-400.0, 400.0));
    params.offsetOpacity = between(-100.0, 100.0);
    params.color = static_cast<Bool8>(below(2));
    params.blendMode = static_cast<int32_t>(below(16));
    params.blendColor = {static_cast<uint8_t>(below(256)), static_cast<uint8_t>(below(256)),
                         static_cast<uint8_t>(below(256)), static_cast<uint8_t>(below(256))};
    params.shiftHue = below(2) == 0 ? 0 : fixed(between(-400.0, 400.0));
    return params;
  }

  template <class Pixel>
  DotDraft<Pixel> dot() {
    DotDraft<Pixel> dot = draft(pixelFrom8<Pixel>(static_cast<uint8_t>(below(256)), static_cast<uint8_t>(below(256)),
                                                  static_cast<uint8_t>(below(256)), static_cast<uint8_t>(below(256))));
    dot.x = between(-20.0, 120.0);
    dot.y = between(-20.0, 120.0);
    dot.size = between(-20.0, 60.0);
    dot.aspect = between(-2.0, 2.0);
    dot.rotation = between(-7.0, 7.0);
    dot.opacity = between(-1.0, 2.0);
    return dot;
  }

 private:
  uint32_t draw() { return static_cast<uint32_t>(engine_()); }

  std::mt19937 engine_;
};

TYPED_TEST(EffectorLayer, atWeightZeroNothingChangesButAPickedColorAndTheFrontKey) {
  constexpr uint32_t seed = 4711;
  RandomEffectors random(seed);
  const TypeParam clear{0, 0, 1, 0};
  LayerWorld<TypeParam> layer(9, 7);
  layer.fill(clear);  // transparent: weight 0 wherever it is read
  int picked = 0;
  for (int round = 0; round < 5000; ++round) {
    EffectorParams params = random.next();
    params.effectMap = 1;
    params.customMapLayer = layer.world();
    const DotDraft<TypeParam> before = random.template dot<TypeParam>();
    const DotDraft<TypeParam> dot = after(params, *MappedEffector<TypeParam>(params).map, before);

    DotDraft<TypeParam> expected = before;
    // Tiled, the layer is under every dot; untiled, the dot has either colour, and the one place that decides is
    // tested elsewhere.
    const bool hasLayerColor = dot.color == clear;
    if (params.pickSourceColor && (params.tiling != 1 || hasLayerColor)) expected.color = clear;
    picked += hasLayerColor ? 1 : 0;
    if (params.centerDotToFront) {
      expected.frontKey =
          std::pow(before.x - params.position.x / 65536.0, 2) + std::pow(before.y - params.position.y / 65536.0, 2);
      EXPECT_NEAR(dot.frontKey, expected.frontKey, 1e-9) << "seed " << seed << ", round " << round;
      expected.frontKey = dot.frontKey;
    }
    expectSame(dot, expected);
    if (::testing::Test::HasFailure()) FAIL() << "seed " << seed << ", round " << round;
  }
  EXPECT_GT(picked, 1500);
}

TYPED_TEST(EffectorLayer, sizeAspectRotationAndOpacityAreStraightMixesAtAnyWeight) {
  constexpr uint32_t seed = 90210;
  RandomEffectors random(seed);
  for (int round = 0; round < 5000; ++round) {
    EffectorParams params = random.next();
    params.pickSourceColor = 0;
    const double w = random.between(0.001, 2.5);
    const DotDraft<TypeParam> before = random.template dot<TypeParam>();
    const DotDraft<TypeParam> dot = after(params, EvenMap(w), before);
    const auto mixed = [&](double value, double target, double ratio, double offset) {
      const double start = params.absolute ? std::lerp(value, target, w) : value;
      return start * std::lerp(1.0, ratio, w) + std::lerp(0.0, offset, w);
    };
    const double rotationTarget = params.absRotation / 65536.0 * degree;
    const double rotationOffset = params.offsetRotation / 65536.0 * degree;
    ASSERT_NEAR(dot.size, mixed(before.size, params.absSize, params.ratioSize, params.offsetSize), 1e-9)
        << "seed " << seed << ", round " << round << ", weight " << w;
    ASSERT_NEAR(dot.aspect, mixed(before.aspect, params.absAspect / 100, params.ratioAspect, params.offsetAspect / 100),
                1e-9)
        << "seed " << seed << ", round " << round << ", weight " << w;
    ASSERT_NEAR(dot.rotation, mixed(before.rotation, rotationTarget, params.ratioRotation, rotationOffset), 1e-9)
        << "seed " << seed << ", round " << round << ", weight " << w;
    ASSERT_NEAR(dot.opacity,
                mixed(before.opacity, params.absOpacity / 100, params.ratioOpacity, params.offsetOpacity / 100), 1e-9)
        << "seed " << seed << ", round " << round << ", weight " << w;
  }
}

}  // namespace
}  // namespace vindrel
