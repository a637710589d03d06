// The commands of docs/shots.md, run as they are written.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "tests/cli/CommandLine.h"

TEST(DocumentedShotsTest, everyCommandOfThePageRuns) {
  const vindrel::test::TemporaryFolder folder;
  for (int32_t i = 1; i <= 8; ++i) {
    cli::writePicture(folder / ("in.000" + std::to_string(i) + ".png"), smallPicture(standin::Depth::k8));
  }
  for (int32_t i = 1; i <= 8; ++i) {
    cli::writePicture(folder / ("mask.000" + std::to_string(i) + ".png"), smallPicture(standin::Depth::k8));
  }
  folder.write("table.csv", "frame,Dot Size,Center Position\n1,4,\"10,10\"\n4,9,\"20,12\"\n");
  cli::writePicture(folder / "still.png", smallPicture(standin::Depth::k8));

  std::ifstream page(std::string(VINDREL_SOURCE_DIR) + "/docs/shots.md");
  ASSERT_TRUE(page);
  const std::string begin = "cd '" + folder.path().string() + "' && PATH='" +
                            std::filesystem::path(VINDREL_PROGRAM).parent_path().string() + "':$PATH && ";
  int32_t commands = 0;
  bool inBlock = false;
  bool inJson = false;
  std::string json;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("```")) {
      inBlock = line == "```sh";
      inJson = line == "```json";
      continue;
    }
    // The page's keys are the file that its commands name.
    if (inJson) folder.write("keys.json", json += line + "\n");
    if (!inBlock) continue;
    ++commands;
    for (int32_t i = 1; i <= 8; ++i) std::filesystem::remove(folder / ("out.000" + std::to_string(i) + ".png"));
    EXPECT_EQ(std::system((begin + line + " >/dev/null").c_str()), 0) << line;
    EXPECT_TRUE(std::filesystem::exists(folder / "out.0004.png")) << line;
  }
  EXPECT_GE(commands, 10);
}
