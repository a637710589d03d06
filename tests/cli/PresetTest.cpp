#include "cli/Preset.h"

#include <gtest/gtest.h>

#include "cli/UserError.h"
#include "tests/support/TemporaryFolder.h"

namespace {

std::string refusal(const std::filesystem::path& file) {
  try {
    cli::readPreset(file);
  } catch (const cli::UserError& error) {
    return error.what();
  }
  return "accepted";
}

class PresetTest : public testing::Test {
 protected:
  /// The complaint about a preset of this content, without the file's name before it.
  std::string complaintAbout(const std::string& content) {
    const auto file = folder_.write("p.json", content);
    const std::string start = "preset '" + file.string() + "': ";
    const std::string text = refusal(file);
    return text.starts_with(start) ? text.substr(start.size()) : text;
  }
  vindrel::test::TemporaryFolder folder_;
};

}  // namespace

TEST_F(PresetTest, valuesBecomeTheTextsThatAreGivenByHand) {
  const auto file = folder_.write("p.json", R"({"about": "Plain", "controls": {"Dot Size": 14, "Size": 0.25,
    "Clear Background": true, "Absolute 1": false, "Dot Shape": "Star", "Random Seed": -3}})");
  const cli::Preset preset = cli::readPreset(file);
  EXPECT_EQ(preset.about, "Plain");
  std::string all;
  for (const auto& [name, text] : preset.controls) all.append(name).append("=").append(text).append(";");
  EXPECT_EQ(all, "Absolute 1=off;Clear Background=on;Dot Shape=Star;Dot Size=14;Random Seed=-3;Size=0.25;");
}

TEST_F(PresetTest, picturesAreLookedForBesideThePreset) {
  const auto file = folder_.write("p.json", R"({"layers": {"A": "source", "B": "none", "C": "map.png"}})");
  const cli::Preset preset = cli::readPreset(file);
  ASSERT_EQ(preset.layers.size(), 3U);
  EXPECT_EQ(preset.layers[0].picture, "source");
  EXPECT_EQ(preset.layers[1].picture, "none");
  EXPECT_EQ(preset.layers[2].picture, (folder_ / "map.png").string());
}

TEST_F(PresetTest, whatIsNoJsonIsToldWithItsPlace) {
  EXPECT_EQ(complaintAbout("{\n  \"controls\": oops\n}"), "no JSON at line 2, column 15");
  EXPECT_EQ(complaintAbout(""), "no JSON at line 1, column 1");
}

TEST_F(PresetTest, partsOfAWrongFormAreToldApart) {
  EXPECT_EQ(complaintAbout("[1, 2]"), "it must be an object with 'controls' and 'layers'");
  EXPECT_EQ(complaintAbout(R"({"control": {}})"), "no key 'control'; did you mean 'controls'?");
  EXPECT_EQ(complaintAbout(R"({"thumbnail": 1})"),
            "no key 'thumbnail'; it may have about, height, controls, layers and animation");
  EXPECT_EQ(complaintAbout(R"({"controls": 5})"), "'controls' takes names with values in braces");
  EXPECT_EQ(complaintAbout(R"({"about": 5})"), "'about' takes a text");
  EXPECT_EQ(complaintAbout(R"({"controls": {"Dot Size": [1]}})"),
            "'Dot Size' takes a number, a text, true or false, not array");
  EXPECT_EQ(complaintAbout(R"({"layers": {"A": true}})"), "'A' takes a picture, 'source' or 'none'");
  EXPECT_EQ(complaintAbout(R"({"layers": []})"), "'layers' takes names with values in braces");
  EXPECT_EQ(complaintAbout(R"({"layers": {"A": {"blur": 3}}})"), "'A' has no 'picture'");
  EXPECT_EQ(complaintAbout(R"({"layers": {"A": {"picture": 3}}})"), "'A' takes a picture, 'source' or 'none'");
  EXPECT_TRUE(complaintAbout(R"({"layers": {"A": {"picture": "source", "blur": "much"}}})").starts_with("'A': "));
  EXPECT_EQ(complaintAbout(R"({"controls": {"Dot Size": 1e999}})"), "a number in it is too large");
}

TEST_F(PresetTest, aMissingPresetIsAnsweredWithTheNearestFile) {
  folder_.write("newsprint.json", "{}");
  const auto file = folder_ / "newsprnt.json";
  EXPECT_EQ(refusal(file), "no preset '" + file.string() + "'; did you mean 'newsprint.json'?");
}

TEST_F(PresetTest, aKeyThatStandsTwiceIsRefused) {
  EXPECT_EQ(complaintAbout(R"({"controls": {"Dot Size": 1, "Mask": 2, "Dot Size": 3}})"),
            "'Dot Size' stands in it twice");
  EXPECT_EQ(complaintAbout(R"({"about": "a", "controls": {}, "about": "b"})"), "'about' stands in it twice");
  EXPECT_EQ(refusal(folder_.write("ok.json", R"({"controls": {"A": 1}, "layers": {"A": "none"}})")), "accepted");
}

TEST_F(PresetTest, picturesOutsideItsFolderAreRefusedUnlessAllowed) {
  const vindrel::test::TemporaryFolder other;
  std::filesystem::create_directory(folder_ / "in");
  std::filesystem::create_directory_symlink(other.path(), folder_ / "in/out");
  const std::vector<std::string> pictures = {(other / "a.png").string(), "../a.png", "b/../../a.png", "out/a.png"};
  for (const std::string& picture : pictures) {
    const auto file = folder_.write("in/p.json", R"({"layers": {"A": ")" + picture + R"("}})");
    EXPECT_EQ(refusal(file), "preset '" + file.string() + "': 'A' is '" + picture +
                                 "', which lies outside the preset's folder; --allow-paths allows it");
    EXPECT_EQ(cli::readPreset(file, cli::PathsOfPreset::anywhere).layers.size(), 1U);
  }
  EXPECT_EQ(refusal(folder_.write("in/p.json", R"({"layers": {"A": "maps/../a.png"}})")), "accepted");
}

TEST(AssignmentTest, theFirstEqualsSignDivides) {
  const cli::Assignment assignment = cli::splitAssignment(" Mask Target Layer =a=b.png", "--layer");
  EXPECT_EQ(assignment.name, "Mask Target Layer");
  EXPECT_EQ(assignment.text, "a=b.png");
}

TEST(AssignmentTest, aMissingNameOrEqualsSignIsRefused) {
  for (const char* text : {"Dot Size", "=14", "  =14", ""}) {
    EXPECT_THROW(cli::splitAssignment(text, "--set"), cli::UserError) << text;
  }
}
