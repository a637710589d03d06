#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/CommandLine.h"

namespace {

TEST(CommandLine, argumentsAreJoinedWithOneBlankEach) {
  // The system keeps the arguments with a zero behind each; here the last zero goes and the others become blanks.
  std::ifstream file("/proc/self/cmdline", std::ios::binary);
  std::string expected{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  ASSERT_FALSE(expected.empty());
  expected.pop_back();
  for (char& c : expected)
    if (c == '\0') c = ' ';
  EXPECT_EQ(platform::GetCommandLineA(), expected);
}

TEST(CommandLine, theLineBeginsWithTheProgram) {
  const std::string line = platform::GetCommandLineA();
  EXPECT_NE(line.substr(0, line.find(' ')).find("vindrel_platform_test"), std::string::npos) << line;
}

}  // namespace
