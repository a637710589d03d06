// Pictures through the built module.

#include <gtest/gtest.h>

#include "tests/cli/CommandLine.h"

using standin::Depth;
using standin::Image;

namespace {

class RenderTest : public testing::Test {
 protected:
  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  std::string input(const std::string& name, Depth depth, int32_t width = 96, int32_t height = 64) {
    cli::writePicture(folder_ / name, smallPicture(depth, width, height));
    return path(name);
  }

  /// Renders in -> out and gives the picture that was written.
  Image rendered(const std::string& in, const std::string& out, const std::vector<std::string>& more = {}) {
    std::vector<std::string> words = {"render", path(in), path(out)};
    words.insert(words.end(), more.begin(), more.end());
    const Outcome outcome = runCommandLine(words);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    // Between an EXR and other files numbers go over as they are, and that is told.
    if (!outcome.err.starts_with("vindrel: notice: the ")) {
      EXPECT_EQ(outcome.err, "");
    }
    return outcome.exitCode == 0 ? cli::readPicture(folder_ / out) : Image();
  }

  vindrel::test::TemporaryFolder folder_;
};

}  // namespace

TEST_F(RenderTest, thePictureKeepsItsDepthAndSize) {
  input("in.png", Depth::k8);
  input("in16.png", Depth::k16);
  input("in.exr", Depth::k32);
  for (const auto& [in, out, depth] :
       {std::tuple("in.png", "out.png", Depth::k8), std::tuple("in16.png", "out16.tif", Depth::k16),
        std::tuple("in.exr", "out.exr", Depth::k32)}) {
    const Image image = rendered(in, out);
    EXPECT_EQ(image.depth(), depth) << out;
    EXPECT_EQ(image.width(), 96);
    EXPECT_EQ(image.height(), 64);
  }
}

TEST_F(RenderTest, dotsOfTheDotColorLieOverThePicture) {
  input("in.png", Depth::k8, 101, 101);
  const Image before = cli::readPicture(folder_ / "in.png");
  const Image after = rendered("in.png", "out.png", {"--set", "Dot Size=10", "--set", "Dot Color=#0000ff"});
  ASSERT_EQ(after.width(), 101);
  // The middle dot has its centre in the middle of the picture; between the dots the picture shows.
  const PF_Pixel middle = after.at<PF_Pixel>(50, 50);
  EXPECT_EQ(middle.red, 0);
  EXPECT_EQ(middle.blue, 255);
  int32_t same = 0;
  for (int32_t y = 0; y < 101; ++y) {
    for (int32_t x = 0; x < 101; ++x) {
      same += after.at<PF_Pixel>(x, y).red == before.at<PF_Pixel>(x, y).red &&
              after.at<PF_Pixel>(x, y).blue == before.at<PF_Pixel>(x, y).blue;
    }
  }
  EXPECT_GT(same, 101 * 101 / 4);
}

TEST_F(RenderTest, theDepthCanBeChosen) {
  input("in.png", Depth::k8);
  EXPECT_EQ(rendered("in.png", "out.png", {"--depth", "16"}).depth(), Depth::k16);
  EXPECT_EQ(rendered("in.png", "out.exr", {"--depth", "32"}).depth(), Depth::k32);
  EXPECT_EQ(rendered("in.png", "out8.png", {"--depth", "8"}).depth(), Depth::k8);
}

TEST_F(RenderTest, downsamplingGivesASmallerPictureWithTheDotsInTheirPlaces) {
  input("in.png", Depth::k8, 99, 64);
  const Image half = rendered("in.png", "half.png", {"--downsample", "2", "--set", "Dot Color=#0000ff"});
  EXPECT_EQ(half.width(), 50);
  EXPECT_EQ(half.height(), 32);
  EXPECT_EQ(half.at<PF_Pixel>(25, 16).blue, 255);
  EXPECT_EQ(half.at<PF_Pixel>(25, 16).red, 0);
  const Image quarter = rendered("in.png", "quarter.png", {"--downsample", "4"});
  EXPECT_EQ(quarter.width(), 25);
  EXPECT_EQ(quarter.height(), 16);
}

TEST_F(RenderTest, theFrameCountsWhereTheJitterMoves) {
  input("in.png", Depth::k8);
  const std::vector<std::string> jitter = {"--set", "Distance X=1", "--set", "Random Interval=1"};
  std::vector<std::string> later = jitter;
  later.insert(later.end(), {"--frame", "12", "--fps", "24"});
  const Image first = rendered("in.png", "a.png", jitter);
  EXPECT_FALSE(samePixels(first, rendered("in.png", "b.png", later)));
  EXPECT_TRUE(samePixels(first, rendered("in.png", "c.png", jitter)));
}

TEST_F(RenderTest, bothRoadsGiveTheSameFileOfAPresetWithACustomMap) {
  for (const auto& [in, ending] :
       {std::pair(input("in.png", Depth::k8), ".png"), std::pair(input("in16.png", Depth::k16), ".png"),
        std::pair(input("in.exr", Depth::k32), ".exr")}) {
    folder_.write("map.json", R"({"controls": {"Dot Size": 1, "Enable Effector 1": true,
        "Effect Map 1": "Use Custom Map", "Fit to Layer 1": true, "Offset Size 1": 18, "Pick Source Color 1": true,
        "Center Dot to Front": true}, "layers": {"Custom Map Layer 1": "source"}})");
    const std::string classic = path("classic" + std::string(ending));
    const std::string smart = path("smart" + std::string(ending));
    ASSERT_EQ(runCommandLine({"render", in, classic, "--preset", path("map.json"), "--road", "classic"}).exitCode, 0);
    ASSERT_EQ(runCommandLine({"render", in, smart, "--preset", path("map.json"), "--road", "smart"}).exitCode, 0);
    EXPECT_TRUE(samePixels(cli::readPicture(classic), cli::readPicture(smart))) << ending;
    EXPECT_FALSE(samePixels(cli::readPicture(classic), cli::readPicture(in))) << "nothing was drawn";
  }
}

TEST_F(RenderTest, aPictureFromAFileIsAMask) {
  input("in.png", Depth::k8);
  Image mask(Depth::k8, 96, 64);
  for (int32_t y = 0; y < 64; ++y) {
    for (int32_t x = 48; x < 96; ++x) mask.at<PF_Pixel>(x, y) = {255, 255, 255, 255};
  }
  cli::writePicture(folder_ / "mask.png", mask);
  const Image before = cli::readPicture(folder_ / "in.png");
  const Image after = rendered("in.png", "out.png",
                               {"--set", "Mask=Layer", "--layer", "Mask Target Layer=" + path("mask.png"), "--set",
                                "Dot Size=15", "--set", "Dot Color=#0000ff"});
  int32_t changedLeft = 0;
  int32_t changedRight = 0;
  for (int32_t y = 0; y < 64; ++y) {
    for (int32_t x = 0; x < 96; ++x) {
      const bool changed = after.at<PF_Pixel>(x, y).blue != before.at<PF_Pixel>(x, y).blue;
      (x < 48 ? changedLeft : changedRight) += changed;
    }
  }
  EXPECT_EQ(changedLeft, 0);
  EXPECT_GT(changedRight, 200);
}

TEST_F(RenderTest, valuesGivenByHandGoOverThePreset) {
  input("in.png", Depth::k8);
  folder_.write("p.json", R"({"controls": {"Dot Size": 3, "Dot Color": "#00ff00"}})");
  const Image both = rendered("in.png", "a.png", {"--preset", path("p.json"), "--set", "Dot Size=15"});
  const Image plain = rendered("in.png", "b.png", {"--set", "Dot Size=15", "--set", "Dot Color=#0f0"});
  EXPECT_TRUE(samePixels(both, plain));
}

TEST_F(RenderTest, thePictureMayBeWrittenOverItself) {
  input("in.png", Depth::k8);
  const Image apart = rendered("in.png", "out.png");
  EXPECT_TRUE(samePixels(rendered("in.png", "in.png"), apart));
}

TEST_F(RenderTest, aListThatNeedsALayerNobodyGaveIsWarnedOf) {
  input("in.png", Depth::k8);
  input("mask.png", Depth::k8);
  const std::vector<std::string> words = {"render", path("in.png"), path("out.png"), "--set", "Mask=Layer"};
  const Outcome without = runCommandLine(words);
  EXPECT_EQ(without.exitCode, 0);
  EXPECT_EQ(without.err,
            "vindrel: warning: 'Mask' is 'Layer', but 'Mask Target Layer' has no picture; give one by --layer \"Mask "
            "Target Layer=FILE\"\n");
  std::vector<std::string> with = words;
  with.insert(with.end(), {"--layer", "Mask Target Layer=" + path("mask.png")});
  EXPECT_EQ(runCommandLine(with).err, "");
  EXPECT_EQ(runCommandLine({"render", path("in.png"), path("out.png"), "--set", "Effect Map 1=Use Custom Map",
                            "--layer", "Custom Map Layer 1=none"})
                .err,
            "")
      << "a map of an effector that is off draws on nothing";
}

TEST_F(RenderTest, storedDefaultsCountOnlyWhenAskedFor) {
  input("in.png", Depth::k8);
  const std::string module = path("Copy.so");
  std::filesystem::copy_file(VINDREL_MODULE, module);
  const Image plain = rendered("in.png", "a.png", {"--module", module});
  ASSERT_EQ(runCommandLine({"options", "--save", "--module", module, "--set", "Dot Size=25"}).exitCode, 0);
  EXPECT_TRUE(samePixels(rendered("in.png", "b.png", {"--module", module}), plain));
  const Image stored = rendered("in.png", "c.png", {"--module", module, "--stored-defaults"});
  EXPECT_FALSE(samePixels(stored, plain));
  EXPECT_TRUE(samePixels(stored, rendered("in.png", "d.png", {"--module", module, "--set", "Dot Size=25"})));
}

TEST_F(RenderTest, aLimitOfMemoryIsHeldForPictureAndLayers) {
  input("in.png", Depth::k8, 1000, 1000);  // 4 million bytes in the file and three times in the host
  const Outcome refused = runCommandLine({"render", path("in.png"), path("out.png"), "--limit-memory", "15"});
  EXPECT_EQ(refused.err, "vindrel: '" + path("in.png") +
                             "' is 1000 x 1000 pixels and takes 16 MB of memory; --limit-memory allows 15 MB\n");
  EXPECT_EQ(runCommandLine({"render", path("in.png"), path("out.png"), "--limit-memory", "16"}).exitCode, 0);
  input("small.png", Depth::k8);
  EXPECT_EQ(runCommandLine({"render", path("small.png"), path("out.png"), "--limit-memory", "15", "--layer",
                            "Mask Target Layer=" + path("in.png")})
                .exitCode,
            2);
}
