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

namespace {

std::string complaint(const std::vector<std::string>& words) {
  try {
    parseArguments(words);
  } catch (const cli::UserError& error) {
    return error.what();
  }
  return "accepted";
}

/// `vindrel render a.png b.png` with more words.
std::vector<std::string> rendering(const std::vector<std::string>& more) {
  std::vector<std::string> words = {"render", "a.png", "b.png"};
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

struct Refused {
  std::vector<std::string> words;
  std::string complaint;
};

void expectRefused(const std::vector<Refused>& cases) {
  for (const Refused& c : cases) EXPECT_EQ(complaint(c.words), c.complaint);
}

}  // namespace

TEST(ArgumentsTest, theFormsOfFilesArrive) {
  const cli::WriteChoices choices =
      parseArguments(
          rendering({"--png-level", "7", "--exr-type", "Half", "--exr-compression", "PIZ", "--tiff-compression", "lzw",
                     "--jpeg-quality", "55", "--channels", "rgb", "--matte", "#ff7d14"}))
          .writeChoices;
  EXPECT_EQ(choices.pngLevel, 7);
  EXPECT_EQ(choices.exrType, cli::ExrType::half);
  EXPECT_EQ(choices.exrCompression, "piz");
  EXPECT_EQ(choices.tiffCompression, "lzw");
  EXPECT_EQ(choices.jpegQuality, 55);
  EXPECT_FALSE(choices.alpha);
  EXPECT_EQ(choices.matte, (std::array<uint8_t, 3>{0xFF, 0x7D, 0x14}));
  EXPECT_EQ(parseArguments(rendering({"--exr-type", "float"})).writeChoices.exrType, cli::ExrType::float32);
  EXPECT_TRUE(parseArguments(rendering({"--channels", "rgba"})).writeChoices.alpha);
}

TEST(ArgumentsTest, otherChannelsAreKeptUnlessDropped) {
  EXPECT_EQ(parseArguments(rendering({})).otherChannels, cli::OtherChannels::keep);
  EXPECT_EQ(parseArguments(rendering({"--other-channels", "keep"})).otherChannels, cli::OtherChannels::keep);
  EXPECT_EQ(parseArguments(rendering({"--other-channels", "drop"})).otherChannels, cli::OtherChannels::leave);
}

TEST(ArgumentsTest, whatAShotIsToldArrives) {
  const Arguments arguments =
      parseArguments(rendering({"--frames", "3-5", "--start", "2", "--jobs", "4", "--frame-timeout", "2.5", "--chunk",
                                "2/8", "--log", "json", "--skip-existing", "--quiet"}));
  EXPECT_EQ(arguments.frames, (std::vector<int32_t>{3, 4, 5}));
  EXPECT_EQ(arguments.start, 2);
  EXPECT_EQ(arguments.jobs, 4);
  EXPECT_EQ(arguments.frameTimeout, 2.5);
  EXPECT_EQ(arguments.chunk, 2);
  EXPECT_EQ(arguments.chunks, 8);
  EXPECT_EQ(arguments.log, cli::LogForm::json);
  EXPECT_TRUE(arguments.skipExisting);
  EXPECT_TRUE(arguments.quiet);
  EXPECT_EQ(parseArguments(rendering({"--log", "text"})).log, cli::LogForm::text);
  EXPECT_EQ(parseArguments(rendering({"--road", "SMART"})).road, cli::Road::smart);
}

TEST(ArgumentsTest, whatASheetIsToldArrives) {
  const Arguments arguments =
      parseArguments({"sheet", "a.png", "b.png", "--vary", "Dot Size=4,8", "--width", "320", "--frame", "12"});
  EXPECT_EQ(arguments.cellWidth, 320);
  EXPECT_EQ(arguments.frame, 12);
  ASSERT_EQ(arguments.varied.size(), 1U);
  EXPECT_EQ(arguments.varied[0].text, "4,8");
}

TEST(ArgumentsTest, whatScreensAreToldArrives) {
  const Arguments arguments = parseArguments(
      {"screens", "a.png", "b.png", "--recipe", "riso", "--png-level", "9", "--depth", "16", "--scale", "2"});
  EXPECT_EQ(arguments.recipe, "riso");
  EXPECT_EQ(arguments.writeChoices.pngLevel, 9);
  EXPECT_EQ(arguments.depth, standin::Depth::k16);
  EXPECT_EQ(arguments.scale, 2.0);
  EXPECT_TRUE(parseArguments({"screens", "--list"}).recipe.empty());
}

TEST(ArgumentsTest, whatACheckIsToldGoesOnAsItIs) {
  EXPECT_EQ(
      parseArguments({"check", "m.so", "--only", "a", "--only", "b", "--seed", "7", "--json", "--time-factor", "3"})
          .checkWords,
      (std::vector<std::string>{"--only", "a", "--only", "b", "--seed", "7", "--time-factor", "3", "--json"}));
  EXPECT_EQ(parseArguments({"check", "m.so", "--list", "--markdown"}).checkWords,
            (std::vector<std::string>{"--list", "--markdown"}));
}

TEST(ArgumentsTest, numbersThatAreNoneAreNamed) {
  expectRefused({
      {rendering({"--jobs", "0"}), "--jobs takes a whole number from 1 to 256, not '0'"},
      {rendering({"--jobs", "257"}), "--jobs takes a whole number from 1 to 256, not '257'"},
      {rendering({"--jobs", "2x"}), "--jobs takes a whole number from 1 to 256, not '2x'"},
      {rendering({"--jobs", "inf"}), "--jobs takes a whole number from 1 to 256, not 'inf'"},
      {rendering({"--start", "1000001"}), "--start takes a whole number from 0 to 1000000, not '1000001'"},
      {rendering({"--frame-timeout", "0"}), "--frame-timeout takes seconds, more than 0, not '0'"},
      {rendering({"--frame-timeout", "1e999"}), "--frame-timeout takes seconds, more than 0, not '1e999'"},
      {rendering({"--png-level", "10"}), "--png-level takes a whole number from 0 to 9, not '10'"},
      {{"sheet", "a.png", "b.png", "--vary", "A=1", "--width", "15"},
       "--width takes a whole number from 16 to 4096, not '15'"},
      {{"sheet", "a.png", "b.png", "--vary", "A=1", "--frame", "-2"},
       "--frame takes a whole number from 0 to 1000000, not '-2'"},
      {{"screens", "a.png", "b.png", "--recipe", "riso", "--png-level", "best"},
       "--png-level takes a whole number from 0 to 9, not 'best'"},
      {{"screens", "a.png", "b.png", "--recipe", "riso", "--depth", "24"}, "--depth takes 8, 16 or 32, not '24'"},
      {{"presets", "--save", "mine", "--height", "0"},
       "--height takes pixels, a whole number from 1 to 30000, not '0'"},
  });
}

TEST(ArgumentsTest, partsOfAShotThatAreNoneAreNamed) {
  const std::string takes = "--chunk takes a part and their number, as in 2/8, not '";
  expectRefused({{rendering({"--chunk", "3"}), takes + "3'"},
                 {rendering({"--chunk", "0/3"}), takes + "0'"},
                 {rendering({"--chunk", "/"}), takes + "'"},
                 {rendering({"--chunk", "1/x"}), takes + "x'"}});
}

TEST(ArgumentsTest, wordsThatAreNoneOfAFewAreNamed) {
  expectRefused({
      {rendering({"--log", "xml"}), "--log takes text or json, not 'xml'"},
      {rendering({"--other-channels", "kep"}), "--other-channels takes keep or drop, not 'kep'; did you mean 'keep'?"},
      {rendering({"--channels", "grey"}), "--channels takes rgb or rgba, not 'grey'"},
      {rendering({"--road", "long"}), "--road takes classic or smart, not 'long'"},
      {rendering({"--color-space", ""}), "--color-space takes srgb, linear or a name of the configuration"},
      {rendering({"--module", ""}), "--module takes a file"},
  });
}

TEST(ArgumentsTest, aScaleIsANumberOfAPresetOrARecipe) {
  const std::string takes = "--scale takes a number above 0, up to 1000, not '";
  expectRefused({
      {rendering({"--preset", "p", "--scale", "0"}), takes + "0'"},
      {rendering({"--preset", "p", "--scale", "1001"}), takes + "1001'"},
      {rendering({"--preset", "p", "--scale", "half"}), takes + "half'"},
      {rendering({"--scale", "2"}), "--scale goes with --preset; values by --set are taken as they are"},
  });
  EXPECT_EQ(parseArguments(rendering({"--preset", "p", "--scale", "0.5"})).scale, 0.5);
}

TEST(ArgumentsTest, commandsThatLackTheirWordsSayWhichOnes) {
  const std::string sheet =
      "sheet needs a picture to read and one to write: vindrel sheet IN OUT.png --vary \"Dot Size=4,8\"";
  const std::string screens = "screens needs a picture to read and one to write: vindrel screens IN OUT --recipe NAME";
  expectRefused({
      {{"sheet"}, sheet},
      {{"sheet", "a.png", "--vary", "A=1"}, sheet},
      {{"sheet", "a.png", "b.png"}, "sheet needs a control and its values: --vary \"Dot Size=4,8,12\""},
      {{"screens"}, screens},
      {{"screens", "a.png", "--recipe", "riso"}, screens},
      {{"screens", "a.png", "b.png"}, "screens needs a recipe; 'vindrel screens --list' shows those by name"},
      {{"screens", "--list", "a.png"}, "--list takes nothing else"},
      {{"screens", "--list", "--recipe", "riso"}, "--list takes nothing else"},
      {{"completion"}, "completion takes a shell: bash or zsh"},
      {{"options", "--restore", "--preset", "p"}, "options --restore takes no values; they go with --save"},
      {{"controls", "--json", "--describe", "Dot Size"}, "--describe takes no --json, which tells about all controls"},
  });
}

TEST(ArgumentsTest, anAssignmentIsAskedForInItsOwnForm) {
  expectRefused({
      {rendering({"--set", "=3"}), "--set takes a name, '=' and a value, as in --set \"Dot Size=14\", not '=3'"},
      {rendering({"--set", "  =3"}), "--set takes a name, '=' and a value, as in --set \"Dot Size=14\", not '  =3'"},
      {rendering({"--layer", "mask.png"}),
       "--layer takes a name, '=' and a value, as in --layer \"Mask Target Layer=mask.png\", not 'mask.png'"},
      {{"sheet", "a.png", "b.png", "--vary", "4,8"},
       "--vary takes a name, '=' and a value, as in --vary \"Dot Size=4,8,12\", not '4,8'"},
  });
  EXPECT_EQ(parseArguments(rendering({"--set", " Dot Size  =3"})).sets[0].name, "Dot Size");
}

TEST(ArgumentsTest, presetsTakeValuesOnlyToSaveThem) {
  for (const std::vector<std::string>& more : std::vector<std::vector<std::string>>{
           {"--about", "a look"}, {"--height", "90"}, {"--replace"}, {"--preset", "p"}, {"--layer", "A=b.png"}}) {
    std::vector<std::string> words = {"presets"};
    words.insert(words.end(), more.begin(), more.end());
    EXPECT_EQ(complaint(words), "presets takes values only with --save NAME") << more[0];
  }
}

TEST(ArgumentsTest, anOptionBeforeTheCommandIsRefusedAsTheProgramsOwn) {
  EXPECT_EQ(complaint({"--what", "about"}), "no option '--what'; 'vindrel --help' lists them");
  EXPECT_EQ(complaint({"-x"}), "no option '-x'; 'vindrel --help' lists them");
}
