// A module that does what few modules do: controls at other times, parts of a frame, errors with words.

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/cli/CommandLine.h"

namespace fs = std::filesystem;
using standin::Depth;
using standin::Image;

namespace {

class ToldModuleTest : public testing::Test {
 protected:
  void SetUp() override { cli::writePicture(folder_ / "in.png", smallPicture(Depth::k8, 12, 8)); }
  void TearDown() override { unsetenv("VINDREL_TEST_ORDER"); }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  static Outcome run(const std::string& order, std::vector<std::string> words) {
    setenv("VINDREL_TEST_ORDER", order.c_str(), 1);
    words.insert(words.end(), {"--module", VINDREL_TOLD_MODULE});
    return runCommandLine(words);
  }

  Outcome render(const std::string& order, const std::vector<std::string>& more = {},
                 const std::string& out = "out.png") const {
    std::vector<std::string> words = {"render", path("in.png"), path(out)};
    words.insert(words.end(), more.begin(), more.end());
    return run(order, words);
  }

  /// What an order makes of a whole frame; a clear one of its size where it fails.
  Image wholeFrame(const std::string& order) const {
    EXPECT_EQ(render(order).exitCode, 0);
    Image image = cli::readPicture(folder_ / "out.png");
    EXPECT_EQ(image.width(), 12);
    EXPECT_EQ(image.height(), 8);
    return testing::Test::HasFailure() ? Image(Depth::k8, 12, 8) : image;
  }

  /// One colour all over.
  void picture(const std::string& name, uint8_t red) const {
    Image image(Depth::k8, 12, 8);
    for (int32_t y = 0; y < 8; ++y) {
      for (int32_t x = 0; x < 12; ++x) image.at<PF_Pixel>(x, y) = {255, red, 0, 0};
    }
    cli::writePicture(folder_ / name, image);
  }

  void expectColor(const std::string& file, int red, int green, int blue) const {
    const PF_Pixel pixel = cli::readPicture(folder_ / file).at<PF_Pixel>(5, 5);
    EXPECT_EQ(pixel.red, red) << file;
    EXPECT_EQ(pixel.green, green) << file;
    EXPECT_EQ(pixel.blue, blue) << file;
  }

  vindrel::test::TemporaryFolder folder_;
};

}  // namespace

// ---- values at other times

TEST_F(ToldModuleTest, anEffectThatLooksAheadSeesWhatItsControlsWillBe) {
  folder_.write("a.json", R"({"animation": {
      "Amount": [{"frame": 1, "value": 10}, {"frame": 11, "value": 110}],
      "Count": [{"frame": 1, "value": 0}, {"frame": 5, "value": 3}]}})");
  for (const char* jobs : {"1", "2"}) {
    const Outcome outcome =
        render("later", {"--frames", "1-2", "--animate", path("a.json"), "--jobs", jobs}, "out.#.png");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    // Two frames on, 3 and 4: ten more for each; of the count 1.5 and 2.25, rounded.
    expectColor("out.1.png", 30, 2, 7);
    expectColor("out.2.png", 40, 2, 7);
  }
}

TEST_F(ToldModuleTest, anEffectThatLooksAheadSeesThePictureOfThatFrame) {
  picture("row.3.png", 33);
  picture("row.4.png", 44);
  folder_.write("a.json", R"({"animation": {"Amount": [{"frame": 1, "value": 10}]}})");
  const std::vector<std::string> words = {"--animate", path("a.json"), "--layer", "Picture=" + path("row.#.png")};
  picture("row.1.png", 11);
  picture("row.2.png", 22);
  std::vector<std::string> more = words;
  more.insert(more.end(), {"--frames", "1-2"});
  ASSERT_EQ(render("later", more, "out.#.png").exitCode, 0);
  expectColor("out.1.png", 10, 0, 33);
  expectColor("out.2.png", 10, 0, 44);
}

TEST_F(ToldModuleTest, aPictureThatIsMissingAheadIsTheFailureOfTheFrameThatLooksThere) {
  for (int32_t i = 1; i <= 3; ++i) picture("row." + std::to_string(i) + ".png", 9);
  const Outcome outcome = render("later", {"--frames", "1-2", "--layer", "Picture=" + path("row.#.png")}, "out.#.png");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.err, "vindrel: frame 2: no file '" + path("row.4.png") + "'; did you mean 'row.1.png'?\n" +
                             "vindrel: 1 of 2 frames failed: 2\n");
  EXPECT_TRUE(fs::exists(folder_ / "out.1.png"));
  EXPECT_FALSE(fs::exists(folder_ / "out.2.png"));
}

TEST_F(ToldModuleTest, aPreparedPictureStandsForTheWholeFrame) {
  for (int32_t i = 1; i <= 2; ++i) picture("row." + std::to_string(i) + ".png", static_cast<uint8_t>(20 * i));
  // There is no third file, and none is looked for.
  const Outcome outcome =
      render("later", {"--frames", "1-2", "--layer", "Picture=" + path("row.#.png") + ":blur=1"}, "out.#.png");
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  expectColor("out.1.png", 0, 0, 20);
  expectColor("out.2.png", 0, 0, 40);
}

TEST_F(ToldModuleTest, aControlThatCannotMoveIsRefusedKeys) {
  folder_.write("a.json", R"({"animation": {"Steady": [{"frame": 1, "value": 3}]}})");
  const Outcome outcome = render("later", {"--frames", "1-2", "--animate", path("a.json")}, "out.#.png");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err, "vindrel: animation '" + path("a.json") + "': 'Steady' can't change over time\n");
}

// ---- parts of a frame

TEST_F(ToldModuleTest, whatIsDrawnOfAFrameStandsInItsPlaceAndTheRestIsClear) {
  const Image image = wholeFrame("corner");
  EXPECT_EQ(image.at<PF_Pixel>(6, 4).green, 50);
  EXPECT_EQ(image.at<PF_Pixel>(11, 7).green, 50);
  EXPECT_EQ(image.at<PF_Pixel>(5, 4).alpha, 0);
  EXPECT_EQ(image.at<PF_Pixel>(6, 3).alpha, 0);
}

TEST_F(ToldModuleTest, whatIsDrawnBeyondTheFrameIsCutOff) {
  const Image image = wholeFrame("beyond");
  EXPECT_EQ(image.at<PF_Pixel>(0, 0).red, 40);
  EXPECT_EQ(image.at<PF_Pixel>(11, 7).blue, 60);
}

TEST_F(ToldModuleTest, aFrameOfWhichNothingIsDrawnIsAnError) {
  const Outcome outcome = render("nothing");
  EXPECT_EQ(outcome.err, "vindrel: the effect drew nothing\n");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_FALSE(fs::exists(folder_ / "out.png"));
}

// ---- errors and words

TEST_F(ToldModuleTest, anErrorIsToldByItsNameAndTheEffectsOwnWords) {
  const auto told = [&](const std::string& order) {
    const Outcome outcome = render(order);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_FALSE(fs::exists(folder_ / "out.png"));
    return outcome.err;
  };
  EXPECT_EQ(told("fail 4 "), "vindrel: the effect failed while drawing: PF_Err_OUT_OF_MEMORY (4)\n");
  EXPECT_EQ(told("fail 7777 the ink is dry"),
            "vindrel: the effect failed while drawing: error 7777, \"the ink is dry\"\n");
}

TEST_F(ToldModuleTest, theClassicRoadIsAskedForWhereTheSmartOneIsNotOffered) {
  const Outcome outcome = render("later", {"--road", "smart"});
  EXPECT_EQ(outcome.err, "vindrel: this module can't take the smart road; give --road classic\n");
  EXPECT_EQ(outcome.exitCode, 2);
}

TEST_F(ToldModuleTest, aMessageForABoxIsLinesOnATerminal) {
  EXPECT_EQ(run("", {"about"}).out, "first\nsecond\nthird\n\n");
}

TEST_F(ToldModuleTest, aControlWithoutAValueIsListedAndTakesNone) {
  const Outcome list = run("", {"controls"});
  EXPECT_EQ(list.exitCode, 0) << list.err;
  EXPECT_NE(list.out.find("Reset"), std::string::npos);
  EXPECT_NE(list.out.find("other"), std::string::npos);
  const Outcome detail = run("", {"controls", "--describe", "Reset"});
  EXPECT_EQ(detail.exitCode, 0) << detail.err;
  EXPECT_EQ(detail.out.find("Default"), std::string::npos) << detail.out;
  const Outcome set = run("", {"controls", "--set", "Reset=1"});
  EXPECT_EQ(set.exitCode, 2);
  EXPECT_EQ(set.err, "vindrel: 'Reset' is a control that takes no value\n");
}

TEST_F(ToldModuleTest, aPictureForAControlThatIsNoLayerIsRefusedAlsoAsARow) {
  const Outcome outcome = render("later", {"--frames", "1-2", "--layer", "Amount=row.#.png"}, "out.#.png");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err, "vindrel: 'Amount' is a number, not a layer; give it by --set\n");
  EXPECT_EQ(render("later", {"--frames", "1-2", "--layer", "Pictur=row.#.png"}, "out.#.png").err,
            "vindrel: no layer 'Pictur'; did you mean 'Picture'?\n");
}

TEST_F(ToldModuleTest, oddLettersInANameReachTheManualPageAndTheShells) {
  const Outcome page = run("", {"man"});
  EXPECT_EQ(page.exitCode, 0) << page.err;
  // A quote at the start of a line would be a request, and a backslash an escape.
  EXPECT_NE(page.out.find(R"(.B "\&'Odd \e \(dqone\(dq: [a\-b]")"), std::string::npos) << page.out;
  EXPECT_NE(page.out.find("Takes a number from 0 to 200; 0 at first."), std::string::npos);
  const Outcome set = run("", {"controls", "--json", "--set", "'Odd \\ \"one\": [a-b]=3"});
  EXPECT_EQ(set.exitCode, 0) << set.err;
  for (const char* shell : {"bash", "zsh"}) {
    const Outcome completion = run("", {"completion", shell});
    EXPECT_EQ(completion.exitCode, 0) << completion.err;
    EXPECT_NE(completion.out.find(R"(''\''Odd \ "one": [a-b]')"), std::string::npos) << shell;
    EXPECT_EQ(completion.out.find("'Reset'"), std::string::npos) << "a button takes no value";
  }
}

// ---- settings of a module that keeps none

TEST_F(ToldModuleTest, settingsThatTheModuleDoesNotWriteAreAnError) {
  fs::copy_file(VINDREL_TOLD_MODULE, folder_ / "Told.so");
  const Outcome saved = runCommandLine({"options", "--save", "--module", path("Told.so")});
  EXPECT_EQ(saved.err, "vindrel: the module could not write all of its settings\n");
  EXPECT_EQ(saved.exitCode, 1);
  EXPECT_FALSE(folder_.has("Told.ini"));
}

TEST_F(ToldModuleTest, settingsThatTheModuleDoesNotRemoveAreAnError) {
  fs::copy_file(VINDREL_TOLD_MODULE, folder_ / "Told.so");
  folder_.write("Told.ini", "precious");
  const Outcome restored = runCommandLine({"options", "--restore", "--module", path("Told.so")});
  EXPECT_EQ(restored.err, "vindrel: the module could not remove '" + path("Told.ini") + "'\n");
  EXPECT_EQ(restored.exitCode, 1);
  EXPECT_EQ(folder_.read("Told.ini"), "precious");
}
