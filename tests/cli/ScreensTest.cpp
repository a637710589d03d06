// Pictures printed in several inks.

#include <algorithm>
#include <array>
#include <cmath>

#include "cli/UserError.h"
#include "cli/screens/Recipe.h"
#include "cli/screens/Separation.h"
#include "tests/cli/LooksTest.h"

namespace {

using cli::Channel;
using standin::Depth;
using standin::Image;

class ScreensTest : public LooksTest {
 protected:
  void SetUp() override { flat("in.png", {255, 200, 120, 60}, 240); }

  void flat(const std::string& name, PF_Pixel color, int32_t side) {
    Image image(Depth::k8, side, side);
    for (int32_t y = 0; y < side; ++y) std::fill_n(image.row<PF_Pixel>(y), side, color);
    cli::writePicture(folder_ / name, image);
  }

  void expectRecipeRefused(const std::string& content, const std::string& message) {
    folder_.write("r.json", content);
    expectRefused({"screens", path("in.png"), path("out.png"), "--recipe", path("r.json")},
                  "recipe '" + path("r.json") + "': " + message);
  }
};

/// Means of red, green and blue, 0 to 1, away from the rim.
std::array<double, 3> meanOf(const Image& image, int32_t margin) {
  std::array<double, 3> sum{};
  int32_t count = 0;
  for (int32_t y = margin; y < image.height() - margin; ++y) {
    for (int32_t x = margin; x < image.width() - margin; ++x, ++count) {
      const PF_Pixel& pixel = image.at<PF_Pixel>(x, y);
      sum[0] += pixel.red / 255.0;
      sum[1] += pixel.green / 255.0;
      sum[2] += pixel.blue / 255.0;
    }
  }
  for (double& channel : sum) channel /= count;
  return sum;
}

constexpr const char* idealInks = R"({"passes": [
  {"channel": "yellow", "preset": "newsprint", "angle": 0, "ink": "#ffff00"},
  {"channel": "cyan", "preset": "newsprint", "angle": 15, "ink": "#00ffff"},
  {"channel": "magenta", "preset": "newsprint", "angle": 75, "ink": "#ff00ff"},
  {"channel": "black", "preset": "newsprint", "angle": 45, "ink": "#000000"}],
  "black": {"start": 0.2, "strength": 0.5}})";

}  // namespace

TEST(SeparationTest, theAmountsAreThoseOfTheFormula) {
  // R, G, B = 0.8, 0.5, 0.2 take 0.2, 0.5, 0.8 away; the grey in it is 0.2.
  const auto amount = [](Channel channel, double start, double strength) {
    return cli::inkAmount(channel, 0.8, 0.5, 0.2, {start, strength});
  };
  EXPECT_NEAR(amount(Channel::black, 0.0, 1.0), 0.2, 1e-12);
  EXPECT_NEAR(amount(Channel::cyan, 0.0, 1.0), 0.0, 1e-12);
  EXPECT_NEAR(amount(Channel::magenta, 0.0, 1.0), 0.3 / 0.8, 1e-12);
  EXPECT_NEAR(amount(Channel::yellow, 0.0, 1.0), 0.75, 1e-12);
  EXPECT_NEAR(amount(Channel::black, 0.1, 0.5), 0.5 * 0.1 / 0.9, 1e-12);
  EXPECT_NEAR(amount(Channel::black, 0.3, 1.0), 0.0, 1e-12);
  EXPECT_NEAR(amount(Channel::cyan, 0.3, 1.0), 0.2, 1e-12);
  EXPECT_NEAR(amount(Channel::light, 0.0, 1.0), 0.298912 * 0.8 + 0.586611 * 0.5 + 0.114478 * 0.2, 1e-6);
  EXPECT_NEAR(amount(Channel::dark, 0.0, 1.0) + amount(Channel::light, 0.0, 1.0), 1.0, 1e-12);
  EXPECT_EQ(cli::inkAmount(Channel::cyan, 0, 0, 0, {0.0, 1.0}), 0.0) << "all of black goes to black";
}

TEST(SeparationTest, levelsCutAndBend) {
  EXPECT_EQ(cli::leveled(0.3, {0.5, 1.0, 1.0}), 0.0);
  EXPECT_NEAR(cli::leveled(0.6, {0.5, 0.7, 1.0}), 0.5, 1e-12);
  EXPECT_NEAR(cli::leveled(0.6, {0.5, 0.7, 2.0}), 0.25, 1e-12);
  EXPECT_EQ(cli::leveled(0.9, {0.5, 0.7, 2.0}), 1.0);
}

TEST(SeparationTest, inksLieOverEachOtherByTheirKind) {
  const auto laid = [](cli::Pass::Lay lay) {
    Image sheet(Depth::k32, 2, 1);
    for (int32_t x = 0; x < 2; ++x) sheet.at<PF_PixelFloat>(x, 0) = {1.0F, 0.8F, 0.8F, 0.8F};
    Image dots(Depth::k32, 2, 1);
    dots.at<PF_PixelFloat>(0, 0) = {0.5F, 0.0F, 0.5F, 1.0F};
    cli::layInk(dots, lay, 1, 0, sheet);
    EXPECT_EQ(sheet.at<PF_PixelFloat>(0, 0).red, 0.8F) << "nothing comes in at the left";
    return sheet.at<PF_PixelFloat>(1, 0);
  };
  const PF_PixelFloat ink = laid(cli::Pass::Lay::multiply);
  EXPECT_NEAR(static_cast<double>(ink.red), 0.4, 1e-6);
  EXPECT_NEAR(static_cast<double>(ink.green), 0.6, 1e-6);
  EXPECT_NEAR(static_cast<double>(ink.blue), 0.8, 1e-6);
  const PF_PixelFloat paint = laid(cli::Pass::Lay::over);
  EXPECT_NEAR(static_cast<double>(paint.red), 0.4, 1e-6);
  EXPECT_NEAR(static_cast<double>(paint.green), 0.65, 1e-6);
  EXPECT_NEAR(static_cast<double>(paint.blue), 0.9, 1e-6);
}

TEST_F(ScreensTest, idealInksGiveThePictureBackInTheMean) {
  folder_.write("ideal.json", idealInks);
  for (const PF_Pixel color : {PF_Pixel{255, 200, 120, 60}, PF_Pixel{255, 90, 90, 90}, PF_Pixel{255, 40, 130, 220}}) {
    flat("in.png", color, 360);
    const Outcome outcome =
        runCommandLine({"screens", path("in.png"), path("out.png"), "--recipe", path("ideal.json"), "--scale", "1"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    const std::array<double, 3> mean = meanOf(cli::readPicture(folder_ / "out.png"), 20);
    EXPECT_NEAR(mean[0], color.red / 255.0, 0.03);
    EXPECT_NEAR(mean[1], color.green / 255.0, 0.03);
    EXPECT_NEAR(mean[2], color.blue / 255.0, 0.03);
  }
}

TEST_F(ScreensTest, whereNothingIsPrintedThePaperShows) {
  folder_.write("r.json", R"({"paper": "#102030", "passes": [
    {"channel": "dark", "preset": "newsprint", "ink": "#ffffff", "lay": "over", "from": 0.9}]})");
  flat("in.png", {255, 255, 255, 255}, 60);
  ASSERT_EQ(runCommandLine({"screens", path("in.png"), path("out.png"), "--recipe", path("r.json")}).exitCode, 0);
  const Image out = cli::readPicture(folder_ / "out.png");
  EXPECT_EQ(out.depth(), Depth::k8);
  for (int32_t i = 0; i < 60; ++i) {
    const PF_Pixel& pixel = out.at<PF_Pixel>(i, i);
    EXPECT_EQ((std::array{pixel.alpha, pixel.red, pixel.green, pixel.blue}),
              (std::array<A_u_char, 4>{255, 16, 32, 48}));
  }
}

TEST_F(ScreensTest, everyShippedRecipePrints) {
  picture("in.png", 160, 90);
  int32_t recipes = 0;
  const auto folder = std::filesystem::path(VINDREL_SOURCE_DIR) / "recipes";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const std::string name = entry.path().stem().string();
    const Outcome outcome = runCommandLine(
        {"screens", path("in.png"), path(name + ".png"), "--recipe", name, "--depth", "16", "--scale", "1"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(cli::readPicture(folder_ / (name + ".png")).depth(), Depth::k16);
    ++recipes;
  }
  EXPECT_GE(recipes, 5);
  const Outcome list = runCommandLine({"screens", "--list"});
  EXPECT_EQ(list.exitCode, 0);
  EXPECT_EQ(std::count(list.out.begin(), list.out.end(), '\n'), recipes);
}

TEST_F(ScreensTest, theProcessInksStandAtTheirAngles) {
  const cli::Recipe recipe = cli::readRecipe(std::filesystem::path(VINDREL_SOURCE_DIR) / "recipes" / "cmyk-news.json");
  ASSERT_EQ(recipe.passes.size(), 4U);
  for (const cli::Pass& pass : recipe.passes) {
    const double wanted = pass.channel == Channel::cyan      ? 15.0
                          : pass.channel == Channel::magenta ? 75.0
                          : pass.channel == Channel::yellow  ? 0.0
                                                             : 45.0;
    EXPECT_EQ(pass.angle, wanted);
    EXPECT_EQ(pass.lay, cli::Pass::Lay::multiply);
  }
}

TEST_F(ScreensTest, wrongRecipesAreToldWithTheNearestName) {
  const std::string pass = R"({"channel": "cyan", "preset": "newsprint", "ink": "#00ffff")";
  expectRecipeRefused("{}", "it has no passes");
  expectRecipeRefused("[]", "a recipe takes names with values in braces");
  expectRecipeRefused(R"({"pases": []})", "a recipe has no 'pases'; did you mean 'passes'?");
  expectRecipeRefused(R"({"passes": [{"chanel": "cyan"}]})", "pass 1: a pass has no 'chanel'; did you mean 'channel'?");
  expectRecipeRefused(R"({"passes": [{"channel": "cyna"}]})",
                      "pass 1: 'channel' takes cyan, magenta, yellow, black, dark or light, not 'cyna'; did you mean "
                      "'cyan'?");
  expectRecipeRefused(R"({"passes": [{"channel": "cyan"}]})", "pass 1: a pass takes a channel, a preset and an ink");
  expectRecipeRefused(R"({"passes": [)" + pass + "}, " + pass + R"(, "lay": "under"}]})",
                      "pass 2: 'lay' takes multiply or over, not 'under'");
  expectRecipeRefused(R"({"passes": [)" + pass + R"(, "from": 0.5, "to": 0.4}]})",
                      "pass 1: 'to' must lie above 'from'");
  expectRecipeRefused(R"({"passes": [)" + pass + R"(, "shift": 3}]})",
                      "pass 1: 'shift' takes two numbers in brackets, right and down");
  expectRecipeRefused(R"({"passes": [)" + pass + R"(, "angle": "steep"}]})",
                      "pass 1: 'angle' takes a number from -360 to 360");
  expectRecipeRefused(R"({"paper": "white", "passes": []})", "'paper' takes a colour such as #ff7d14, not 'white'");
  expectRecipeRefused(R"({"black": {"stength": 1}, "passes": []})",
                      "'black' has no 'stength'; did you mean 'strength'?");
  expectRecipeRefused(R"({"black": {"start": 1}, "passes": []})", "'start' takes a number from 0 to 0.99");
  expectRecipeRefused(R"({"height": 10.5, "passes": []})", "'height' takes whole pixels");
  expectRecipeRefused(R"({"height": 30001, "passes": []})", "'height' takes a number from 1 to 30000");
  expectRecipeRefused(R"({"about": 5})", "'about' takes a text");
  expectRecipeRefused(R"({"passes": {}})", "'passes' takes passes in brackets");
  expectRecipeRefused(R"({"passes": [[]]})", "pass 1: a pass takes names with values in braces");
  expectRecipeRefused(R"({"passes": [)" + pass + R"(, "set": ["Dot Size=3"]}]})",
                      "pass 1: 'set' takes names with values in braces");
  expectRecipeRefused(R"({"passes": [)" + pass + R"(, "shift": [3]}]})",
                      "pass 1: 'shift' takes two numbers in brackets, right and down");
  expectRecipeRefused(R"({"passes": [)" + pass + R"(, "shift": [3, 1001]}]})",
                      "pass 1: 'shift' takes a number from -1000 to 1000");
  expectRecipeRefused(R"({"passes": [{"channel": 5}]})", "pass 1: 'channel' takes a text");
  expectRecipeRefused(R"({"passes": [{"ink": 5}]})", "pass 1: 'ink' takes a colour such as #ff7d14, not '5'");
}

TEST_F(ScreensTest, aPassWithoutOneOfItsThreePartsIsRefused) {
  const std::string message = "pass 1: a pass takes a channel, a preset and an ink";
  expectRecipeRefused(R"({"passes": [{"preset": "newsprint", "ink": "#000000"}]})", message);
  expectRecipeRefused(R"({"passes": [{"channel": "dark", "ink": "#000000"}]})", message);
  expectRecipeRefused(R"({"passes": [{"channel": "dark", "preset": "newsprint"}]})", message);
}

TEST_F(ScreensTest, aShiftGoesAlongWithTheHeightAndABesideLyingPresetGoesFirst) {
  // Dots over all, in black on white, so that the shift leaves a white rim at the left and the top.
  flat("in.png", {255, 0, 0, 0}, 240);
  folder_.write("newsprint.json", R"({"controls": {"Dot Size": 300, "Distance Between": "Centers"}})");
  const auto blackFrom = [&](const std::string& height, const std::vector<std::string>& more) {
    folder_.write("r.json",
                  R"({)" + height + R"( "passes": [{"channel": "dark", "preset": "newsprint", "ink": "#000000",
        "shift": [10, 5]}]})");
    std::vector<std::string> words = {"screens", path("in.png"), path("out.png"), "--recipe", path("r.json")};
    words.insert(words.end(), more.begin(), more.end());
    const Outcome outcome = runCommandLine(words);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    const Image image = cli::readPicture(folder_ / "out.png");
    int32_t x = 0;
    int32_t y = 0;
    while (x < 239 && image.at<PF_Pixel>(x, 239).red == 255) ++x;
    while (y < 239 && image.at<PF_Pixel>(239, y).red == 255) ++y;
    return std::pair(x, y);
  };
  EXPECT_EQ(blackFrom("", {}), (std::pair{10, 5}));
  EXPECT_EQ(blackFrom(R"("height": 120,)", {}), (std::pair{20, 10})) << "the picture is twice as high";
  EXPECT_EQ(blackFrom(R"("height": 120,)", {"--scale", "3"}), (std::pair{30, 15}));
}

TEST_F(ScreensTest, whereThePictureIsClearNothingIsPrinted) {
  flat("in.png", {0, 0, 0, 0}, 60);
  folder_.write("r.json", R"({"paper": "#102030", "passes": [
    {"channel": "dark", "preset": "newsprint", "ink": "#ffffff", "lay": "over"}]})");
  ASSERT_EQ(runCommandLine({"screens", path("in.png"), path("out.png"), "--recipe", path("r.json")}).exitCode, 0);
  const Image out = cli::readPicture(folder_ / "out.png");
  for (int32_t i = 0; i < 60; ++i) EXPECT_EQ(out.at<PF_Pixel>(i, i).red, 16);
}

TEST_F(ScreensTest, aBrokenRecipeIsToldOfAndTheOthersAreListed) {
  std::filesystem::create_directories(folder_ / "user/recipes");
  folder_.write("user/recipes/broken.json", "{}");
  folder_.write("user/recipes/note.txt", "no recipe");
  const Outcome outcome = runAsUser({"screens", "--list"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "vindrel: warning: recipe '" + path("user/recipes/broken.json") + "': it has no passes\n");
  EXPECT_NE(outcome.out.find("cmyk-news"), std::string::npos);
  EXPECT_EQ(outcome.out.find("note"), std::string::npos);
}

TEST_F(ScreensTest, aPassThatCannotBeDrawnIsNamed) {
  const auto refuse = [&](const std::string& more, const std::string& message) {
    folder_.write("r.json", R"({"passes": [{"channel": "cyan", "ink": "#00ffff", )" + more + "}]}");
    expectRefused({"screens", path("in.png"), path("out.png"), "--recipe", path("r.json")},
                  "recipe '" + path("r.json") + "', pass 1: " + message);
  };
  refuse(R"("preset": "newsprnt")", "no preset 'newsprnt'; did you mean 'newsprint'?");
  refuse(R"("preset": "../p.json")", "'preset' takes a name, not '../p.json'");
  refuse(R"("preset": "newsprint", "set": {"Dot Sise": 3})", "no control 'Dot Sise'; did you mean 'Dot Size'?");
}

TEST_F(ScreensTest, wordsThatDoNotFitAreRefused) {
  expectRefused({"screens", path("in.png"), path("out.png")},
                "screens needs a recipe; 'vindrel screens --list' shows those by name");
  expectRefused({"screens", path("in.png")},
                "screens needs a picture to read and one to write: vindrel screens IN OUT --recipe NAME");
  expectRefused({"screens", path("in.png"), path("out.png"), "--recipe", "cmyk-new"},
                "no recipe 'cmyk-new'; did you mean 'cmyk-news'?");
  expectRefused({"screens", path("in.png"), path("out.png"), "--recipe", path("none.json")},
                "no recipe '" + path("none.json") + "'");
  expectRefused({"screens", path("none.png"), path("out.png"), "--recipe", "cmyk-news"},
                "no file '" + path("none.png") + "'");
  expectRefused({"screens", path("in.png"), "--list"}, "--list takes nothing else");
}
