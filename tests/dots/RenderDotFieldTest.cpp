#include "effect/dots/RenderDotField.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "effect/pixel/Pixel.h"
#include "tests/dots/Frames.h"
#include "tests/support/TestCanvas.h"

namespace vindrel {
namespace {

using test::fixed;
using test::placeCenter;
using test::plainParams;
using test::settingsOf;
using test::TestCanvas;

/// Writes down each share that it is told, and answers 0 but to the call numbered `failAt`, to which it says `failure`.
struct ProgressListener {
  ProgressListener() = default;
  ProgressListener(const ProgressListener&) = delete;
  ProgressListener& operator=(const ProgressListener&) = delete;

  static int32_t tell(void* listener, int32_t percent) {
    auto& self = *static_cast<ProgressListener*>(listener);
    self.percents.push_back(percent);
    return self.percents.size() == self.failAt ? self.failure : 0;
  }

  ProgressCall call() { return {&ProgressListener::tell, this}; }

  std::vector<int32_t> percents;
  std::size_t failAt = 0;  ///< counted from 1; 0 for never
  int32_t failure = 0;
};

/// 25 dots on a canvas of 90 x 90, nine of them within it.
RenderParams centered() {
  RenderParams params = plainParams();
  placeCenter(params, 45.0, 45.0);
  return params;
}

/// The same with squares of 50 pixels, which overlap.
RenderParams largeSquares() {
  RenderParams params = centered();
  params.dotShape = squareShape;
  params.dotSize = 50.0;
  params.distanceBetween = 2;
  params.dotDistanceX = params.dotDistanceY = 30.0;
  return params;
}

template <class Pixel>
std::vector<Pixel> rendered(const RenderParams& params, int32_t time = 0) {
  TestCanvas<Pixel> canvas(90, 90);
  EXPECT_EQ(RenderDotField(settingsOf<Pixel>(params, time, 100), canvas.context, {}), 0);
  return canvas.pixels();
}

template <class Pixel>
void expectDotsInTheirPlaces() {
  TestCanvas<Pixel> canvas(90, 90);
  EXPECT_EQ(RenderDotField(settingsOf<Pixel>(centered()), canvas.context, {}), 0);
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

TEST(RenderDotField, theSamePictureIsDrawnWhoeverListens) {
  ProgressListener listener;
  TestCanvas<Pixel8> canvas(90, 90);
  EXPECT_EQ(RenderDotField(settingsOf<Pixel8>(centered()), canvas.context, listener.call()), 0);
  EXPECT_EQ(listener.percents.size(), 25U);
  EXPECT_EQ(rendered<Pixel8>(centered()), canvas.pixels());
}

TEST(RenderDotField, progressIsToldAfterEachDotInTruncatedPercent) {
  // Columns -40, 0 and 40 lie below the high edge of 50, and rows -20, 0 and 20 below that of 40.
  RenderParams params = plainParams();
  params.distanceBetween = 2;
  params.dotDistanceX = 40.0;
  params.dotDistanceY = 20.0;
  ProgressListener listener;
  TestCanvas<Pixel8> canvas(10, 20);
  EXPECT_EQ(RenderDotField(settingsOf<Pixel8>(params), canvas.context, listener.call()), 0);
  EXPECT_EQ(listener.percents, (std::vector<int32_t>{11, 22, 33, 44, 55, 66, 77, 88, 100}));
}

TEST(RenderDotField, noDotsTellNoProgress) {
  // The column at 500 and its neighbours lie far from the canvas, and a turn about the origin keeps them there.
  RenderParams params = plainParams();
  params.distanceBetween = 2;
  params.dotDistanceX = 1.0;
  params.dotDistanceY = 1000.0;
  params.globalRotation = fixed(90.0);
  placeCenter(params, 500.0, 50.0);
  ProgressListener listener;
  TestCanvas<Pixel8> canvas(100, 100);
  EXPECT_EQ(RenderDotField(settingsOf<Pixel8>(params), canvas.context, listener.call()), 0);
  EXPECT_TRUE(listener.percents.empty());
  EXPECT_EQ(canvas.paintedPixels(), 0);
}

TEST(RenderDotField, progressOfManyDotsDoesNotOverflow) {
  EXPECT_EQ(progressPercent(30'000'000, 40'000'000), 75);
  EXPECT_EQ(progressPercent(2'000'000'000, 2'100'000'000), 95);
}

/// Renders, expects 25 dots to be told, and returns whether anything was drawn.
bool drawsAnything(const RenderParams& params) {
  ProgressListener listener;
  TestCanvas<Pixel8> canvas(90, 90);
  EXPECT_EQ(RenderDotField(settingsOf<Pixel8>(params), canvas.context, listener.call()), 0);
  EXPECT_EQ(listener.percents.size(), 25U);
  return canvas.paintedPixels() > 0;
}

TEST(RenderDotField, dotsOfNoSizeCountForProgressAndDrawNothing) {
  RenderParams params = centered();
  params.dotSize = 0.0;
  params.dotDistanceX = params.dotDistanceY = 30.0;
  EXPECT_FALSE(drawsAnything(params));
}

TEST(RenderDotField, dotsThatAnEffectorShrinksToNothingCountForProgress) {
  RenderParams params = centered();
  params.effector[0].enabled = 1;
  params.effector[0].size = 1000.0;
  params.effector[0].ratioSize = 0.0;
  EXPECT_FALSE(drawsAnything(params));
}

TEST(RenderDotField, flatDotsCountForProgressAndDrawNothing) {
  RenderParams params = centered();
  params.dotAspect = 100.0;
  EXPECT_FALSE(drawsAnything(params));
}

TEST(RenderDotField, dotsOfNoOpacityCountForProgressAndDrawNothing) {
  RenderParams params = centered();
  params.dotOpacity = 0.0;
  EXPECT_FALSE(drawsAnything(params));
}

TEST(RenderDotField, anAnswerToTheFirstProgressLeavesOneDotDrawn) {
  ProgressListener listener;
  listener.failAt = 1;
  listener.failure = 1234;
  TestCanvas<Pixel8> canvas(90, 90);
  EXPECT_EQ(RenderDotField(settingsOf<Pixel8>(largeSquares()), canvas.context, listener.call()), 1234);
  EXPECT_EQ(listener.percents.size(), 1U);
  // The first in reading order stands at (-15, -15) and reaches to column and row 9; the next one, at (15, -15), would
  // cover the first 40 columns.
  for (int32_t row = 0; row < 90; ++row) {
    for (int32_t column = 0; column < 90; ++column) {
      EXPECT_EQ(canvas.at(column, row).alpha, column < 10 && row < 10 ? 255 : 0) << column << ", " << row;
    }
  }
}

TEST(RenderDotField, aNegativeAnswerEndsTheDrawingToo) {
  ProgressListener listener;
  listener.failAt = 7;
  listener.failure = -17;
  TestCanvas<Pixel8> canvas(90, 90);
  EXPECT_EQ(RenderDotField(settingsOf<Pixel8>(centered()), canvas.context, listener.call()), -17);
  EXPECT_EQ(listener.percents.size(), 7U);
  // Five dots stand above the canvas; the seventh is the first that lies on it, at (15, 15).
  EXPECT_EQ(canvas.at(15, 15).alpha, 255);
  EXPECT_EQ(canvas.at(45, 15).alpha, 0);
}

TEST(RenderDotField, theCenterDotLiesOnTop) {
  // Dots larger than their distance, each of its own hue.
  RenderParams params = largeSquares();
  params.centerDotToFront = 1;
  params.randomHue = fixed(180.0);
  TestCanvas<Pixel8> canvas(90, 90);
  const Pixel8 center = collectDots(settingsOf<Pixel8>(params), 90, 90).records.at(0).color;
  EXPECT_EQ(RenderDotField(settingsOf<Pixel8>(params), canvas.context, {}), 0);
  // The whole of the centre dot shows: from 20 to 70 in both directions.
  for (const int32_t row : {21, 45, 68}) {
    for (const int32_t column : {21, 45, 68}) EXPECT_EQ(canvas.at(column, row), center);
  }
}

TEST(RenderDotField, inReadingOrderLowerDotsLieOverHigherOnes) {
  RenderParams params = largeSquares();
  params.dotDistanceX = 200.0;
  params.randomHue = fixed(180.0);
  TestCanvas<Pixel8> canvas(90, 90);
  const auto records = collectDots(settingsOf<Pixel8>(params), 90, 90).records;
  EXPECT_EQ(RenderDotField(settingsOf<Pixel8>(params), canvas.context, {}), 0);
  // The dot below the centre one, at (45, 75), begins at row 50; the centre one shows above it down to there.
  Pixel8 below{};
  for (const FinishedDot<Pixel8>& record : records) {
    if (record.x == 45.0 && record.y == 75.0) below = record.color;
  }
  ASSERT_NE(below, records.at(0).color);
  EXPECT_EQ(canvas.at(45, 45), records.at(0).color);
  EXPECT_EQ(canvas.at(45, 52), below);
}

TEST(RenderDotField, theFrameBeforeLeavesNoTrace) {
  RenderParams params = centered();
  params.randomDistanceX = params.randomSize = params.randomOpacity = 0.5;
  const std::vector<Pixel8> alone = rendered<Pixel8>(params);
  RenderParams other = centered();
  other.randomSeed = 77;
  other.dotShape = starShape;
  other.centerDotToFront = 1;
  rendered<Pixel32>(other);
  EXPECT_EQ(rendered<Pixel8>(params), alone);
}

TEST(RenderDotField, framesInAnyOrderAreTheSameFrames) {
  RenderParams params = centered();
  params.randomInterval = 1;
  params.randomDistanceX = params.randomDistanceY = 0.5;
  std::vector<std::vector<Pixel8>> forward;
  forward.reserve(5);
  for (int32_t number = 0; number < 5; ++number) forward.push_back(rendered<Pixel8>(params, number * 100));
  for (int32_t number = 4; number >= 0; --number) {
    EXPECT_EQ(rendered<Pixel8>(params, number * 100), forward[static_cast<std::size_t>(number)]) << "frame " << number;
  }
  EXPECT_NE(forward[0], forward[1]);
}

TEST(RenderDotField, anEmptyCanvasIsNoError) {
  TestCanvas<Pixel8> canvas(0, 0);
  EXPECT_EQ(RenderDotField(settingsOf<Pixel8>(centered()), canvas.context, {}), 0);
}

TEST(RenderDotField, settingsAsTheyAreMadeDrawNothing) {
  TestCanvas<Pixel16> canvas(4, 4);
  EXPECT_EQ(RenderDotField(FieldSettings<Pixel16>{}, canvas.context, {}), 0);
  EXPECT_EQ(canvas.paintedPixels(), 0);
}

}  // namespace
}  // namespace vindrel
