#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "platform/CommandLine.h"
#include "tests/support/ReadFile.h"

namespace {

TEST(CommandLine, argumentsAreJoinedWithOneBlankEach) {
  // The system keeps the arguments with a zero behind each; here the last zero goes and the others become blanks.
  std::string expected = vindrel::test::readFile("/proc/self/cmdline");
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
