// About and the option dialog as the host meets them.
#include <gtest/gtest.h>

#include <string>

#include "tests/module/HostedModule.h"
#include "tests/platform/HoldShift.h"

namespace vindrel::test {
namespace {

using About = HostedModule;

TEST_F(About, tellsNameAndVersionAndWhoseItIs) {
  const std::string text = host.about();
  EXPECT_EQ(text.substr(0, 16), "Vindrel 1.5.1 \r\r");
  const std::string line = text.substr(16);
  EXPECT_NE(line.find("(c)"), std::string::npos) << line;
  EXPECT_NE(line.find("https://"), std::string::npos) << line;
  EXPECT_EQ(line.find('\r'), std::string::npos) << line;
}

TEST_F(About, tellsStageAndBuildTooWhileShiftIsHeld) {
  const std::string plain = host.about();
  const HoldShift held;
  EXPECT_EQ(host.about(), "Vindrel 1.5.1 Release build:7 \r\r" + plain.substr(16));
}

using OptionDialogCommand = HostedModule;

TEST_F(OptionDialogCommand, returnsZeroWhenTheDialogCannotBeMade) {
  // A host that doesn't tell the module's path: there is no module to load the dialog from.
  EXPECT_EQ(host.doDialog(host.defaults()), 0);
}

TEST_F(OptionDialogCommand, isDamageWithoutTheBasicSuite) {
  host.settings().withoutBasicSuite = true;
  EXPECT_EQ(host.doDialog(host.defaults()), 512);
  host.settings().withoutBasicSuite = false;
}

}  // namespace
}  // namespace vindrel::test
