/// What the tests of looks share: a folder with a picture, and renders into it.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/cli/CommandLine.h"

class LooksTest : public testing::Test {
 protected:
  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  void picture(const std::string& name, int32_t width, int32_t height) {
    cli::writePicture(folder_ / name, smallPicture(standin::Depth::k8, width, height));
  }

  /// The picture in.png, or another one, with these words.
  standin::Image rendered(const std::vector<std::string>& more, const std::string& in = "in.png") {
    std::vector<std::string> words = {"render", path(in), path("rendered.png")};
    words.insert(words.end(), more.begin(), more.end());
    const Outcome outcome = runCommandLine(words);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.exitCode, 0);
    return outcome.exitCode == 0 ? cli::readPicture(folder_ / "rendered.png") : standin::Image();
  }

  /// One line on the error stream, exit code 2, and no file that wasn't there before.
  void expectRefused(const std::vector<std::string>& words, const std::string& message) {
    const std::vector<std::string> before = folder_.names();
    const Outcome outcome = runCommandLine(words);
    EXPECT_EQ(outcome.err, "vindrel: " + message + "\n");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(folder_.names(), before) << "a file was left behind";
  }

  vindrel::test::TemporaryFolder folder_;
};
