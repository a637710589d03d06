// Storing and dropping defaults through the option dialog, which an environment variable answers where there is no
// screen.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "tests/module/HostedModule.h"
#include "tests/support/PopupItems.h"
#include "tests/support/TemporaryFolder.h"

namespace vindrel::test {
namespace {

class SavedDefaults : public ::testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::copy_file(VINDREL_MODULE_PATH, folder.path("a.b.aex"));
    module.emplace(folder.path("a.b.aex"));
    start();
  }
  void TearDown() override {
    finish();
    unsetenv("VINDREL_DIALOG_ANSWER");  // NOLINT(concurrency-mt-unsafe): the test has one thread
  }

  void start() {
    host.emplace(*module);
    ASSERT_EQ(host->start(), 0);
  }
  void finish() {
    EXPECT_EQ(host->finish(), 0);
    // The declaration of the controls is another test's matter.
    EXPECT_TRUE(host->books().clean({standin::Matter::kDeclaration}));
    host.reset();
  }
  /// What the host holds as defaults at its next start, with the module loaded afresh.
  standin::ParameterValues nextStart() {
    finish();
    module.reset();
    module.emplace(folder.path("a.b.aex"));
    start();
    return host->defaults();
  }
  void answer(const char* button, const standin::ParameterValues& values) {
    setenv("VINDREL_DIALOG_ANSWER", button, 1);  // NOLINT(concurrency-mt-unsafe): the test has one thread
    ASSERT_EQ(host->doDialog(values), 0);
  }

  TemporaryFolder folder;
  std::optional<standin::LoadedModule> module;
  std::optional<standin::StandInHost> host;
};

TEST_F(SavedDefaults, areTheDefaultsOfTheNextStart) {
  standin::ParameterValues values = host->defaults();
  values.setNumber("Dot Size", 12.5);
  values.setAngle("Shift Hue 2", -90.25);
  values.setPopup("Blend Mode 3", blendDarken);
  values.setCheckbox("Enable Effector 1", true);
  values.setColor("Dot Color", {255, 1, 2, 3});
  values.setNumber("Random Seed", 77);
  answer("save", values);
  // The running instance keeps what it has.
  EXPECT_EQ(host->defaults().number("Dot Size"), 10.0);
  const standin::ParameterValues later = nextStart();
  EXPECT_EQ(later.number("Dot Size"), 12.5);
  EXPECT_EQ(later.angle("Shift Hue 2"), -90.25);
  EXPECT_EQ(later.popup("Blend Mode 3"), 11);
  EXPECT_TRUE(later.checkbox("Enable Effector 1"));
  EXPECT_EQ(later.color("Dot Color").green, 2);
  EXPECT_EQ(later.number("Random Seed"), 77.0);
  EXPECT_EQ(later.number("ABS Size 1"), 20.0);
}

TEST_F(SavedDefaults, beginTheFileInTheOrderOfTheControls) {
  answer("save", host->defaults());
  const std::string expected =
      "[Version=1.5]\nDot Shape=1\nDot Color.r=255\nDot Color.g=125\nDot Color.b=20\nDot Color.a=255\n"
      "Dot Size=10.000000\nDot Aspect=0.000000\nDot Rotation=0.000000\nRotation Type=1\n";
  EXPECT_EQ(folder.readLines("a.b.ini").substr(0, expected.size()), expected);
}

TEST_F(SavedDefaults, standBesideThoseOfAnotherVersion) {
  folder.write("a.b.ini", "[Version=1.4]\r\nDot Size=12.5\r\n");
  answer("save", host->defaults());
  const std::string text = folder.readLines("a.b.ini");
  EXPECT_EQ(text.rfind("[Version=1.4]\nDot Size=12.5\n", 0), 0U);
  EXPECT_NE(text.find("[Version=1.5]\nDot Shape=1\n"), std::string::npos);
}

TEST_F(SavedDefaults, areGoneAfterRestoringAndASecondRestoreIsSilent) {
  standin::ParameterValues values = host->defaults();
  values.setNumber("Dot Size", 12.5);
  answer("save", values);
  ASSERT_TRUE(folder.has("a.b.ini"));
  answer("restore", values);
  EXPECT_FALSE(folder.has("a.b.ini"));
  answer("restore", values);
  EXPECT_FALSE(folder.has("a.b.ini"));
  EXPECT_EQ(nextStart().number("Dot Size"), 10.0);
}

}  // namespace
}  // namespace vindrel::test
