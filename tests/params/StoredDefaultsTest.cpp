#include "effect/params/StoredDefaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "ae/Constants.h"
#include "effect/params/ParamObjects.h"
#include "tests/params/PlainHost.h"
#include "tests/support/TemporaryFolder.h"

namespace vindrel {
namespace {

using test::PlainHost;
using test::TemporaryFolder;

class StoredDefaults : public testing::Test {
 protected:
  void SetUp() override {
    nextHostIndex = 1;
    host.modulePath = folder.path("a.b.aex");
    DeclareParams(&host.inData);
  }
  void TearDown() override { DropParams(); }

  /// What the host receives under a name, after the set-up of the controls with the settings file as it is.
  const PF_ParamDef& received(const std::string& name) {
    host.added.clear();
    char path[settingsPathSize];
    EXPECT_EQ(AddAll(&host.inData, PrepareStoredDefaults(&host.inData, path)), PF_Err_NONE);
    for (const PF_ParamDef& def : host.added) {
      if (name == def.name) return def;
    }
    ADD_FAILURE() << "the host received no " << name;
    return host.added.front();
  }

  void store(const std::string& keys) const { folder.write("a.b.ini", "[Version=1.5]\r\n" + keys); }

  TemporaryFolder folder;
  PlainHost host;
};

// Where the file is, and who uses it.

TEST_F(StoredDefaults, theFileBearsTheModulesNameWithAnotherExtension) {
  char path[settingsPathSize];
  ASSERT_TRUE(settingsPath(&host.inData, path));
  EXPECT_EQ(path, folder.path("a.b.ini"));
}

TEST_F(StoredDefaults, aModuleWhosePathIsNotToldHasNoFile) {
  host.platformDataResult = PF_Err_BAD_CALLBACK_PARAM;
  char path[settingsPathSize];
  EXPECT_FALSE(settingsPath(&host.inData, path));
  EXPECT_EQ(PrepareStoredDefaults(&host.inData, path), nullptr);
  EXPECT_STREQ(versionLine, "Version=1.5");
}

TEST_F(StoredDefaults, aModuleWithoutADotHasNoFile) {
  host.modulePath = "/somewhere/Vindrel";
  char path[settingsPathSize];
  EXPECT_FALSE(settingsPath(&host.inData, path));
}

TEST_F(StoredDefaults, theLongestPathIsCutToItsBuffer) {
  host.modulePath = std::string(257, 'x') + ".a";  // 259 characters, the dot is the last but one
  char path[settingsPathSize];
  ASSERT_TRUE(settingsPath(&host.inData, path));
  EXPECT_EQ(path, std::string(257, 'x') + ".i");
}

TEST_F(StoredDefaults, onlyAfterEffectsCanBeTooOld) {
  PF_InData& in = host.inData;
  const auto old = [&in](A_long application, int16_t major, int16_t minor) {
    in.appl_id = application;
    in.version = {major, minor};
    return isOldHost(&in);
  };
  EXPECT_TRUE(old(kAppIdAfterEffects, 12, 11));
  EXPECT_FALSE(old(kAppIdAfterEffects, 12, 12));
  EXPECT_FALSE(old(kAppIdAfterEffects, 13, 0));
  EXPECT_TRUE(old(kAppIdAfterEffects, 11, 20));
  EXPECT_FALSE(old(kAppIdPremiere, 12, 11));
  EXPECT_FALSE(old(kAppIdPremiere, 1, 0));
}

TEST_F(StoredDefaults, anOldHostGetsNoSectionNoPathAndTheBuiltInDefaults) {
  store("Dot Size=12.5\r\n");
  host.inData.appl_id = kAppIdAfterEffects;
  host.inData.version = {12, 11};
  std::strcpy(versionLine, "left over");
  char path[settingsPathSize];
  EXPECT_EQ(PrepareStoredDefaults(&host.inData, path), nullptr);
  EXPECT_STREQ(versionLine, "");
  EXPECT_EQ(received("Dot Size").u.fs_d.value, 10.0);
}

TEST_F(StoredDefaults, eachControlLooksForAnOldHostItself) {
  store("Dot Size=12.5\r\n");
  host.inData.appl_id = kAppIdAfterEffects;
  host.inData.version = {12, 11};
  std::strcpy(versionLine, "Version=1.5");
  const std::string path = folder.path("a.b.ini");
  ASSERT_EQ(AddAll(&host.inData, path.c_str()), PF_Err_NONE);
  EXPECT_EQ(host.added.at(2).u.fs_d.value, 10.0);
}

// Reading.

TEST_F(StoredDefaults, withoutAFileTheBuiltInDefaultsHold) {
  char path[settingsPathSize];
  const char* settings = PrepareStoredDefaults(&host.inData, path);
  ASSERT_NE(settings, nullptr);
  ASSERT_EQ(AddAll(&host.inData, settings), PF_Err_NONE);
  const std::vector<PF_ParamDef> withPath = host.added;
  host.added.clear();
  ASSERT_EQ(AddAll(&host.inData, nullptr), PF_Err_NONE);
  ASSERT_EQ(withPath.size(), host.added.size());
  for (size_t i = 0; i < withPath.size(); ++i) {
    EXPECT_TRUE(test::sameBytes(withPath[i], host.added[i])) << withPath[i].name;
  }
  EXPECT_FALSE(folder.has("a.b.ini"));
}

TEST_F(StoredDefaults, anotherVersionsSectionIsIgnored) {
  folder.write("a.b.ini", "[Version=1.4]\r\nDot Size=12.5\r\n");
  EXPECT_EQ(received("Dot Size").u.fs_d.value, 10.0);
}

TEST_F(StoredDefaults, aStoredNumberIsBothValueAndDefault) {
  store("Dot Size=12.5\r\n");
  const PF_ParamDef& def = received("Dot Size");
  EXPECT_EQ(def.u.fs_d.value, 12.5);
  EXPECT_EQ(def.u.fs_d.dephault, 12.5f);
}

TEST_F(StoredDefaults, aStoredNumberIsNarrowedToAFloat) {
  store("Dot Size=0.1\r\n");
  const PF_ParamDef& def = received("Dot Size");
  EXPECT_EQ(def.u.fs_d.value, static_cast<double>(0.1f));
  EXPECT_NE(def.u.fs_d.value, 0.1);
}

TEST_F(StoredDefaults, aStoredAngleIsTruncatedToFixed) {
  store("Dot Rotation=45.000000\r\nGlobal Rotation=-0.00001\r\nH=0.00002\r\n");
  EXPECT_EQ(received("Dot Rotation").u.ad.value, 2949120);
  EXPECT_EQ(received("Dot Rotation").u.ad.dephault, 2949120);
  EXPECT_EQ(received("Global Rotation").u.ad.value, 0);  // -0.65536 of a unit
  EXPECT_EQ(received("H").u.ad.value, 1);                // 1.31072
}

TEST_F(StoredDefaults, anAngleBeyondFixedIsTheSmallestNumber) {
  store("Dot Rotation=40000\r\n");
  EXPECT_EQ(received("Dot Rotation").u.ad.value, std::numeric_limits<int32_t>::min());
}

TEST_F(StoredDefaults, theStoredAlphaOfAColorChangesNothing) {
  store("Dot Color.a=0\r\nDot Color.r=1\r\nDot Color.g=258\r\n");
  const PF_ColorDef& def = received("Dot Color").u.cd;
  EXPECT_EQ(def.value.alpha, 255);
  EXPECT_EQ(def.value.red, 1);
  EXPECT_EQ(def.value.green, 2);  // the low 8 bits
  EXPECT_EQ(def.value.blue, 20);  // the built-in one
  EXPECT_EQ(def.dephault.alpha, 255);
  EXPECT_EQ(def.dephault.red, 1);
}

TEST_F(StoredDefaults, anItemThatAPopupDoesNotHaveReachesTheHost) {
  store("Dot Shape=9\r\nMask=65537\r\nEffect Map 2=40000\r\n");
  EXPECT_EQ(received("Dot Shape").u.pd.value, 9);
  EXPECT_EQ(received("Dot Shape").u.pd.dephault, 9);
  EXPECT_EQ(received("Mask").u.pd.value, 1);               // the low 16 bits
  EXPECT_EQ(received("Effect Map 2").u.pd.value, -25536);  // with their sign
}

TEST_F(StoredDefaults, theLowByteOfACheckboxCountsWithItsSign) {
  store("Invert Mask=1\r\nClear Background=255\r\nColor 1=256\r\n");
  EXPECT_EQ(received("Invert Mask").u.bd.value, 1);
  EXPECT_EQ(received("Invert Mask").u.bd.dephault, 1);
  EXPECT_EQ(received("Clear Background").u.bd.value, -1);
  EXPECT_EQ(received("Color 1").u.bd.value, 0);
}

TEST_F(StoredDefaults, aWholeNumberBeyondItsRangeReachesTheHost) {
  store("Random Seed=70000\r\n");
  EXPECT_EQ(received("Random Seed").u.sd.value, 70000);
  EXPECT_EQ(received("Random Seed").u.sd.dephault, 70000);
  EXPECT_EQ(received("Random Seed").u.sd.valid_max, 10000);
}

TEST_F(StoredDefaults, aTextThatIsNoNumberReadsAsZero) {
  store("Dot Size=big\r\nDot Shape=round\r\nDot Rotation=?\r\n");
  EXPECT_EQ(received("Dot Size").u.fs_d.value, 0.0);
  EXPECT_EQ(received("Dot Shape").u.pd.value, 0);
  EXPECT_EQ(received("Dot Rotation").u.ad.value, 0);
}

TEST_F(StoredDefaults, aNumberIsReadFromItsFirst127Characters) {
  // 126 zeros and then 12.5: the buffer ends behind the 1.
  store("Dot Size=" + std::string(126, '0') + "12.5\r\n");
  EXPECT_EQ(received("Dot Size").u.fs_d.value, 1.0);
}

// Writing.

/// An array as a command gets it, with the values that the host received at the set-up.
std::vector<PF_ParamDef*> pointersTo(std::vector<PF_ParamDef>& defs) {
  std::vector<PF_ParamDef*> pointers;
  pointers.reserve(defs.size() + 1);
  for (PF_ParamDef& def : defs) pointers.push_back(&def);
  pointers.push_back(nullptr);
  return pointers;
}

class Saving : public StoredDefaults {
 protected:
  void SetUp() override {
    StoredDefaults::SetUp();
    received("Dot Shape");
    defs.push_back(zeroedDef());
    defs.insert(defs.end(), host.added.begin(), host.added.end());
  }
  PF_ParamDef& at(const std::string& name) {
    for (PF_ParamDef& def : defs) {
      if (name == def.name) return def;
    }
    ADD_FAILURE() << "no control is called " << name;
    return defs.front();
  }
  void save() {
    auto pointers = pointersTo(defs);
    char path[settingsPathSize];
    ASSERT_TRUE(settingsPath(&host.inData, path));
    SaveDefaults(pointers.data(), path);
  }
  std::vector<PF_ParamDef> defs;
};

TEST_F(Saving, theFileBeginsWithTheBuiltInValuesInTheOrderOfTheList) {
  save();
  const std::string expected =
      "[Version=1.5]\n"
      "Dot Shape=1\n"
      "Dot Color.r=255\n"
      "Dot Color.g=125\n"
      "Dot Color.b=20\n"
      "Dot Color.a=255\n"
      "Dot Size=10.000000\n"
      "Dot Aspect=0.000000\n"
      "Dot Rotation=0.000000\n";
  EXPECT_EQ(folder.readLines("a.b.ini").substr(0, expected.size()), expected);
}

TEST_F(Saving, theFileHasOneHundredAndEighteenKeys) {
  save();
  const std::string text = folder.readLines("a.b.ini");
  const std::string section = "[Version=1.5]\n";
  ASSERT_EQ(text.substr(0, section.size()), section);
  const std::string keys = text.substr(section.size());
  EXPECT_EQ(std::count(keys.begin(), keys.end(), '='), 118);
  for (const char* none :
       {"Center Position=", "Position 1=", "Mask Target Layer=", "Custom Map Layer 1=", "Randomize=", "Effector1="}) {
    EXPECT_EQ(text.find(std::string("\n") + none), std::string::npos) << none;
  }
}

TEST_F(Saving, everyKindOfValueComesBackAtTheNextSetUp) {
  at("Dot Shape").u.pd.value = 4;
  at("Dot Color").u.cd.value = {10, 20, 30, 40};
  at("Dot Size").u.fs_d.value = 123.4567891;
  at("Dot Rotation").u.ad.value = -2981888;  // -45.5 degrees
  at("Random Seed").u.sd.value = -7;
  at("Invert Mask").u.bd.value = 1;
  at("Shift Hue 3").u.ad.value = 65536 * 90;
  save();
  const std::string text = folder.readLines("a.b.ini");
  EXPECT_NE(text.find("\nDot Size=123.456789\n"), std::string::npos);
  EXPECT_NE(text.find("\nDot Rotation=-45.500000\n"), std::string::npos);
  EXPECT_NE(text.find("\nDot Color.a=10\n"), std::string::npos);
  EXPECT_EQ(received("Dot Shape").u.pd.value, 4);
  EXPECT_EQ(received("Dot Color").u.cd.value.red, 20);
  EXPECT_EQ(received("Dot Color").u.cd.value.blue, 40);
  EXPECT_EQ(received("Dot Color").u.cd.value.alpha, 255);
  EXPECT_EQ(received("Dot Size").u.fs_d.value, static_cast<double>(123.456789f));
  EXPECT_EQ(received("Dot Rotation").u.ad.value, -2981888);
  EXPECT_EQ(received("Random Seed").u.sd.value, -7);
  EXPECT_EQ(received("Invert Mask").u.bd.dephault, 1);
  EXPECT_EQ(received("Shift Hue 3").u.ad.dephault, 65536 * 90);
}

// A settings file may hold 200 for a check box, which arrives as -56 and counts as on.
TEST_F(Saving, aCheckBoxIsSavedAsTheNumberThatItHolds) {
  at("Clear Background").u.bd.value = -56;
  save();
  EXPECT_NE(folder.readLines("a.b.ini").find("\nClear Background=-56\n"), std::string::npos);
  EXPECT_EQ(received("Clear Background").u.bd.value, -56);
}

TEST_F(Saving, anotherVersionsSectionStaysBesideTheNewOne) {
  folder.write("a.b.ini", "[Version=1.4]\r\nDot Size=12.5\r\n");
  save();
  const std::string text = folder.readLines("a.b.ini");
  EXPECT_EQ(text.rfind("[Version=1.4]\nDot Size=12.5\n", 0), 0U);
  EXPECT_NE(text.find("[Version=1.5]\nDot Shape=1\n"), std::string::npos);
}

TEST_F(Saving, existingKeysAreReplacedInPlace) {
  store("Dot Rotation=1.000000\r\nDot Shape=2\r\n");
  save();
  const std::string text = folder.readLines("a.b.ini");
  EXPECT_EQ(text.rfind("[Version=1.5]\nDot Rotation=0.000000\nDot Shape=1\nDot Color.r=255\n", 0), 0U) << text;
}

TEST_F(Saving, theValuesAreTakenFromTheArrayAndNoHostCallIsMade) {
  const size_t before = host.checkouts.size();
  save();
  EXPECT_EQ(host.checkouts.size(), before);
  EXPECT_EQ(host.checkins, 0);
}

TEST_F(Saving, withoutAPathNothingHappens) {
  auto pointers = pointersTo(defs);
  SaveDefaults(pointers.data(), nullptr);
  EXPECT_FALSE(folder.has("a.b.ini"));
}

TEST_F(Saving, afterRestoringTheFileIsGoneAndASecondTimeIsSilent) {
  folder.write("a.b.ini", "[Version=1.4]\r\nDot Size=12.5\r\n");
  save();
  ASSERT_TRUE(folder.has("a.b.ini"));
  const std::string path = folder.path("a.b.ini");
  RestoreDefaults(path.c_str());
  EXPECT_FALSE(folder.has("a.b.ini"));
  RestoreDefaults(path.c_str());
  EXPECT_FALSE(folder.has("a.b.ini"));
  EXPECT_EQ(received("Dot Size").u.fs_d.value, 10.0);
}

}  // namespace
}  // namespace vindrel
