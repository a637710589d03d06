// The presets that come with the program.

#include <gtest/gtest.h>

#include "cli/Preset.h"
#include "tests/cli/CommandLine.h"
#include "tests/support/ReadFile.h"

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

TEST(ShippedPresetsTest, thereAreTwentyFourAtLeast) {
  EXPECT_GE(shippedPresets().size(), 24U);
}

TEST(ShippedPresetsTest, eachRendersAtEveryDepthAndChangesThePicture) {
  for (const standin::Depth depth : standin::kAllDepths) {
    const vindrel::test::TemporaryFolder folder;
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
  const vindrel::test::TemporaryFolder folder;
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

namespace {

const std::filesystem::path docs = std::filesystem::path(VINDREL_SOURCE_DIR) / "docs";

}  // namespace

TEST(GalleryTest, everyPresetAndRecipeStandsInItWithBothPictures) {
  const std::string page = vindrel::test::readFile(docs / "gallery.md");
  int32_t looks = 0;
  for (const char* kind : {"presets", "recipes"}) {
    for (const auto& entry : std::filesystem::directory_iterator(docs.parent_path() / kind)) {
      if (entry.path().extension() != ".json") continue;
      const std::string name = entry.path().stem().string();
      EXPECT_NE(page.find("\n### " + name + "\n"), std::string::npos) << name;
      for (const char* part : {"-whole.jpg", "-part.jpg"}) {
        EXPECT_NE(page.find("(pictures/gallery/" + name + part + ")"), std::string::npos) << name << part;
        EXPECT_TRUE(std::filesystem::exists(docs / "pictures" / "gallery" / (name + part))) << name << part;
      }
      ++looks;
    }
  }
  EXPECT_GE(looks, 24);
}

TEST(GalleryTest, noPictureLiesThereThatNoPageShows) {
  std::string pages = vindrel::test::readFile(docs.parent_path() / "README.md");
  for (const auto& entry : std::filesystem::directory_iterator(docs)) {
    if (entry.path().extension() == ".md") pages += vindrel::test::readFile(entry.path());
  }
  uintmax_t bytes = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(docs / "pictures")) {
    if (!entry.is_regular_file()) continue;
    const std::string name = entry.path().lexically_relative(docs).generic_string();
    EXPECT_NE(pages.find(name), std::string::npos) << "no page shows " << name;
    if (name.starts_with("pictures/gallery/")) bytes += entry.file_size();
  }
  EXPECT_GT(bytes, 0U);
  EXPECT_LT(bytes, 6'000'000U) << "the whole gallery";
}
