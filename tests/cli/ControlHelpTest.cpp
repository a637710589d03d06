#include "cli/ControlHelp.h"

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>

#include "tests/cli/CommandLine.h"

namespace {

nlohmann::json controlsOfTheModule() {
  const Outcome listed = runCommandLine({"controls", "--json"});
  EXPECT_EQ(listed.exitCode, 0) << listed.err;
  return nlohmann::json::parse(listed.out);
}

}  // namespace

TEST(ControlHelpTest, everyControlHasASentence) {
  int32_t controls = 0;
  for (const nlohmann::json& control : controlsOfTheModule()) {
    ++controls;
    if (control.at("kind") == "end of group") continue;
    const auto help = cli::helpOf(control.at("name").get<std::string>());
    ASSERT_TRUE(help) << control.at("name") << " has no help in manual/controls.json";
    EXPECT_GT(help->help.size(), 10U) << control.at("name");
    EXPECT_EQ(help->help.back(), '.') << control.at("name");
  }
  EXPECT_EQ(controls, 122);
}

TEST(ControlHelpTest, noTextIsLeftWithoutAControl) {
  std::set<std::string> names;
  for (const nlohmann::json& control : controlsOfTheModule()) names.insert(control.at("name"));
  std::ifstream file(VINDREL_SOURCE_DIR "/manual/controls.json");
  const nlohmann::json texts = nlohmann::json::parse(file);
  for (const nlohmann::json& entry : texts.at("controls")) {
    std::string name = entry.at("name");
    if (name == "Effector #") name = "Effector1";
    if (name.ends_with('#')) name.back() = '3';
    EXPECT_TRUE(names.contains(name)) << "manual/controls.json tells of '" << name << "', which is no control";
  }
}

TEST(ControlHelpTest, aControlOfAnEffectorHasTheTextOfAllThree) {
  EXPECT_EQ(cli::helpOf("Falloff 1")->help, cli::helpOf("Falloff 3")->help);
  EXPECT_NE(cli::helpOf("Size 1")->help, cli::helpOf("Size")->help) << "the size of a map is not that of the jitter";
}

TEST(ControlHelpTest, anotherModulesControlHasNone) {
  EXPECT_FALSE(cli::helpOf("Grain Size"));
  EXPECT_FALSE(cli::helpOf(""));
}

TEST(ControlHelpTest, theListOfControlsFitsHundredColumns) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"controls"}, {"controls", "--set", "Dot Size=12.5"}}) {
    std::istringstream lines(runCommandLine(words).out);
    for (std::string line; std::getline(lines, line);)
      EXPECT_LE(line.size(), 102U) << line;  // two degree signs at most
  }
}

TEST(ControlHelpTest, aControlIsDescribedByName) {
  const Outcome told = runCommandLine({"controls", "--describe", "ratio size 2"});
  EXPECT_EQ(told.exitCode, 0) << told.err;
  EXPECT_NE(told.out.find("Ratio Size 2 (number, index 80, id 82)\n"), std::string::npos) << told.out;
  EXPECT_NE(told.out.find("Multiplies the size"), std::string::npos) << told.out;
  EXPECT_NE(told.out.find("Valid: 0 to 100; slider: 0 to 10"), std::string::npos) << told.out;
}

TEST(ControlHelpTest, aMisspeltControlToDescribeIsNamed) {
  const Outcome told = runCommandLine({"controls", "--describe", "Ratio Sise 2"});
  EXPECT_EQ(told.exitCode, 2);
  EXPECT_NE(told.err.find("Ratio Size 2"), std::string::npos) << told.err;
  EXPECT_EQ(runCommandLine({"controls", "--json", "--describe", "Dot Size"}).exitCode, 2);
}
