// Debian's ffmpeg with the filter: the frames that it writes are those of the command line.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "cli/ImageFile.h"
#include "tests/support/TemporaryFolder.h"

namespace fs = std::filesystem;

namespace {

class FfmpegTest : public testing::Test {
 protected:
  /// Runs a script of bash in the folder; what it prints is shown when it fails.
  void run(const std::string& script) const {
    folder_.write("script", "set -e\n" + script + "\n");
    const std::string command = "cd '" + folder_.path().string() + "' && HOME=$PWD PATH='" +
                                fs::path(VINDREL_PROGRAM).parent_path().string() +
                                "':$PATH bash script >log 2>&1 </dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0) << script << "\n" << folder_.read("log");
  }

  /// A moving clip of 12 frames, its alpha rising from left to right. Its width decides on ffmpeg's way: it has to copy
  /// frames 96 pixels wide for the filter, whose time is then lost; those 128 wide it gives as they are.
  void makeClip(const std::string& size = "96x64") const {
    run("ffmpeg -v error -f lavfi -i testsrc2=size=" + size +
        ":rate=25:duration=0.48 "
        "-vf \"format=rgba,geq=r='r(X,Y)':g='g(X,Y)':b='b(X,Y)':a='160+X'\" -c:v ffv1 -pix_fmt bgra clip.mkv\n"
        "ffmpeg -v error -i clip.mkv -pix_fmt rgba -start_number 0 in.%04d.png");
  }

  /// Draws the clip by ffmpeg with these parameters, and its frames by the command line with these words.
  void expectSameFrames(const std::string& parameters, const std::string& words) const {
    run("export FREI0R_PATH='" + fs::path(VINDREL_FILTER).parent_path().string() + "' VINDREL_FPS=25\n" +
        "ffmpeg -v error -i clip.mkv -vf 'frei0r=vindrel:" + parameters +
        "' -pix_fmt rgba -start_number 0 got.%04d.png\n" + "vindrel render 'in.####.png' 'want.####.png' --fps 25 " +
        words);
    for (int32_t i = 0; i < 12; ++i) {
      const std::string name = (i < 10 ? "000" : "00") + std::to_string(i) + ".png";
      ASSERT_TRUE(fs::exists(folder_ / ("got." + name))) << name;
      const standin::Image got = cli::readPicture(folder_ / ("got." + name));
      EXPECT_TRUE(standin::samePixels(got, cli::readPicture(folder_ / ("want." + name)))) << name;
      EXPECT_FALSE(standin::samePixels(got, cli::readPicture(folder_ / ("in." + name)))) << name;
    }
    EXPECT_FALSE(fs::exists(folder_ / "got.0012.png"));
  }

  const vindrel::test::TemporaryFolder folder_;
  const std::string presets_ = VINDREL_SOURCE_DIR "/presets/";
};

class FfmpegSizesTest : public FfmpegTest, public testing::WithParamInterface<const char*> {};

INSTANTIATE_TEST_SUITE_P(Sizes, FfmpegSizesTest, testing::Values("96x64", "128x64"));

TEST_P(FfmpegSizesTest, everyFrameIsThatOfTheCommandLineWithEveryKindOfParameter) {
  makeClip(GetParam());
  expectSameFrames(
      "|0.8|0.2/0.4/0.6|0.072|0.6|0.625|0|0.75|1|0.125|0.11|0.25/0.75|y|0.525|0|0|n|n|0.0333|0|0.07|0.5|0|0.3|0|0.8",
      "--set 'Dot Shape=Star' --set 'Dot Color=#336699' --set 'Dot Size=7.2' --set 'Dot Aspect=20' "
      "--set 'Dot Rotation=45' --set 'Dot Opacity=75' --set 'Distance Between=Centers' --set 'Dot Distance X=12.5' "
      "--set 'Dot Distance Y=11' --set 'Center Position=25%,75%' --set 'Center Dot to Front=on' "
      "--set 'Global Rotation=9' --set 'Random Interval=2' --set 'Random Seed=7' --set 'Size=0.5' --set 'Rotation=0.3' "
      "--set 'Distance X=0.8'");
}

TEST_F(FfmpegTest, everyFrameIsThatOfTheCommandLineWithAPreset) {
  makeClip();
  expectSameFrames(presets_ + "newsprint.json", "--preset '" + presets_ + "newsprint.json'");
}

TEST_F(FfmpegTest, everyFrameIsThatOfTheCommandLineWithAPresetThatHasAPicture) {
  makeClip();
  run("ffmpeg -v error -i '" + presets_ + "disc.png' -vf scale=96:64 disc.png");
  folder_.write("look.json",
                R"({"controls": {"Mask": "Layer", "Dot Size": 14}, "layers": {"Mask Target Layer": "disc.png"}})");
  expectSameFrames("look.json|0.2", "--preset look.json --set 'Dot Shape=Square'");
}

TEST_F(FfmpegTest, everyCommandOfThePageRuns) {
  const fs::path root = VINDREL_SOURCE_DIR;
  fs::create_directory_symlink(root / "presets", folder_ / "presets");
  fs::create_directories(folder_ / "build/linux");
  fs::create_directory_symlink(fs::path(VINDREL_FILTER).parent_path(), folder_ / "build/linux/frei0r-1");
  makeClip();
  std::ifstream page(root / "docs/video.md");
  ASSERT_TRUE(page);
  std::string script;
  bool inBlock = false;
  int32_t blocks = 0;
  for (std::string line; std::getline(page, line);) {
    if (inBlock && line == "```") {
      run("unset FREI0R_PATH VINDREL_FPS VINDREL_MODULE\n" + script);
      script.clear();
      ++blocks;
    }
    if (line.starts_with("```")) {
      inBlock = line == "```sh";
    } else if (inBlock) {
      script += line + "\n";
    }
  }
  EXPECT_EQ(blocks, 3);
  for (const char* name : {"dots.mkv", "dots.mp4", "jitter.mkv", "both.mkv", "found.mkv"}) {
    EXPECT_GT(fs::file_size(folder_ / name), 1000U) << name;
  }
}

}  // namespace
