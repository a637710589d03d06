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

  /// With the folder of a user, which the other tests go without, and the looks that lie beside a program.
  static Outcome runAsUser(const std::vector<std::string>& words, const std::filesystem::path& user,
                           const std::filesystem::path& program = std::filesystem::path(VINDREL_MODULE).parent_path()) {
    std::ostringstream out;
    std::ostringstream err;
    const int exitCode = cli::run(words, {out, err, {}, program, user});
    return {exitCode, std::move(out).str(), std::move(err).str()};
  }
  Outcome runAsUser(const std::vector<std::string>& words) const { return runAsUser(words, folder_ / "user"); }

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
