#include "cli/Arguments.h"

#include <gtest/gtest.h>

#include "cli/UserError.h"

using cli::Arguments;
using cli::Command;
using cli::parseArguments;

TEST(ArgumentsTest, aPlainRenderTakesTheDefaults) {
  const Arguments arguments = parseArguments({"render", "in.png", "out.png"});
  EXPECT_EQ(arguments.command, Command::render);
  EXPECT_EQ(arguments.input, "in.png");
  EXPECT_EQ(arguments.output, "out.png");
  EXPECT_FALSE(arguments.depth.has_value());
  EXPECT_TRUE(arguments.presets.empty());
  EXPECT_EQ(arguments.frame, 0);
  EXPECT_EQ(arguments.frameRate, (cli::FrameRate{24, 1}));
  EXPECT_EQ(arguments.downsample, 1);
  EXPECT_EQ(arguments.road, cli::Road::asModuleSays);
  EXPECT_TRUE(arguments.module.empty());
}

TEST(ArgumentsTest, everyOptionOfRenderArrives) {
  const Arguments arguments = parseArguments({"render",  "--set",    "Dot Size=14", "in.png",   "--set=Dot Shape=Star",
                                              "--layer", "A=b.png",  "out.png",     "--depth",  "16",
                                              "--frame", "7",        "--fps",       "29.97",    "--downsample",
                                              "2",       "--preset", "p.json",      "--module", "m.so",
                                              "--road",  "Classic"});
  ASSERT_EQ(arguments.sets.size(), 2U);
  EXPECT_EQ(arguments.sets[0].name, "Dot Size");
  EXPECT_EQ(arguments.sets[1].text, "Star");
  ASSERT_EQ(arguments.layers.size(), 1U);
  EXPECT_EQ(arguments.layers[0].picture, "b.png");
  EXPECT_EQ(arguments.input, "in.png");
  EXPECT_EQ(arguments.output, "out.png");
  EXPECT_EQ(arguments.depth, standin::Depth::k16);
  EXPECT_EQ(arguments.frame, 7);
  EXPECT_EQ(arguments.frameRate, (cli::FrameRate{30000, 1001}));
  EXPECT_EQ(arguments.downsample, 2);
  EXPECT_EQ(arguments.presets, (std::vector<std::filesystem::path>{"p.json"}));
  EXPECT_EQ(arguments.module, "m.so");
  EXPECT_EQ(arguments.road, cli::Road::classic);
}

TEST(ArgumentsTest, negativeValuesOfControlsAreNoOptions) {
  const Arguments arguments = parseArguments({"render", "a.png", "b.png", "--set", "Dot Rotation=-45"});
  ASSERT_EQ(arguments.sets.size(), 1U);
  EXPECT_EQ(arguments.sets[0].text, "-45");
}

TEST(ArgumentsTest, theOtherCommandsAreToldApart) {
  const Arguments controls = parseArguments({"controls", "--json", "--set", "Mask=Layer"});
  EXPECT_EQ(controls.command, Command::controls);
  EXPECT_TRUE(controls.json);
  EXPECT_EQ(controls.sets.size(), 1U);
  EXPECT_EQ(parseArguments({"about"}).command, Command::about);
  EXPECT_EQ(parseArguments({"options", "--save"}).optionsAction, cli::OptionsAction::save);
  EXPECT_EQ(parseArguments({"options", "--restore"}).optionsAction, cli::OptionsAction::restore);
}

TEST(ArgumentsTest, helpAndVersionAreTexts) {
  EXPECT_EQ(parseArguments({"--version"}).text, "vindrel 1.5.1\n");
  EXPECT_NE(parseArguments({"--help"}).text.find("controls"), std::string::npos);
  const Arguments help = parseArguments({"render", "--help"});
  EXPECT_EQ(help.command, Command::showText);
  EXPECT_NE(help.text.find("--downsample"), std::string::npos);
}

TEST(ArgumentsTest, helpIsACommandToo) {
  EXPECT_EQ(parseArguments({"help"}).text, parseArguments({"--help"}).text);
  EXPECT_EQ(parseArguments({"help", "render"}).text, parseArguments({"render", "--help"}).text);
  EXPECT_THROW(parseArguments({"help", "rendr"}), cli::UserError);
}

TEST(ArgumentsTest, twoDashesEndTheOptions) {
  const Arguments arguments = parseArguments({"render", "--depth", "8", "--", "-in.png", "--depth"});
  EXPECT_EQ(arguments.input, "-in.png");
  EXPECT_EQ(arguments.output, "--depth");
  EXPECT_EQ(arguments.depth, standin::Depth::k8);
  EXPECT_EQ(parseArguments({"render", "a.png", "--", "-b.png"}).output, "-b.png");
  EXPECT_THROW(parseArguments({"render", "a.png", "--", "b.png", "c.png"}), cli::UserError);
}

TEST(ArgumentsTest, theLastOfARepeatedOptionCounts) {
  const Arguments arguments =
      parseArguments({"render", "--depth", "8", "a.png", "--fps=25", "b.png", "--depth", "16", "--fps", "30",
                      "--preset", "p", "--preset", "q", "--module", "m", "--module", "n"});
  EXPECT_EQ(arguments.depth, standin::Depth::k16);
  EXPECT_EQ(arguments.frameRate, (cli::FrameRate{30, 1}));
  EXPECT_EQ(arguments.presets, (std::vector<std::filesystem::path>{"p", "q"}));
  EXPECT_EQ(arguments.module, "n");
}

TEST(ArgumentsTest, theLimitOfMemoryIsInMegabytesOrGigabytes) {
  const auto limit = [](const char* text) {
    return parseArguments({"render", "a.png", "b.png", "--limit-memory", text}).mostMemory;
  };
  EXPECT_EQ(limit("500"), 500'000'000U);
  EXPECT_EQ(limit("500M"), 500'000'000U);
  EXPECT_EQ(limit("1.5g"), 1'500'000'000U);
  for (const char* text : {"0", "-1", "G", "x", "2000G"}) EXPECT_THROW(limit(text), cli::UserError) << text;
}
