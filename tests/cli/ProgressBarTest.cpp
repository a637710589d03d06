#include "cli/ProgressBar.h"

#include <gtest/gtest.h>

#include <sstream>

TEST(ProgressBarTest, nothingIsWrittenWhereThereIsNoTerminal) {
  std::ostringstream out;
  {
    cli::ProgressBar bar(out, false, "Drawing");
    bar.show(1, 2);
  }
  EXPECT_EQ(out.str(), "");
}

TEST(ProgressBarTest, theBarFillsAndIsWipedAtTheEnd) {
  std::ostringstream out;
  {
    cli::ProgressBar bar(out, true, "Drawing");
    bar.show(1, 4);
    EXPECT_EQ(out.str(), "\rDrawing [##########..............................] 25%");
  }
  EXPECT_TRUE(out.str().ends_with("%\r\x1b[K"));
}

TEST(ProgressBarTest, theSamePercentageIsDrawnOnce) {
  std::ostringstream out;
  cli::ProgressBar bar(out, true, "Drawing");
  bar.show(500, 100000);
  const std::string once = out.str();
  bar.show(501, 100000);
  EXPECT_EQ(out.str(), once);
}

TEST(ProgressBarTest, strangeCountsAreShownAsTheNearerEnd) {
  std::ostringstream out;
  cli::ProgressBar bar(out, true, "Drawing");
  bar.show(2147483647, 1);
  EXPECT_TRUE(out.str().ends_with("] 100%"));
  bar.show(-5, 10);
  EXPECT_TRUE(out.str().ends_with("] 0%"));
  bar.show(2147483647, 2147483647);
  EXPECT_TRUE(out.str().ends_with("] 100%"));
  bar.show(1, 0);
  EXPECT_TRUE(out.str().ends_with("] 0%"));
}
