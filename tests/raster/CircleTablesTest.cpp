#include "effect/raster/CircleTables.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vindrel {
namespace {

constexpr long double pi = 3.14159265358979323846264338327950288L;

/// Sine of i half degrees, folded into 0 to 45 degrees by whole numbers so that only small angles are computed.
long double exactSine(int i) {
  i = ((i % 720) + 720) % 720;
  if (i >= 360) return -exactSine(i - 360);
  if (i > 180) return exactSine(360 - i);
  if (i > 90) return std::cos(pi * static_cast<long double>(180 - i) / 360.0L);
  return std::sin(pi * static_cast<long double>(i) / 360.0L);
}

double distanceToNeighbour(double v) {
  const double magnitude = std::fabs(v);
  return std::nextafter(magnitude, 2.0) - magnitude;
}

void expectRoundedOnce(double entry, long double exact, int i) {
  const long double error = std::fabs(static_cast<long double>(entry) - exact);
  // The long double itself is off by less than a thousandth of a double's last place.
  static_assert(std::numeric_limits<long double>::digits >= 64);
  EXPECT_LE(error, 0.501L * static_cast<long double>(distanceToNeighbour(entry))) << "entry " << i;
}

TEST(CircleTables, everyEntryIsTheMathematicalValueRoundedOnce) {
  for (int i = 0; i < circleSteps; ++i) {
    expectRoundedOnce(sinTable[i], exactSine(i), i);
    expectRoundedOnce(cosTable[i], exactSine(i + 180), i);
  }
}

TEST(CircleTables, quarterTurnsAreExact) {
  const double cosines[] = {1.0, 0.0, -1.0, 0.0};
  const double sines[] = {0.0, 1.0, 0.0, -1.0};
  for (int quarter = 0; quarter < 4; ++quarter) {
    EXPECT_EQ(cosTable[quarter * 180], cosines[quarter]) << quarter * 90 << " degrees";
    EXPECT_EQ(sinTable[quarter * 180], sines[quarter]) << quarter * 90 << " degrees";
  }
}

TEST(CircleTables, halvesAreExact) {
  EXPECT_EQ(sinTable[30 * 2], 0.5);
  EXPECT_EQ(sinTable[150 * 2], 0.5);
  EXPECT_EQ(sinTable[210 * 2], -0.5);
  EXPECT_EQ(sinTable[330 * 2], -0.5);
  EXPECT_EQ(cosTable[60 * 2], 0.5);
  EXPECT_EQ(cosTable[120 * 2], -0.5);
  EXPECT_EQ(cosTable[240 * 2], -0.5);
  EXPECT_EQ(cosTable[300 * 2], 0.5);
}

}  // namespace
}  // namespace vindrel
