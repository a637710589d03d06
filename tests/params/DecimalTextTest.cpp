#include "effect/params/StoredDefaults.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace vindrel {
namespace {

std::string written(double value) {
  char text[decimalTextSize];
  writeDecimal(text, value);
  return text;
}

TEST(DecimalText, sixDecimalsAreWritten) {
  EXPECT_EQ(written(10), "10.000000");
  EXPECT_EQ(written(0), "0.000000");
  EXPECT_EQ(written(-12.5), "-12.500000");
  EXPECT_EQ(written(1e7), "10000000.000000");
  EXPECT_EQ(written(0.0000004), "0.000000");
  EXPECT_EQ(written(0.0000006), "0.000001");
}

TEST(DecimalText, theLongestNumberFits) {
  const std::string text = written(-std::numeric_limits<double>::max());
  EXPECT_EQ(text.size(), 1U + 309U + 7U);
  EXPECT_EQ(text.substr(0, 8), "-1797693");
  EXPECT_EQ(text.substr(310), ".000000");
}

TEST(DecimalText, numbersAreReadUpToTheFirstCharacterThatIsNone) {
  EXPECT_EQ(readDecimal("12.5"), 12.5);
  EXPECT_EQ(readDecimal("  \t12.5"), 12.5);
  EXPECT_EQ(readDecimal("+12.5px"), 12.5);
  EXPECT_EQ(readDecimal("-0.25 ; a note"), -0.25);
  EXPECT_EQ(readDecimal("1e3"), 1000.0);
  EXPECT_EQ(readDecimal("1.5e-1"), 0.15);
  EXPECT_EQ(readDecimal(".5"), 0.5);
  EXPECT_EQ(readDecimal("5."), 5.0);
  EXPECT_EQ(readDecimal("7e"), 7.0);
}

TEST(DecimalText, aCommaEndsTheNumber) {
  EXPECT_EQ(readDecimal("12,5"), 12.0);
}

TEST(DecimalText, aTextThatIsNoNumberReadsAsZero) {
  EXPECT_EQ(readDecimal(""), 0.0);
  EXPECT_EQ(readDecimal("ten"), 0.0);
  EXPECT_EQ(readDecimal("-"), 0.0);
  EXPECT_EQ(readDecimal("+-5"), 0.0);
  EXPECT_EQ(readDecimal("--5"), 0.0);
  EXPECT_EQ(readDecimal("- 5"), 0.0);
}

TEST(DecimalText, numbersBeyondADoubleAreInfiniteOrNothing) {
  EXPECT_EQ(readDecimal("1e400"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(readDecimal("-1e400"), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(readDecimal("1e-400"), 0.0);
  EXPECT_EQ(readDecimal("1E400"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(readDecimal("1E-400"), 0.0);
  EXPECT_TRUE(std::signbit(readDecimal("-1e-400")));
}

}  // namespace
}  // namespace vindrel
