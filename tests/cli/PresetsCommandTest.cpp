// Presets by name: found, listed, stacked, saved.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>

#include "tests/cli/LooksTest.h"

using standin::Image;

namespace {

class PresetsCommandTest : public LooksTest {
 protected:
  void SetUp() override { picture("in.png", 90, 60); }
};

}  // namespace

TEST_F(PresetsCommandTest, aShippedPresetIsFoundByItsName) {
  const std::string file = (std::filesystem::path(VINDREL_SOURCE_DIR) / "presets" / "starfield.json").string();
  EXPECT_TRUE(samePixels(rendered({"--preset", "starfield"}), rendered({"--preset", file})));
}

TEST_F(PresetsCommandTest, presetsAreFoundInShareBesideTheProgramsFolder) {
  std::filesystem::create_directories(folder_ / "share/vindrel/presets");
  std::filesystem::create_directories(folder_ / "bin");
  folder_.write("share/vindrel/presets/mine.json", R"({"about": "A look of my own."})");
  std::ostringstream out;
  std::ostringstream err;
  EXPECT_EQ(cli::run({"presets"}, {out, err, {}, folder_ / "bin"}), 0);
  EXPECT_EQ(out.str(), "mine  A look of my own.\n");
  EXPECT_EQ(err.str(), "");
}

TEST_F(PresetsCommandTest, theListHasALineForEach) {
  const Outcome outcome = runCommandLine({"presets"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  std::istringstream lines(outcome.out);
  std::set<std::string> listed;
  for (std::string line; std::getline(lines, line);) {
    const std::string name = line.substr(0, line.find(' '));
    listed.insert(name);
    EXPECT_GT(line.size(), name.size() + 20) << "no word on what it looks like: " << line;
    EXPECT_LE(line.size(), 160U) << line;
  }
  std::set<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(VINDREL_SOURCE_DIR) / "presets")) {
    if (entry.path().extension() == ".json") files.insert(entry.path().stem().string());
  }
  EXPECT_EQ(listed, files);
}

TEST_F(PresetsCommandTest, aBrokenPresetIsToldOfAndTheOthersAreListed) {
  std::filesystem::create_directories(folder_ / "user/presets");
  folder_.write("user/presets/broken.json", "no json");
  const Outcome outcome = runAsUser({"presets"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err,
            "vindrel: warning: preset '" + path("user/presets/broken.json") + "': no JSON at line 1, column 2\n");
  EXPECT_NE(outcome.out.find("newsprint"), std::string::npos);
}

TEST_F(PresetsCommandTest, aMisspeltNameIsAnsweredWithTheNearest) {
  expectRefused({"render", path("in.png"), path("out.png"), "--preset", "newsprnt"},
                "no preset 'newsprnt'; did you mean 'newsprint'?");
  const Outcome outcome = runCommandLine({"render", path("in.png"), path("out.png"), "--preset", "zzzz"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(outcome.err.starts_with("vindrel: no preset 'zzzz'; there are ")) << outcome.err;
}

TEST_F(PresetsCommandTest, presetsLieOneOverTheOther) {
  folder_.write("a.json", R"({"controls": {"Dot Shape": "Star", "Dot Size": 9},
    "layers": {"Custom Map Layer 1": "none"}, "animation": {"Dot Rotation": [{"frame": 0, "value": 40}]}})");
  folder_.write("b.json", R"({"controls": {"dot size": 14, "Dot Rotation": 10}})");
  const std::vector<std::string> first = {"--preset", path("a.json"), "--preset", path("b.json")};
  EXPECT_TRUE(samePixels(rendered(first),
                         rendered({"--set", "Dot Shape=Star", "--set", "Dot Size=14", "--set", "Dot Rotation=10"})));
  EXPECT_TRUE(samePixels(rendered({"--preset", path("b.json"), "--preset", path("a.json")}),
                         rendered({"--set", "Dot Shape=Star", "--set", "Dot Size=9", "--set", "Dot Rotation=40"})));
}

TEST_F(PresetsCommandTest, theComplaintNamesThePresetOfTheStackThatIsWrong) {
  folder_.write("a.json", R"({"controls": {"Dot Size": 9}})");
  folder_.write("b.json", R"({"controls": {"Dot Sise": 9}})");
  expectRefused({"render", path("in.png"), path("out.png"), "--preset", path("a.json"), "--preset", path("b.json")},
                "preset '" + path("b.json") + "': no control 'Dot Sise'; did you mean 'Dot Size'?");
}

TEST_F(PresetsCommandTest, aSavedPresetGivesTheVeryPicture) {
  folder_.write("a.json", R"({"about": "Below", "height": 50, "controls": {"Dot Shape": "Star", "Dot Size": 9.1},
    "animation": {"Dot Rotation": [{"frame": 0, "value": "1x+40", "out": {"influence": 20, "speed": 3}},
                                   {"second": 2, "value": 10.25}]}})");
  folder_.write("b.json", R"({"height": 40, "controls": {"Dot Color": "#123456", "Mask": "Layer", "Invert Mask": true,
    "Center Position": "20, 30.5", "Random Seed": 4, "Size": 0.3}, "layers": {"Mask Target Layer": "in.png"}})");
  const std::vector<std::string> look = {"--preset",     path("a.json"), "--preset",
                                         path("b.json"), "--set",        "Dot Aspect=-12.5"};
  std::vector<std::string> words = {"presets", "--save", path("saved.json"), "--height", "60", "--about", "Mine"};
  words.insert(words.end(), look.begin(), look.end());
  const Outcome saved = runCommandLine(words);
  ASSERT_EQ(saved.exitCode, 0) << saved.err;
  EXPECT_EQ(saved.out, "Saved as " + path("saved.json") + "\n");
  for (const char* frame : {"0", "17"}) {
    std::vector<std::string> byHand = look;
    byHand.insert(byHand.end(), {"--frame", frame});
    EXPECT_TRUE(samePixels(rendered(byHand), rendered({"--preset", path("saved.json"), "--frame", frame}))) << frame;
  }
  const auto json = nlohmann::json::parse(folder_.read("saved.json"));
  EXPECT_EQ(json.at("about"), "Mine");
  EXPECT_EQ(json.at("height"), 60);
  EXPECT_EQ(json.at("layers").at("Mask Target Layer"), "in.png");
  EXPECT_EQ(json.at("controls").at("Dot Size"), 10.92) << "9.1 at 50 is 10.92 at 60";
}

TEST_F(PresetsCommandTest, aSavedNameIsFoundByIt) {
  ASSERT_EQ(runAsUser({"presets", "--save", "mine", "--set", "Dot Size=21"}).exitCode, 0);
  EXPECT_EQ(runAsUser({"render", path("in.png"), path("a.png"), "--preset", "mine"}).exitCode, 0);
  EXPECT_TRUE(samePixels(cli::readPicture(folder_ / "a.png"), rendered({"--set", "Dot Size=21"})));
  EXPECT_EQ(folder_.read("user/presets/mine.json"), "{\n  \"controls\": {\n    \"Dot Size\": 21.0\n  }\n}\n");
}

TEST_F(PresetsCommandTest, aPresetThatIsThereIsSavedOverOnlyWhenAsked) {
  folder_.write("mine.json", "precious");
  expectRefused({"presets", "--save", path("mine.json"), "--set", "Dot Size=3"},
                "there is a preset '" + path("mine.json") + "'; --replace saves over it");
  EXPECT_EQ(folder_.read("mine.json"), "precious");
  EXPECT_EQ(runCommandLine({"presets", "--save", path("mine.json"), "--set", "Dot Size=3", "--replace"}).exitCode, 0);
  EXPECT_NE(folder_.read("mine.json"), "precious");
}

TEST_F(PresetsCommandTest, whatCannotBeSavedIsRefused) {
  expectRefused({"presets", "--save", path("p.json"), "--set", "Dot Sise=3"},
                "no control 'Dot Sise'; did you mean 'Dot Size'?");
  expectRefused({"presets", "--save", path("p.json"), "--set", "Dot Size=3000"},
                "'Dot Size' takes a number from 0 to 1000, not '3000'");
  expectRefused({"presets", "--save", path("p.txt")},
                "a preset's file ends in .json, not as '" + path("p.txt") + "' does");
  expectRefused({"presets", "--save", "two words"},
                "--save takes a name without blanks or a file that ends in .json, not 'two words'");
  expectRefused({"presets", "--save", "mine"},
                "there is no folder of your own to save 'mine' in; give a file, as in ./mine.json");
  expectRefused({"presets", "--save", ""}, "--save takes a name or a file that ends in .json");
  expectRefused({"presets", "--set", "Dot Size=3"}, "presets takes values only with --save NAME");
  expectRefused({"presets", "--save", path("none/p.json")},
                "can't write '" + path("none/p.json") + "': no folder '" + path("none") + "'");
  expectRefused({"presets", "--save", path("p.json"), "--height", "tall"},
                "--height takes pixels, a whole number from 1 to 30000, not 'tall'");
}

TEST_F(PresetsCommandTest, aPictureFromElsewhereIsSavedOnlyWhenAllowed) {
  const vindrel::test::TemporaryFolder other;
  cli::writePicture(other / "m.png", smallPicture(standin::Depth::k8));
  const std::string picture = (other / "m.png").string();
  expectRefused({"presets", "--save", path("p.json"), "--layer", "Mask Target Layer=" + picture},
                "'Mask Target Layer' is '" + picture +
                    "', which lies outside the preset's folder; put it there, or give --allow-paths");
  EXPECT_EQ(
      runCommandLine({"presets", "--save", path("p.json"), "--layer", "Mask Target Layer=" + picture, "--allow-paths"})
          .exitCode,
      0);
  EXPECT_EQ(nlohmann::json::parse(folder_.read("p.json")).at("layers").at("Mask Target Layer"), picture);
}

TEST_F(PresetsCommandTest, presetsOfSeveralHeightsNeedOne) {
  folder_.write("a.json", R"({"height": 50})");
  folder_.write("b.json", R"({"height": 40})");
  expectRefused({"presets", "--save", path("p.json"), "--preset", path("a.json"), "--preset", path("b.json")},
                "the presets are for pictures of several heights; --height says for which one to save");
}

TEST_F(PresetsCommandTest, presetsOfOneHeightNeedNone) {
  folder_.write("a.json", R"({"height": 50, "controls": {"Dot Size": 9}})");
  folder_.write("b.json", R"({"height": 50, "controls": {"Dot Shape": "Star"}})");
  ASSERT_EQ(
      runCommandLine({"presets", "--save", path("p.json"), "--preset", path("a.json"), "--preset", path("b.json")})
          .exitCode,
      0);
  EXPECT_EQ(nlohmann::json::parse(folder_.read("p.json")),
            nlohmann::json::parse(R"({"height": 50, "controls": {"Dot Size": 9.0, "Dot Shape": "Star"}})"));
}

TEST_F(PresetsCommandTest, namesThatNoFileShouldHaveAreRefused) {
  for (const std::string name : {".hidden", "back\\slash", "tab\there", "rub\x7Fout", "new\nline"}) {
    expectRefused({"presets", "--save", name},
                  "--save takes a name without blanks or a file that ends in .json, not '" + name + "'");
  }
}

TEST_F(PresetsCommandTest, aUsersFolderThatCannotBeMadeIsNamed) {
  folder_.write("user", "a file");
  const Outcome outcome = runAsUser({"presets", "--save", "mine"});
  EXPECT_EQ(outcome.err, "vindrel: can't make the folder '" + path("user/presets") + "': Not a directory\n");
  EXPECT_EQ(outcome.exitCode, 2);
}

TEST_F(PresetsCommandTest, everyFormOfAValueIsSavedAsItIsRead) {
  const std::string whole = R"({
    "about": "All of it",
    "controls": {"Dot Size": 14.5, "Random Seed": 7, "Clear Background": true, "Dot Shape": "Star", "Dot Color": "#ff7d14"},
    "layers": {"Mask Target Layer": "none", "Custom Map Layer 1": {"picture": "source", "blur": 2.5},
               "Custom Map Layer 2": {"picture": "in.png", "fit": "cover", "blur": "pitch"}},
    "animation": {"Dot Rotation": [{"frame": 0.0, "value": "2x+45", "in": "linear", "out": "hold"},
                                   {"second": 2.0, "value": 10.5, "in": {"influence": 20.0, "speed": 3.0}, "out": "linear"}],
                  "Center Position": [{"frame": 0.0, "value": "50%, 25%", "in": "linear", "out": "linear"}]}})";
  folder_.write("a.json", whole);
  const Outcome outcome = runCommandLine({"presets", "--save", path("p.json"), "--preset", path("a.json")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(nlohmann::json::parse(folder_.read("p.json")), nlohmann::json::parse(whole));
}

TEST_F(PresetsCommandTest, nothingAtAllIsAnEmptyPreset) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.path());
  const Outcome outcome = runCommandLine({"presets", "--save", "./p.json", "--layer", "Mask Target Layer=in.png"});
  const Outcome empty = runCommandLine({"presets", "--save", "e.json"});
  std::filesystem::current_path(before);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(nlohmann::json::parse(folder_.read("p.json")).at("layers").at("Mask Target Layer"), "in.png");
  EXPECT_EQ(empty.exitCode, 0) << empty.err;
  EXPECT_EQ(folder_.read("e.json"), "{}\n");
}

TEST_F(PresetsCommandTest, aFileWithoutAnEndingIsFoundWhereTheCallerIs) {
  folder_.write("mylook", R"({"controls": {"Dot Size": 21}, "layers": {"Mask Target Layer": "in.png"}})");
  std::filesystem::create_directory(folder_ / "shelf");
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.path());
  const Image drawn = rendered({"--preset", "mylook"});
  const Outcome folder = runCommandLine({"render", path("in.png"), path("out.png"), "--preset", "shelf"});
  std::filesystem::current_path(before);
  EXPECT_TRUE(samePixels(drawn, rendered({"--set", "Dot Size=21"})));
  EXPECT_TRUE(folder.err.starts_with("vindrel: no preset 'shelf'; there are ")) << folder.err;
  EXPECT_EQ(folder.exitCode, 2);
}

TEST_F(PresetsCommandTest, whereThereAreNoPresetsThatIsSaid) {
  const Outcome outcome =
      runAsUser({"render", path("in.png"), path("out.png"), "--module", VINDREL_MODULE, "--preset", "mine"},
                folder_ / "user", folder_ / "program");
  EXPECT_EQ(outcome.err, "vindrel: no preset 'mine'; there are none by name\n");
  const Outcome nameless = runCommandLine({"render", path("in.png"), path("out.png"), "--preset", ""});
  EXPECT_TRUE(nameless.err.starts_with("vindrel: no preset ''; there are ")) << nameless.err;
}

TEST_F(PresetsCommandTest, aUsersPresetGoesBeforeAShippedOne) {
  std::filesystem::create_directories(folder_ / "user/presets");
  folder_.write("user/presets/starfield.json", R"({"controls": {"Dot Size": 21}})");
  ASSERT_EQ(runAsUser({"render", path("in.png"), path("a.png"), "--preset", "starfield"}).exitCode, 0);
  EXPECT_TRUE(samePixels(cli::readPicture(folder_ / "a.png"), rendered({"--set", "Dot Size=21"})));
}
