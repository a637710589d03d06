#include "effect/raster/EdgeTable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/Dice.h"
#include "tests/support/Points.h"

namespace vindrel {
namespace {

using test::Dice;
using test::Points;
using test::textOf;
using test::verticesOf;

constexpr double infinity = std::numeric_limits<double>::infinity();

/// A table with storage of its own.
struct Table {
  std::vector<ScanEdge> storage;
  EdgeTable edges;

  explicit Table(const Points& points, bool dropLevel = false) : edges(storage, verticesOf(points), dropLevel) {}
};

/// The plain form of passing: one sub-row after the other.
void passOneByOne(EdgeTable& edges, int32_t y, int32_t to) {
  for (; y < to; ++y) {
    edges.enter(y);
    edges.step();
  }
}

int32_t firstSubRow(const Points& points) {
  double top = infinity;
  for (const auto& [x, y] : points) top = std::min(top, y);
  return nearestSub(top * 8.0);
}

/// The active edges in their order, numbers to the last bit.
std::string activeEdges(EdgeTable& edges) {
  std::ostringstream out;
  out << std::hexfloat;
  for (int32_t i = 0; i < edges.activeCount(); ++i) {
    const ScanEdge& e = edges.active(i);
    // Which of the two zeros an x is, and with which bits it isn't a number, shows nowhere.
    if (std::isnan(e.x)) {
      out << "(nan";
    } else {
      out << '(' << e.x + 0.0;
    }
    out << ' ' << e.yTop << ' ' << e.yBottom << ' ' << e.winding << ')';
  }
  return out.str();
}

TEST(EdgeTable, anEdgeIsActiveFromItsFirstSubRowToTheOneBeforeItsLast) {
  Table table({{0, 1}, {4, 1}, {4, 2}, {0, 2}});
  for (int32_t y = 8; y <= 16; ++y) {
    table.edges.enter(y);
    EXPECT_EQ(table.edges.activeCount(), y < 16 ? 2 : 0) << y;
    table.edges.step();
  }
}

TEST(EdgeTable, aLevelSideIsLeftOutAtOnceWhereThatIsAskedFor) {
  const Points box{{0, 1}, {4, 1.01}, {4, 2}, {0, 2}};
  EXPECT_EQ(Table(box).storage.size(), 5U);
  EXPECT_EQ(Table(box, true).storage.size(), 3U);
}

TEST(EdgeTable, anEdgeWhoseFirstSubRowWasMissedNeverJoins) {
  Table table({{0, 1}, {4, 1}, {4, 2}, {0, 2}});
  table.edges.enter(9);
  EXPECT_EQ(table.edges.activeCount(), 0);
}

TEST(EdgeTable, tellsTheNextSubRowOnWhichAnEdgeStartsOrEnds) {
  Table table({{0, 1}, {4, 3}, {0, 5}, {1, 4}});
  EXPECT_EQ(table.edges.nextChange(0, 100), 8);
  table.edges.enter(8);
  EXPECT_EQ(table.edges.nextChange(8, 100), 24);
  EXPECT_EQ(table.edges.nextChange(8, 20), 20);
}

// The outline begins on sub-row -79 (truncation goes toward zero), so sub-row -16 comes 63 steps later. Slopes are 0,
// an eighth, 0 and 28/320 of a sub-column.
TEST(EdgeTable, passingAddsTheSlopeForEachSubRow) {
  Table table({{2, -10}, {2, 30}, {1, 30}, {1, -10}, {0.5, -10}, {5.5, 30}});
  table.edges.pass(-79, -16);
  table.edges.enter(-16);
  ASSERT_EQ(table.edges.activeCount(), 4);
  EXPECT_EQ(table.edges.active(0).x, 8.0);
  EXPECT_EQ(table.edges.active(1).x, 4.0 + 63 * 0.125);
  EXPECT_EQ(table.edges.active(2).x, 16.0);
  EXPECT_NEAR(table.edges.active(3).x, 16.0 + 63 * 0.0875, 1e-12);
}

// The lowest upper end first, equals in the order of the vertices, the sentinel behind. Sides end at each vertex in
// turn: up the left, along the top, down the right, along the bottom.
TEST(EdgeTable, sidesAreSortedByTheirUpperEndsAndEqualsKeepTheirOrder) {
  const Table table({{1, 20}, {5, 20}, {7, 30}, {3, 30}});
  const std::vector<ScanEdge>& edges = table.storage;
  ASSERT_EQ(edges.size(), 5U);
  const double yTop[4] = {240, 160, 160, 160};
  const double yBottom[4] = {240, 240, 160, 240};
  const int32_t winding[4] = {1, 1, 1, -1};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(edges[i].yTop, yTop[i]) << i;
    EXPECT_EQ(edges[i].yBottom, yBottom[i]) << i;
    EXPECT_EQ(edges[i].winding, winding[i]) << i;
  }
  EXPECT_EQ(edges[3].x, 40.0);
  EXPECT_EQ(edges[3].dxdy, 16.0 / 80.0);
  EXPECT_EQ(edges[4].yTop, -2147483648.0);
}

// Outlines of all sizes, with edges that share ends, lie on one another, or are level: x to the last bit, and equal
// edges in the same order.
TEST(EdgeTable, passingGivesWhatSteppingThroughEverySubRowGives) {
  for (uint64_t seed = 1; seed <= 1500; ++seed) {
    Dice dice(seed);
    const double height = std::pow(10.0, dice.number(0.5, 3.7));
    const double width = std::pow(10.0, dice.number(-3.0, dice.oneIn(3) ? 12.0 : 4.0));
    const double offset = dice.oneIn(2) ? 0.0 : dice.number(-width, width);
    const bool onGrid = dice.oneIn(3);
    Points points;
    for (int n = dice.pick(3, 12); n > 0; --n) {
      double x = offset + dice.number(-width, width);
      double y = dice.number(-height, 0.2 * height);
      if (onGrid) {
        x = std::round(x * 8.0) / 8.0;
        y = std::round(y * 8.0) / 8.0;
      }
      if (!points.empty() && dice.oneIn(5)) x = points.back().first;
      if (!points.empty() && dice.oneIn(8)) y = points.back().second;
      if (points.size() > 1 && dice.oneIn(4)) {  // back to where an edge came from, so that two lie on one another
        x = points[points.size() - 2].first;
        y = points[points.size() - 2].second;
      }
      points.emplace_back(x, y);
    }
    const int32_t to = dice.oneIn(2) ? 0 : dice.pick(firstSubRow(points), 50);
    Table leapt(points), stepped(points);
    leapt.edges.pass(firstSubRow(points), to);
    passOneByOne(stepped.edges, firstSubRow(points), to);
    leapt.edges.enter(to);
    stepped.edges.enter(to);
    ASSERT_EQ(activeEdges(leapt.edges), activeEdges(stepped.edges))
        << "seed " << seed << ", to " << to << ": " << textOf(points);
  }
}

// Two million sub-rows, so that columns cross many powers of two on the way, and two edges that part by less than
// their last bit for most of it.
TEST(EdgeTable, aLongWayIsPassedAsByStepping) {
  const double far = 2.5e5;
  for (const Points& points :
       {Points{{-3.3, -far}, {1234.567, 10.0}, {-77777.7, 20.0}}, Points{{3.0e9, -far}, {-2.0e9, 10.0}, {1.0e-9, 20.0}},
        Points{{0.0, -far}, {1.0e9, 10.0}, {1.0e9 + 1.0e-6, 10.0}}}) {
    Table leapt(points), stepped(points);
    leapt.edges.pass(firstSubRow(points), 0);
    passOneByOne(stepped.edges, firstSubRow(points), 0);
    ASSERT_EQ(leapt.edges.activeCount(), 2);
    EXPECT_EQ(activeEdges(leapt.edges), activeEdges(stepped.edges)) << textOf(points);
  }
}

// Two thousand million sub-rows are passed in no time, or this test doesn't end.
TEST(EdgeTable, theLongestWayThereIsIsPassedAtOnce) {
  constexpr int32_t top = std::numeric_limits<int32_t>::min();
  const Points upright{{1.0, -1.0e9}, {2.0, -1.0e9}, {2.0, 10.0}, {1.0, 10.0}};
  Table table(upright);
  table.edges.pass(top, 0);
  table.edges.enter(0);
  ASSERT_EQ(table.edges.activeCount(), 2);
  EXPECT_EQ(table.edges.active(0).x, 8.0);
  EXPECT_EQ(table.edges.active(1).x, 16.0);

  // A slope of exactly 2 sub-columns never rounds. The first sub-row is -2^31 + 1, for half of one is added before
  // truncation; so 2^31 - 1 steps lead from -2^32 to -2.
  const Points slanted{{-536870912.0, -268435456.0}, {40.0, 20.0}, {50.0, 20.0}};
  Table turned(slanted);
  turned.edges.pass(top, 0);
  turned.edges.enter(0);
  ASSERT_EQ(turned.edges.activeCount(), 2);
  EXPECT_EQ(turned.edges.active(0).x, -2.0);
}

TEST(EdgeTable, endlessColumnsArePassedAsByStepping) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const Points& points :
       {Points{{infinity, -20}, {3, 5}, {-infinity, 8}, {7, -19}}, Points{{nan, -20}, {3, 5}, {1, 8}},
        Points{{4, -20}, {4, 5}, {nan, 8}, {2, -20}, {2, 8}, {1, -20}}}) {
    Table leapt(points), stepped(points);
    leapt.edges.pass(firstSubRow(points), 0);
    passOneByOne(stepped.edges, firstSubRow(points), 0);
    EXPECT_EQ(activeEdges(leapt.edges), activeEdges(stepped.edges)) << textOf(points);
  }
}

}  // namespace
}  // namespace vindrel
