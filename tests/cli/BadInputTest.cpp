// Everything that a person can get wrong: one line that names it and what would be right, exit code 2, no file.

#include <gtest/gtest.h>

#include "tests/cli/CommandLine.h"

namespace {

class BadInputTest : public testing::Test {
 protected:
  void SetUp() override {
    cli::writePicture(folder_ / "in.png", smallPicture(standin::Depth::k8));
    before_ = folder_.names();
  }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }
  std::string quoted(const std::string& name) const { return "'" + path(name) + "'"; }

  /// Files that belong to the test and not to the command.
  void keep(const std::string& name, const std::string& content) {
    folder_.write(name, content);
    before_ = folder_.names();
  }

  void expectRefused(const std::vector<std::string>& words, const std::string& message) {
    const Outcome outcome = runCommandLine(words);
    EXPECT_EQ(outcome.err, "vindrel: " + message + "\n");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(folder_.names(), before_) << "a file was left behind";
  }

  /// `vindrel render in.png out.png` with more words.
  void expectRenderRefused(const std::vector<std::string>& more, const std::string& message) {
    std::vector<std::string> words = {"render", path("in.png"), path("out.png")};
    words.insert(words.end(), more.begin(), more.end());
    expectRefused(words, message);
  }

  vindrel::test::TemporaryFolder folder_;
  std::vector<std::string> before_;
};

}  // namespace

// ---- commands and options

TEST_F(BadInputTest, noCommandAtAll) {
  expectRefused({},
                "no command; it must be render, sheet, screens, presets, controls, about, options, check, completion "
                "or man ('vindrel "
                "--help' tells more)");
}

TEST_F(BadInputTest, aMisspeltCommand) {
  expectRefused({"rendr", path("in.png"), path("out.png")}, "no command 'rendr'; did you mean 'render'?");
}

TEST_F(BadInputTest, aCommandThatIsNearNone) {
  expectRefused({"photograph"},
                "no command 'photograph'; it must be render, sheet, screens, presets, controls, about, options, check, "
                "completion or man");
}

TEST_F(BadInputTest, aMisspeltOption) {
  expectRenderRefused({"--dept", "8"}, "no option '--dept'; did you mean '--depth'?");
  expectRenderRefused({"--downsmaple=2"}, "no option '--downsmaple'; did you mean '--downsample'?");
}

TEST_F(BadInputTest, anOptionWithoutACommand) {
  expectRefused({"--what"}, "no option '--what'; 'vindrel --help' lists them");
  expectRefused({"--versoin"}, "no option '--versoin'; did you mean '--version'?");
}

TEST_F(BadInputTest, anOptionOfAnotherCommand) {
  expectRefused({"controls", "--depth", "8"}, "no option '--depth'; 'vindrel controls --help' lists them");
}

TEST_F(BadInputTest, noPictures) {
  expectRefused({"render"}, "render needs a picture to read and one to write: vindrel render IN OUT");
}

TEST_F(BadInputTest, noOutput) {
  expectRefused({"render", "in.png"}, "render needs a picture to write: vindrel render in.png OUT");
}

TEST_F(BadInputTest, aThirdPicture) {
  expectRenderRefused({"more.png"},
                      "'more.png' is one word too many; render takes one picture to read and one to write");
  expectRefused({"about", "me"}, "'me' is one word too many");
}

TEST_F(BadInputTest, anOptionWithoutItsValue) {
  const Outcome outcome = runCommandLine({"render", path("in.png"), path("out.png"), "--depth"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(outcome.err.starts_with("vindrel: --depth")) << outcome.err;
  EXPECT_EQ(folder_.names(), before_);
}

TEST_F(BadInputTest, aDepthThatDoesNotExist) {
  expectRenderRefused({"--depth", "12"}, "--depth takes 8, 16 or 32, not '12'");
}

TEST_F(BadInputTest, aDownsamplingThatDoesNotExist) {
  expectRenderRefused({"--downsample", "3"}, "--downsample takes 1, 2 or 4, not '3'");
  expectRenderRefused({"--downsample", "half"}, "--downsample takes 1, 2 or 4, not 'half'");
}

TEST_F(BadInputTest, aFrameBeforeTheFirst) {
  expectRenderRefused({"--frame=-1"}, "--frame takes a whole number from 0 to 1000000, not '-1'");
  expectRenderRefused({"--frame", "1.5"}, "--frame takes a whole number from 0 to 1000000, not '1.5'");
}

TEST_F(BadInputTest, aFrameRateOfNothing) {
  expectRenderRefused({"--fps", "0"}, "--fps takes a number from 1 to 999, or two as in 24000/1001, not '0'");
  expectRenderRefused({"--fps", "fast"}, "--fps takes a number from 1 to 999, or two as in 24000/1001, not 'fast'");
}

TEST_F(BadInputTest, formsOfFilesThatDoNotExist) {
  expectRenderRefused({"--exr-type", "halve"}, "--exr-type takes half or float, not 'halve'");
  expectRenderRefused(
      {"--exr-compression", "gzip"},
      "--exr-compression takes none, rle, zips, zip, piz, pxr24, b44, b44a, dwaa or dwab, not 'gzip'; did you "
      "mean 'zip'?");
  expectRenderRefused({"--tiff-compression", "best"},
                      "--tiff-compression takes none, zip, lzw or packbits, not 'best'");
  expectRenderRefused({"--jpeg-quality", "0"}, "--jpeg-quality takes a whole number from 1 to 100, not '0'");
  expectRenderRefused({"--channels", "cmyk"}, "--channels takes rgb or rgba, not 'cmyk'");
  expectRenderRefused({"--matte", "white"}, "--matte takes a colour such as #ff7d14, not 'white'");
}

TEST_F(BadInputTest, aMisspeltRoad) {
  expectRenderRefused({"--road", "clasic"}, "--road takes classic or smart, not 'clasic'; did you mean 'classic'?");
}

TEST_F(BadInputTest, optionsThatSayNothingOrBoth) {
  expectRefused({"options"}, "options takes either --save or --restore");
  expectRefused({"options", "--save", "--restore"}, "options takes either --save or --restore");
}

TEST_F(BadInputTest, valuesForRestore) {
  expectRefused({"options", "--restore", "--set", "Dot Size=1"},
                "options --restore takes no values; they go with --save");
}

// ---- pictures

TEST_F(BadInputTest, aMissingInput) {
  expectRefused({"render", path("inn.png"), path("out.png")},
                "no file " + quoted("inn.png") + "; did you mean 'in.png'?");
}

TEST_F(BadInputTest, anInputThatIsAFolder) {
  expectRefused({"render", folder_.path().string(), path("out.png")},
                "'" + folder_.path().string() + "' is a folder, not a picture");
}

TEST_F(BadInputTest, anInputThatIsNoPicture) {
  keep("note.png", "this is a text");
  expectRefused({"render", path("note.png"), path("out.png")},
                quoted("note.png") + " is no picture that can be read; PNG, TIFF, EXR and JPEG can");
}

TEST_F(BadInputTest, anOutputWithAnUnknownEnding) {
  expectRefused({"render", path("in.png"), path("out.pgn")},
                "can't write pictures ending in '.pgn'; did you mean '.png'?");
  expectRefused({"render", path("in.png"), path("out.document")},
                "can't write pictures ending in '.document'; it must be .png, .tif, .tiff, .exr, .jpg or .jpeg");
}

TEST_F(BadInputTest, anOutputWithoutAnEnding) {
  expectRefused({"render", path("in.png"), path("out")},
                quoted("out") + " has no ending; it must be .png, .tif, .tiff, .exr, .jpg or .jpeg");
}

TEST_F(BadInputTest, anOutputInAMissingFolder) {
  expectRefused({"render", path("in.png"), path("nowhere/out.png")},
                "can't write " + quoted("nowhere/out.png") + ": no folder " + quoted("nowhere"));
}

TEST_F(BadInputTest, anOutputBelowAFile) {
  expectRefused({"render", path("in.png"), path("in.png/out.png")},
                "can't write " + quoted("in.png/out.png") + ": " + quoted("in.png") + " is no folder");
}

TEST_F(BadInputTest, anOutputThatIsAFolder) {
  std::filesystem::create_directory(folder_ / "folder.png");
  before_ = folder_.names();
  expectRefused({"render", path("in.png"), path("folder.png")},
                "can't write " + quoted("folder.png") + ": it is a folder");
}

TEST_F(BadInputTest, floatPixelsForAPng) {
  expectRenderRefused({"--depth", "32"},
                      quoted("out.png") + " can't hold float pixels; write .exr or .tif, or render with --depth 16");
}

TEST_F(BadInputTest, aPictureTooSmallForTheDownsampling) {
  cli::writePicture(folder_ / "dot.png", smallPicture(standin::Depth::k8, 1, 1));
  before_ = folder_.names();
  expectRefused({"render", path("dot.png"), path("out.png"), "--downsample", "4"},
                quoted("dot.png") + " is too small for --downsample 4");
}

// ---- controls and their values

TEST_F(BadInputTest, aMisspeltControl) {
  expectRenderRefused({"--set", "Dot Sise=14"}, "no control 'Dot Sise'; did you mean 'Dot Size'?");
  expectRenderRefused({"--set", "Blend Mode 4=Add"}, "no control 'Blend Mode 4'; did you mean 'Blend Mode 1'?");
}

TEST_F(BadInputTest, aControlThatIsNearNone) {
  expectRenderRefused({"--set", "Unknown Quantity=1"},
                      "no control 'Unknown Quantity'; 'vindrel controls' lists them all");
}

TEST_F(BadInputTest, aSettingWithoutAValue) {
  expectRenderRefused({"--set", "Dot Size"},
                      "--set takes a name, '=' and a value, as in --set \"Dot Size=14\", not 'Dot Size'");
}

TEST_F(BadInputTest, aNumberOutOfRange) {
  expectRenderRefused({"--set", "Dot Size=2000"}, "'Dot Size' takes a number from 0 to 1000, not '2000'");
  expectRenderRefused({"--set", "Dot Opacity=-1%"}, "'Dot Opacity' takes percent from 0 to 100, not '-1%'");
}

TEST_F(BadInputTest, aWordForANumber) {
  expectRenderRefused({"--set", "Dot Size=large"}, "'Dot Size' takes a number from 0 to 1000, not 'large'");
}

TEST_F(BadInputTest, aFractionForAWholeNumber) {
  expectRenderRefused({"--set", "Random Seed=1.5"}, "'Random Seed' takes a whole number from 0 to 10000, not '1.5'");
}

TEST_F(BadInputTest, aMisspeltItem) {
  expectRenderRefused({"--set", "Dot Shape=Sqare"}, "'Dot Shape' has no item 'Sqare'; did you mean 'Square'?");
}

TEST_F(BadInputTest, anItemBeyondTheList) {
  expectRenderRefused({"--set", "Rotation Type=4"},
                      "'Rotation Type' has no item number 4; it has Normal, Look At Center or Fix Dot Angle");
}

TEST_F(BadInputTest, aSeparatorLineAsItem) {
  expectRenderRefused({"--set", "Effect Map 1=2"},
                      "item 2 of 'Effect Map 1' is a separator line; it has Use Custom Map, Radial, Radial Mirror, "
                      "Linear or Linear Mirror");
}

TEST_F(BadInputTest, aWordForAColor) {
  expectRenderRefused({"--set", "Dot Color=orange"}, "'Dot Color' takes a colour such as #ff7d14, not 'orange'");
}

TEST_F(BadInputTest, aNumberForAPlace) {
  expectRenderRefused({"--set", "Center Position=50%"},
                      "'Center Position' takes a place such as 50%,50% or 300,200, not '50%'");
}

TEST_F(BadInputTest, aWordForAnAngle) {
  expectRenderRefused({"--set", "Dot Rotation=left"},
                      "'Dot Rotation' takes an angle in degrees, between -32768 and 32768, not 'left'");
}

TEST_F(BadInputTest, aNumberForACheckBox) {
  expectRenderRefused({"--set", "Clear Background=2"}, "'Clear Background' takes on or off, not '2'");
}

TEST_F(BadInputTest, aValueForAGroup) {
  expectRenderRefused({"--set", "Randomize=1"}, "'Randomize' is a group that takes no value");
}

TEST_F(BadInputTest, aValueForALayer) {
  expectRenderRefused({"--set", "Mask Target Layer=m.png"},
                      "'Mask Target Layer' is a layer; give it a picture by --layer \"Mask Target Layer=FILE\"");
}

// ---- layers

TEST_F(BadInputTest, aMisspeltLayer) {
  expectRenderRefused({"--layer", "Mask Layer=source"}, "no layer 'Mask Layer'; did you mean 'Mask Target Layer'?");
  expectRenderRefused({"--layer", "Custom Map Layer=source"},
                      "no layer 'Custom Map Layer'; did you mean 'Custom Map Layer 1'?");
}

TEST_F(BadInputTest, aPictureForANumber) {
  expectRenderRefused({"--layer", "Dot Size=in.png"}, "'Dot Size' is a number, not a layer; give it by --set");
}

TEST_F(BadInputTest, aLayerWithoutItsPicture) {
  expectRenderRefused({"--layer", "Mask Target Layer=" + path("im.png")},
                      "no file " + quoted("im.png") + "; did you mean 'in.png'?");
  expectRenderRefused({"--layer", "Mask Target Layer="}, "'Mask Target Layer' takes a picture's file, source or none");
}

TEST_F(BadInputTest, aLayerThatIsNearNone) {
  expectRenderRefused({"--layer", "Matte=source"},
                      "no layer 'Matte'; the layers are Mask Target Layer, Custom Map Layer 1, Custom Map Layer 2 and "
                      "Custom Map Layer 3");
}

// ---- presets

TEST_F(BadInputTest, aMissingPreset) {
  expectRenderRefused({"--preset", path("look.json")}, "no preset " + quoted("look.json"));
}

TEST_F(BadInputTest, aPresetThatIsNoJson) {
  keep("p.json", "Dot Size = 14");
  expectRenderRefused({"--preset", path("p.json")}, "preset " + quoted("p.json") + ": no JSON at line 1, column 1");
}

TEST_F(BadInputTest, aPresetWithAWrongKey) {
  keep("p.json", R"({"contrls": {"Dot Size": 14}})");
  expectRenderRefused({"--preset", path("p.json")},
                      "preset " + quoted("p.json") + ": no key 'contrls'; did you mean 'controls'?");
}

TEST_F(BadInputTest, aPresetWithAWrongControl) {
  keep("p.json", R"({"controls": {"Dot Sise": 14}})");
  expectRenderRefused({"--preset", path("p.json")},
                      "preset " + quoted("p.json") + ": no control 'Dot Sise'; did you mean 'Dot Size'?");
}

TEST_F(BadInputTest, aPresetWithAWrongValue) {
  keep("p.json", R"({"controls": {"Dot Size": 1400}})");
  expectRenderRefused({"--preset", path("p.json")},
                      "preset " + quoted("p.json") + ": 'Dot Size' takes a number from 0 to 1000, not '1400'");
}

TEST_F(BadInputTest, aPresetWithoutItsPicture) {
  keep("p.json", R"({"layers": {"Custom Map Layer 1": "im.png"}})");
  expectRenderRefused({"--preset", path("p.json")},
                      "preset " + quoted("p.json") + ": no file " + quoted("im.png") + "; did you mean 'in.png'?");
}

// ---- modules

TEST_F(BadInputTest, aMissingModule) {
  expectRenderRefused({"--module", path("none.so")}, "no module " + quoted("none.so") + "; --module names another one");
}

TEST_F(BadInputTest, aModuleThatIsAFolder) {
  expectRenderRefused({"--module", folder_.path().string()},
                      "'" + folder_.path().string() + "' is a folder, not a module");
}

TEST_F(BadInputTest, aModuleThatIsNoModule) {
  keep("text.so", "this is a text");
  const Outcome outcome = runCommandLine({"render", path("in.png"), path("out.png"), "--module", path("text.so")});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_NE(outcome.err.find(path("text.so")), std::string::npos) << outcome.err;
  EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << "more than one line: " << outcome.err;
  EXPECT_EQ(folder_.names(), before_);
}

TEST_F(BadInputTest, aModuleWithoutTheEntry) {
  const Outcome outcome =
      runCommandLine({"render", path("in.png"), path("out.png"), "--module", VINDREL_MODULE_WITHOUT_ENTRY});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_NE(outcome.err.find("EntryPointFunc"), std::string::npos) << outcome.err;
  EXPECT_NE(outcome.err.find(VINDREL_MODULE_WITHOUT_ENTRY), std::string::npos) << outcome.err;
  EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << "more than one line: " << outcome.err;
  EXPECT_EQ(folder_.names(), before_);
}

TEST_F(BadInputTest, theSmartRoadForAModuleThatHasNone) {
  expectRenderRefused({"--road", "smart", "--module", VINDREL_FAILING_MODULE},
                      "this module can't take the smart road; give --road classic");
}

// ---- what stood there

TEST_F(BadInputTest, anExistingOutputIsUntouched) {
  keep("out.png", "precious");
  expectRenderRefused({"--set", "Dot Size=2000"}, "'Dot Size' takes a number from 0 to 1000, not '2000'");
  EXPECT_EQ(folder_.read("out.png"), "precious");
}

// ---- not the user's fault

TEST_F(BadInputTest, theEffectsOwnFailureIsExitCodeOneWithTheErrorsName) {
  keep("out.png", "precious");
  const Outcome outcome =
      runCommandLine({"render", path("in.png"), path("out.png"), "--module", VINDREL_FAILING_MODULE});
  EXPECT_EQ(outcome.err, "vindrel: the effect failed while drawing: PF_Err_OUT_OF_MEMORY (4)\n");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(folder_.names(), before_);
  EXPECT_EQ(folder_.read("out.png"), "precious");
}
