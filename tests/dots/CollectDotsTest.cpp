#include "effect/dots/RenderDotField.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "effect/dots/Random.h"
#include "effect/params/Choices.h"
#include "effect/pixel/Pixel.h"
#include "tests/dots/CountedMemory.h"
#include "tests/dots/Frames.h"
#include "tests/dots/PlainDotField.h"

namespace vindrel {
namespace {

using test::farthestRing;
using test::fixed;
using test::placeCenter;
using test::plainParams;
using test::RandomField;
using test::randomField;
using test::settingsOf;

template <class Pixel>
void expectSameRecords(const DotField<Pixel>& field, const plain::Field<Pixel>& twin) {
  ASSERT_EQ(field.records.size(), twin.records.size());
  EXPECT_EQ(field.order == DotOrder::nearestOnTop, twin.frontOrdering);
  for (std::size_t dot = 0; dot < field.records.size(); ++dot) {
    const FinishedDot<Pixel>& record = field.records[dot];
    const FinishedDot<Pixel>& expected = twin.records[dot];
    ASSERT_EQ(record.frontKey, expected.frontKey) << "dot " << dot;
    ASSERT_EQ(record.x, expected.x) << "dot " << dot;
    ASSERT_EQ(record.y, expected.y) << "dot " << dot;
    ASSERT_EQ(record.color, expected.color) << "dot " << dot;
    ASSERT_EQ(record.width, expected.width) << "dot " << dot;
    ASSERT_EQ(record.height, expected.height) << "dot " << dot;
    ASSERT_EQ(record.angle, expected.angle) << "dot " << dot;
  }
}

template <class Pixel>
void expectTwinsOverRandomFrames(uint32_t firstSeed) {
  std::size_t dots = 0;
  for (uint32_t seed = firstSeed; seed < firstSeed + 80; ++seed) {
    const RandomField frame = randomField(seed);
    SCOPED_TRACE(::testing::Message() << frame);
    const int32_t currentTime = static_cast<int32_t>(seed % 23) * 1001 - 7000;
    const int32_t timeStep = seed % 5 == 0 ? 0 : 1001;
    const plain::Grid grid = plain::makeGrid(frame.params, frame.width, frame.height);
    const int32_t limit = farthestRing(frame.params, frame.width, frame.height, grid.pitchX, grid.pitchY);
    const auto twin = plain::collectDots<Pixel>(frame.params, currentTime, timeStep, frame.width, frame.height, limit);
    expectSameRecords(collectDots(settingsOf<Pixel>(frame.params, currentTime, timeStep), frame.width, frame.height),
                      twin);
    if (::testing::Test::HasFatalFailure()) return;
    dots += twin.records.size();
  }
  EXPECT_GT(dots, 2000U);  // the frames are no empty ones
}

TEST(CollectDots, recordsAreTheSlowTwinsAt8Bits) {
  expectTwinsOverRandomFrames<Pixel8>(1);
}
TEST(CollectDots, recordsAreTheSlowTwinsAt16Bits) {
  expectTwinsOverRandomFrames<Pixel16>(1001);
}
TEST(CollectDots, recordsAreTheSlowTwinsInFloat) {
  expectTwinsOverRandomFrames<Pixel32>(2001);
}

/// 302 columns by 302 rows, from -1 to 300.
RenderParams veryManyDots() {
  RenderParams params = plainParams();
  params.distanceBetween = distanceBetweenCentersItem;
  params.dotDistanceX = params.dotDistanceY = 1.0;
  placeCenter(params, 150.0, 150.0);
  return params;
}

TEST(CollectDots, veryManyDotsAreTheSlowTwinsToo) {
  RenderParams params = veryManyDots();
  params.randomDistanceX = params.randomSize = params.randomOpacity = 0.3;
  params.randomHue = fixed(100.0);
  params.randomSeed = 9;
  const auto twin = plain::collectDots<Pixel8>(params, 0, 0, 300, 300, 400);
  EXPECT_GT(twin.records.size(), dotsWithoutCounting);
  expectSameRecords(collectDots(settingsOf<Pixel8>(params), 300, 300), twin);
}

template <class Pixel>
void expectABlockThatJustHoldsThem(std::size_t bytesOfADot) {
  test::largestBlock = 0;
  const DotField<Pixel> field = collectDots(settingsOf<Pixel>(veryManyDots()), 300, 300);
  EXPECT_EQ(field.records.size(), 302U * 302U);
  EXPECT_EQ(test::largestBlock, 302U * 302U * bytesOfADot);
}

TEST(CollectDots, veryManyDotsGetABlockThatJustHoldsThem) {
  expectABlockThatJustHoldsThem<Pixel8>(56);
  expectABlockThatJustHoldsThem<Pixel16>(56);
  expectABlockThatJustHoldsThem<Pixel32>(64);
}

TEST(CollectDots, theDotsOfAnEightKFrameAtPitchOneFitABlock) {
  // A block has a 32-bit size, 32 bytes of which are the memory's own.
  constexpr uint64_t dots = 7682ULL * 4322ULL;
  EXPECT_LE(dots * sizeof(FinishedDot<Pixel8>), 0x7FFFFFFFULL - 32);
  EXPECT_LE(dots * sizeof(FinishedDot<Pixel16>), 0x7FFFFFFFULL - 32);
  EXPECT_LE(dots * sizeof(FinishedDot<Pixel32>), 0x7FFFFFFFULL - 32);
}

/// Dots thirty pixels apart, the centre one at (45, 45), on a canvas of 90 x 90: columns and rows -15 to 105.
RenderParams centered() {
  RenderParams params = plainParams();
  placeCenter(params, 45.0, 45.0);
  return params;
}

template <class Pixel = Pixel8>
DotField<Pixel> collected(const RenderParams& params) {
  return collectDots(settingsOf<Pixel>(params), 90, 90);
}

const FinishedDot<Pixel8>* dotAt(const DotField<Pixel8>& field, double x, double y) {
  for (const FinishedDot<Pixel8>& record : field.records) {
    if (record.x == x && record.y == y) return &record;
  }
  return nullptr;
}

TEST(CollectDots, withoutJitterAndEffectorsAllDotsAreAlike) {
  RenderParams params = centered();
  params.dotColor = {.alpha = 255, .red = 33, .green = 33, .blue = 33};
  params.dotRotation = fixed(20.0);
  params.globalRotation = fixed(10.0);
  params.dotOpacity = 50.0;
  const DotField<Pixel8> field = collected(params);
  ASSERT_GE(field.records.size(), 9U);
  for (const FinishedDot<Pixel8>& record : field.records) {
    EXPECT_EQ(record.width, 10.0);
    EXPECT_EQ(record.height, 10.0);
    EXPECT_EQ(record.angle, 20.0 * 0.017453292519943295 + 10.0 * 0.017453292519943295);
    EXPECT_EQ(record.color, (Pixel8{127, 32, 32, 32}));  // a pass through HSV costs this grey a level
    EXPECT_EQ(record.frontKey, -1.0);
  }
}

TEST(CollectDots, theColorPassesThroughHsvAt16Bits) {
  // 33 / 255 * 32768 = 4240.56: the factor at 16 bits is a power of two, so the pass loses nothing more.
  RenderParams params = centered();
  params.dotColor = {.alpha = 255, .red = 33, .green = 33, .blue = 33};
  EXPECT_EQ(collected<Pixel16>(params).records.at(0).color, (Pixel16{32768, 4240, 4240, 4240}));
}

TEST(CollectDots, aDisabledEffectorChangesNothingAndTakesNoDraws) {
  RenderParams plainFrame = centered();
  plainFrame.randomSize = plainFrame.randomDistanceX = plainFrame.randomValue = 0.4;
  RenderParams params = plainFrame;
  for (EffectorParams& effector : params.effector) {
    effector.enabled = 0;
    effector.absolute = effector.color = effector.centerDotToFront = effector.pickSourceColor = 1;
    effector.effectMap = 5;
    effector.absSize = 77.0;
    effector.ratioSize = 3.0;
    effector.offsetRotation = fixed(33.0);
    effector.shiftHue = fixed(90.0);
    effector.blendColor = {.alpha = 255, .red = 0, .green = 0, .blue = 255};
  }
  const DotField<Pixel8> expected = collected(plainFrame);
  const uint32_t stateAfter = randomState;
  const DotField<Pixel8> field = collected(params);
  EXPECT_EQ(randomState, stateAfter);
  expectSameRecords<Pixel8>(field, {expected.records, expected.order == DotOrder::nearestOnTop});
}

TEST(CollectDots, anEnabledEffectorTakesNoDrawsEither) {
  RenderParams params = centered();
  collected(params);
  const uint32_t stateAfter = randomState;
  for (EffectorParams& effector : params.effector) {
    effector.enabled = 1;
    effector.size = 500.0;
    effector.offsetSize = 5.0;
    effector.shiftHue = fixed(20.0);
  }
  EXPECT_EQ(collected(params).records.at(0).width, 25.0);
  EXPECT_EQ(randomState, stateAfter);
}

TEST(CollectDots, theMapOfADisabledEffectorIsBuilt) {
  const auto allocationsOf = [](Bool8 enabled) {
    RenderParams params = centered();
    for (EffectorParams& effector : params.effector) effector.enabled = enabled;
    const FieldSettings<Pixel8> settings = settingsOf<Pixel8>(params);
    const int before = test::blocksMade;
    const std::size_t dots = collectDots(settings, 90, 90).records.size();
    const int made = test::blocksMade - before;
    EXPECT_EQ(dots, 25U);
    return made;
  };
  // Six growths make room for 25 records; each of the three maps is one block and its count another.
  EXPECT_EQ(allocationsOf(0), 6 + 3 * 2);
  EXPECT_EQ(allocationsOf(1), 6 + 3 * 2);
}

TEST(CollectDots, effectorsWorkInTheirOrder) {
  RenderParams params = centered();
  for (EffectorParams& effector : params.effector) {
    effector.enabled = 1;
    effector.size = 500.0;
  }
  params.effector[0].offsetSize = 2.0;
  params.effector[1].ratioSize = 3.0;
  params.effector[2].offsetSize = -1.0;
  EXPECT_EQ(collected(params).records.at(0).width, 35.0);  // (10 + 2) * 3 - 1
}

TEST(CollectDots, effectorsSeeTheJitteredPlaceAndSize) {
  RenderParams params = centered();
  params.randomDistanceX = 1.0;
  params.randomSize = 1.0;
  params.effector[0].enabled = 1;
  params.effector[0].size = 1000.0;
  params.effector[0].ratioSize = 2.0;
  params.effector[0].centerDotToFront = 1;
  // Draws 7 and 60673 of seed 0, for the place and for the size.
  const double x = 45.0 + (2.0 * 7.0 / 65536.0 - 1.0) * 30.0;
  const double size = (2.0 * 60673.0 / 65536.0 - 1.0) * 10.0 + 10.0;
  const FinishedDot<Pixel8> dot = collected(params).records.at(0);
  EXPECT_DOUBLE_EQ(dot.x, x);
  EXPECT_DOUBLE_EQ(dot.width, 2.0 * size);
  EXPECT_DOUBLE_EQ(dot.frontKey, x * x + 45.0 * 45.0);
}

TEST(CollectDots, aDotBeyondTheMarginIsNotMadeHoweverLarge) {
  // Columns 30 pixels apart from 121 on: the one at 121 lies beyond the edge of 120, though a dot of 100 would reach
  // into the frame of 90, and the one at 91 lies before it.
  RenderParams params = plainParams();
  params.distanceBetween = distanceBetweenCentersItem;
  params.dotDistanceX = params.dotDistanceY = 30.0;
  params.dotSize = 100.0;
  placeCenter(params, 121.0, 45.0);
  const DotField<Pixel8> field = collected(params);
  EXPECT_EQ(dotAt(field, 121.0, 45.0), nullptr);
  EXPECT_NE(dotAt(field, 91.0, 45.0), nullptr);
}

TEST(CollectDots, theJitterOfThePlaceLiesAlongTheCanvas) {
  RenderParams params = centered();
  params.globalRotation = fixed(90.0);
  params.randomDistanceX = 1.0;
  const FinishedDot<Pixel8> dot = collected(params).records.at(0);
  EXPECT_DOUBLE_EQ(dot.x, 45.0 + (2.0 * 7.0 / 65536.0 - 1.0) * 30.0);
  EXPECT_EQ(dot.y, 45.0);
}

TEST(CollectDots, theColorJitterComesAfterTheEffectors) {
  // The effector makes every dot black; the value jitter then lifts it: draw 6735 gives 2 * 6735 / 65536 - 1 = -0.79,
  // folded to 0.79. Jitter before the effector would leave black.
  RenderParams params = centered();
  params.randomValue = 100.0;
  params.effector[0].enabled = 1;
  params.effector[0].size = 1000.0;
  params.effector[0].color = 1;
  params.effector[0].blendColor = {.alpha = 255, .red = 0, .green = 0, .blue = 0};
  const double value = 1.0 - 2.0 * 6735.0 / 65536.0;
  EXPECT_EQ(collected(params).records.at(0).color.red, static_cast<uint8_t>(value * 255.0));
}

TEST(CollectDots, theCenterDotIsRankedFrontMost) {
  RenderParams params = centered();
  params.centerDotToFront = 1;
  DotField<Pixel8> field = collected(params);
  ASSERT_EQ(field.order, DotOrder::nearestOnTop);
  SortDots(field.records, field.order);
  // Drawn from the last record down, so the first lies on top.
  EXPECT_EQ(field.records.front().x, 45.0);
  EXPECT_EQ(field.records.front().y, 45.0);
  EXPECT_EQ(field.records.front().frontKey, 0.0);
  EXPECT_EQ(field.records.back().frontKey, 2 * 60.0 * 60.0);
}

TEST(CollectDots, theFlagOfADisabledEffectorGivesReadingOrder) {
  RenderParams params = centered();
  params.effector[1].centerDotToFront = 1;
  const DotField<Pixel8> field = collected(params);
  EXPECT_EQ(field.order, DotOrder::reading);
  for (const FinishedDot<Pixel8>& record : field.records) EXPECT_EQ(record.frontKey, -1.0);
}

TEST(CollectDots, anEnabledEffectorWithoutItsFlagGivesReadingOrder) {
  RenderParams params = centered();
  params.effector[1].enabled = 1;
  EXPECT_EQ(collected(params).order, DotOrder::reading);
}

TEST(CollectDots, withTwoFlagsEachDotRanksByTheNearerPlace) {
  RenderParams params = centered();
  for (const int effector : {0, 2}) {
    params.effector[effector].enabled = 1;
    params.effector[effector].centerDotToFront = 1;
  }
  params.effector[0].position = {fixed(10.0), fixed(20.0)};
  params.effector[2].position = {fixed(80.0), fixed(70.0)};
  const DotField<Pixel8> field = collected(params);
  EXPECT_EQ(field.order, DotOrder::nearestOnTop);
  ASSERT_NE(dotAt(field, 15.0, 15.0), nullptr);
  EXPECT_EQ(dotAt(field, 15.0, 15.0)->frontKey, 25.0 + 25.0);    // 5 and 5 from the first
  EXPECT_EQ(dotAt(field, 75.0, 75.0)->frontKey, 25.0 + 25.0);    // 5 and 5 from the third
  EXPECT_EQ(dotAt(field, 75.0, 15.0)->frontKey, 25.0 + 3025.0);  // 5 and 55 from the third; 65 and 5 from the first
}

TEST(CollectDots, theGlobalFlagAndAnEffectorsRankByTheNearer) {
  RenderParams params = centered();
  params.centerDotToFront = 1;
  params.effector[1].enabled = 1;
  params.effector[1].centerDotToFront = 1;
  params.effector[1].position = {fixed(0.0), fixed(15.0)};
  const DotField<Pixel8> field = collected(params);
  EXPECT_EQ(dotAt(field, 15.0, 15.0)->frontKey, 225.0);
  EXPECT_EQ(dotAt(field, 75.0, 45.0)->frontKey, 900.0);
}

TEST(CollectDots, aDotOnAnEffectorsPlaceHasAKeyOfZero) {
  RenderParams params = centered();
  params.effector[1].enabled = 1;
  params.effector[1].centerDotToFront = 1;
  params.effector[1].position = {fixed(75.0), fixed(15.0)};
  const DotField<Pixel8> field = collected(params);
  ASSERT_NE(dotAt(field, 75.0, 15.0), nullptr);
  EXPECT_EQ(dotAt(field, 75.0, 15.0)->frontKey, 0.0);
  EXPECT_EQ(field.order, DotOrder::nearestOnTop);
}

TEST(CollectDots, anAspectOfAHundredKeepsItsFlatDots) {
  RenderParams params = centered();
  params.dotAspect = 100.0;
  const DotField<Pixel8> field = collected(params);
  EXPECT_EQ(field.records.size(), 25U);
  for (const FinishedDot<Pixel8>& record : field.records) {
    EXPECT_EQ(record.height, 0.0);
    EXPECT_EQ(record.width, 10.0);
  }
}

TEST(CollectDots, jitterCanBringAFlatDotBack) {
  RenderParams params = centered();
  params.dotAspect = 100.0;
  params.randomAspect = 0.5;
  std::size_t raised = 0;
  for (const FinishedDot<Pixel8>& record : collected(params).records) raised += record.height > 0.0 ? 1 : 0;
  EXPECT_GT(raised, 0U);
}

TEST(CollectDots, lookAtCenterLeavesTheCenterDotItsOwnRotation) {
  RenderParams params = centered();
  params.rotationType = 2;
  params.dotRotation = fixed(25.0);
  params.globalRotation = fixed(40.0);
  const DotField<Pixel8> field = collected(params);
  const double own = 25.0 * 0.017453292519943295;
  EXPECT_EQ(dotAt(field, 45.0, 45.0)->angle, own);
  for (const FinishedDot<Pixel8>& record : field.records) {
    if (record.x == 45.0 && record.y == 45.0) continue;
    EXPECT_EQ(record.angle, own + (std::atan2(record.y - 45.0, record.x - 45.0) - 1.5707963267948966));
  }
}

TEST(CollectDots, fixDotAngleTurnsThePlacesAndNotTheDots) {
  RenderParams params = centered();
  params.rotationType = 3;
  params.dotRotation = fixed(25.0);
  const DotField<Pixel8> straight = collected(params);
  params.globalRotation = fixed(40.0);
  const DotField<Pixel8> turned = collected(params);
  EXPECT_NE(straight.records.at(1).x, turned.records.at(1).x);
  for (const DotField<Pixel8>* field : {&straight, &turned}) {
    for (const FinishedDot<Pixel8>& record : field->records) EXPECT_EQ(record.angle, 25.0 * 0.017453292519943295);
  }
}

TEST(CollectDots, anOpacityOfZeroIsAnAlphaOfZeroAndKeepsItsRecord) {
  RenderParams params = centered();
  params.dotOpacity = 0.0;
  const DotField<Pixel8> field = collected(params);
  EXPECT_EQ(field.records.size(), 25U);
  for (const FinishedDot<Pixel8>& record : field.records) EXPECT_EQ(record.color.alpha, 0);
}

TEST(CollectDots, aSizeOfZeroStillMakesDots) {
  RenderParams params = centered();
  params.dotSize = 0.0;
  params.dotDistanceX = params.dotDistanceY = 30.0;
  EXPECT_EQ(collected(params).records.size(), 25U);
}

TEST(CollectDots, dotsThatAnEffectorShrinksToNothingKeepTheWalkGoing) {
  RenderParams params = centered();
  params.effector[0].enabled = 1;
  params.effector[0].size = 1000.0;
  params.effector[0].offsetSize = -10.0;
  const DotField<Pixel8> field = collected(params);
  EXPECT_EQ(field.records.size(), 25U);
  for (const FinishedDot<Pixel8>& record : field.records) EXPECT_EQ(record.width, 0.0);
}

TEST(CollectDots, theTimeChoosesThePattern) {
  RenderParams params = centered();
  params.randomDistanceX = 0.5;
  params.randomInterval = 2;
  const auto firstX = [&](int32_t time) {
    return collectDots(settingsOf<Pixel8>(params, time, 100), 90, 90).records.at(0).x;
  };
  EXPECT_EQ(firstX(0), firstX(100));
  EXPECT_NE(firstX(0), firstX(200));
  EXPECT_EQ(firstX(200), firstX(300));
}

TEST(CollectDots, withoutATimeStepThePatternStands) {
  RenderParams params = centered();
  params.randomDistanceX = 0.5;
  params.randomInterval = 1;
  const DotField<Pixel8> atStart = collectDots(settingsOf<Pixel8>(params, 0, 100), 90, 90);
  expectSameRecords<Pixel8>(collectDots(settingsOf<Pixel8>(params, 700, 0), 90, 90), {atStart.records, false});
}

TEST(CollectDots, theFrameBeforeLeavesNoTrace) {
  RenderParams params = centered();
  params.randomDistanceX = params.randomSize = params.randomOpacity = 0.5;
  params.randomSeed = 3;
  const DotField<Pixel8> alone = collected(params);
  RenderParams other = params;
  other.randomSeed = 8;
  other.centerDotToFront = 1;
  collectDots(settingsOf<Pixel32>(other), 300, 17);
  expectSameRecords<Pixel8>(collected(params), {alone.records, false});
}

TEST(CollectDots, aLargerFrameKeepsTheDotsOfASmallerOne) {
  RenderParams params = centered();
  params.randomDistanceX = params.randomDistanceY = params.randomSize = 0.3;
  params.randomHue = fixed(100.0);
  const DotField<Pixel8> small = collected(params);
  const DotField<Pixel8> large = collectDots(settingsOf<Pixel8>(params), 300, 200);
  EXPECT_GT(large.records.size(), small.records.size());
  for (const FinishedDot<Pixel8>& record : small.records) {
    const FinishedDot<Pixel8>* same = dotAt(large, record.x, record.y);
    ASSERT_NE(same, nullptr) << record.x << ", " << record.y;
    EXPECT_EQ(same->width, record.width);
    EXPECT_EQ(same->color, record.color);
  }
}

TEST(CollectDots, aLayerMapWithoutItsLayerIsHarmless) {
  RenderParams params = centered();
  params.effector[0].enabled = 1;
  params.effector[0].effectMap = 1;
  params.effector[0].fitToLayer = 1;
  params.effector[0].pickSourceColor = 1;
  params.effector[0].offsetSize = 50.0;
  for (int32_t tiling = 0; tiling < 6; ++tiling) {
    params.effector[0].tiling = tiling;
    const DotField<Pixel8> field = collected(params);
    EXPECT_EQ(field.records.size(), 25U);
    for (const FinishedDot<Pixel8>& record : field.records) {
      EXPECT_EQ(record.width, 10.0);
      EXPECT_EQ(record.color.red, 255);
    }
  }
}

// The order.

FinishedDot<Pixel8> square(double x, double y, double frontKey) {
  return {frontKey, x, y, 8.0, 8.0, 0.0, {255, 255, 0, 0}};
}

TEST(SortDots, readingOrderIsTopRowFirstAndThenFromTheLeft) {
  std::vector<FinishedDot<Pixel8>> records{square(3, 2, 0), square(9, 1, 1), square(1, 2, 2), square(2, 1.5, 3)};
  SortDots(records, DotOrder::reading);
  EXPECT_EQ(records[0].x, 9.0);
  EXPECT_EQ(records[1].x, 2.0);
  EXPECT_EQ(records[2].x, 1.0);
  EXPECT_EQ(records[3].x, 3.0);
}

TEST(SortDots, theFrontOrderIsByKeyAlone) {
  std::vector<FinishedDot<Pixel8>> records{square(3, 2, 7), square(9, 1, 1), square(1, 2, 0), square(2, 1.5, 3)};
  SortDots(records, DotOrder::nearestOnTop);
  EXPECT_EQ(records[0].frontKey, 0.0);
  EXPECT_EQ(records[1].frontKey, 1.0);
  EXPECT_EQ(records[2].frontKey, 3.0);
  EXPECT_EQ(records[3].frontKey, 7.0);
}

template <class Pixel>
void expectWholeRecordsMove() {
  std::mt19937 engine(7);
  std::vector<FinishedDot<Pixel>> records(500);
  for (FinishedDot<Pixel>& record : records) {
    const auto number = static_cast<double>(static_cast<uint32_t>(engine()));
    record = {number, 2 * number, 3 * number, 4 * number, 5 * number, 6 * number, {}};
    record.color.red = static_cast<typename PixelTraits<Pixel>::Channel>(static_cast<int>(number / 4294967296.0 * 200));
  }
  SortDots(records, DotOrder::reading);
  double last = -1.0;
  for (const FinishedDot<Pixel>& record : records) {
    EXPECT_GE(record.frontKey, last);
    last = record.frontKey;
    EXPECT_EQ(record.x, 2 * last);
    EXPECT_EQ(record.height, 5 * last);
    EXPECT_EQ(static_cast<int>(record.color.red), static_cast<int>(last / 4294967296.0 * 200));
  }
}

TEST(SortDots, wholeRecordsMoveAt8Bits) {
  expectWholeRecordsMove<Pixel8>();
}
TEST(SortDots, wholeRecordsMoveAt16Bits) {
  expectWholeRecordsMove<Pixel16>();
}
TEST(SortDots, wholeRecordsMoveInFloat) {
  expectWholeRecordsMove<Pixel32>();
}

}  // namespace
}  // namespace vindrel
