// The sheet of variants: which ones there are, where they stand, and what stands under them.

#include "cli/Sheet.h"

#include <gtest/gtest.h>

#include "cli/LabelText.h"
#include "cli/UserError.h"
#include "tests/cli/CommandLine.h"

using standin::Depth;
using standin::Image;

namespace {

std::string refusalOf(const std::vector<cli::Assignment>& varied) {
  try {
    cli::variantsOf(varied);
  } catch (const cli::UserError& error) {
    return error.what();
  }
  return "accepted";
}

class SheetTest : public testing::Test {
 protected:
  void SetUp() override { cli::writePicture(folder_ / "in.png", smallPicture(Depth::k8, 96, 64)); }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  Outcome sheet(const std::vector<std::string>& more) {
    std::vector<std::string> words = {"sheet", path("in.png"), path("out.png")};
    words.insert(words.end(), more.begin(), more.end());
    return runCommandLine(words);
  }

  void expectRefused(const std::vector<std::string>& more, const std::string& message) {
    const Outcome outcome = sheet(more);
    EXPECT_EQ(outcome.err, "vindrel: " + message + "\n");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_FALSE(std::filesystem::exists(folder_ / "out.png"));
  }

  vindrel::test::TemporaryFolder folder_;
};

}  // namespace

TEST(VariantsTest, theLastControlChangesFirst) {
  const auto variants = cli::variantsOf({{"Dot Size", "4, 8"}, {"Center Position", "10,20;30,40"}});
  ASSERT_EQ(variants.size(), 4U);
  EXPECT_EQ(variants[0][0].text, "4");
  EXPECT_EQ(variants[0][1].text, "10,20");
  EXPECT_EQ(variants[1][0].text, "4");
  EXPECT_EQ(variants[1][1].text, "30,40");
  EXPECT_EQ(variants[2][0].text, "8");
  EXPECT_EQ(variants[3][1].text, "30,40");
  EXPECT_EQ(cli::columnsFor(variants, 100, 100), 2U);
  EXPECT_EQ(cli::columnsFor(cli::variantsOf({{"Dot Size", "1,2,3,4,5,6,7,8,9"}}), 100, 100), 3U);
  EXPECT_EQ(cli::columnsFor(cli::variantsOf({{"A", "1,2"}, {"B", "1,2"}, {"C", "1,2,3"}}), 100, 100), 3U);
}

TEST(VariantsTest, tooManyAndWrongOnesAreRefused) {
  EXPECT_EQ(refusalOf({{"A", "1,2,3,4,5,6,7,8,9,10,11"}, {"B", "1,2,3,4,5,6,7,8,9,10"}}),
            "the sheet would have 110 pictures or more; at most 100 fit");
  EXPECT_EQ(refusalOf({{"A", "1,2,3,4,5,6,7,8,9,10"}, {"B", "1,2,3,4,5,6,7,8,9,10"}}), "accepted");
  EXPECT_EQ(refusalOf({{"A", "1,,2"}}), "--vary 'A' has an empty value; it takes values such as 4,8,12");
  EXPECT_EQ(refusalOf({{"A", "1"}, {"a", "2"}}), "'a' is varied twice; all its values go into one --vary");
}

TEST(LabelTextTest, lettersStayInsideTheirWidthAndThePicture) {
  const std::string text = "Dot Size: 12 (50%) \xc3\xa9";
  const int32_t width = cli::labelWidth(text);
  Image image(Depth::k8, width + 40, cli::labelLineHeight + 20);
  cli::drawLabel(image, 20, 10, text, {255, 1, 2, 3});
  int32_t inside = 0;
  for (int32_t y = 0; y < image.height(); ++y) {
    for (int32_t x = 0; x < image.width(); ++x) {
      if (image.at<PF_Pixel>(x, y).alpha == 0) continue;
      EXPECT_TRUE(x >= 20 && x < 20 + width && y >= 10 && y < 10 + cli::labelLineHeight) << x << ", " << y;
      ++inside;
    }
  }
  EXPECT_GT(inside, 200);
  cli::drawLabel(image, -30, -5, text, {255, 1, 2, 3});
  cli::drawLabel(image, image.width() - 5, image.height() - 5, text, {255, 1, 2, 3});
  EXPECT_TRUE(image.guardsIntact());
}

TEST_F(SheetTest, eachPictureIsTheOneThatRenderDraws) {
  const Outcome outcome = sheet({"--vary", "Dot Size=4,12", "--vary", "Dot Shape=Circle,Star,Cross"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  const Image whole = cli::readPicture(folder_ / "out.png");
  ASSERT_EQ(
      runCommandLine({"render", path("in.png"), path("one.png"), "--set", "Dot Size=12", "--set", "Dot Shape=Star"})
          .exitCode,
      0);
  const Image one = cli::readPicture(folder_ / "one.png");
  // The second row's middle, which must stand somewhere in the sheet as it is.
  int32_t found = 0;
  for (int32_t top = 0; top + one.height() <= whole.height(); ++top) {
    for (int32_t left = 0; left + one.width() <= whole.width(); ++left) {
      bool same = true;
      for (int32_t y = 0; y < one.height() && same; ++y) {
        same = std::equal(one.row<PF_Pixel>(y), one.row<PF_Pixel>(y) + one.width(), whole.row<PF_Pixel>(top + y) + left,
                          [](const PF_Pixel& a, const PF_Pixel& b) {
                            return a.red == b.red && a.green == b.green && a.blue == b.blue;
                          });
      }
      if (same) {
        ++found;
        EXPECT_GT(left, whole.width() / 3 - 20);
        EXPECT_GT(top, whole.height() / 2 - 20);
      }
    }
  }
  EXPECT_EQ(found, 1);
}

TEST_F(SheetTest, theSameSheetIsTheSameFile) {
  ASSERT_EQ(sheet({"--vary", "Dot Size=4,8,12"}).exitCode, 0);
  const std::string first = folder_.read("out.png");
  ASSERT_EQ(sheet({"--vary", "Dot Size=4,8,12"}).exitCode, 0);
  EXPECT_EQ(folder_.read("out.png"), first);
}

TEST_F(SheetTest, wrongSheetsAreRefusedAndNothingIsWritten) {
  expectRefused({}, "sheet needs a control and its values: --vary \"Dot Size=4,8,12\"");
  expectRefused({"--vary", "Dot Sise=4"}, "no control 'Dot Sise'; did you mean 'Dot Size'?");
  expectRefused({"--vary", "Dot Size=4,2000"}, "'Dot Size' takes a number from 0 to 1000, not '2000'");
  expectRefused({"--vary", "Dot Size=4", "--width", "3"}, "--width takes a whole number from 16 to 4096, not '3'");
}
