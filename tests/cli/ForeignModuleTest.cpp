// Modules that aren't ours: whatever they do to their process, the command line ends with one line and its own code.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/cli/CommandLine.h"

namespace {

class ForeignModuleTest : public testing::Test {
 protected:
  ~ForeignModuleTest() override = default;

  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  Outcome render(const std::string& module, int32_t width, std::vector<std::string> more = {}) {
    cli::writePicture(path("in.png"), smallPicture(standin::Depth::k8, width, 8), {});
    std::vector<std::string> words = {"render", path("in.png"), path("out.png"), "--module", module};
    words.insert(words.end(), more.begin(), more.end());
    return runCommandLine(words);
  }

  void expectFailed(const Outcome& outcome, const std::string& message) const {
    EXPECT_EQ(outcome.err, "vindrel: " + message + "\n");
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(folder_.names(), std::vector<std::string>{"in.png"}) << "nothing half-written";
  }

  vindrel::test::TemporaryFolder folder_;
};

TEST_F(ForeignModuleTest, anHonestOneRenders) {
  const Outcome outcome = render(VINDREL_HONEST_EFFECT, 12);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  const standin::Image drawn = cli::readPicture(path("out.png"));
  ASSERT_EQ(drawn.width(), 12);
  // 70 % of the way from 0 to 255 and from 110 to 145: 178.5 and 134.5 are rounded up.
  EXPECT_EQ(drawn.at<PF_Pixel>(0, 0).red, 179);
  EXPECT_EQ(drawn.at<PF_Pixel>(11, 0).red, 135);
}

TEST_F(ForeignModuleTest, aCrashIsOneLine) {
  const Outcome outcome = render(VINDREL_CRASHING_MODULE, 1);
  if (outcome.err.find("exit code") != std::string::npos) {
    // Sanitizers make an exit of it.
    EXPECT_EQ(outcome.exitCode, 1);
  } else {
    expectFailed(outcome, "the module crashed: Segmentation fault");
  }
}

TEST_F(ForeignModuleTest, anExitIsOneLine) {
  expectFailed(render(VINDREL_EXITING_MODULE, 12), "the module ended its process, with exit code 3");
}

TEST_F(ForeignModuleTest, onATerminalTheBarIsWipedBeforeTheLine) {
  cli::writePicture(path("in.png"), smallPicture(standin::Depth::k8, 12, 8), {});
  const auto said = [&](const cli::Terminal& terminal) {
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(cli::run({"render", path("in.png"), path("out.png"), "--module", VINDREL_EXITING_MODULE},
                       {out, err, terminal, {}}),
              1);
    return err.str();
  };
  const std::string line = "vindrel: the module ended its process, with exit code 3\n";
  const std::string wiped = said({.present = true, .plain = false, .color = false, .columns = {}});
  EXPECT_TRUE(wiped.ends_with("\r\x1b[K" + line)) << wiped;
  const std::string plain = said({.present = true, .plain = true, .color = false, .columns = {}});
  EXPECT_TRUE(plain.ends_with(line)) << plain;
  EXPECT_EQ(plain.find('\x1b'), std::string::npos);
}

TEST_F(ForeignModuleTest, aHangIsOneLine) {
  expectFailed(render(VINDREL_HANGING_MODULE, 12, {"--downsample", "2", "--frame-timeout", "1"}),
               "the module hangs: no sign of life for 1 second");
}

TEST_F(ForeignModuleTest, anExitInTheMidstOfAShotIsOneLine) {
  cli::writePicture(path("in.0001.png"), smallPicture(standin::Depth::k8), {});
  const Outcome outcome =
      runCommandLine({"render", path("in.####.png"), path("out.####.png"), "--module", VINDREL_EXITING_MODULE});
  EXPECT_EQ(outcome.err, "vindrel: the module ended its process, with exit code 3\n");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"in.0001.png"});
}

TEST_F(ForeignModuleTest, wrongWordsAreToldAsEver) {
  const Outcome outcome = render(VINDREL_HONEST_EFFECT, 12, {"--set", "Amont=3"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err, "vindrel: no control 'Amont'; did you mean 'Amount'?\n");
  EXPECT_EQ(render(path("none.so"), 12).exitCode, 2);
}

}  // namespace
