#include "effect/dots/RenderDotField.h"

#include <gtest/gtest.h>

#include <vector>

#include "effect/dots/CollectDots.h"
#include "effect/pixel/Pixel.h"
#include "tests/dots/DrawnCanvas.h"
#include "tests/dots/Frames.h"

namespace vindrel {
namespace {

using testing::DrawnCanvas;
using testing::fixed;
using testing::placeCenter;
using testing::plainParams;
using testing::ProgressListener;

/// 25 dots on a canvas of 90 x 90, nine of them within it.
FrameRecord centered() {
  FrameRecord frame;
  frame.params = plainParams();
  placeCenter(frame.params, 45.0, 45.0);
  return frame;
}

template <class Pixel>
std::vector<Pixel> rendered(FrameRecord& frame) {
  DrawnCanvas<Pixel> canvas(90, 90);
  EXPECT_EQ(RenderDotField(frame, canvas.context), 0);
  return canvas.pixels;
}

template <class Pixel>
void expectDotsInTheirPlaces() {
  FrameRecord frame = centered();
  DrawnCanvas<Pixel> canvas(90, 90);
  EXPECT_EQ(RenderDotField(frame, canvas.context), 0);
  for (const int32_t row : {15, 45, 75}) {
    for (const int32_t column : {15, 45, 75}) {
      EXPECT_EQ(canvas.at(column, row).alpha, PixelTraits<Pixel>::fullScale) << column << ", " << row;
      EXPECT_EQ(canvas.at(column, row).red, PixelTraits<Pixel>::fullScale);
    }
  }
  for (const int32_t row : {0, 30, 60}) {
    for (const int32_t column : {0, 30, 60}) EXPECT_EQ(canvas.at(column, row), Pixel{}) << column << ", " << row;
  }
}

TEST(RenderDotField, dotsStandInTheirPlacesAt8Bits) {
  expectDotsInTheirPlaces<Pixel8>();
}
TEST(RenderDotField, dotsStandInTheirPlacesAt16Bits) {
  expectDotsInTheirPlaces<Pixel16>();
}
TEST(RenderDotField, dotsStandInTheirPlacesInFloat) {
  expectDotsInTheirPlaces<Pixel32>();
}

TEST(RenderDotField, withoutTheHostsRecordNoProgressIsTold) {
  FrameRecord frame = centered();
  frame.in_data = nullptr;
  DrawnCanvas<Pixel8> canvas(90, 90);
  EXPECT_EQ(RenderDotField(frame, canvas.context), 0);
  EXPECT_FALSE(canvas.isEmpty());
}

TEST(RenderDotField, dotsOfNoSizeCountForProgressAndDrawNothing) {
  FrameRecord frame = centered();
  frame.params.dotSize = 0.0;
  frame.params.dotDistanceX = frame.params.dotDistanceY = 30.0;
  ProgressListener host;
  frame.in_data = &host.in_data;
  DrawnCanvas<Pixel8> canvas(90, 90);
  EXPECT_EQ(RenderDotField(frame, canvas.context), 0);
  ASSERT_EQ(host.calls.size(), 25U);
  EXPECT_EQ(host.calls.front(), (ProgressListener::Call{4, 100}));
  EXPECT_EQ(host.calls.back(), (ProgressListener::Call{100, 100}));
  EXPECT_TRUE(canvas.isEmpty());
}

TEST(RenderDotField, dotsThatAnEffectorShrinksToNothingCountForProgress) {
  FrameRecord frame = centered();
  frame.params.effector[0].enabled = 1;
  frame.params.effector[0].size = 1000.0;
  frame.params.effector[0].ratioSize = 0.0;
  ProgressListener host;
  frame.in_data = &host.in_data;
  DrawnCanvas<Pixel8> canvas(90, 90);
  EXPECT_EQ(RenderDotField(frame, canvas.context), 0);
  EXPECT_EQ(host.calls.size(), 25U);
  EXPECT_TRUE(canvas.isEmpty());
}

TEST(RenderDotField, flatDotsCountForProgressAndDrawNothing) {
  FrameRecord frame = centered();
  frame.params.dotAspect = 100.0;
  ProgressListener host;
  frame.in_data = &host.in_data;
  DrawnCanvas<Pixel8> canvas(90, 90);
  EXPECT_EQ(RenderDotField(frame, canvas.context), 0);
  EXPECT_EQ(host.calls.size(), 25U);
  EXPECT_TRUE(canvas.isEmpty());
}

TEST(RenderDotField, anErrorOfTheFirstProgressCallLeavesOneDotDrawn) {
  FrameRecord frame = centered();
  frame.params.dotShape = squareShape;
  frame.params.dotSize = 50.0;
  frame.params.distanceBetween = 2;
  frame.params.dotDistanceX = frame.params.dotDistanceY = 30.0;
  ProgressListener host;
  host.failAt = 1;
  host.failure = 1234;
  frame.in_data = &host.in_data;
  DrawnCanvas<Pixel8> canvas(90, 90);
  EXPECT_EQ(RenderDotField(frame, canvas.context), 1234);
  EXPECT_EQ(host.calls.size(), 1U);
  // The first in reading order stands at (-15, -15) and reaches to column and row 9; the next one, at (15, -15), would
  // cover the first 40 columns.
  for (int32_t row = 0; row < 90; ++row) {
    for (int32_t column = 0; column < 90; ++column) {
      EXPECT_EQ(canvas.at(column, row).alpha, column < 10 && row < 10 ? 255 : 0) << column << ", " << row;
    }
  }
}

TEST(RenderDotField, theCenterDotLiesOnTop) {
  // Dots larger than their distance, each of its own hue by its place left or right of the line through the centre.
  FrameRecord frame = centered();
  frame.params.dotSize = 50.0;
  frame.params.distanceBetween = 2;
  frame.params.dotDistanceX = frame.params.dotDistanceY = 30.0;
  frame.params.dotShape = squareShape;
  frame.params.centerDotToFront = 1;
  frame.params.randomHue = fixed(180.0);
  DrawnCanvas<Pixel8> canvas(90, 90);
  const auto records = collectDots<Pixel8>(frame.params, nullptr, 90, 90).records;
  EXPECT_EQ(RenderDotField(frame, canvas.context), 0);
  // The whole of the centre dot shows: from 20 to 70 in both directions.
  for (const int32_t row : {21, 45, 68}) {
    for (const int32_t column : {21, 45, 68}) EXPECT_EQ(canvas.at(column, row), records.at(0).color);
  }
}

TEST(RenderDotField, inReadingOrderLowerDotsLieOverHigherOnes) {
  FrameRecord frame = centered();
  frame.params.dotSize = 50.0;
  frame.params.distanceBetween = 2;
  frame.params.dotDistanceX = 200.0;
  frame.params.dotDistanceY = 30.0;
  frame.params.dotShape = squareShape;
  frame.params.randomHue = fixed(180.0);
  DrawnCanvas<Pixel8> canvas(90, 90);
  const auto records = collectDots<Pixel8>(frame.params, nullptr, 90, 90).records;
  EXPECT_EQ(RenderDotField(frame, canvas.context), 0);
  // The dot below the centre one, at (45, 75), begins at row 50; the centre one shows above it down to there.
  Pixel8 below{};
  for (const DotRecord<Pixel8>& record : records) {
    if (record.x == 45.0 && record.y == 75.0) below = record.color;
  }
  ASSERT_NE(below, records.at(0).color);
  EXPECT_EQ(canvas.at(45, 45), records.at(0).color);
  EXPECT_EQ(canvas.at(45, 52), below);
}

TEST(RenderDotField, theFrameBeforeLeavesNoTrace) {
  FrameRecord frame = centered();
  frame.params.randomDistanceX = frame.params.randomSize = frame.params.randomOpacity = 0.5;
  const std::vector<Pixel8> alone = rendered<Pixel8>(frame);
  FrameRecord other = centered();
  other.params.randomSeed = 77;
  other.params.dotShape = starShape;
  other.params.centerDotToFront = 1;
  rendered<Pixel32>(other);
  EXPECT_EQ(rendered<Pixel8>(frame), alone);
}

TEST(RenderDotField, framesInAnyOrderAreTheSameFrames) {
  ProgressListener host;
  host.in_data.time_step = 100;
  FrameRecord frame = centered();
  frame.in_data = &host.in_data;
  frame.params.randomInterval = 1;
  frame.params.randomDistanceX = frame.params.randomDistanceY = 0.5;
  const auto renderedAt = [&](A_long number) {
    host.in_data.current_time = number * 100;
    return rendered<Pixel8>(frame);
  };
  std::vector<std::vector<Pixel8>> forward;
  for (A_long number = 0; number < 5; ++number) forward.push_back(renderedAt(number));
  for (A_long number = 4; number >= 0; --number) {
    EXPECT_EQ(renderedAt(number), forward[static_cast<std::size_t>(number)]) << "frame " << number;
  }
  EXPECT_NE(forward[0], forward[1]);
}

TEST(RenderDotField, anEmptyCanvasIsNoError) {
  FrameRecord frame = centered();
  DrawnCanvas<Pixel8> canvas(0, 0);
  EXPECT_EQ(RenderDotField(frame, canvas.context), 0);
}

}  // namespace
}  // namespace vindrel
