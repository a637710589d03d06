#include "effect/dots/DotOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "effect/pixel/Pixel.h"
#include "tests/dots/DrawnCanvas.h"

namespace vindrel {
namespace {

using testing::DrawnCanvas;
using testing::ProgressListener;

constexpr Pixel8 red{255, 255, 0, 0};
constexpr Pixel8 green{255, 0, 255, 0};

DotRecord<Pixel8> square(double x, double y, double frontKey, Pixel8 color = red) {
  return {frontKey, x, y, color, 8.0, 8.0, 0.0, squareShape};
}

TEST(DotOrder, readingOrderIsTopRowFirstAndThenFromTheLeft) {
  std::vector<DotRecord<Pixel8>> records{square(3, 2, 0), square(9, 1, 1), square(1, 2, 2), square(2, 1.5, 3)};
  SortDots(records, DotOrder::reading);
  EXPECT_EQ(records[0].x, 9.0);
  EXPECT_EQ(records[1].x, 2.0);
  EXPECT_EQ(records[2].x, 1.0);
  EXPECT_EQ(records[3].x, 3.0);
}

TEST(DotOrder, theFrontOrderIsByKeyAlone) {
  std::vector<DotRecord<Pixel8>> records{square(3, 2, 7), square(9, 1, 1), square(1, 2, 0), square(2, 1.5, 3)};
  SortDots(records, DotOrder::nearestOnTop);
  EXPECT_EQ(records[0].frontKey, 0.0);
  EXPECT_EQ(records[1].frontKey, 1.0);
  EXPECT_EQ(records[2].frontKey, 3.0);
  EXPECT_EQ(records[3].frontKey, 7.0);
}

template <class Pixel>
void expectWholeRecordsMove() {
  std::mt19937 engine(7);
  std::vector<DotRecord<Pixel>> records(500);
  for (DotRecord<Pixel>& record : records) {
    const auto number = static_cast<double>(static_cast<uint32_t>(engine()));
    record = {number, 2 * number, 3 * number, {}, 4 * number, 5 * number, 6 * number, 2};
    record.color.red = static_cast<typename PixelTraits<Pixel>::Channel>(static_cast<int>(number / 4294967296.0 * 200));
  }
  SortDots(records, DotOrder::reading);
  double last = -1.0;
  for (const DotRecord<Pixel>& record : records) {
    EXPECT_GE(record.frontKey, last);
    last = record.frontKey;
    EXPECT_EQ(record.x, 2 * last);
    EXPECT_EQ(record.height, 5 * last);
    EXPECT_EQ(static_cast<int>(record.color.red), static_cast<int>(last / 4294967296.0 * 200));
  }
}

TEST(DotOrder, wholeRecordsMoveAt8Bits) {
  expectWholeRecordsMove<Pixel8>();
}
TEST(DotOrder, wholeRecordsMoveAt16Bits) {
  expectWholeRecordsMove<Pixel16>();
}
TEST(DotOrder, wholeRecordsMoveInFloat) {
  expectWholeRecordsMove<Pixel32>();
}

TEST(DotOrder, theLaterDotOfTheReadingOrderLiesOnTop) {
  DrawnCanvas<Pixel8> canvas(16, 16);
  DotField<Pixel8> field{{square(8, 7, 0, red), square(8, 8, 1, green)}, DotOrder::reading};
  EXPECT_EQ(DrawDots(nullptr, canvas.context, field), 0);
  EXPECT_EQ(canvas.at(8, 8), green);
}

TEST(DotOrder, theSmallestKeyLiesOnTop) {
  DrawnCanvas<Pixel8> canvas(16, 16);
  DotField<Pixel8> field{{square(8, 7, 0, red), square(8, 8, 1, green)}, DotOrder::nearestOnTop};
  EXPECT_EQ(DrawDots(nullptr, canvas.context, field), 0);
  EXPECT_EQ(canvas.at(8, 8), red);
}

TEST(DotOrder, progressIsToldAfterEachDot) {
  DrawnCanvas<Pixel8> canvas(16, 16);
  ProgressListener host;
  DotField<Pixel8> field{{square(1, 1, 0), square(2, 1, 0), square(3, 1, 0)}, DotOrder::reading};
  EXPECT_EQ(DrawDots(&host.in_data, canvas.context, field), 0);
  EXPECT_EQ(host.calls, (std::vector<ProgressListener::Call>{{33, 100}, {66, 100}, {100, 100}}));
}

TEST(DotOrder, noDotsTellNoProgress) {
  DrawnCanvas<Pixel8> canvas(4, 4);
  ProgressListener host;
  EXPECT_EQ(DrawDots(&host.in_data, canvas.context, DotField<Pixel8>{}), 0);
  EXPECT_TRUE(host.calls.empty());
}

TEST(DotOrder, aProgressErrorEndsTheDrawingAndIsReturned) {
  DrawnCanvas<Pixel8> canvas(40, 10);
  ProgressListener host;
  host.failAt = 2;
  host.failure = -17;
  DotField<Pixel8> field{{square(5, 5, 0), square(15, 5, 0), square(25, 5, 0)}, DotOrder::reading};
  EXPECT_EQ(DrawDots(&host.in_data, canvas.context, field), -17);
  EXPECT_EQ(host.calls.size(), 2U);
  EXPECT_EQ(canvas.at(5, 5), red);
  EXPECT_EQ(canvas.at(15, 5), red);
  EXPECT_EQ(canvas.at(25, 5), Pixel8{});
}

TEST(DotOrder, anOpacityOfZeroIsHandedOverAllTheSame) {
  DrawnCanvas<Pixel8> canvas(16, 16);
  ProgressListener host;
  const Pixel8 clear{0, 10, 20, 30};
  DotField<Pixel8> field{{square(8, 8, 0, clear)}, DotOrder::reading};
  EXPECT_EQ(DrawDots(&host.in_data, canvas.context, field), 0);
  EXPECT_EQ(canvas.context.colour, clear);  // the drawing has seen it
  EXPECT_EQ(host.calls.size(), 1U);
  for (const Pixel8& pixel : canvas.pixels) EXPECT_EQ(pixel.alpha, 0);
}

TEST(DotOrder, progressIsTruncatedPercent) {
  EXPECT_EQ(progressPercent(1, 3), 33);
  EXPECT_EQ(progressPercent(2, 3), 66);
  EXPECT_EQ(progressPercent(3, 3), 100);
  EXPECT_EQ(progressPercent(1, 1000), 0);
}

TEST(DotOrder, progressOfNothingIsAHundred) {
  EXPECT_EQ(progressPercent(0, 0), 100);
}

TEST(DotOrder, progressIsCappedAtAHundred) {
  EXPECT_EQ(progressPercent(5, 3), 100);
}

TEST(DotOrder, progressOfManyDotsDoesNotOverflow) {
  EXPECT_EQ(progressPercent(30'000'000, 40'000'000), 75);
  EXPECT_EQ(progressPercent(2'000'000'000, 2'100'000'000), 95);
}

}  // namespace
}  // namespace vindrel
