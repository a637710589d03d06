#include "effect/dots/Random.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

namespace vindrel {
namespace {

constexpr int32_t smallest = std::numeric_limits<int32_t>::min();
constexpr int32_t largest = std::numeric_limits<int32_t>::max();

uint32_t stateOf(const RandomSchedule& schedule) {
  RandomReseed(schedule);
  return randomState;
}

uint32_t stateAtFrame(RandomSchedule schedule, int32_t frame) {
  schedule.timeStep = 100;
  schedule.currentTime = frame * 100;
  return stateOf(schedule);
}

TEST(Random, aZeroSeedDraws7AndThen14434) {
  RandomReseed({.seed = 0, .interval = 0});
  EXPECT_EQ(randomState, 0U);
  EXPECT_EQ(NextRandom(), 7U);
  EXPECT_EQ(NextRandom(), 14434U);
  EXPECT_EQ(randomState, 14434U);
}

TEST(Random, theFirstNineDrawsOfAZeroSeedAreTheseByHand) {
  randomState = 0;
  for (const uint32_t draw : {7U, 14434U, 60673U, 4372U, 32267U, 48790U, 23973U, 59752U, 6735U}) {
    EXPECT_EQ(NextRandom(), draw);
  }
}

TEST(Random, thePeriodIsTheFull65536) {
  std::vector<bool> seen(65536, false);
  randomState = 0;
  for (int draw = 0; draw < 65536; ++draw) {
    const uint32_t value = NextRandom();
    ASSERT_LT(value, 65536U);
    ASSERT_FALSE(seen[value]) << value << " came twice, the second time as draw " << draw;
    seen[value] = true;
  }
}

TEST(Random, aDrawUsesTheLowSixteenBitsOfTheWord) {
  // 65537 * 2061 + 7 = 65536 * 2061 + 2068.
  randomState = 65537;
  EXPECT_EQ(NextRandom(), 2068U);
  // The word of -1 is 65535 in its low bits: 65535 * 2061 + 7 = 65536 * 2061 - 2054, so 65536 - 2054.
  randomState = 0xFFFFFFFFU;
  EXPECT_EQ(NextRandom(), 63482U);
}

TEST(Random, aSkippedCellIsNineDrawsForEveryState) {
  for (uint32_t state = 0; state < 65536; ++state) {
    randomState = state;
    for (int draw = 0; draw < 9; ++draw) NextRandom();
    const uint32_t drawn = randomState;
    randomState = state;
    skipCellDraws();
    ASSERT_EQ(randomState, drawn) << "from state " << state;
  }
}

TEST(Random, aSkippedCellIsNineDrawsForAWordAboveSixteenBits) {
  std::mt19937 engine(20);
  for (int turn = 0; turn < 1000; ++turn) {
    const auto state = static_cast<uint32_t>(engine());
    randomState = state;
    for (int draw = 0; draw < 9; ++draw) NextRandom();
    const uint32_t drawn = randomState;
    randomState = state;
    skipCellDraws();
    ASSERT_EQ(randomState, drawn) << "from state " << state;
  }
}

TEST(Random, leapingOverManyCellsIsSkippingThemOneByOne) {
  for (const int64_t cells : {1, 2, 3, 9, 1000, 65535, 65536, 65537, 1234567}) {
    randomState = 0xABCD1234U;
    for (int64_t cell = 0; cell < cells; ++cell) skipCellDraws();
    const uint32_t skipped = randomState;
    randomState = 0xABCD1234U;
    skipDrawsOfCells(cells);
    EXPECT_EQ(randomState, skipped) << cells << " cells";
  }
}

TEST(Random, leapingOverNoCellLeavesTheWholeWord) {
  randomState = 0xABCD1234U;
  skipDrawsOfCells(0);
  EXPECT_EQ(randomState, 0xABCD1234U);
}

TEST(Random, leapsBeyond32BitsOfCellsAreCountedWhole) {
  // 65536 steps are no step at all, so 2^40 + 5 cells are 5 cells.
  randomState = 99;
  for (int cell = 0; cell < 5; ++cell) skipCellDraws();
  const uint32_t skipped = randomState;
  randomState = 99;
  skipDrawsOfCells((int64_t{1} << 40U) + 5);
  EXPECT_EQ(randomState, skipped);
}

TEST(Random, anIntervalOfZeroGivesEveryFrameTheSamePattern) {
  const RandomSchedule schedule{.seed = 40, .interval = 0, .array = 3};
  for (const int32_t frame : {-7, 0, 1, 2, 1000}) EXPECT_EQ(stateAtFrame(schedule, frame), 40U) << frame;
}

TEST(Random, aTimeStepOfZeroGivesEveryTimeTheSamePattern) {
  EXPECT_EQ(stateOf({.seed = 40, .interval = 1, .array = 0, .currentTime = 500, .timeStep = 0}), 40U);
}

TEST(Random, anIntervalOfTwoHoldsAPatternForTwoFrames) {
  const RandomSchedule schedule{.seed = 0, .interval = 2, .array = 0};
  EXPECT_EQ(stateAtFrame(schedule, 0), 0U);
  EXPECT_EQ(stateAtFrame(schedule, 1), 0U);
  // Pattern 1 is warmed up by one step: 1 * 2061 + 7.
  EXPECT_EQ(stateAtFrame(schedule, 2), 2068U);
  EXPECT_EQ(stateAtFrame(schedule, 3), 2068U);
  // Pattern 2, two steps: 2 * 2061 + 7 = 4129, 4129 * 2061 + 7 = 8509876 = 129 * 65536 + 55732.
  EXPECT_EQ(stateAtFrame(schedule, 4), 55732U);
}

TEST(Random, aTimeWithinAFrameBelongsToThatFrame) {
  EXPECT_EQ(stateOf({.seed = 0, .interval = 1, .currentTime = 199, .timeStep = 100}), 2068U);
  EXPECT_EQ(stateOf({.seed = 0, .interval = 1, .currentTime = 99, .timeStep = 100}), 0U);
}

TEST(Random, anArrayOfThreeCyclesThroughThreePatterns) {
  const RandomSchedule schedule{.seed = 0, .interval = 1, .array = 3};
  const uint32_t expected[] = {0, 2068, 55732, 0, 2068, 55732};
  for (int32_t frame = 0; frame < 6; ++frame) EXPECT_EQ(stateAtFrame(schedule, frame), expected[frame]) << frame;
}

TEST(Random, aNegativeTimeTruncatesTowardZeroAndTakesTheStateBelowTheSeed) {
  // Frame -5 / 2 = -2 and not -3: the word of 50 - 2 = 48, which eight steps warm up.
  randomState = 48;
  for (int step = 0; step < 8; ++step) NextRandom();
  const uint32_t warmedUp48 = randomState;
  EXPECT_EQ(stateOf({.seed = 50, .interval = 1, .currentTime = -5, .timeStep = 2}), warmedUp48);
  // Frame -5, interval 2: pattern -2 and not -3. The word below 0 stays as it is.
  EXPECT_EQ(stateOf({.seed = 0, .interval = 2, .currentTime = -5, .timeStep = 1}), 0xFFFFFFFEU);
}

TEST(Random, theCycleOfANegativeTimeKeepsTheSignOfThePattern) {
  // Pattern -4 remainder 3 is -1, so seed 5 gives 4: 8251, 31494, 28501, 20312 after four steps.
  EXPECT_EQ(stateAtFrame({.seed = 5, .interval = 1, .array = 3}, -4), 20312U);
}

TEST(Random, aNegativeTimeStepMirrorsTheTime) {
  EXPECT_EQ(stateOf({.seed = 0, .interval = 1, .currentTime = 100, .timeStep = -100}), 0xFFFFFFFFU);
  EXPECT_EQ(stateOf({.seed = 0, .interval = 1, .currentTime = -100, .timeStep = -100}), 2068U);
}

TEST(Random, aNegativeLastDigitGetsNoWarmUp) {
  EXPECT_EQ(stateOf({.seed = -3, .interval = 0}), 0xFFFFFFFDU);
  EXPECT_EQ(stateOf({.seed = -19, .interval = 0}), 0xFFFFFFEDU);
}

TEST(Random, theLastDigitOfTheSeedIsTheNumberOfWarmUpSteps) {
  for (int32_t seed = 20; seed < 30; ++seed) {
    randomState = static_cast<uint32_t>(seed);
    for (int32_t step = 20; step < seed; ++step) NextRandom();
    const uint32_t expected = randomState;
    EXPECT_EQ(stateOf({.seed = seed, .interval = 0}), expected) << seed;
  }
}

TEST(Random, aSeedOfTenIsNotWarmedUp) {
  EXPECT_EQ(stateOf({.seed = 10, .interval = 0}), 10U);
}

TEST(Random, whatLeaves32BitsWraps) {
  // 2147483647 + 1 is -2147483648, whose last digit is -8.
  EXPECT_EQ(stateOf({.seed = largest, .interval = 1, .currentTime = 1, .timeStep = 1}), 0x80000000U);
}

TEST(Random, theSmallestTimeByAStepOfMinusOneIsItself) {
  EXPECT_EQ(stateOf({.seed = 0, .interval = 1, .currentTime = smallest, .timeStep = -1}), 0x80000000U);
  EXPECT_EQ(stateOf({.seed = 0, .interval = -1, .currentTime = smallest, .timeStep = 1}), 0x80000000U);
}

TEST(Random, theSmallestPatternCycledByMinusOneIsZero) {
  EXPECT_EQ(stateOf({.seed = 30, .interval = 1, .array = -1, .currentTime = smallest, .timeStep = 1}), 30U);
}

TEST(Random, aJitterRunsFromMinusItsAmountUpToJustBelowIt) {
  // The state before 0 is the one that 7 steps on from: (0 - 7) / 2061, found by walking the whole period.
  randomState = 0;
  uint32_t before = 0;
  do {
    before = randomState;
  } while (NextRandom() != 0);
  randomState = before;
  EXPECT_EQ(drawJitter(3.0), -3.0);
  while (NextRandom() != 65535) before = randomState;
  randomState = before;
  EXPECT_EQ(drawJitter(3.0), 6.0 * 65535.0 / 65536.0 - 3.0);
}

TEST(Random, aJitterRoundsEachOfItsSteps) {
  // A tenth has all its bits, so twice a tenth times the draw is rounded, and taking a tenth away again is too.
  int unlike = 0;
  randomState = 0;
  for (int draw = 0; draw < 1000; ++draw) {
    const uint32_t before = randomState;
    const auto number = static_cast<double>(NextRandom());
    randomState = before;
    const double product = 0.2 * number;
    const double expected = product / 65536.0 - 0.1;
    ASSERT_EQ(drawJitter(0.1), expected) << "from state " << before;
    unlike += expected == 0.1 * (2.0 * number / 65536.0 - 1.0) ? 0 : 1;
  }
  EXPECT_GT(unlike, 100);  // the draws tell the order of the steps
}

TEST(Random, aJitterOfNothingIsZeroAndStillADraw) {
  randomState = 0;
  EXPECT_EQ(drawJitter(0.0), 0.0);
  EXPECT_EQ(randomState, 7U);
}

TEST(Random, aNegativeAmountMirrorsTheJitter) {
  randomState = 0;
  EXPECT_EQ(drawJitter(1.0), 14.0 / 65536.0 - 1.0);
  randomState = 0;
  EXPECT_EQ(drawJitter(-1.0), 1.0 - 14.0 / 65536.0);
}

}  // namespace
}  // namespace vindrel
