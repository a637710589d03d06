// Numbered files: every frame as it would be alone, whoever draws it, and nothing lost whatever happens.

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <nlohmann/json.hpp>

#include "tests/cli/CommandLine.h"
#include "tests/cli/Program.h"

namespace fs = std::filesystem;
using standin::Depth;

namespace {

const std::vector<std::string> moving = {"--set", "Distance X=1", "--set", "Random Interval=1"};

class ShotTest : public testing::Test {
 protected:
  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  static std::string numbered(const std::string& start, int32_t number, const std::string& ending = ".png") {
    const std::string digits = std::to_string(number);
    return start + std::string(4 - digits.size(), '0') + digits + ending;
  }

  void inputs(int32_t first, int32_t last, int32_t width = 48, int32_t height = 32) const {
    for (int32_t i = first; i <= last; ++i) {
      standin::Image image = smallPicture(Depth::k8, width, height);
      image.at<PF_Pixel>(0, 0).red = static_cast<A_u_char>(i);
      cli::writePicture(folder_ / numbered("in.", i), image);
    }
  }

  Outcome render(const std::string& in, const std::string& out, const std::vector<std::string>& more = {}) const {
    std::vector<std::string> words = {"render", path(in), path(out)};
    words.insert(words.end(), more.begin(), more.end());
    return runCommandLine(words);
  }

  static std::vector<std::string> with(std::vector<std::string> words, const std::vector<std::string>& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
  }

  /// The bytes of every output, by name.
  std::map<std::string, std::string> outputs(const std::string& start = "out.") const {
    std::map<std::string, std::string> files;
    for (const std::string& name : folder_.names()) {
      if (name.starts_with(start)) files[name.substr(start.size())] = folder_.read(name);
    }
    return files;
  }

  void expectRefused(const Outcome& outcome, const std::string& message) const {
    EXPECT_EQ(outcome.err, "vindrel: " + message + "\n");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_TRUE(outputs().empty());
  }

  vindrel::test::TemporaryFolder folder_;
};

}  // namespace

TEST_F(ShotTest, everyFrameIsWhatItIsAlone) {
  inputs(8, 11);
  const Outcome outcome = render("in.####.png", "out.####.png", moving);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err + outcome.out, "");
  const auto files = outputs();
  ASSERT_EQ(files.size(), 4U);
  for (int32_t i = 8; i <= 11; ++i) {
    ASSERT_EQ(render(numbered("in.", i), "alone.png", with(moving, {"--frame", std::to_string(i)})).exitCode, 0);
    EXPECT_EQ(files.at(numbered("", i)), folder_.read("alone.png")) << i;
  }
  EXPECT_NE(files.at("0008.png"), files.at("0009.png"));
}

TEST_F(ShotTest, aStillServesAllFrames) {
  cli::writePicture(folder_ / "in.png", smallPicture(Depth::k8));
  ASSERT_EQ(render("in.png", "out.%04d.png", with(moving, {"--frames", "1-3"})).exitCode, 0);
  ASSERT_EQ(outputs().size(), 3U);
  ASSERT_EQ(render("in.png", "alone.png", with(moving, {"--frame", "2"})).exitCode, 0);
  EXPECT_EQ(outputs().at("0002.png"), folder_.read("alone.png"));
}

TEST_F(ShotTest, theStartIsTimeZero) {
  inputs(101, 102);
  ASSERT_EQ(render("in.####.png", "out.####.png", with(moving, {"--start", "101"})).exitCode, 0);
  ASSERT_EQ(render("in.0102.png", "alone.png", with(moving, {"--frame", "1"})).exitCode, 0);
  EXPECT_EQ(outputs().at("0102.png"), folder_.read("alone.png"));
}

TEST_F(ShotTest, framesChooseStepsAndLists) {
  inputs(1, 9);
  ASSERT_EQ(render("in.####.png", "out.####.png", {"--frames", "1-9x4,2"}).exitCode, 0);
  std::string names;
  for (const auto& [name, content] : outputs()) names += name + " ";
  EXPECT_EQ(names, "0001.png 0002.png 0005.png 0009.png ");
}

TEST_F(ShotTest, everyNumberOfJobsGivesTheSameBytes) {
  inputs(1, 7);
  ASSERT_EQ(render("in.####.png", "out.####.png", moving).exitCode, 0);
  for (const char* jobs : {"2", "3", "16"}) {
    ASSERT_EQ(render("in.####.png", "jobs.####.png", with(moving, {"--jobs", jobs})).exitCode, 0);
    EXPECT_EQ(outputs("jobs."), outputs()) << jobs;
  }
}

TEST_F(ShotTest, chunksTakeEveryFrameOnce) {
  inputs(1, 7);
  std::size_t before = 0;
  for (const char* chunk : {"1/3", "2/3", "3/3"}) {
    EXPECT_EQ(render("in.####.png", "out.####.png", {"--chunk", chunk}).exitCode, 0);
    EXPECT_GE(outputs().size(), before + 2);
    before = outputs().size();
  }
  EXPECT_EQ(before, 7U);
  EXPECT_EQ(render("in.####.png", "more.####.png", {"--chunk", "9/20"}).exitCode, 0) << "a part without frames";
}

TEST_F(ShotTest, existingFramesAreLeftOutOnlyWhenTheyAreWhole) {
  inputs(1, 4);
  ASSERT_EQ(render("in.####.png", "out.####.png", moving).exitCode, 0);
  const auto whole = outputs();
  folder_.write("out.0002.png", whole.at("0002.png").substr(0, whole.at("0002.png").size() - 20));
  fs::remove(folder_ / "out.0003.png");
  folder_.write(".vindrel-0123456789abc.part", "left by a crash");
  const auto before = fs::last_write_time(folder_ / "out.0001.png");
  const Outcome outcome = render("in.####.png", "out.####.png", with(moving, {"--skip-existing", "--log", "json"}));
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outputs(), whole);
  EXPECT_EQ(fs::last_write_time(folder_ / "out.0001.png"), before);
  EXPECT_FALSE(fs::exists(folder_ / ".vindrel-0123456789abc.part"));
  std::map<int, std::string> results;
  std::istringstream lines(outcome.out);
  for (std::string line; std::getline(lines, line);) {
    const auto entry = nlohmann::json::parse(line);
    results[entry["frame"].get<int>()] = entry["result"].get<std::string>();
    EXPECT_GT(entry["peakMemory"].get<double>(), 1e6);
  }
  EXPECT_EQ(results, (std::map<int, std::string>{{1, "skipped"}, {2, "done"}, {3, "done"}, {4, "skipped"}}));
}

TEST_F(ShotTest, aFrameThatFailsIsNamedAndTheOthersStand) {
  inputs(1, 4);
  folder_.write("in.0002.png", "no picture");
  for (const char* jobs : {"1", "2"}) {
    const Outcome outcome = render("in.####.png", "out.####.png", {"--jobs", jobs, "--log", "text"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, "vindrel: frame 2: '" + path("in.0002.png") +
                               "' is no picture that can be read; PNG, TIFF, EXR and JPEG can\n"
                               "vindrel: 1 of 4 frames failed: 2\n");
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 4);
    EXPECT_EQ(outputs().size(), 3U);
    EXPECT_FALSE(outputs().contains("0002.png"));
  }
}

TEST_F(ShotTest, theLogOfAFrameThatFailedTellsWhy) {
  inputs(1, 2);
  folder_.write("in.0001.png", "no picture");
  const Outcome outcome = render("in.####.png", "out.####.png", {"--log", "json"});
  EXPECT_EQ(outcome.exitCode, 1);
  std::map<int, nlohmann::json> entries;
  std::istringstream lines(outcome.out);
  for (std::string line; std::getline(lines, line);) {
    const auto entry = nlohmann::json::parse(line);
    entries[entry["frame"].get<int>()] = entry;
  }
  EXPECT_EQ(entries[1]["result"], "failed");
  EXPECT_EQ(entries[1]["message"],
            "'" + path("in.0001.png") + "' is no picture that can be read; PNG, TIFF, EXR and JPEG can");
  EXPECT_EQ(entries[2]["result"], "done");
  EXPECT_FALSE(entries[2].contains("message"));
}

TEST_F(ShotTest, whereNoFrameCanBeReadEachIsNamed) {
  for (const char* name : {"in.0001.png", "in.0002.png"}) folder_.write(name, "no picture");
  for (const char* jobs : {"1", "2"}) {
    const Outcome outcome = render("in.####.png", "out.####.png", {"--jobs", jobs});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.err.ends_with("vindrel: 2 of 2 frames failed: 1,2\n")) << outcome.err;
    EXPECT_TRUE(outputs().empty());
  }
}

TEST_F(ShotTest, aFolderAmongTheFramesIsNamedAndTheOthersStand) {
  inputs(2, 3);
  fs::create_directory(folder_ / "in.0001.png");
  fs::create_directory(folder_ / "out.0003.png");
  for (const char* jobs : {"1", "2"}) {
    const Outcome outcome = render("in.####.png", "out.####.png", {"--frames", "1-3", "--jobs", jobs});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.err.find("vindrel: frame 1: '" + path("in.0001.png") + "' is a folder, not a picture\n"),
              std::string::npos)
        << outcome.err;
    EXPECT_NE(outcome.err.find("vindrel: frame 3: can't write '" + path("out.0003.png") + "': it is a folder\n"),
              std::string::npos)
        << outcome.err;
    EXPECT_TRUE(outcome.err.ends_with("vindrel: 2 of 3 frames failed: 1,3\n")) << outcome.err;
    EXPECT_TRUE(fs::is_regular_file(folder_ / "out.0002.png"));
    fs::remove(folder_ / "out.0002.png");
  }
}

TEST_F(ShotTest, aPresetsLengthsGoAlongWithTheFramesAlsoWhenTheFirstIsMissing) {
  inputs(1, 2);
  folder_.write("in.0001.png", "no picture");
  folder_.write("p.json", R"({"height": 16, "controls": {"Dot Size": 4, "Dot Distance X": 5, "Dot Distance Y": 6}})");
  for (const char* jobs : {"1", "2"}) {
    ASSERT_EQ(render("in.####.png", "out.####.png", {"--preset", path("p.json"), "--jobs", jobs}).exitCode, 1);
    ASSERT_EQ(render("in.0002.png", "alone.png",
                     {"--set", "Dot Size=8", "--set", "Dot Distance X=10", "--set", "Dot Distance Y=12"})
                  .exitCode,
              0);
    EXPECT_TRUE(outputs().at("0002.png") == folder_.read("alone.png")) << jobs;
    fs::remove(folder_ / "out.0002.png");
  }
}

// The dots' sizes were measured in the frame that a process drew first, where they jitter otherwise than in the others.
TEST_F(ShotTest, layersThatArePreparedAreSoInEveryFrameWhoeverDrawsIt) {
  inputs(1, 3);
  cli::writePicture(folder_ / "mask.png", smallPicture(Depth::k8, 48, 32));
  const std::vector<std::string> layers =
      with(moving, {"--set", "Mask=Layer", "--layer", "Mask Target Layer=" + path("mask.png") + ":blur=3", "--set",
                    "Enable Effector 1=on", "--set", "Effect Map 1=Use Custom Map", "--set", "Absolute 1=on", "--set",
                    "ABS Size 1=0", "--layer", "Custom Map Layer 1=source:blur=2,tone=area"});
  ASSERT_EQ(render("in.####.png", "out.####.png", layers).exitCode, 0);
  ASSERT_EQ(render("in.####.png", "jobs.####.png", with(layers, {"--jobs", "2"})).exitCode, 0);
  EXPECT_TRUE(outputs("jobs.") == outputs());
  for (int32_t i = 1; i <= 3; ++i) {
    ASSERT_EQ(render(numbered("in.", i), "alone.png", with(layers, {"--frame", std::to_string(i)})).exitCode, 0);
    EXPECT_TRUE(outputs().at(numbered("", i)) == folder_.read("alone.png")) << i;
  }
}

TEST_F(ShotTest, aWarningIsSaidOnceForAllFrames) {
  inputs(1, 3);
  for (const char* jobs : {"1", "2"}) {
    EXPECT_EQ(render("in.####.png", "out.####.png", {"--set", "Mask=Layer", "--jobs", jobs}).err,
              "vindrel: warning: 'Mask' is 'Layer', but 'Mask Target Layer' has no picture; give one by --layer \"Mask "
              "Target Layer=FILE\"\n");
  }
}

TEST_F(ShotTest, aFrameOfAnotherSizeIsNamed) {
  inputs(1, 2);
  inputs(3, 3, 20, 10);
  for (const char* jobs : {"1", "2", "3"}) {
    const Outcome outcome = render("in.####.png", "out.####.png", {"--jobs", jobs});
    EXPECT_EQ(outcome.exitCode, 1) << jobs;
    EXPECT_EQ(outcome.err,
              "vindrel: frame 3: it is 20 x 10 pixels, and the first frame is 48 x 32\n"
              "vindrel: 1 of 3 frames failed: 3\n")
        << jobs;
    EXPECT_FALSE(outputs().contains("0003.png")) << jobs;
  }
}

TEST_F(ShotTest, theSizeOfTheShotIsThatOfItsFirstFrameAlsoWhenThatIsLeftOut) {
  inputs(1, 2);
  ASSERT_EQ(render("in.####.png", "out.####.png", {"--frames", "1"}).exitCode, 0);
  inputs(2, 2, 20, 10);
  const Outcome outcome = render("in.####.png", "out.####.png", {"--skip-existing"});
  EXPECT_TRUE(outcome.err.starts_with("vindrel: frame 2: it is 20 x 10 pixels, and the first frame is 48 x 32\n"))
      << outcome.err;
}

TEST_F(ShotTest, wrongSequencesAreRefusedBeforeAnythingIsWritten) {
  expectRefused(render("in.####.png", "out.####.png"), "no files '" + path("in.####.png") + "'");
  inputs(1, 2);
  inputs(5, 5);
  expectRefused(render("in.####.png", "out.####.png"),
                "'" + path("in.####.png") + "' has no frame 3; --frames says which ones are meant");
  expectRefused(render("in.####.png", "out.####.png", {"--frames", "1-3"}),
                "no file '" + path("in.0003.png") + "' for frame 3");
  expectRefused(render("in.####.png", "out.png", {"--frames", "1-2"}),
                "'" + path("out.png") + "' needs a place for the frame's number, such as out.####.png");
  expectRefused(render("in.####.png", "out.####.png", {"--frames", "1-2", "--start", "2"}),
                "frame 1 lies before --start 2");
  expectRefused(render("in.####.png", "nowhere/out.####.png", {"--frames", "1-2"}),
                "can't write '" + path("nowhere/out.0001.png") + "': no folder '" + path("nowhere") + "'");
  expectRefused(render("in.%s.png", "out.####.png"), "no file '" + path("in.%s.png") + "'");
  expectRefused(render("in.%x04d.png", "out.####.png"),
                "no file '" + path("in.%x04d.png") + "'; did you mean 'in.0001.png'?");
  expectRefused(render("in.####.png", "out.%d.####.png", {"--frames", "1-2"}),
                "'" + path("out.%d.####.png") + "' has two places for a number; it must have one");
  expectRefused(render("in.##.##.png", "out.####.png"),
                "'" + path("in.##.##.png") + "' has two places for a number; it must have one");
  expectRefused(render("in.####.png", "out.####.png", {"--chunk", "3/2"}),
                "--chunk takes a part and their number, as in 2/8, not '3'");
}

namespace {

class TroubleTest : public ShotTest {
 protected:
  void TearDown() override { unsetenv("VINDREL_TEST_TROUBLE"); }

  Outcome troubled(const std::string& trouble, const std::vector<std::string>& more = {}) {
    inputs(1, 4);
    setenv("VINDREL_TEST_TROUBLE", trouble.c_str(), 1);
    return render("in.####.png", "out.####.png",
                  with({"--module", VINDREL_TROUBLED_MODULE, "--jobs", "2", "--fps", "24"}, more));
  }
};

}  // namespace

TEST_F(TroubleTest, aFrameWhoseProcessDiesOnceIsTriedAgain) {
  const Outcome outcome = troubled("once 2 " + path("marker"));
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_TRUE(fs::exists(folder_ / "marker")) << "it never died";
  EXPECT_EQ(outputs().size(), 4U);
}

TEST_F(TroubleTest, aFrameWhoseProcessDiesTwiceFailsByName) {
  const Outcome outcome = troubled("die 3");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.err, "vindrel: frame 3: ended its process, twice\nvindrel: 1 of 4 frames failed: 3\n");
  EXPECT_EQ(outputs().size(), 3U);
}

TEST_F(TroubleTest, aFrameThatHangsFailsByNameAndTheOthersStand) {
  const Outcome outcome = troubled("hang 1", {"--frame-timeout", "1"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.err, "vindrel: frame 1: took longer than 1 s, twice\nvindrel: 1 of 4 frames failed: 1\n");
  EXPECT_EQ(outputs().size(), 3U);
}

TEST_F(TroubleTest, aFrameThatHangsAndHearsNothingIsEndedAllTheSame) {
  const Outcome outcome = troubled("stuck 1", {"--frame-timeout", "0.5"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.err, "vindrel: frame 1: took longer than 0.5 s, twice\nvindrel: 1 of 4 frames failed: 1\n");
  EXPECT_EQ(outputs().size(), 3U);
}

TEST_F(TroubleTest, aModuleThatHangsAndHearsNothingIsEndedAllTheSame) {
  const Outcome outcome = troubled("stuck 1", {"--frame-timeout", "1", "--jobs", "1"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.err, "vindrel: the module hangs: no sign of life for 1 second\n");
}

namespace {

/// Kills the program again and again, each time a little later, and then lets it come to its end.
class ResumeTest : public ShotTest, public testing::WithParamInterface<const char*> {};

TEST_F(ShotTest, aCheckDrawsNothingAndNamesTheFramesThatDontStand) {
  inputs(1, 4);
  ASSERT_EQ(render("in.####.png", "out.####.png", {"--frames", "1,2,4"}).exitCode, 0);
  folder_.write("out.0002.png", folder_.read("out.0002.png").substr(0, 60));
  const std::map<std::string, std::string> before = outputs();
  const Outcome outcome = render("in.####.png", "out.####.png", {"--check", "--skip-existing", "--jobs", "2"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.err, "vindrel: frame 2: no whole file '" + path("out.0002.png") +
                             "'\nvindrel: frame 3: no whole file '" + path("out.0003.png") +
                             "'\nvindrel: 2 of 4 frames don't stand: 2,3\n");
  EXPECT_EQ(outputs(), before);
}

TEST_F(ShotTest, aCheckOfAWholeShotIsContent) {
  inputs(1, 2);
  ASSERT_EQ(render("in.####.png", "out.####.png").exitCode, 0);
  const Outcome outcome = render("in.####.png", "out.####.png", {"--check"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
}

TEST_F(ShotTest, aCheckOfASinglePictureIsRefused) {
  inputs(1, 1);
  expectRefused(render("in.0001.png", "out.png", {"--check"}), "--check takes numbered files, such as out.####.png");
}

}  // namespace

TEST_P(ResumeTest, killedAtRandomMomentsItEndsWithTheUndisturbedFilesAndNothingElse) {
  inputs(1, 12, 320, 240);
  // How long an undisturbed run takes says when to kill, on a fast machine as on a busy one.
  const auto begin = std::chrono::steady_clock::now();
  Program alone(with({"render", path("in.####.png"), path("alone.####.png"), "--jobs", GetParam()}, moving));
  ASSERT_EQ(alone.wait(), 0);
  const auto whole = std::chrono::steady_clock::now() - begin;
  const std::vector<std::string> words =
      with({"render", path("in.####.png"), path("out.####.png"), "--skip-existing", "--jobs", GetParam()}, moving);
  uint32_t random = 12345;
  int32_t killed = 0;
  for (int32_t round = 0; round < 20; ++round) {
    random = random * 1664525U + 1013904223U;
    Program program(words, keepCountsApart);
    std::this_thread::sleep_for(whole * (random >> 24U) / 256);
    program.send(round % 3 == 0 ? SIGTERM : SIGKILL);
    killed += program.wait() >= 128;
    // Workers end by a signal of the system, which takes a moment.
    if (*GetParam() != '1') std::this_thread::sleep_for(std::chrono::milliseconds(50));
    if (round < 15 && outputs().size() > 6) {
      for (const auto& [name, content] : outputs()) fs::remove(folder_ / ("out." + name));
    }
  }
  EXPECT_GT(killed, 5) << "it was nearly always faster than the signal";
  Program last(words);
  EXPECT_EQ(last.wait(), 0);
  EXPECT_EQ(outputs(), outputs("alone."));
  EXPECT_EQ(folder_.names().size(), 36U) << "something else lies in the folder";
}

INSTANTIATE_TEST_SUITE_P(Jobs, ResumeTest, testing::Values("1", "3"));
