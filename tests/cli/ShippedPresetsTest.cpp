// The presets that come with the program.

#include <gtest/gtest.h>

#include "cli/Preset.h"
#include "tests/cli/CommandLine.h"

namespace {

std::vector<std::filesystem::path> shippedPresets() {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(VINDREL_SOURCE_DIR) / "presets")) {
    if (entry.path().extension() == ".json") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

TEST(ShippedPresetsTest, thereAreEightAtLeast) {
  EXPECT_GE(shippedPresets().size(), 8U);
}

TEST(ShippedPresetsTest, eachRendersAtEveryDepthAndChangesThePicture) {
  for (const standin::Depth depth : standin::kAllDepths) {
    const TemporaryFolder folder;
    const std::string ending = depth == standin::Depth::k32 ? ".exr" : ".png";
    const std::string in = (folder / ("in" + ending)).string();
    const std::string out = (folder / ("out" + ending)).string();
    cli::writePicture(in, smallPicture(depth, 400, 280));
    for (const auto& preset : shippedPresets()) {
      const Outcome outcome = runCommandLine({"render", in, out, "--preset", preset.string()});
      ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
      EXPECT_FALSE(samePixels(cli::readPicture(in), cli::readPicture(out))) << preset;
    }
  }
}

TEST(ShippedPresetsTest, eachGivesTheSamePictureByEitherRoad) {
  const TemporaryFolder folder;
  const std::string in = (folder / "in.png").string();
  cli::writePicture(in, smallPicture(standin::Depth::k8, 400, 280));
  for (const auto& preset : shippedPresets()) {
    const std::string classic = (folder / "classic.png").string();
    const std::string smart = (folder / "smart.png").string();
    ASSERT_EQ(runCommandLine({"render", in, classic, "--preset", preset.string(), "--road", "classic"}).exitCode, 0);
    ASSERT_EQ(runCommandLine({"render", in, smart, "--preset", preset.string(), "--road", "smart"}).exitCode, 0);
    EXPECT_TRUE(samePixels(cli::readPicture(classic), cli::readPicture(smart))) << preset;
  }
}

TEST(ShippedPresetsTest, eachFitsItsControlsUpTo8K) {
  for (const auto& preset : shippedPresets()) {
    const std::optional<int32_t> height = cli::readPreset(preset).height;
    ASSERT_TRUE(height) << preset << " doesn't say for which height it was made";
    const std::string scale = std::to_string(4320.0 / *height);
    const Outcome outcome = runCommandLine({"controls", "--preset", preset.string(), "--scale", scale});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  }
}

TEST(ShippedPresetsTest, eachHasItsPictureInTheDocs) {
  for (const auto& preset : shippedPresets()) {
    const auto picture =
        std::filesystem::path(VINDREL_SOURCE_DIR) / "docs" / "pictures" / "presets" / (preset.stem().string() + ".png");
    EXPECT_TRUE(std::filesystem::exists(picture)) << picture;
  }
}
