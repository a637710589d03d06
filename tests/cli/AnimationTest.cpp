// Values over time: where they are between two keys, and what comes to the effect.

#include "cli/Animation.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/Ease.h"
#include "cli/UserError.h"
#include "tests/cli/CommandLine.h"

using cli::Ease;
using cli::easedPart;
using standin::Depth;

namespace {

constexpr Ease linear{};
constexpr Ease hold{Ease::Kind::hold, 0, 0};

Ease bezier(double influence, double speed) {
  return {Ease::Kind::bezier, influence, speed};
}

}  // namespace

TEST(EaseTest, linearAndHoldGoAsTheirNamesSay) {
  EXPECT_EQ(easedPart(linear, linear, 0.3, 2, 10), 0.3);
  EXPECT_EQ(easedPart(hold, linear, 0.999, 2, 10), 0.0);
  EXPECT_EQ(easedPart(hold, linear, 1.0, 2, 10), 1.0);
}

TEST(EaseTest, restAtBothKeysWithAThirdIsTheSmoothStep) {
  // With inner times of 1/3 and 2/3 the time runs evenly, so the way is 3 t^2 - 2 t^3.
  const Ease third = bezier(100.0 / 3.0, 0);
  for (const double t : {0.0, 0.1, 0.25, 0.5, 0.9, 1.0}) {
    EXPECT_NEAR(easedPart(third, third, t, 4, 50), 3 * t * t - 2 * t * t * t, 1e-12) << t;
  }
}

TEST(EaseTest, speedsOfTheStraightWayGiveTheStraightWay) {
  // 50 units in 4 seconds are 12.5 a second, whatever the influences.
  EXPECT_NEAR(easedPart(bezier(80, 12.5), bezier(10, 12.5), 0.37, 4, 50), 0.37, 1e-12);
  EXPECT_NEAR(easedPart(bezier(80, -12.5), linear, 0.37, 4, -50), 0.37, 1e-12) << "downward";
}

TEST(EaseTest, aSpeedBeyondTheWayOvershoots) {
  // Inner points at (1/3, 2) and (2/3, 1): at half the time 3/8 * 2 + 3/8 * 1 + 1/8 = 1.25.
  EXPECT_NEAR(easedPart(bezier(100.0 / 3.0, 60), bezier(100.0 / 3.0, 0), 0.5, 1, 10), 1.25, 1e-12);
}

namespace {

class AnimationTest : public testing::Test {
 protected:
  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  void SetUp() override { cli::writePicture(folder_ / "in.png", smallPicture(Depth::k8, 96, 64)); }

  std::string still(const std::vector<std::string>& sets, int32_t frame = 0) {
    std::vector<std::string> words = {"render", path("in.png"), path("still.png"), "--frame", std::to_string(frame)};
    for (const std::string& set : sets) words.insert(words.end(), {"--set", set});
    const Outcome outcome = runCommandLine(words);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    return folder_.read("still.png");
  }

  Outcome shot(const std::string& frames, const std::vector<std::string>& more) {
    std::vector<std::string> words = {"render", path("in.png"), path("out.#.png"), "--frames", frames};
    words.insert(words.end(), more.begin(), more.end());
    return runCommandLine(words);
  }

  std::string frame(int32_t number) const { return folder_.read("out." + std::to_string(number) + ".png"); }

  void expectRefused(const std::string& animation, const std::string& message) {
    const auto file = folder_.write("a.json", R"({"animation": )" + animation + "}");
    const Outcome outcome = shot("1-2", {"--animate", file.string()});
    EXPECT_EQ(outcome.err, "vindrel: animation '" + file.string() + "': " + message + "\n");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_FALSE(std::filesystem::exists(folder_ / "out.1.png"));
  }

  vindrel::test::TemporaryFolder folder_;
};

}  // namespace

TEST_F(AnimationTest, eachKindOfControlMoves) {
  const auto file = folder_.write("a.json", R"({"animation": {
      "Dot Size": [{"frame": 2, "value": 4}, {"frame": 6, "value": 12}],
      "Dot Color": [{"frame": 2, "value": "#000000"}, {"frame": 6, "value": "#0a6432"}],
      "Dot Rotation": [{"frame": 2, "value": 0}, {"frame": 6, "value": "1x+40"}],
      "Center Position": [{"frame": 2, "value": "10,20"}, {"frame": 6, "value": "50,40"}],
      "Dot Shape": [{"frame": 2, "value": "Square"}, {"frame": 6, "value": "Star"}]}})");
  const Outcome outcome = shot("1-7", {"--animate", file.string()});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const auto at = [&](int32_t number, const std::vector<std::string>& values) {
    EXPECT_EQ(frame(number), still(values, number)) << number;
  };
  const std::vector<std::string> first = {"Dot Size=4", "Dot Color=#000000", "Dot Rotation=0", "Center Position=10,20",
                                          "Dot Shape=Square"};
  at(1, first);
  at(2, first);
  // A quarter of the way: 2.5, 25 and 12.5 of the colours become 3, 25 and 13.
  at(3, {"Dot Size=6", "Dot Color=#03190d", "Dot Rotation=100", "Center Position=20,25", "Dot Shape=Square"});
  at(5, {"Dot Size=10", "Dot Color=#084b26", "Dot Rotation=300", "Center Position=40,35", "Dot Shape=Square"});
  const std::vector<std::string> last = {"Dot Size=12", "Dot Color=#0a6432", "Dot Rotation=400",
                                         "Center Position=50,40", "Dot Shape=Star"};
  at(6, last);
  at(7, last);
}

TEST_F(AnimationTest, keysBySecondsFollowTheFrameRate) {
  const auto file = folder_.write(
      "p.json", R"({"controls": {"Dot Size": 1}, "animation": {"Dot Size": [{"second": 0, "value": 4, "out": "hold"},
      {"second": 1, "value": 8}]}})");
  const std::vector<std::string> more = {"--preset", file.string(), "--fps", "24000/1001", "--start", "100"};
  ASSERT_EQ(shot("100,123,124,125", more).exitCode, 0);
  EXPECT_EQ(frame(100), still({"Dot Size=4"}));
  EXPECT_EQ(frame(123), still({"Dot Size=4"}));
  EXPECT_EQ(frame(124), still({"Dot Size=8"})) << "24 frames are 1.001 seconds";
}

TEST_F(AnimationTest, theTableGoesOverTheKeysAndWhatIsGivenByHandOverBoth) {
  const auto keys = folder_.write("a.json", R"({"animation": {"Dot Size": [{"frame": 1, "value": 4}],
      "Dot Rotation": [{"frame": 1, "value": 30}], "Dot Shape": [{"frame": 1, "value": "Star"}]}})");
  const auto table = folder_.write(
      "v.csv", "frame,Dot Size,Dot Rotation,Center Position\r\n1,5,10,\"20,30\"\r\n\r\n3,7,20,\"25%,50%\"\r\n");
  const Outcome refused = shot("1-3", {"--animate", keys.string(), "--values", table.string()});
  EXPECT_EQ(refused.exitCode, 2) << "percent and pixels in one column";
  folder_.write("v.csv", "frame,Dot Size,Dot Rotation,Center Position\n1,5,10,\"20,30\"\n3,7,20,\"40,30\"\n");
  const std::vector<std::string> more = {"--animate",    keys.string(), "--values",
                                         table.string(), "--set",       "Dot Rotation=45"};
  ASSERT_EQ(shot("1-3", more).exitCode, 0);
  EXPECT_EQ(frame(2), still({"Dot Size=5", "Dot Rotation=45", "Dot Shape=Star", "Center Position=20,30"}));
  EXPECT_EQ(frame(3), still({"Dot Size=7", "Dot Rotation=45", "Dot Shape=Star", "Center Position=40,30"}));
}

TEST_F(AnimationTest, aLayerMayBeARowOfFiles) {
  for (int32_t i = 1; i <= 2; ++i) {
    standin::Image mask(Depth::k8, 96, 64);
    for (int32_t y = 0; y < 64; ++y) {
      for (int32_t x = 0; x < 40 * i; ++x) mask.at<PF_Pixel>(x, y) = {255, 255, 255, 255};
    }
    cli::writePicture(folder_ / ("mask." + std::to_string(i) + ".png"), mask);
  }
  const std::vector<std::string> layer = {"--set", "Mask=Layer", "--layer", "Mask Target Layer=" + path("mask.#.png")};
  for (const char* jobs : {"1", "2"}) {
    std::vector<std::string> more = layer;
    more.insert(more.end(), {"--jobs", jobs});
    const Outcome outcome = shot("1-3", more);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, "vindrel: frame 3: no file '" + path("mask.3.png") + "'; did you mean 'mask.1.png'?\n" +
                               "vindrel: 1 of 3 frames failed: 3\n");
    EXPECT_FALSE(std::filesystem::exists(folder_ / "out.3.png"));
  }
  for (int32_t i = 1; i <= 2; ++i) {
    ASSERT_EQ(runCommandLine({"render", path("in.png"), path("one.png"), "--set", "Mask=Layer", "--layer",
                              "Mask Target Layer=" + path("mask." + std::to_string(i) + ".png")})
                  .exitCode,
              0);
    EXPECT_EQ(frame(i), folder_.read("one.png")) << i;
  }
  EXPECT_NE(frame(1), frame(2));
}

TEST_F(AnimationTest, wrongAnimationsAreRefusedBeforeAnythingIsWritten) {
  expectRefused(R"({"Dot Sise": [{"frame": 1, "value": 4}]})", "no control 'Dot Sise'; did you mean 'Dot Size'?");
  expectRefused(R"({"Dot Size": [{"frame": 2, "value": 4}, {"frame": 2, "value": 5}]})",
                "'Dot Size' has a key at 2 that doesn't come after the one before it");
  expectRefused(R"({"Dot Size": [{"frame": 5, "value": 4}, {"frame": 2, "value": 5}]})",
                "'Dot Size' has a key at 2 that doesn't come after the one before it");
  expectRefused(R"({"Dot Size": [{"frame": 1, "value": 4000}]})",
                "'Dot Size' takes a number from 0 to 1000, not '4000'");
  expectRefused(R"({"Dot Size": [{"frame": 1}]})", "'Dot Size': a key takes either a frame or a second, and a value");
  expectRefused(R"({"Dot Size": []})", "'Dot Size': it takes one key or more in brackets");
  expectRefused(R"({"Dot Size": [{"frame": 1, "value": 4, "in": {"influence": 0}}]})",
                "'Dot Size': 'influence' takes percent above 0, up to 100");
  expectRefused(R"({"Dot Size": [{"frame": 1, "value": 4, "in": "hold"}]})",
                "'Dot Size': 'in' takes \"linear\", or an influence and a speed in braces");
  expectRefused(R"({"Dot Rotation": [{"frame": 1, "value": "ax+4"}]})",
                "'Dot Rotation' takes turns as in 2x+45, not 'ax+4'");
  for (const char* turns : {"91x+0", "-91x", "2.5x+4", "x+4", "99999999999x+4"}) {
    expectRefused(R"({"Dot Rotation": [{"frame": 1, "value": ")" + std::string(turns) + R"("}]})",
                  "'Dot Rotation' takes turns as in 2x+45, not '" + std::string(turns) + "'");
  }
  expectRefused(R"({"Dot Size": [{"frame": 1, "value": "2x+45"}]})",
                "'Dot Size' takes a number from 0 to 1000, not '2x+45'");
  expectRefused(R"({"Center Position": [{"frame": 1, "value": "10,20"}, {"frame": 2, "value": "50%,20%"}]})",
                "'Center Position' goes from percent to pixels or back, which has no way between");
}

TEST_F(AnimationTest, wholeTurnsNeedNoDegrees) {
  const auto file = folder_.write("a.json", R"({"animation": {"Dot Rotation": [{"frame": 1, "value": "-1x"},
      {"frame": 3, "value": "1x"}]}})");
  ASSERT_EQ(shot("1-2", {"--animate", file.string()}).exitCode, 0);
  EXPECT_EQ(frame(1), still({"Dot Rotation=-360"}, 1));
  EXPECT_EQ(frame(2), still({"Dot Rotation=0"}, 2));
}

TEST_F(AnimationTest, noSwingLeavesTheRange) {
  // With this speed the opacity would be far beyond 100 halfway.
  const auto file = folder_.write("a.json", R"({"animation": {"Dot Opacity": [
      {"frame": 1, "value": 90, "out": {"influence": 50, "speed": 5000}}, {"frame": 3, "value": 95}]}})");
  ASSERT_EQ(shot("2", {"--animate", file.string()}).exitCode, 0);
  EXPECT_TRUE(frame(2) == still({"Dot Opacity=100"}, 2));
}

TEST_F(AnimationTest, whatGoesInStepsChangesAtItsKeys) {
  const auto file = folder_.write("a.json", R"({"animation": {
      "Random Seed": [{"frame": 1, "value": 0}, {"frame": 3, "value": 5}],
      "Clear Background": [{"frame": 1, "value": false}, {"frame": 3, "value": true}]}})");
  ASSERT_EQ(shot("2,3", {"--animate", file.string(), "--set", "Distance X=1"}).exitCode, 0);
  EXPECT_TRUE(frame(2) == still({"Distance X=1", "Random Seed=0", "Clear Background=off"}, 2));
  EXPECT_TRUE(frame(3) == still({"Distance X=1", "Random Seed=5", "Clear Background=on"}, 3));
  EXPECT_FALSE(frame(3) == still({"Distance X=1", "Random Seed=0", "Clear Background=on"}, 3)) << "no seed shows";
}

TEST_F(AnimationTest, aRowOfFilesOfAPresetGivesWayToAPictureByHand) {
  cli::writePicture(folder_ / "mask.1.png", smallPicture(Depth::k8, 96, 64));
  folder_.write("p.json", R"({"controls": {"Mask": "Layer"}, "layers": {"Mask Target Layer": "mask.#.png"}})");
  const std::vector<std::string> preset = {"--preset", path("p.json")};
  std::vector<std::string> none = preset;
  none.insert(none.end(), {"--layer", "Mask Target Layer=source"});
  ASSERT_EQ(shot("1-2", none).exitCode, 0) << "no second file is looked for";
  EXPECT_EQ(frame(2), frame(1));
  const Outcome missing = shot("1-2", preset);
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_TRUE(missing.err.starts_with("vindrel: frame 2: no file '" + path("mask.2.png") + "'")) << missing.err;
}

TEST_F(AnimationTest, aFileWhoseNameLooksLikeARowIsThatFile) {
  cli::writePicture(folder_ / "mask.#.png", smallPicture(Depth::k8, 96, 64));
  EXPECT_EQ(shot("1-2", {"--set", "Mask=Layer", "--layer", "Mask Target Layer=" + path("mask.#.png")}).exitCode, 0);
}

TEST_F(AnimationTest, theSameBytesComeFromEveryNumberOfJobs) {
  const auto file = folder_.write("a.json", R"({"animation": {"Dot Size": [{"frame": 1, "value": 4,
      "out": {"influence": 70, "speed": 3}}, {"frame": 5, "value": 15, "in": {"influence": 20, "speed": 0}}]}})");
  ASSERT_EQ(shot("1-5", {"--animate", file.string()}).exitCode, 0);
  std::vector<std::string> alone;
  for (int32_t i = 1; i <= 5; ++i) alone.push_back(frame(i));
  ASSERT_EQ(shot("1-5", {"--animate", file.string(), "--jobs", "3"}).exitCode, 0);
  for (int32_t i = 1; i <= 5; ++i) EXPECT_EQ(frame(i), alone[static_cast<std::size_t>(i - 1)]);
  EXPECT_NE(alone[1], alone[2]);
}
