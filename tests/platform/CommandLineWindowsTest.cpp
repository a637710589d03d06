#include <gtest/gtest.h>

#include <string>

#include "platform/CommandLine.h"

namespace {

TEST(CommandLine, theLineNamesTheProgram) {
  EXPECT_NE(std::string(platform::GetCommandLineA()).find("vindrel_platform_test"), std::string::npos);
}

}  // namespace
