// The commands of docs/shots.md, run as they are written.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "tests/cli/CommandLine.h"

TEST(DocumentedShotsTest, everyCommandOfThePageRuns) {
  const TemporaryFolder folder;
  for (int32_t i = 1; i <= 8; ++i) {
    cli::writePicture(folder / ("in.000" + std::to_string(i) + ".png"), smallPicture(standin::Depth::k8));
  }
  cli::writePicture(folder / "still.png", smallPicture(standin::Depth::k8));

  std::ifstream page(std::string(VINDREL_SOURCE_DIR) + "/docs/shots.md");
  ASSERT_TRUE(page);
  const std::string begin = "cd '" + folder.path().string() + "' && PATH='" +
                            std::filesystem::path(VINDREL_PROGRAM).parent_path().string() + "':$PATH && ";
  int32_t commands = 0;
  bool inBlock = false;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("```")) {
      inBlock = line == "```sh";
      continue;
    }
    if (!inBlock) continue;
    ++commands;
    for (int32_t i = 1; i <= 8; ++i) std::filesystem::remove(folder / ("out.000" + std::to_string(i) + ".png"));
    EXPECT_EQ(std::system((begin + line + " >/dev/null").c_str()), 0) << line;
    EXPECT_TRUE(std::filesystem::exists(folder / "out.0004.png")) << line;
  }
  EXPECT_GE(commands, 7);
}
