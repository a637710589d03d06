// The one way from a double to a 32-bit integer, at its edges.
#include "effect/pixel/Truncate.h"

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

}  // namespace
}  // namespace vindrel
