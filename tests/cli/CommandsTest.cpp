// The commands that read no pictures, and the program itself.

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>

#include "tests/cli/CommandLine.h"

using nlohmann::json;

namespace {

json controlsWith(const std::vector<std::string>& more) {
  std::vector<std::string> words = {"controls", "--json"};
  words.insert(words.end(), more.begin(), more.end());
  const Outcome outcome = runCommandLine(words);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  return json::parse(outcome.out, nullptr, false);
}

json named(const json& controls, const std::string& name) {
  for (const json& control : controls) {
    if (control["name"] == name) return control;
  }
  return {};
}

}  // namespace

TEST(ControlsCommandTest, theJsonHoldsAllControlsInTheirOrder) {
  const json controls = controlsWith({});
  ASSERT_EQ(controls.size(), 122U);
  for (std::size_t i = 0; i < controls.size(); ++i) EXPECT_EQ(controls[i]["index"], i + 1);
}

TEST(ControlsCommandTest, eachKindIsToldInPlainTerms) {
  const json controls = controlsWith({});
  EXPECT_EQ(named(controls, "Dot Shape"),
            json::parse(R"({"index": 1, "id": 1, "name": "Dot Shape", "kind": "choice", "default": 1,
      "choices": ["Circle", "Square", "Round Square", "Cross", "Star", "Diamond"], "choiceCount": 6, "flags": 32,
      "flagNames": ["collapsed"], "uiFlags": 0})"));
  EXPECT_EQ(named(controls, "Dot Color")["default"], "#ff7d14");
  const json aspect = named(controls, "Dot Aspect");
  EXPECT_EQ(aspect["valid"], json::parse("[-100.0, 100.0]"));
  EXPECT_EQ(aspect["percent"], true);
  const json distance = named(controls, "Dot Distance X");
  EXPECT_EQ(distance["valid"], json::parse("[0.0, 10000.0]"));
  EXPECT_EQ(distance["slider"], json::parse("[0.0, 100.0]"));
  EXPECT_EQ(distance["default"], 20.0);
  EXPECT_EQ(named(controls, "Distance Between")["choiceCount"], 6);
  EXPECT_EQ(named(controls, "Distance Between")["choices"], json::parse(R"(["Dots", "Centers"])"));
  EXPECT_EQ(named(controls, "Center Position")["default"], "50%, 50%");
  EXPECT_EQ(named(controls, "Mask Target Layer")["default"], "none");
  EXPECT_EQ(named(controls, "Custom Map Layer 2")["default"], "source");
  EXPECT_EQ(named(controls, "Randomize")["kind"], "group");
  EXPECT_EQ(named(controls, "Random Seed")["kind"], "whole number");
  EXPECT_EQ(named(controls, "Enable Effector 3")["default"], false);
  EXPECT_EQ(named(controls, "H")["kind"], "angle");
}

TEST(ControlsCommandTest, theTableHasOneLineAControlBelowItsHeading) {
  const Outcome outcome = runCommandLine({"controls"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  // Choices stand on lines of their own, further in than any index reaches.
  std::istringstream lines(outcome.out);
  int32_t controls = -1;
  for (std::string line; std::getline(lines, line);) controls += line.find_first_not_of(' ') < 5 ? 1 : 0;
  EXPECT_EQ(controls, 122);
  EXPECT_NE(outcome.out.find("Dot Distance X"), std::string::npos);
}

TEST(ControlsCommandTest, valuesShowWhatIsGreyedForThem) {
  // A disabled effector greys all of its own controls but the switch.
  const json off = controlsWith({"--set", "Enable Effector 1=off"});
  EXPECT_EQ(named(off, "Enable Effector 1")["greyed"], false);
  EXPECT_EQ(named(off, "Size 1")["greyed"], true);
  const json on = controlsWith({"--set", "Enable Effector 1=on"});
  EXPECT_EQ(named(on, "Enable Effector 1")["value"], "on");
  EXPECT_EQ(named(on, "Size 1")["greyed"], false);
  EXPECT_EQ(named(on, "Size 2")["greyed"], true);
}

TEST(ControlsCommandTest, withoutValuesNoStateIsTold) {
  EXPECT_FALSE(named(controlsWith({}), "Size 1").contains("greyed"));
}

TEST(AboutCommandTest, theModuleSpeaksForItself) {
  const Outcome outcome = runCommandLine({"about"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_NE(outcome.out.find("Vindrel"), std::string::npos) << outcome.out;
  EXPECT_EQ(outcome.out.find('\r'), std::string::npos);
}

namespace {

/// A copy of the module, so that its settings file lies in a folder of the test's own.
class OptionsCommandTest : public testing::Test {
 protected:
  void SetUp() override {
    module_ = (folder_ / "Copy.so").string();
    std::filesystem::copy_file(VINDREL_MODULE, module_);
  }
  vindrel::test::TemporaryFolder folder_;
  std::string module_;
};

}  // namespace

TEST_F(OptionsCommandTest, savedValuesAreTheDefaultsOfTheNextStart) {
  const Outcome saved =
      runCommandLine({"options", "--save", "--module", module_, "--set", "Dot Size=33.5", "--set", "Dot Shape=Star"});
  EXPECT_EQ(saved.exitCode, 0) << saved.err;
  EXPECT_EQ(saved.out, "Saved as values of new instances in " + (folder_ / "Copy.ini").string() + "\n");
  EXPECT_EQ(folder_.names(), (std::vector<std::string>{"Copy.ini", "Copy.so"}));
  const json controls = controlsWith({"--module", module_});
  EXPECT_EQ(named(controls, "Dot Size")["default"], 33.5);
  EXPECT_EQ(named(controls, "Dot Shape")["default"], 5);
}

TEST_F(OptionsCommandTest, restoringForgetsThem) {
  ASSERT_EQ(runCommandLine({"options", "--save", "--module", module_, "--set", "Dot Size=33.5"}).exitCode, 0);
  const Outcome restored = runCommandLine({"options", "--restore", "--module", module_});
  EXPECT_EQ(restored.exitCode, 0) << restored.err;
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"Copy.so"});
  EXPECT_EQ(named(controlsWith({"--module", module_}), "Dot Size")["default"], 10.0);
}

TEST_F(OptionsCommandTest, restoringWhereNothingWasSavedIsNoError) {
  EXPECT_EQ(runCommandLine({"options", "--restore", "--module", module_}).exitCode, 0);
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"Copy.so"});
}

TEST_F(OptionsCommandTest, aFolderForPassingFilesThatIsNoneIsNamed) {
  const char* const before = std::getenv("TMPDIR");
  const std::optional<std::string> kept = before == nullptr ? std::nullopt : std::optional<std::string>(before);
  const auto saveWith = [&](const std::string& folder) {
    setenv("TMPDIR", folder.c_str(), 1);
    return runCommandLine({"options", "--save", "--module", module_, "--set", "Dot Size=33.5"});
  };
  const Outcome missing = saveWith((folder_ / "none").string());
  if (kept) {
    setenv("TMPDIR", kept->c_str(), 1);
  } else {
    unsetenv("TMPDIR");
  }
  EXPECT_EQ(missing.err, "vindrel: there is no folder for passing files; TMPDIR must name one\n");
  EXPECT_EQ(missing.exitCode, 2);
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"Copy.so"});
}

TEST(RunTest, resultsThatCannotBeWrittenAreAnError) {
  for (const std::vector<std::string>& words : {std::vector<std::string>{"--version"}, {"controls"}, {"--help"}}) {
    std::ostringstream out;
    std::ostringstream err;
    out.setstate(std::ios::badbit);
    EXPECT_EQ(cli::run(words, {out, err, {}, std::filesystem::path(VINDREL_MODULE).parent_path()}), 2);
    EXPECT_EQ(err.str(), "vindrel: can't write the results\n");
  }
}

TEST(CheckCommandTest, triesThePromisesAndRepeatsByItsOwnWords) {
  const Outcome text = runCommandLine({"check", "--only", "depths-agree", "--seed", "3", "--jobs", "1"});
  EXPECT_EQ(text.exitCode, 0) << text.err;
  EXPECT_NE(text.out.find("Vindrel.so --only depths-agree --seed 3\n"), std::string::npos) << text.out;
  const Outcome asJson = runCommandLine({"check", VINDREL_MODULE, "--json", "--only", "ids-are-unique"});
  const json results = json::parse(asJson.out);
  EXPECT_EQ(results["pass"], 1);
  EXPECT_EQ(results["promises"][0]["name"], "ids-are-unique");
}

TEST(CheckCommandTest, failsWithoutWhatTheModuleIsKnownToDo) {
  const Outcome outcome = runCommandLine({"check", "--only", "popups-name-their-items", "--expected", "none"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_NE(outcome.out.find("  FAIL  popups-name-their-items\n"), std::string::npos) << outcome.out;
}

TEST(CheckCommandTest, refusesWrongWordsInOneLine) {
  EXPECT_EQ(runCommandLine({"check", "--only", "nothing"}).err,
            "vindrel: there is no promise 'nothing'; --list names them all\n");
  EXPECT_EQ(runCommandLine({"check", "--seed", "x"}).exitCode, 2);
  EXPECT_EQ(runCommandLine({"check", "none.so"}).err, "vindrel: no module 'none.so'\n");
}

namespace {

/// The program's exit code and all that it says.
/// @param environment  what `env` takes before a program
std::pair<int, std::string> runProgram(const std::string& words, const std::string& environment = "") {
  std::string output;
  const std::string command = "env " + environment + " '" + VINDREL_PROGRAM + "' " + words + " 2>&1";
  std::FILE* const pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return {-1, ""};
  std::array<char, 4096> buffer{};
  while (std::fgets(buffer.data(), static_cast<int>(buffer.size()), pipe) != nullptr) output += buffer.data();
  const int status = pclose(pipe);
  return {WEXITSTATUS(status), output};
}

}  // namespace

TEST(ProgramTest, theProgramFindsItsModuleAndReturnsTheExitCode) {
  EXPECT_EQ(runProgram("--version"), std::make_pair(0, std::string("vindrel 1.5.1\n")));
  EXPECT_EQ(runProgram("controls --json").first, 0);
  EXPECT_EQ(runProgram("rendr"),
            std::make_pair(2, std::string("vindrel: no command 'rendr'; did you mean 'render'?\n")));
}

TEST(ProgramTest, aUsersPresetsLieWhereTheSystemSays) {
  const vindrel::test::TemporaryFolder folder;
  const std::string data = folder.path("data");
  const std::string home = folder.path("home");
  std::filesystem::create_directories(data + "/vindrel/presets");
  std::filesystem::create_directories(home + "/.local/share/vindrel/presets");
  folder.write("data/vindrel/presets/of-data.json", R"({"about": "A"})");
  folder.write("home/.local/share/vindrel/presets/of-home.json", R"({"about": "B"})");
  const auto listed = [](const std::string& environment, const std::string& name) {
    return runProgram("presets", environment).second.find(name + " ") != std::string::npos;
  };
  const std::string withData = "XDG_DATA_HOME=" + data + " HOME=" + home;
  EXPECT_TRUE(listed(withData, "of-data"));
  EXPECT_FALSE(listed(withData, "of-home"));
  EXPECT_TRUE(listed("-u XDG_DATA_HOME HOME=" + home, "of-home"));
  EXPECT_TRUE(listed("XDG_DATA_HOME=data HOME=" + home, "of-home")) << "a relative path counts as none";
  for (const char* nowhere : {"-u XDG_DATA_HOME -u HOME", "-u XDG_DATA_HOME HOME=home"}) {
    EXPECT_EQ(
        runProgram("presets --save mine", nowhere),
        std::make_pair(2, std::string("vindrel: there is no folder of your own to save 'mine' in; give a file, as "
                                      "in ./mine.json\n")));
  }
}
