// 32-bit integers at the edges of their range.
#include "effect/pixel/Int32.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vindrel {
namespace {

constexpr int32_t smallest = -2147483647 - 1;

TEST(Truncate, fractionsGoTowardZeroOnBothSides) {
  EXPECT_EQ(truncateToInt32(2.99), 2);
  EXPECT_EQ(truncateToInt32(-2.99), -2);
  EXPECT_EQ(truncateToInt32(0.999999999999), 0);
  EXPECT_EQ(truncateToInt32(-0.5), 0);
}

TEST(Truncate, theLastValuesInsideTheRangeAreKept) {
  EXPECT_EQ(truncateToInt32(2147483647.0), 2147483647);
  EXPECT_EQ(truncateToInt32(2147483647.75), 2147483647);
  EXPECT_EQ(truncateToInt32(-2147483648.0), smallest);
  EXPECT_EQ(truncateToInt32(-2147483648.75), smallest);
  EXPECT_EQ(truncateToInt32(-2147483647.5), -2147483647);
}

TEST(Truncate, whatDoesNotFitIsTheSmallestInteger) {
  EXPECT_EQ(truncateToInt32(2147483648.0), smallest);
  EXPECT_EQ(truncateToInt32(-2147483649.0), smallest);
  EXPECT_EQ(truncateToInt32(1e300), smallest);
  EXPECT_EQ(truncateToInt32(std::numeric_limits<double>::infinity()), smallest);
  EXPECT_EQ(truncateToInt32(-std::numeric_limits<double>::infinity()), smallest);
}

TEST(Truncate, whatIsNotANumberIsTheSmallestInteger) {
  EXPECT_EQ(truncateToInt32(std::nan("")), smallest);
}

TEST(Wrap, sumsDifferencesAndProductsGoOnAtTheOtherEnd) {
  constexpr int32_t largest = 2147483647;
  EXPECT_EQ(wrapAdd(largest, 1), smallest);
  EXPECT_EQ(wrapAdd(smallest, -1), largest);
  EXPECT_EQ(wrapSubtract(smallest, 1), largest);
  EXPECT_EQ(wrapSubtract(0, smallest), smallest);
  EXPECT_EQ(wrapMultiply(65536, 65536), 0);
  EXPECT_EQ(wrapMultiply(largest, 2), -2);
  EXPECT_EQ(wrapMultiply(-3, 7), -21);
}

}  // namespace
}  // namespace vindrel
