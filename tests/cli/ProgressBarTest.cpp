#include "cli/ProgressBar.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

namespace {

/// A bar on a terminal of so many columns, with a clock that the test moves.
class ProgressBarTest : public testing::Test {
 protected:
  cli::Terminal terminal(int32_t columns = 80) const {
    cli::Terminal terminal;
    terminal.present = true;
    terminal.columns = [columns] { return columns; };
    return terminal;
  }
  cli::Seconds clock() const {
    return [this] { return now_; };
  }
  std::string taken() {
    std::string text = out_.str();
    out_.str("");
    return text;
  }

  std::ostringstream out_;
  double now_ = 100.0;
};

TEST_F(ProgressBarTest, nothingIsWrittenWhereThereIsNoTerminal) {
  {
    cli::ProgressBar bar(out_, {}, clock());
    bar.show("Drawing", 0.5);
    now_ += 60.0;
    bar.show("Drawing", 0.6);
  }
  EXPECT_EQ(taken(), "");
}

TEST_F(ProgressBarTest, theBarFillsAndIsWipedAtTheEnd) {
  {
    cli::ProgressBar bar(out_, terminal(), clock());
    bar.show("Drawing", 0.25);
    EXPECT_EQ(taken(), "\rDrawing [##########..............................] 25%\x1b[K");
  }
  EXPECT_EQ(taken(), "\r\x1b[K");
}

TEST_F(ProgressBarTest, aColourIsPutAroundWhatIsDone) {
  cli::Terminal colored = terminal();
  colored.color = true;
  cli::ProgressBar bar(out_, colored, clock());
  bar.show("Drawing", 0.05);
  EXPECT_EQ(taken(), "\rDrawing [\x1b[32m##\x1b[0m......................................] 5%\x1b[K");
}

TEST_F(ProgressBarTest, itIsDrawnTenTimesASecondAtTheMost) {
  cli::ProgressBar bar(out_, terminal(), clock());
  bar.show("Drawing", 0.25);
  taken();
  now_ += 0.05;
  bar.show("Drawing", 0.5);
  EXPECT_EQ(taken(), "");
  now_ += 0.06;
  bar.show("Drawing", 0.5);
  EXPECT_NE(taken(), "");
  now_ += 1.0;
  bar.show("Drawing", 0.501);
  EXPECT_EQ(taken(), "");  // looks the same
}

TEST_F(ProgressBarTest, longWorkTellsTheTimeThatIsLeft) {
  cli::ProgressBar bar(out_, terminal(), clock());
  now_ += 10.0;
  bar.show("5 of 20 frames", 0.25);  // ten seconds for a quarter
  EXPECT_EQ(taken(), "\r5 of 20 frames [##########..............................] 25%  0:30 left\x1b[K");
  now_ += 990.0;
  bar.show("5 of 20 frames", 0.1);  // 1000 s for a tenth: 9000 s
  EXPECT_EQ(taken(), "\r5 of 20 frames [####....................................] 10%  2:30:00 left\x1b[K");
}

TEST_F(ProgressBarTest, aNarrowTerminalLosesTheBarThenTheTimeThenTheRest) {
  const auto on = [&](int32_t columns) {
    now_ = 100.0;
    cli::ProgressBar bar(out_, terminal(columns), clock());
    now_ = 110.0;
    bar.show("5 of 20 frames", 0.25);
    std::string text = taken();
    bar.clear();
    taken();
    return text.substr(1, text.size() - 4);
  };
  // 14 + 4 + 11 letters of text; a bar takes 3 and at least 8 more, and the last column stays free.
  EXPECT_EQ(on(41), "5 of 20 frames [##......] 25%  0:30 left");
  EXPECT_EQ(on(40), "5 of 20 frames 25%  0:30 left");
  EXPECT_EQ(on(30), "5 of 20 frames 25%  0:30 left");
  EXPECT_EQ(on(29), "5 of 20 frames 25%");
  EXPECT_EQ(on(19), "5 of 20 frames 25%");
  EXPECT_EQ(on(18), "5 of 20 frames");
  EXPECT_EQ(on(8), "5 of 20");
}

TEST_F(ProgressBarTest, aPlainTerminalGetsALineForEachTenthOfLongWork) {
  cli::Terminal plain = terminal();
  plain.plain = true;
  {
    cli::ProgressBar bar(out_, plain, clock());
    bar.show("1 of 20 frames", 0.15);
    EXPECT_EQ(taken(), "");
    now_ += 3.0;
    bar.show("3 of 20 frames", 0.2);
    EXPECT_EQ(taken(), "3 of 20 frames 20%  0:12 left\n");
    now_ += 3.0;
    bar.show("4 of 20 frames", 0.25);
    EXPECT_EQ(taken(), "");
    now_ += 3.0;
    bar.show("6 of 20 frames", 0.3);
    EXPECT_EQ(taken(), "6 of 20 frames 30%  0:21 left\n");
  }
  EXPECT_EQ(taken(), "");
}

TEST_F(ProgressBarTest, strangeSharesAreShownAsTheNearerEnd) {
  cli::ProgressBar bar(out_, terminal(), clock());
  const auto shown = [&](double share) {
    now_ += 0.2;
    bar.show("Drawing", share);
    return taken();
  };
  EXPECT_TRUE(shown(7.0).ends_with("] 100%\x1b[K"));
  EXPECT_TRUE(shown(-5.0).ends_with("] 0%\x1b[K"));
  EXPECT_TRUE(shown(std::numeric_limits<double>::infinity()).ends_with("] 100%\x1b[K"));
  EXPECT_TRUE(shown(std::numeric_limits<double>::quiet_NaN()).ends_with("] 0%\x1b[K"));
}

}  // namespace
