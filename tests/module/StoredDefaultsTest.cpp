// The user's own defaults as a host sees them: a module in a folder of its own, with a settings file beside it.
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

#include "tests/module/HostedModule.h"
#include "tests/support/TemporaryFolder.h"

namespace vindrel::test {
namespace {

/// The module copied to a.b.aex in a temporary folder. The host tells the path that it was loaded from.
class StoredDefaultsOfAModule : public ::testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::copy_file(VINDREL_MODULE_PATH, folder.path("a.b.aex"));
    module.emplace(folder.path("a.b.aex"));
  }
  void TearDown() override {
    if (host) {
      EXPECT_EQ(host->finish(), 0);
      // The declaration of the controls is another test's matter.
      EXPECT_TRUE(host->books().clean({standin::Matter::kDeclaration}));
    }
    host.reset();
    // The file can't be deleted while it is loaded.
    module.reset();
  }

  /// A new start of the host: what it now holds as defaults is that of the file.
  standin::ParameterValues start(const standin::HostSettings& settings = {}) {
    host.emplace(*module, settings);
    EXPECT_EQ(host->start(), 0);
    return host->defaults();
  }

  TemporaryFolder folder;
  std::optional<standin::LoadedModule> module;
  std::optional<standin::StandInHost> host;
};

TEST_F(StoredDefaultsOfAModule, areReadFromTheFileBesideIt) {
  folder.write("a.b.ini",
               "[Version=1.5]\r\nDot Size=12.5\r\nDot Rotation=45.000000\r\nDot Shape=9\r\nDot Color.a=0\r\n");
  const standin::ParameterValues values = start();
  EXPECT_EQ(values.number("Dot Size"), 12.5);
  EXPECT_EQ(host->control("Dot Size")->definition.u.fs_d.value, 12.5);
  EXPECT_EQ(host->control("Dot Size")->definition.u.fs_d.dephault, 12.5f);
  EXPECT_EQ(host->control("Dot Rotation")->definition.u.ad.value, 2949120);
  EXPECT_EQ(host->control("Dot Rotation")->definition.u.ad.dephault, 2949120);
  EXPECT_EQ(host->control("Dot Shape")->definition.u.pd.value, 9);
  EXPECT_EQ(host->control("Dot Color")->definition.u.cd.value.alpha, 255);
  EXPECT_EQ(host->control("Dot Color")->definition.u.cd.value.red, 255);
}

TEST_F(StoredDefaultsOfAModule, areTheBuiltInOnesWithoutAFile) {
  const standin::ParameterValues values = start();
  EXPECT_EQ(values.number("Dot Size"), 10.0);
  EXPECT_EQ(values.number("ABS Size 2"), 20.0);
  EXPECT_EQ(values.popup("Effect Map 3"), 3);
  EXPECT_FALSE(folder.has("a.b.ini"));
}

TEST_F(StoredDefaultsOfAModule, ofAnotherVersionAreIgnored) {
  folder.write("a.b.ini", "[Version=1.4]\r\nDot Size=12.5\r\n");
  EXPECT_EQ(start().number("Dot Size"), 10.0);
}

TEST_F(StoredDefaultsOfAModule, areIgnoredByAnOldHost) {
  folder.write("a.b.ini", "[Version=1.5]\r\nDot Size=12.5\r\n");
  standin::HostSettings old;
  old.version = {12, 11};
  EXPECT_EQ(start(old).number("Dot Size"), 10.0);
}

TEST_F(StoredDefaultsOfAModule, areReadByTheFirstHostThatIsNotOld) {
  folder.write("a.b.ini", "[Version=1.5]\r\nDot Size=12.5\r\n");
  standin::HostSettings first;
  first.version = {12, 12};
  EXPECT_EQ(start(first).number("Dot Size"), 12.5);
}

TEST_F(StoredDefaultsOfAModule, areReadByAnotherHostOfAnyVersion) {
  folder.write("a.b.ini", "[Version=1.5]\r\nDot Size=12.5\r\n");
  standin::HostSettings other;
  other.applId = kAppIdPremiere;
  other.version = {1, 0};
  EXPECT_EQ(start(other).number("Dot Size"), 12.5);
}

TEST_F(StoredDefaultsOfAModule, areTheBuiltInOnesWhenTheHostDoesNotTellThePath) {
  folder.write("a.b.ini", "[Version=1.5]\r\nDot Size=12.5\r\n");
  host.emplace(*module);
  ASSERT_EQ(host->globalSetup(), 0);
  host->faults().fail("get_platform_data", 1, PF_Err_BAD_CALLBACK_PARAM);
  ASSERT_EQ(host->paramsSetup(), 0);
  EXPECT_EQ(host->faults().waiting(), 0);
  EXPECT_EQ(host->defaults().number("Dot Size"), 10.0);
  ASSERT_EQ(host->sequenceSetup(), 0);
}

TEST_F(StoredDefaultsOfAModule, areTheBuiltInOnesWhenThePathHasNoDot) {
  folder.write("a.b.ini", "[Version=1.5]\r\nDot Size=12.5\r\n");
  standin::HostSettings settings;
  settings.modulePath = "module";
  EXPECT_EQ(start(settings).number("Dot Size"), 10.0);
}

}  // namespace
}  // namespace vindrel::test
