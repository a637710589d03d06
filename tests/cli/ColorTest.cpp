// The numbers of files and what they mean: as they are, or converted.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "cli/color/SrgbCurve.h"
#include "tests/cli/CommandLine.h"

using standin::Depth;
using standin::Image;

namespace {

class ColorTest : public testing::Test {
 protected:
  void SetUp() override { unsetenv("OCIO"); }
  void TearDown() override { unsetenv("OCIO"); }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  /// One colour all over, and dots of no opacity, so that what comes out is what went in.
  Outcome render(const std::string& in, const std::string& out, const std::vector<std::string>& more = {}) {
    std::vector<std::string> words = {"render", path(in), path(out), "--set", "Dot Opacity=0"};
    words.insert(words.end(), more.begin(), more.end());
    return runCommandLine(words);
  }

  void write8(const std::string& name, uint8_t red, uint8_t green, uint8_t blue) const {
    Image image(Depth::k8, 16, 16);
    for (int32_t y = 0; y < 16; ++y) {
      for (int32_t x = 0; x < 16; ++x) image.at<PF_Pixel>(x, y) = {255, red, green, blue};
    }
    cli::writePicture(folder_ / name, image);
  }

  vindrel::test::TemporaryFolder folder_;
};

constexpr char configuration[] = R"(ocio_profile_version: 1
roles:
  scene_linear: light
  color_picking: screen
colorspaces:
  - !<ColorSpace>
    name: light
  - !<ColorSpace>
    name: screen
    to_reference: !<ExponentTransform> {value: [2, 2, 2, 1]}
  - !<ColorSpace>
    name: bright
    to_reference: !<MatrixTransform> {matrix: [4, 0, 0, 0, 0, 4, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1]}
)";

}  // namespace

TEST(SrgbCurveTest, knownPlacesOfTheCurve) {
  EXPECT_EQ(cli::lightFromSrgb(0.0F), 0.0F);
  EXPECT_EQ(cli::lightFromSrgb(1.0F), 1.0F);
  EXPECT_NEAR(cli::lightFromSrgb(0.5F), 0.2140411F, 1e-6F);
  EXPECT_NEAR(cli::lightFromSrgb(0.02F), 0.02F / 12.92F, 1e-9F);
  EXPECT_NEAR(cli::srgbFromLight(0.18F), 0.4613561F, 1e-6F);
  EXPECT_NEAR(cli::srgbFromLight(-0.01F), -0.1292F, 1e-7F);
  EXPECT_NEAR(cli::srgbFromLight(2.0F), 1.055F * std::pow(2.0F, 1.0F / 2.4F) - 0.055F, 1e-5F);
  for (int i = -100; i < 400; ++i) {
    const float number = static_cast<float>(i) / 100.0F;
    EXPECT_NEAR(cli::srgbFromLight(cli::lightFromSrgb(number)), number, 2e-6F) << number;
  }
}

TEST_F(ColorTest, numbersThatCrossAsTheyAreAreTold) {
  write8("in.png", 128, 64, 255);
  const Outcome outcome = render("in.png", "out.exr");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "vindrel: notice: the display-encoded numbers of '" + path("in.png") +
                             "' go into the scene-linear file '" + path("out.exr") +
                             "' as they are; --color-space converts them\n");
  EXPECT_NEAR(cli::readPicture(folder_ / "out.exr").at<PF_PixelFloat>(3, 3).red, 128.0F / 255.0F, 1e-6F);
  EXPECT_EQ(render("out.exr", "back.png", {"--depth", "8"}).err,
            "vindrel: notice: the scene-linear numbers of '" + path("out.exr") +
                "' go into the display-encoded file '" + path("back.png") +
                "' as they are; --color-space converts them\n");
  EXPECT_EQ(render("in.png", "out.png").err, "");
  EXPECT_EQ(render("in.png", "out.####.exr", {"--frames", "1-3"}).err,
            "vindrel: notice: the display-encoded numbers of '" + path("in.png") + "' go into the scene-linear file '" +
                path("out.0001.exr") + "' as they are; --color-space converts them\n");
}

TEST_F(ColorTest, displayFilesAndLightAreConvertedBothWays) {
  write8("in.png", 128, 64, 255);
  for (const char* space : {"srgb", "Linear"}) {
    const Outcome toLight = render("in.png", "light.exr", {"--color-space", space});
    EXPECT_EQ(toLight.exitCode, 0);
    EXPECT_EQ(toLight.err, "");
    const PF_PixelFloat light = cli::readPicture(folder_ / "light.exr").at<PF_PixelFloat>(3, 3);
    EXPECT_NEAR(light.red, 0.2158605F, 1e-5F) << space;  // ((128 / 255 + 0.055) / 1.055) ^ 2.4
    EXPECT_NEAR(light.blue, 1.0F, 1e-5F) << space;
    EXPECT_EQ(render("light.exr", "back.png", {"--colour-space", space}).exitCode, 0);
    const Image back = cli::readPicture(folder_ / "back.png");
    EXPECT_EQ(back.depth(), Depth::k16) << "as many bits as a PNG can hold of a float";
    EXPECT_NEAR(back.at<PF_Pixel16>(3, 3).red, 128.0 / 255.0 * 32768.0, 1.0) << space;
    EXPECT_NEAR(back.at<PF_Pixel16>(3, 3).green, 64.0 / 255.0 * 32768.0, 1.0) << space;
  }
  ASSERT_EQ(render("in.png", "same.png", {"--color-space", "linear"}).exitCode, 0);
  EXPECT_TRUE(samePixels(cli::readPicture(folder_ / "same.png"), cli::readPicture(folder_ / "in.png")))
      << "the way through light loses nothing of 8 bits";
}

TEST_F(ColorTest, theEffectWorksInTheSpaceThatIsNamed) {
  // A dot of colour 128 that covers all is 128 in the space in which it is drawn.
  write8("in.png", 0, 0, 0);
  const std::vector<std::string> dots = {"--set", "Dot Color=#808080", "--set",   "Dot Size=200",
                                         "--set", "Dot Opacity=100",   "--depth", "32"};
  std::vector<std::string> more = dots;
  more.insert(more.end(), {"--color-space", "srgb"});
  ASSERT_EQ(render("in.png", "a.exr", more).exitCode, 0);
  EXPECT_NEAR(cli::readPicture(folder_ / "a.exr").at<PF_PixelFloat>(8, 8).red, 0.2158605F, 1e-4F);
  more.back() = "linear";
  ASSERT_EQ(render("in.png", "a.exr", more).exitCode, 0);
  EXPECT_NEAR(cli::readPicture(folder_ / "a.exr").at<PF_PixelFloat>(8, 8).red, 128.0F / 255.0F, 1e-4F);
}

TEST_F(ColorTest, aConfigurationNamesItsOwnSpaces) {
  setenv("OCIO", folder_.write("config.ocio", configuration).c_str(), 1);
  write8("in.png", 102, 51, 255);  // 0.4, 0.2, 1
  for (const char* space : {"srgb", "linear", "screen", "bright"}) {
    const Outcome outcome = render("in.png", "out.exr", {"--color-space", space});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const PF_PixelFloat light = cli::readPicture(folder_ / "out.exr").at<PF_PixelFloat>(3, 3);
    EXPECT_NEAR(light.red, 0.16F, 1e-5F) << space;
    EXPECT_NEAR(light.green, 0.04F, 1e-5F) << space;
    EXPECT_EQ(light.alpha, 1.0F) << space;
  }
}

TEST_F(ColorTest, spacesThatDoNotExistAreRefused) {
  write8("in.png", 1, 2, 3);
  Outcome outcome = render("in.png", "out.exr", {"--color-space", "sRBG"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(
      outcome.err.starts_with("vindrel: no colour space 'sRBG' without a configuration, which OCIO names; there "
                              "are srgb and linear"))
      << outcome.err;
  setenv("OCIO", folder_.write("config.ocio", configuration).c_str(), 1);
  outcome = render("in.png", "out.exr", {"--color-space", "dark"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err,
            "vindrel: no colour space or role 'dark' in the configuration '" + path("config.ocio") + "'\n");
  setenv("OCIO", path("nowhere.ocio").c_str(), 1);
  outcome = render("in.png", "out.exr", {"--color-space", "linear"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(outcome.err.starts_with("vindrel: can't use the colour configuration '" + path("nowhere.ocio") + "': "))
      << outcome.err;
  EXPECT_FALSE(std::filesystem::exists(folder_ / "out.exr"));
}

TEST_F(ColorTest, aProgramWithoutItsPartForConfigurationsSaysSo) {
  setenv("OCIO", folder_.write("config.ocio", configuration).c_str(), 1);
  write8("in.png", 1, 2, 3);
  std::filesystem::create_directory(folder_ / "program");
  const auto complaint = [&] {
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(
        cli::run({"render", path("in.png"), path("out.exr"), "--color-space", "linear", "--module", VINDREL_MODULE},
                 {out, err, {}, folder_ / "program"}),
        2);
    return err.str();
  };
  const std::string part = "'" + path("program/vindrel_colors.so") + "'";
  EXPECT_EQ(complaint(),
            "vindrel: can't read the colour configuration that OCIO names: the program part " + part + " is missing\n");
  std::filesystem::copy_file(VINDREL_MODULE_WITHOUT_ENTRY, folder_ / "program/vindrel_colors.so");
  EXPECT_EQ(complaint(), "vindrel: " + part + " is no part of this program\n");
  EXPECT_FALSE(std::filesystem::exists(folder_ / "out.exr"));
}

TEST_F(ColorTest, anEmptyNameOfAConfigurationIsNone) {
  setenv("OCIO", "", 1);
  write8("in.png", 128, 64, 255);
  ASSERT_EQ(render("in.png", "light.exr", {"--color-space", "linear"}).exitCode, 0);
  EXPECT_NEAR(cli::readPicture(folder_ / "light.exr").at<PF_PixelFloat>(3, 3).red, 0.2158605F, 1e-5F);
}
