#include "cli/FramePattern.h"

#include <gtest/gtest.h>

#include "cli/FrameRate.h"
#include "cli/UserError.h"
#include "tests/support/TemporaryFolder.h"

using cli::frameList;
using cli::FramePattern;
using cli::FrameRate;
using cli::frameRateFrom;

TEST(FramePatternTest, theNumberIsFilledUpToTheWidth) {
  EXPECT_EQ(FramePattern::in("a/in.####.exr")->fileOf(7), "a/in.0007.exr");
  EXPECT_EQ(FramePattern::in("a/in.%04d.exr")->fileOf(7), "a/in.0007.exr");
  EXPECT_EQ(FramePattern::in("#.png")->fileOf(12), "12.png");
  EXPECT_EQ(FramePattern::in("%d.png")->fileOf(12), "12.png");
  EXPECT_EQ(FramePattern::in("x##.png")->fileOf(12345), "x12345.png");
}

TEST(FramePatternTest, otherNamesHaveNoPlaceForANumber) {
  EXPECT_FALSE(FramePattern::in("in.0001.exr"));
  EXPECT_FALSE(FramePattern::in("100%.exr"));
  EXPECT_FALSE(FramePattern::in("sh##t/in.exr"));
}

TEST(FramePatternTest, twoPlacesAreRefused) {
  EXPECT_THROW(FramePattern::in("a#b#.png"), cli::UserError);
  EXPECT_THROW(FramePattern::in("a##.%04d.png"), cli::UserError);
}

TEST(FramePatternTest, theNumbersOfAllFilesAreFound) {
  const vindrel::test::TemporaryFolder folder;
  for (const char* name : {"in.0010.png", "in.0002.png", "in.10000.png", "in.3.png", "in.00004.png", "in.000x.png",
                           "in..png", "out.0005.png", "in.0006.png.txt"}) {
    folder.write(name, "");
  }
  EXPECT_EQ(FramePattern::in(folder / "in.####.png")->numbersOnDisk(), (std::vector<int32_t>{2, 10, 10000}));
}

TEST(FrameListTest, rangesStepsAndSingleNumbersMakeAList) {
  EXPECT_EQ(frameList("3"), (std::vector<int32_t>{3}));
  EXPECT_EQ(frameList("1-4"), (std::vector<int32_t>{1, 2, 3, 4}));
  EXPECT_EQ(frameList("1-10x4"), (std::vector<int32_t>{1, 5, 9}));
  EXPECT_EQ(frameList("9-10,1,5-6,6"), (std::vector<int32_t>{1, 5, 6, 9, 10}));
}

TEST(FrameListTest, whatIsNoListIsRefused) {
  for (const char* text : {"", "a", "4-1", "1-", "-3", "1,,2", "1-9x0", "1-9x", "1.5", "1-2000000"}) {
    EXPECT_THROW(frameList(text), cli::UserError) << text;
  }
}

TEST(FrameRateTest, broadcastRatesStandForTheirFractions) {
  EXPECT_EQ(frameRateFrom("25"), (FrameRate{25, 1}));
  EXPECT_EQ(frameRateFrom("29.97"), (FrameRate{30000, 1001}));
  EXPECT_EQ(frameRateFrom("23.976"), (FrameRate{24000, 1001}));
  EXPECT_EQ(frameRateFrom("24000/1001"), (FrameRate{24000, 1001}));
  EXPECT_EQ(frameRateFrom("12.5"), (FrameRate{12500, 1000}));
  for (const char* text : {"0", "1/2", "24/", "/1", "24/0", "fast", "1000", "nan"}) {
    EXPECT_THROW(frameRateFrom(text), cli::UserError) << text;
  }
}
