#include "effect/dots/Grid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <utility>
#include <vector>

#include "tests/dots/Frames.h"
#include "tests/dots/PlainGridWalk.h"

namespace vindrel {
namespace {

using test::fixed;
using test::gridOf;
using test::placeCenter;
using test::plainParams;
using test::RandomField;
using test::randomField;

struct Visit {
  double x, y;
  uint32_t state;  ///< the generator's word before the dot's draws
  friend bool operator==(const Visit&, const Visit&) = default;
};

std::vector<Visit> walk(const DotGrid& grid, uint32_t state = 0) {
  randomState = state;
  std::vector<Visit> visits;
  walkGrid(grid, [&](double x, double y) {
    visits.push_back({x, y, randomState});
    skipCellDraws();
  });
  return visits;
}

std::vector<Visit> walkPlainly(const plain::Grid& grid, uint32_t state, int32_t ringLimit) {
  plain::Generator generator{state};
  std::vector<Visit> visits;
  plain::walkGrid(grid, generator, ringLimit, [&](double x, double y, int32_t, int32_t, int32_t) {
    visits.push_back({x, y, generator.state});
    for (int draw = 0; draw < 9; ++draw) generator.next();
  });
  return visits;
}

/// A lattice from centre to centre, without jitter.
RenderParams lattice(double pitchX, double pitchY) {
  RenderParams params = plainParams();
  params.distanceBetween = 2;
  params.dotDistanceX = pitchX;
  params.dotDistanceY = pitchY;
  return params;
}

void expectSameWalk(const RenderParams& params, int32_t width, int32_t height, uint32_t state) {
  const plain::Grid twin = plain::makeGrid(params, width, height);
  const int32_t limit = test::farthestRing(params, width, height, twin.pitchX, twin.pitchY);
  const std::vector<Visit> expected = walkPlainly(twin, state, limit);
  const std::vector<Visit> visits = walk(gridOf(params, width, height), state);
  ASSERT_EQ(visits.size(), expected.size());
  for (std::size_t dot = 0; dot < visits.size(); ++dot) {
    ASSERT_EQ(visits[dot].x, expected[dot].x) << "dot " << dot;
    ASSERT_EQ(visits[dot].y, expected[dot].y) << "dot " << dot;
    ASSERT_EQ(visits[dot].state, expected[dot].state) << "dot " << dot;
  }
}

TEST(Grid, theLatticeIsTheSlowTwinsBitForBit) {
  for (uint32_t seed = 1; seed <= 500; ++seed) {
    const RandomField frame = randomField(seed);
    SCOPED_TRACE(::testing::Message() << frame);
    const plain::Grid twin = plain::makeGrid(frame.params, frame.width, frame.height);
    const DotGrid grid = gridOf(frame.params, frame.width, frame.height);
    ASSERT_EQ(grid.gridCenterX, twin.gridCenterX);
    ASSERT_EQ(grid.gridCenterY, twin.gridCenterY);
    ASSERT_EQ(grid.rotationCenterX, twin.rotationCenterX);
    ASSERT_EQ(grid.rotationCenterY, twin.rotationCenterY);
    ASSERT_EQ(grid.pitchX, twin.pitchX);
    ASSERT_EQ(grid.pitchY, twin.pitchY);
    ASSERT_EQ(grid.rotation, twin.rotation);
    ASSERT_EQ(grid.boundLeft, twin.boundLeft);
    ASSERT_EQ(grid.boundTop, twin.boundTop);
    ASSERT_EQ(grid.boundRight, twin.boundRight);
    ASSERT_EQ(grid.boundBottom, twin.boundBottom);
  }
}

TEST(Grid, theWalkIsTheSlowTwinsBitForBit) {
  std::size_t dots = 0;
  for (uint32_t seed = 1; seed <= 250; ++seed) {
    const RandomField frame = randomField(seed);
    SCOPED_TRACE(::testing::Message() << frame);
    expectSameWalk(frame.params, frame.width, frame.height, static_cast<uint32_t>(frame.params.randomSeed));
    if (::testing::Test::HasFatalFailure()) return;
    dots += walk(gridOf(frame.params, frame.width, frame.height)).size();
  }
  EXPECT_GT(dots, 10000U);  // the frames are no empty ones
}

TEST(Grid, aFarCenterIsWalkedToAsTheSlowTwinDoes) {
  const std::pair<double, double> centers[] = {{900.3, 12.7},  {-1100.9, 5.1},   {33.3, 1300.7},
                                               {12.1, -950.5}, {-700.7, -650.3}, {801.9, 777.7}};
  int32_t turn = 0;
  for (const auto& [x, y] : centers) {
    for (const double pitch : {2.3, 7.7}) {
      RenderParams params = lattice(pitch, pitch * 1.31);
      placeCenter(params, x, y);
      params.globalRotation = fixed(13.7 * turn++);
      params.globalRotationCenter = 1 + turn % 2;
      params.effector[0].position = {fixed(25.5), fixed(-13.25)};
      params.randomDistanceX = 0.3;
      SCOPED_TRACE(::testing::Message() << "centre " << x << ", " << y << ", pitch " << pitch << ", turn " << turn);
      EXPECT_GT(ringsThatMayReach(gridOf(params, 40, 30)).first, 0);  // some rings are leapt over
      EXPECT_FALSE(walk(gridOf(params, 40, 30)).empty());
      expectSameWalk(params, 40, 30, 0xFFFF8001U);
      if (HasFatalFailure()) return;
    }
  }
}

TEST(Grid, lopsidedLatticesAreWalkedAsTheSlowTwinDoes) {
  std::size_t dots = 0;
  for (uint32_t seed = 1; seed <= 30; ++seed) {
    RandomField frame = randomField(seed + 5000);
    frame.params.distanceBetween = 2;
    frame.params.dotDistanceX = 1.5 + 0.01 * seed;
    frame.params.dotDistanceY = 40.0 + seed;
    frame.params.randomDistanceY = 0.5;
    frame.params.globalRotationCenter = static_cast<int32_t>(1 + seed % 2);
    frame.params.effector[0].position = {fixed(-31.7), fixed(55.5)};
    placeCenter(frame.params, 0.37 * seed, 20.11);
    if (seed % 2 == 0) std::swap(frame.params.dotDistanceX, frame.params.dotDistanceY);
    if (seed % 3 == 0) frame.params.globalRotation = fixed(90.0 * seed);
    SCOPED_TRACE(::testing::Message() << frame);
    expectSameWalk(frame.params, frame.width, frame.height, seed);
    if (HasFatalFailure()) return;
    dots += walk(gridOf(frame.params, frame.width, frame.height)).size();
  }
  EXPECT_GT(dots, 3000U);
}

TEST(Grid, theWidestLegalSpreadEnds) {
  // Every control at the end of its range that lengthens the walk: half a million rings of a million cells and more.
  RenderParams params = lattice(1.0, 10000.0);
  placeCenter(params, 50.0, 50.0);
  params.globalRotation = fixed(90.0);
  params.randomDistanceY = 50.0;
  const std::size_t dots = walk(gridOf(params, 100, 100)).size();
  // One dot a pixel from -510000 up to 510100, in the one row of the lattice that the turn lays into the frame.
  EXPECT_GE(dots, 1020099U);
  EXPECT_LE(dots, 1020101U);
  // Touching every cell would take the better part of an hour, far beyond the time that a test is given.
}

TEST(Grid, theLastBitsOfAPlaceComeFromRepeatedAddition) {
  // 1.2 is no binary fraction: six additions of it, from the left end of ring 3 on, miss the product by two last bits.
  const DotGrid grid = gridOf(lattice(1.2, 1.2), 12, 12);
  double x = 0.0 - 3 * 1.2;
  for (int column = 0; column < 6; ++column) x += 1.2;
  ASSERT_NE(x, 3 * 1.2);
  bool found = false;
  for (const Visit& visit : walk(grid)) found |= visit.x == x;
  EXPECT_TRUE(found);
}

TEST(Grid, ringOneIsWalkedRowByRow) {
  RenderParams params = lattice(10.0, 20.0);
  placeCenter(params, 50.0, 60.0);
  const std::vector<Visit> visits = walk(gridOf(params, 100, 120));
  const std::pair<double, double> expected[] = {{50, 60}, {40, 40}, {50, 40}, {60, 40}, {40, 60},
                                                {60, 60}, {40, 80}, {50, 80}, {60, 80}};
  ASSERT_GE(visits.size(), 9U);
  for (std::size_t dot = 0; dot < 9; ++dot) {
    EXPECT_EQ(visits[dot].x, expected[dot].first) << dot;
    EXPECT_EQ(visits[dot].y, expected[dot].second) << dot;
  }
}

TEST(Grid, theWalkCallsForEachAcceptedCellOnce) {
  // Twelve columns, -10 to 100, lie below the high edge of 110, and eight rows, -20 to 120, below that of 140.
  RenderParams params = lattice(10.0, 20.0);
  placeCenter(params, 50.0, 60.0);
  EXPECT_EQ(walk(gridOf(params, 100, 120)).size(), 12U * 8U);
}

TEST(Grid, noSizeAndNoDistanceStillGiveAPitchOfOne) {
  RenderParams params = plainParams();
  params.dotSize = params.dotDistanceX = params.dotDistanceY = 0.0;
  const DotGrid grid = gridOf(params, 5, 4);
  EXPECT_EQ(grid.pitchX, 1.0);
  EXPECT_EQ(grid.pitchY, 1.0);
  // Columns -1 to 5 and rows -1 to 4 lie below the high edges of 6 and 5.
  EXPECT_EQ(walk(grid).size(), 7U * 6U);
}

TEST(Grid, centersWithADistanceOfZeroGiveAPitchOfOne) {
  const DotGrid grid = gridOf(lattice(0.0, 0.0), 5, 4);
  EXPECT_EQ(grid.pitchX, 1.0);
  EXPECT_EQ(grid.pitchY, 1.0);
}

TEST(Grid, aPitchOfHalfIsOneBeforeTheMarginIsMade) {
  RenderParams params = lattice(0.5, 8.0);
  params.randomDistanceX = 2.0;
  const DotGrid grid = gridOf(params, 20, 10);
  EXPECT_EQ(grid.pitchX, 1.0);
  EXPECT_EQ(grid.pitchY, 8.0);
  EXPECT_EQ(grid.boundLeft, -3.0);  // 1 * 2 + 1, and not 0.5 * 2 + 0.5
  EXPECT_EQ(grid.boundRight, 23.0);
  EXPECT_EQ(grid.boundTop, -8.0);
  EXPECT_EQ(grid.boundBottom, 18.0);
}

TEST(Grid, dotsAddTheSizeToTheDistanceAndCentersDoNot) {
  RenderParams params = plainParams();
  params.dotSize = 10.0;
  params.dotDistanceX = 3.0;
  params.dotDistanceY = 4.0;
  params.distanceBetween = 1;
  EXPECT_EQ(gridOf(params, 9, 9).pitchX, 13.0);
  EXPECT_EQ(gridOf(params, 9, 9).pitchY, 14.0);
  params.distanceBetween = 2;
  EXPECT_EQ(gridOf(params, 9, 9).pitchX, 3.0);
  EXPECT_EQ(gridOf(params, 9, 9).pitchY, 4.0);
  for (const int32_t other : {-1, 0, 3}) {
    params.distanceBetween = other;
    EXPECT_EQ(gridOf(params, 9, 9).pitchX, 1.0);
    EXPECT_EQ(gridOf(params, 9, 9).pitchY, 1.0);
  }
}

TEST(Grid, withoutATurnACellStaysWhereItIs) {
  RenderParams params = lattice(7.5, 3.25);
  placeCenter(params, 20.25, 11.5);
  params.globalRotation = 0;
  for (const int32_t turnCenter : {0, 1}) {
    params.globalRotationCenter = turnCenter;
    const std::vector<Visit> visits = walk(gridOf(params, 40, 30));
    ASSERT_FALSE(visits.empty());
    for (const Visit& visit : visits) {
      // Binary fractions: adding and taking away the centre loses nothing.
      const double column = (visit.x - 20.25) / 7.5;
      const double row = (visit.y - 11.5) / 3.25;
      EXPECT_EQ(column, std::round(column));
      EXPECT_EQ(row, std::round(row));
    }
  }
}

TEST(Grid, aQuarterTurnTakesTheNextColumnBelowTheCenter) {
  RenderParams params = lattice(10.0, 1000.0);
  placeCenter(params, 5.0, 5.0);
  params.globalRotation = fixed(90.0);
  const std::vector<Visit> visits = walk(gridOf(params, 10, 100));
  ASSERT_GE(visits.size(), 3U);
  EXPECT_EQ(visits[0].x, 5.0);
  EXPECT_EQ(visits[0].y, 5.0);
  // Ring 1: the left end of the middle row comes first, the right end lies ten pixels down.
  EXPECT_NEAR(visits[1].y, -5.0, 1e-9);
  EXPECT_NEAR(visits[2].x, 5.0, 1e-9);
  EXPECT_NEAR(visits[2].y, 15.0, 1e-9);
}

TEST(Grid, aCenterOutsideTheFrameMakesDotsFromTheFirstRingThatReachesIt) {
  RenderParams params = lattice(10.0, 10.0);
  placeCenter(params, -100.0, 5.0);
  const std::vector<Visit> visits = walk(gridOf(params, 30, 10));
  // The low edge is at -10: ring 9 is the first with a column there, and its only rows inside are -5, 5 and 15.
  ASSERT_GE(visits.size(), 3U);
  EXPECT_EQ(visits[0].x, -10.0);
  EXPECT_EQ(visits[0].y, -5.0);
  EXPECT_EQ(visits[1].y, 5.0);
  EXPECT_EQ(visits[2].y, 15.0);
  // Columns -10, 0, 10, 20, 30 are below the edge of 40.
  EXPECT_EQ(visits.size(), 5U * 3U);
  // 17 * 17 cells lie in the rings before. In ring 9 the top row of 19 and seven pairs come before the row at -5, whose
  // left end is out of the frame too.
  randomState = 0;
  for (int cell = 0; cell < 17 * 17 + 19 + 2 * 7 + 1; ++cell) skipCellDraws();
  EXPECT_EQ(visits[0].state, randomState);
}

TEST(Grid, aCellOnAHighEdgeIsOutAndOneOnALowEdgeIsIn) {
  RenderParams params = lattice(10.0, 10.0);
  placeCenter(params, 0.0, 0.0);
  double lowX = 0, highX = 0, lowY = 0, highY = 0;
  for (const Visit& visit : walk(gridOf(params, 20, 40))) {
    lowX = std::fmin(lowX, visit.x);
    highX = std::fmax(highX, visit.x);
    lowY = std::fmin(lowY, visit.y);
    highY = std::fmax(highY, visit.y);
  }
  EXPECT_EQ(lowX, -10.0);  // exactly boundLeft
  EXPECT_EQ(lowY, -10.0);  // exactly boundTop
  EXPECT_EQ(highX, 20.0);  // 30 is exactly boundRight
  EXPECT_EQ(highY, 40.0);  // 50 is exactly boundBottom
}

TEST(Grid, aWholeColumnOnTheLowEdgeIsIn) {
  RenderParams params = lattice(200.0, 10.0);
  placeCenter(params, 200.0, 50.0);
  // Columns -200, which is exactly boundLeft, to 400, below the edge of 600; rows -10 to 100, below the edge of 110.
  const std::vector<Visit> visits = walk(gridOf(params, 400, 100));
  EXPECT_EQ(visits.size(), 4U * 12U);
  EXPECT_EQ(std::count_if(visits.begin(), visits.end(), [](const Visit& visit) { return visit.x == -200.0; }), 12);
}

TEST(Grid, aRingThatSlipsThroughTheFrameEndsTheWalkForGood) {
  // Turned by 45 degrees, the row through the centre leaves the frame of -1 to 101 after 72 cells on both sides. The
  // next row, 1000 pixels apart, crosses it again about cell 1000, at (50, 1464), well above the low edge of 2100.
  RenderParams params = lattice(1.0, 1000.0);
  placeCenter(params, 50.0, 50.0);
  params.globalRotation = fixed(45.0);
  params.randomDistanceY = 1.0;
  const DotGrid grid = gridOf(params, 100, 100);
  EXPECT_EQ(grid.boundBottom, 2100.0);
  const std::vector<Visit> visits = walk(grid);
  EXPECT_EQ(visits.size(), 145U);
  for (const Visit& visit : visits) EXPECT_NEAR(visit.x, visit.y, 1e-9);
}

TEST(Grid, aDisabledEffectorStillTurnsTheLattice) {
  RenderParams params = lattice(10.0, 10.0);
  params.globalRotation = fixed(30.0);
  params.globalRotationCenter = 3;
  params.effector[1].enabled = 0;
  params.effector[1].position = {fixed(12.0), fixed(7.0)};
  const DotGrid before = gridOf(params, 40, 40);
  EXPECT_EQ(before.rotationCenterX, 12.0);
  EXPECT_EQ(before.rotationCenterY, 7.0);
  params.effector[1].position = {fixed(15.5), fixed(-7.0)};
  const DotGrid after = gridOf(params, 40, 40);
  EXPECT_EQ(after.rotationCenterX, 15.5);
  EXPECT_EQ(after.rotationCenterY, -7.0);
  EXPECT_NE(walk(before).at(0), walk(after).at(0));
}

TEST(Grid, eachItemNamesItsOwnRotationCenter) {
  RenderParams params = lattice(10.0, 10.0);
  placeCenter(params, 1.5, 2.5);
  for (int effector = 0; effector < 3; ++effector) {
    params.effector[effector].position = {fixed(10.0 + effector), fixed(20.0 + effector)};
  }
  const std::pair<double, double> expected[] = {{0, 0}, {1.5, 2.5}, {10, 20}, {11, 21}, {12, 22}, {0, 0}};
  for (int32_t item = 0; item < 6; ++item) {
    params.globalRotationCenter = item;
    EXPECT_EQ(gridOf(params, 9, 9).rotationCenterX, expected[item].first) << item;
    EXPECT_EQ(gridOf(params, 9, 9).rotationCenterY, expected[item].second) << item;
  }
}

TEST(Grid, anUnknownRotationCenterIsTheOrigin) {
  RenderParams params = lattice(10.0, 10.0);
  placeCenter(params, 50.0, 60.0);
  for (const int32_t item : {std::numeric_limits<int32_t>::min(), -1, 0, 5, std::numeric_limits<int32_t>::max()}) {
    params.globalRotationCenter = item;
    EXPECT_EQ(gridOf(params, 9, 9).rotationCenterX, 0.0) << item;
    EXPECT_EQ(gridOf(params, 9, 9).rotationCenterY, 0.0) << item;
  }
}

TEST(Grid, theTurnIsTakenFromFixedDegrees) {
  RenderParams params = lattice(10.0, 10.0);
  params.globalRotation = fixed(-450.5);
  const DotGrid grid = gridOf(params, 9, 9);
  EXPECT_EQ(grid.rotation, -450.5 * 0.017453292519943295);
  EXPECT_EQ(grid.rotationCos, std::cos(grid.rotation));
  EXPECT_EQ(grid.rotationSin, std::sin(grid.rotation));
}

// The draws of a cell, by its column and row from the centre cell.
std::map<std::pair<long, long>, uint32_t> drawsByCell(const RenderParams& params, int32_t width, int32_t height) {
  const DotGrid grid = gridOf(params, width, height);
  std::map<std::pair<long, long>, uint32_t> states;
  for (const Visit& visit : walk(grid, 77)) {
    states[{std::lround((visit.x - grid.gridCenterX) / grid.pitchX),
            std::lround((visit.y - grid.gridCenterY) / grid.pitchY)}] = visit.state;
  }
  return states;
}

TEST(Grid, theDrawsOfACellHangOnItsPlaceInTheWalkAlone) {
  RenderParams base = lattice(10.0, 10.0);
  placeCenter(base, 60.0, 60.0);
  const auto reference = drawsByCell(base, 200, 200);
  RenderParams otherPitch = lattice(6.5, 23.0);
  placeCenter(otherPitch, 60.0, 60.0);
  RenderParams otherCenter = base;
  placeCenter(otherCenter, -83.0, 195.0);
  RenderParams farCenter = base;
  placeCenter(farCenter, -40.0, 33.0);
  const std::pair<const char*, std::map<std::pair<long, long>, uint32_t>> others[] = {
      {"a smaller frame", drawsByCell(base, 90, 31)},
      {"another pitch", drawsByCell(otherPitch, 200, 200)},
      {"another centre", drawsByCell(otherCenter, 200, 200)},
      {"a centre outside", drawsByCell(farCenter, 200, 200)}};
  for (const auto& [name, states] : others) {
    std::size_t shared = 0;
    for (const auto& [cell, state] : states) {
      const auto match = reference.find(cell);
      if (match == reference.end()) continue;
      ++shared;
      EXPECT_EQ(state, match->second) << name << ": cell " << cell.first << ", " << cell.second;
    }
    EXPECT_GT(shared, 5U) << name;
  }
}

TEST(Grid, aCanvasOfNoSizeStillHasItsMargins) {
  // Only the margins are left: columns -10 and 0 of an open -10 to 10.
  EXPECT_EQ(walk(gridOf(lattice(10.0, 10.0), 0, 0)).size(), 4U);
}

TEST(Grid, theRingsThatMayReachHoldEveryRingWithADot) {
  for (uint32_t seed = 1000; seed < 1060; ++seed) {
    const RandomField frame = randomField(seed);
    SCOPED_TRACE(::testing::Message() << frame);
    const plain::Grid twin = plain::makeGrid(frame.params, frame.width, frame.height);
    const RingSpan rings = ringsThatMayReach(gridOf(frame.params, frame.width, frame.height));
    const int32_t limit = test::farthestRing(frame.params, frame.width, frame.height, twin.pitchX, twin.pitchY);
    plain::Generator generator;
    plain::walkGrid(twin, generator, limit, [&](double, double, int32_t ring, int32_t, int32_t) {
      EXPECT_GE(ring, rings.first);
      EXPECT_LT(ring, rings.end);
    });
  }
}

TEST(Grid, aLatticeThatMissesTheFrameGivesNoDotsAndEnds) {
  // A quarter turn lays the columns one pixel apart downward and the rows 1000 pixels apart across; the frame lies
  // between two rows, and no ring ever comes nearer.
  RenderParams params = lattice(1.0, 1000.0);
  placeCenter(params, 500.0, 50.0);
  params.globalRotation = fixed(90.0);
  EXPECT_TRUE(walk(gridOf(params, 100, 100)).empty());
}

TEST(Grid, aCenterAsFarAsItGoesIsReached) {
  RenderParams params = lattice(1.0, 1.0);
  params.centerPosition = {std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::min()};
  // Cells -1 to 4 and -1 to 3 below the high edges of 5 and 4.
  EXPECT_EQ(walk(gridOf(params, 4, 3)).size(), 6U * 5U);
}

TEST(Grid, aPitchOrBoundThatIsNoNumberGivesNoDots) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  constexpr double infinity = std::numeric_limits<double>::infinity();
  for (const double bad : {nan, infinity}) {
    for (const double turn : {0.0, 33.0}) {
      RenderParams size = plainParams();
      size.dotSize = bad;
      RenderParams distance = lattice(bad, 10.0);
      RenderParams jitter = lattice(10.0, 10.0);
      jitter.randomDistanceY = bad;
      for (RenderParams* params : {&size, &distance, &jitter}) {
        params->globalRotation = fixed(turn);
        EXPECT_TRUE(walk(gridOf(*params, 50, 50)).empty()) << bad << ", turn " << turn;
      }
    }
  }
}

TEST(Grid, aMinusInfiniteSizeIsAPitchOfOne) {
  RenderParams params = plainParams();
  params.dotSize = -std::numeric_limits<double>::infinity();
  EXPECT_EQ(walk(gridOf(params, 5, 4)).size(), 7U * 6U);
}

TEST(Grid, aHugePitchGivesTheCellsThatTouchTheFrame) {
  // The margin is a whole pitch, so the cells a pitch to the left and above are in, and those on the right are too.
  for (const double pitch : {1e6, 1e100, 1e300}) {
    RenderParams params = lattice(pitch, pitch);
    const std::size_t dots = walk(gridOf(params, 50, 50)).size();
    const std::size_t aSide = pitch < pitch + 50.0 ? 3U : 2U;  // a huge pitch swallows the width of the frame
    EXPECT_EQ(dots, aSide * aSide) << pitch;
  }
}

TEST(Grid, aLatticeThatNeedsRingsWithoutEndGivesNoDots) {
  // Far beyond what a control can be set to: the margin of the long side holds more cells of the short one than any
  // memory.
  RenderParams params = lattice(1e12, 1.0);
  params.globalRotation = fixed(90.0);
  EXPECT_TRUE(walk(gridOf(params, 50, 50)).empty());
}

TEST(Grid, aNegativeCanvasIsNoError) {
  EXPECT_TRUE(walk(gridOf(lattice(3.0, 3.0), -100, -100)).empty());
}

}  // namespace
}  // namespace vindrel
