// Presets at other sizes than that for which they were made.

#include "cli/presets/Lengths.h"

#include <nlohmann/json.hpp>

#include "cli/ControlHelp.h"
#include "tests/cli/LooksTest.h"

namespace {

class LengthsTest : public LooksTest {
 protected:
  void SetUp() override {
    picture("in.png", 90, 60);
    picture("large.png", 180, 120);
  }
};

}  // namespace

TEST_F(LengthsTest, theLengthsAreTheNumbersWhoseHelpSaysPixels) {
  const Outcome listed = runCommandLine({"controls", "--json"});
  int32_t lengths = 0;
  for (const nlohmann::json& control : nlohmann::json::parse(listed.out)) {
    cli::ControlFacts facts;
    facts.name = control.at("name");
    facts.kind = control.at("kind") == "number" ? cli::ControlKind::number : cli::ControlKind::other;
    const auto help = cli::helpOf(facts.name);
    const bool inPixels =
        facts.kind == cli::ControlKind::number && help && help->help.find("in pixels") != std::string::npos;
    EXPECT_EQ(cli::isLength(facts), inPixels) << facts.name;
    lengths += cli::isLength(facts) ? 1 : 0;
  }
  EXPECT_EQ(lengths, 3 + 3 * 3) << "three of the dots and three of each effector";
}

TEST_F(LengthsTest, lengthsAndPlacesInPixelsGoAlongWithTheHeight) {
  folder_.write("p.json", R"({"height": 60, "controls": {"Dot Size": 4.5, "Distance Between": "Centers",
    "Dot Distance X": 6, "Dot Distance Y": 7, "Center Position": "10, 20", "Global Rotation": 30, "Size": 0.5,
    "Enable Effector 1": true, "Position 1": "25%, 75%", "Size 1": 40, "Absolute 1": true, "ABS Size 1": 9,
    "Ratio Size 1": 1.5, "Offset Size 1": -2}})");
  const std::vector<std::string> doubled = {"Dot Size=9",
                                            "Distance Between=Centers",
                                            "Dot Distance X=12",
                                            "Dot Distance Y=14",
                                            "Center Position=20,40",
                                            "Global Rotation=30",
                                            "Size=0.5",
                                            "Enable Effector 1=on",
                                            "Position 1=25%,75%",
                                            "Size 1=80",
                                            "Absolute 1=on",
                                            "ABS Size 1=18",
                                            "Ratio Size 1=1.5",
                                            "Offset Size 1=-4"};
  std::vector<std::string> byHand;
  for (const std::string& set : doubled) byHand.insert(byHand.end(), {"--set", set});
  EXPECT_TRUE(samePixels(rendered({"--preset", path("p.json")}, "large.png"), rendered(byHand, "large.png")));
}

TEST_F(LengthsTest, lengthsThatNobodyNamesGoAlongToo) {
  folder_.write("p.json", R"({"height": 60, "controls": {"Dot Shape": "Star"}})");
  EXPECT_TRUE(samePixels(rendered({"--preset", path("p.json")}, "large.png"),
                         rendered({"--set", "Dot Shape=Star", "--set", "Dot Size=20", "--set", "Dot Distance X=40",
                                   "--set", "Dot Distance Y=40"},
                                  "large.png")));
}

TEST_F(LengthsTest, scaleOneLeavesThemAndAnotherCountsForEveryPreset) {
  folder_.write("p.json", R"({"height": 30, "controls": {"Dot Size": 6}})");
  folder_.write("q.json", R"({"controls": {"Dot Distance X": 4}})");
  const auto byHand = [&](const char* size, const char* x, const char* y) {
    return rendered({"--set", size, "--set", x, "--set", y});
  };
  const std::vector<std::string> both = {"--preset", path("p.json"), "--preset", path("q.json")};
  const auto with = [&](const char* scale) {
    std::vector<std::string> words = both;
    words.insert(words.end(), {"--scale", scale});
    return rendered(words);
  };
  EXPECT_TRUE(samePixels(with("1"), byHand("Dot Size=6", "Dot Distance X=4", "Dot Distance Y=20")));
  EXPECT_TRUE(samePixels(with("3"), byHand("Dot Size=18", "Dot Distance X=12", "Dot Distance Y=60")));
  EXPECT_TRUE(samePixels(rendered(both), byHand("Dot Size=12", "Dot Distance X=4", "Dot Distance Y=40")))
      << "without a height a preset stays as it is";
}

TEST_F(LengthsTest, valuesByHandAreTakenAsTheyAre) {
  folder_.write("p.json", R"({"height": 30, "controls": {"Dot Size": 6, "Dot Distance X": 4, "Dot Distance Y": 4}})");
  EXPECT_TRUE(samePixels(rendered({"--preset", path("p.json"), "--set", "Dot Size=7"}),
                         rendered({"--set", "Dot Size=7", "--set", "Dot Distance X=8", "--set", "Dot Distance Y=8"})));
}

TEST_F(LengthsTest, keysGoAlongWithTheirSpeeds) {
  folder_.write("p.json", R"({"height": 30, "animation": {
    "Dot Size": [{"frame": 0, "value": 2, "out": {"influence": 50, "speed": 20}}, {"frame": 24, "value": 9}],
    "Center Position": [{"frame": 0, "value": "5,5"}, {"frame": 24, "value": "20,10"}]}})");
  folder_.write("q.json", R"({"controls": {"Dot Distance X": 40, "Dot Distance Y": 40}, "animation": {
    "Dot Size": [{"frame": 0, "value": 4, "out": {"influence": 50, "speed": 40}}, {"frame": 24, "value": 18}],
    "Center Position": [{"frame": 0, "value": "10,10"}, {"frame": 24, "value": "40,20"}]}})");
  EXPECT_TRUE(samePixels(rendered({"--preset", path("p.json"), "--frame", "9"}),
                         rendered({"--preset", path("q.json"), "--frame", "9"})));
}

TEST_F(LengthsTest, aLengthBeyondItsControlIsRefused) {
  folder_.write("p.json", R"({"height": 1, "controls": {"Offset Size 1": -2}})");
  expectRefused({"render", path("in.png"), path("out.png"), "--preset", path("p.json")},
                "preset '" + path("p.json") +
                    "': 'Offset Size 1' would be -120 at this picture's height, and takes a number from -100 to 100; "
                    "--scale gives another factor than 60");
}

TEST_F(LengthsTest, aScaleThatIsNoneIsRefused) {
  const auto refuse = [&](const std::string& scale) {
    expectRefused({"render", path("in.png"), path("out.png"), "--preset", "newsprint", "--scale=" + scale},
                  "--scale takes a number above 0, up to 1000, not '" + scale + "'");
  };
  refuse("0");
  refuse("-1");
  refuse("big");
  refuse("1001");
  expectRefused({"render", path("in.png"), path("out.png"), "--scale", "2"},
                "--scale goes with --preset; values by --set are taken as they are");
}

TEST_F(LengthsTest, aHeightThatIsNoneIsRefused) {
  for (const char* height : {"0", "-400", "1.5", "30001", "\"400\"", "null"}) {
    folder_.write("p.json", std::string(R"({"height": )") + height + "}");
    expectRefused(
        {"render", path("in.png"), path("out.png"), "--preset", path("p.json")},
        "preset '" + path("p.json") + "': 'height' takes the height of a picture in whole pixels, 1 to 30000");
  }
}

TEST_F(LengthsTest, whatNamesNoControlOrNoLengthIsLeftForThoseWhoUseIt) {
  const auto refuse = [&](const std::string& content, const std::string& message) {
    folder_.write("p.json", R"({"height": 30, )" + content + "}");
    expectRefused({"render", path("in.png"), path("out.png"), "--preset", path("p.json")},
                  "preset '" + path("p.json") + "': " + message);
  };
  refuse(R"("controls": {"Dot Sise": 4})", "no control 'Dot Sise'; did you mean 'Dot Size'?");
  refuse(R"("controls": {"Dot Size": "big"})", "'Dot Size' takes a number from 0 to 1000, not 'big'");
  refuse(R"("animation": {"Dot Sise": [{"frame": 0, "value": 4}]})", "no control 'Dot Sise'; did you mean 'Dot Size'?");
}

TEST_F(LengthsTest, nothingStaysNothing) {
  folder_.write("p.json", R"({"height": 30, "controls": {"Dot Size": 0, "Dot Distance X": 4, "Dot Distance Y": 4}})");
  EXPECT_TRUE(samePixels(rendered({"--preset", path("p.json")}),
                         rendered({"--set", "Dot Size=0", "--set", "Dot Distance X=8", "--set", "Dot Distance Y=8"})));
}

TEST_F(LengthsTest, keysOfWhatIsNoLengthAndPlacesInPercentKeepTheirSpeeds) {
  const std::string keys = R"("animation": {
    "Dot Rotation": [{"frame": 0, "value": 0, "out": {"influence": 50, "speed": 90}}, {"frame": 24, "value": 60}],
    "Center Position": [{"frame": 0, "value": "50%,50%", "out": {"influence": 50, "speed": 70}},
                        {"frame": 24, "value": "20%,10%"}]})";
  folder_.write(
      "p.json",
      R"({"height": 30, "controls": {"Dot Size": 5, "Dot Distance X": 10, "Dot Distance Y": 10}, )" + keys + "}");
  folder_.write("q.json",
                R"({"controls": {"Dot Size": 10, "Dot Distance X": 20, "Dot Distance Y": 20}, )" + keys + "}");
  EXPECT_TRUE(samePixels(rendered({"--preset", path("p.json"), "--frame", "9"}),
                         rendered({"--preset", path("q.json"), "--frame", "9"})));
}
