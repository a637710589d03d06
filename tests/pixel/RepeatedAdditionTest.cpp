#include "effect/pixel/RepeatedAddition.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace vindrel {
namespace {

double addPlainly(double start, double step, int32_t count) {
  double sum = start;
  for (int32_t i = 0; i < count; ++i) sum += step;
  return sum;
}

void expectSameSum(double start, double step, int32_t count) {
  ASSERT_EQ(addRepeatedly(start, step, count), addPlainly(start, step, count))
      << std::hexfloat << start << " and " << count << " times " << step;
}

TEST(RepeatedAddition, noAdditionLeavesTheStart) {
  EXPECT_EQ(addRepeatedly(-3.25, 1.1, 0), -3.25);
  EXPECT_TRUE(std::signbit(addRepeatedly(-0.0, 1.1, 0)));
}

TEST(RepeatedAddition, wholeNumbersAddUpExactly) {
  EXPECT_EQ(addRepeatedly(-1000000.0, 1.0, 2000000), 1000000.0);
  EXPECT_EQ(addRepeatedly(7.0, 3.0, 700000000), 2100000007.0);
}

TEST(RepeatedAddition, theSumIsNotTheProduct) {
  ASSERT_NE(-700 * 1.1 + 1400 * 1.1, addPlainly(-700 * 1.1, 1.1, 1400));
  expectSameSum(-700 * 1.1, 1.1, 1400);
}

TEST(RepeatedAddition, everyLengthOfARunIsRight) {
  double sum = -150 * 1.7;
  for (int32_t count = 0; count <= 600; ++count) {
    ASSERT_EQ(addRepeatedly(-150 * 1.7, 1.7, count), sum) << count;
    sum += 1.7;
  }
}

TEST(RepeatedAddition, symmetricRunsAreRightAcrossZero) {
  std::mt19937_64 engine(11);
  for (int turn = 0; turn < 3000; ++turn) {
    const double step = 1.0 + std::ldexp(static_cast<double>(engine() % 1000003), -static_cast<int>(engine() % 18));
    const auto ring = static_cast<int32_t>(engine() % 5000);
    const double center = std::ldexp(static_cast<double>(static_cast<int32_t>(engine())), -16);
    expectSameSum(center - ring * step, step, 2 * ring);
    expectSameSum(center - ring * step, step, static_cast<int32_t>(engine() % 10000));
    if (HasFatalFailure()) return;
  }
}

TEST(RepeatedAddition, stepsWithAllTheirBitsAreRight) {
  std::mt19937_64 engine(12);
  for (int turn = 0; turn < 3000; ++turn) {
    const double step = std::bit_cast<double>(0x3FF0000000000000U + (engine() >> 8U) % (14ULL << 52U));
    const double start = (static_cast<double>(engine() >> 11U) / 4503599627370496.0 - 1.0) * 1e6;
    expectSameSum(start, step, static_cast<int32_t>(engine() % 8000));
    if (HasFatalFailure()) return;
  }
}

// Sums so large that the step is only a few of their smallest steps, with halves between: every addition rounds, and
// many are ties.
TEST(RepeatedAddition, tiesGoToTheEvenSumAsInTheSingleAdditions) {
  std::mt19937_64 engine(13);
  for (int turn = 0; turn < 3000; ++turn) {
    const double unit = std::ldexp(1.0, static_cast<int>(engine() % 3));
    const double start =
        std::ldexp(static_cast<double>(engine() % 4096), 1) * unit + std::ldexp(engine() % 2 == 0 ? 1.0 : -1.0, 53);
    const double step = 0.5 * static_cast<double>(1 + engine() % 12);
    expectSameSum(start, step, static_cast<int32_t>(engine() % 3000));
    expectSameSum(start - 2000.0 * unit, step, static_cast<int32_t>(engine() % 3000));
    if (HasFatalFailure()) return;
  }
}

TEST(RepeatedAddition, aStepThatIsLostInTheSumStaysLost) {
  expectSameSum(std::ldexp(1.0, 60), 3.0, 1000);
  expectSameSum(-std::ldexp(1.0, 60), 3.0, 1000);
}

TEST(RepeatedAddition, whatIsNotFiniteStaysSo) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(addRepeatedly(infinity, 1.0, 1000), infinity);
  EXPECT_EQ(addRepeatedly(-infinity, 1.0, 1000), -infinity);
  EXPECT_TRUE(std::isnan(addRepeatedly(std::numeric_limits<double>::quiet_NaN(), 1.0, 1000)));
  EXPECT_EQ(addRepeatedly(0.0, 1e307, 1000), infinity);
}

}  // namespace
}  // namespace vindrel
