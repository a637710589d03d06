// What the effect tells of itself, where it looks for stored defaults, and the one flag that follows a value.
#include <cstdlib>
#include <cstring>
#include <limits>

#include "tests/module/HostedModule.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using vindrel::test::HostedModule;
using vindrel::test::LoadedOnly;

using GlobalSetup = LoadedOnly;

TEST_F(GlobalSetup, tellsVersionAndFlags) {
  ASSERT_EQ(host.globalSetup(), 0);
  EXPECT_EQ(host.outData().my_version, 691719U);
  EXPECT_EQ(host.outData().out_flags, 0x06000062);
  EXPECT_EQ(host.outData().out_flags2, 0x00001419);
  EXPECT_EQ(host.globalSetdown(), 0);
}

/// Settings files in a folder of their own.
class SettingsFolder {
 public:
  std::string file(const std::string& name) const { return folder_.path(name); }

  void writeDotSize(const std::string& name, int size, const std::string& section = "Version=1.5") const {
    folder_.write(name, '[' + section + "]\nDot Size=" + std::to_string(size) + '\n');
  }

 private:
  vindrel::test::TemporaryFolder folder_;
};

class StoredDefaults : public LoadedOnly {
 protected:
  /// The default of "Dot Size" that arrives at a host of this kind: 10 when no file was read.
  float arrivedDotSize(const std::string& modulePath, PF_SpecVersion version = {13, 0},
                       A_long applId = kAppIdAfterEffects) {
    host.settings().modulePath = modulePath;
    host.settings().version = version;
    host.settings().applId = applId;
    EXPECT_EQ(host.globalSetup(), 0);
    EXPECT_EQ(host.paramsSetup(), 0);
    const standin::Control* const control = host.control("Dot Size");
    const float size = control == nullptr ? -1.0F : control->definition.u.fs_d.dephault;
    EXPECT_EQ(host.globalSetdown(), 0);
    return size;
  }

  SettingsFolder folder;
};

TEST_F(StoredDefaults, areNotReadUnderAfterEffectsTwelveEleven) {
  folder.writeDotSize("Module.ini", 33);
  EXPECT_EQ(arrivedDotSize(folder.file("Module.aex"), {12, 11}), 10.0F);
  EXPECT_EQ(host.log().count("get_platform_data"), 0);
}

TEST_F(StoredDefaults, areNotReadUnderAfterEffectsEleven) {
  folder.writeDotSize("Module.ini", 33);
  EXPECT_EQ(arrivedDotSize(folder.file("Module.aex"), {11, 90}), 10.0F);
}

TEST_F(StoredDefaults, areReadUnderAfterEffectsTwelveTwelve) {
  folder.writeDotSize("Module.ini", 33);
  EXPECT_EQ(arrivedDotSize(folder.file("Module.aex"), {12, 12}), 33.0F);
}

TEST_F(StoredDefaults, areReadUnderAfterEffectsThirteen) {
  folder.writeDotSize("Module.ini", 33);
  EXPECT_EQ(arrivedDotSize(folder.file("Module.aex"), {13, 0}), 33.0F);
}

TEST_F(StoredDefaults, areReadUnderAnyOtherHostOfAnyVersion) {
  folder.writeDotSize("Module.ini", 33);
  for (const PF_SpecVersion version : {PF_SpecVersion{1, 0}, PF_SpecVersion{12, 11}, PF_SpecVersion{13, 28}}) {
    EXPECT_EQ(arrivedDotSize(folder.file("Module.aex"), version, 0x54455354), 33.0F)
        << version.major << '.' << version.minor;
  }
}

TEST_F(StoredDefaults, comeFromTheSectionOfThisVersionAlone) {
  folder.writeDotSize("Module.ini", 33, "Version=1.4");
  EXPECT_EQ(arrivedDotSize(folder.file("Module.aex")), 10.0F);
}

TEST_F(StoredDefaults, lieBesideTheModuleUnderItsNameUpToTheLastDot) {
  folder.writeDotSize("a.b.ini", 33);
  folder.writeDotSize("a.ini", 44);
  folder.writeDotSize("a.b.aex.ini", 55);
  EXPECT_EQ(arrivedDotSize(folder.file("a.b.aex")), 33.0F);
}

TEST_F(StoredDefaults, areFoundThoughTheHostFillsThePathWithoutAnEnd) {
  // 260 bytes and no closing zero; the last of them is a dot, which the end of the path takes the place of.
  static std::string longPath;
  longPath = folder.file("Module.");
  ASSERT_LT(longPath.size(), 259U);
  longPath.resize(259, 'x');
  longPath += '.';
  folder.writeDotSize("Module.ini", 33);
  const auto usual = host.utils()->get_platform_data;
  host.utils()->get_platform_data = [](PF_ProgPtr, PF_PlatDataID, void* data) -> PF_Err {
    std::memcpy(data, longPath.data(), longPath.size());
    return PF_Err_NONE;
  };
  EXPECT_EQ(arrivedDotSize(folder.file("Module.aex")), 33.0F);
  host.utils()->get_platform_data = usual;
}

TEST_F(StoredDefaults, areLeftOutWhenTheHostDoesNotTellWhereTheModuleIs) {
  folder.writeDotSize("Module.ini", 33);
  host.faults().fail("get_platform_data", 1, 5);
  EXPECT_EQ(arrivedDotSize(folder.file("Module.aex")), 10.0F);
}

TEST_F(StoredDefaults, areLeftOutWhenTheModulesNameHasNoDot) {
  EXPECT_EQ(arrivedDotSize("module"), 10.0F);
}

using ParamsSetup = LoadedOnly;

TEST_F(ParamsSetup, tellsTheNumberOfControlsWithTheLayer) {
  ASSERT_EQ(host.globalSetup(), 0);
  ASSERT_EQ(host.paramsSetup(), 0);
  EXPECT_EQ(host.outData().num_params, 123);
  EXPECT_EQ(host.controls().size(), 122U);
  EXPECT_EQ(host.globalSetdown(), 0);
}

TEST_F(ParamsSetup, stopsAtTheFirstErrorAndTellsTheNumberAllTheSame) {
  ASSERT_EQ(host.globalSetup(), 0);
  host.faults().fail("add_param", 5, 44);
  EXPECT_EQ(host.call(PF_Cmd_PARAMS_SETUP), 44);
  EXPECT_EQ(host.log().count("add_param"), 5);
  EXPECT_EQ(host.outData().num_params, 123);
  EXPECT_EQ(host.globalSetdown(), 0);
}

class DynamicFlags : public HostedModule {
 protected:
  bool wideTime() { return (host.outData().out_flags & PF_OutFlag_WIDE_TIME_INPUT) != 0; }

  void query(double interval) {
    standin::ParameterValues values = host.defaults();
    values.setNumber("Random Interval", interval);
    EXPECT_EQ(host.queryDynamicFlags(values), 0);
  }
};

TEST_F(DynamicFlags, wideTimeIsClearedWhileTheIntervalIsZero) {
  ASSERT_TRUE((host.outFlags() & PF_OutFlag_WIDE_TIME_INPUT) != 0);
  query(0);
  EXPECT_FALSE(wideTime());
}

TEST_F(DynamicFlags, wideTimeIsSetWithAnIntervalOfOne) {
  query(0);
  query(1);
  EXPECT_TRUE(wideTime());
}

TEST_F(DynamicFlags, wideTimeIsSetWithAnIntervalThatReadsAsANegativeNumber) {
  query(-1);
  EXPECT_TRUE(wideTime());
}

/// Asks for the flags while the eight bytes of the value read as this number.
class DynamicFlagsOfEightBytes : public DynamicFlags {
 protected:
  bool wideTimeWith(double number) {
    eightBytes = number;
    PF_InData in = host.inData();
    PF_OutData out = host.outData();
    in.inter.checkout_param = [](PF_ProgPtr, PF_ParamIndex, A_long, A_long, A_u_long, PF_ParamDef* def) -> PF_Err {
      def->u.fs_d.value = eightBytes;
      return PF_Err_NONE;
    };
    in.inter.checkin_param = [](PF_ProgPtr, PF_ParamDef*) -> PF_Err { return PF_Err_NONE; };
    EXPECT_EQ(module.entry()(PF_Cmd_QUERY_DYNAMIC_FLAGS, &in, &out, nullptr, nullptr, nullptr), 0);
    return (out.out_flags & PF_OutFlag_WIDE_TIME_INPUT) != 0;
  }

  static inline double eightBytes = 0.0;
};

TEST_F(DynamicFlagsOfEightBytes, setWideTimeUnlessTheyReadAsZero) {
  EXPECT_FALSE(wideTimeWith(0.0));
  EXPECT_FALSE(wideTimeWith(-0.0));
  EXPECT_TRUE(wideTimeWith(-1.0));
  EXPECT_TRUE(wideTimeWith(1e-320));
}

TEST_F(DynamicFlagsOfEightBytes, setWideTimeWhenTheyAreNotANumber) {
  EXPECT_TRUE(wideTimeWith(std::numeric_limits<double>::quiet_NaN()));
}

TEST_F(DynamicFlags, noOtherFlagChanges) {
  query(0);
  EXPECT_EQ(host.outData().out_flags, 0x06000060);
  EXPECT_EQ(host.outData().out_flags2, 0x00001419);
  query(1);
  EXPECT_EQ(host.outData().out_flags, 0x06000062);
}

TEST_F(DynamicFlags, oneControlIsCheckedOutAndInAtOnce) {
  host.log().clear();
  query(1);
  ASSERT_EQ(host.log().params.size(), 2U);
  EXPECT_TRUE(host.log().params[0].checkout);
  EXPECT_EQ(host.log().params[0].index, host.control(standin::ById{20})->index);
  EXPECT_FALSE(host.log().params[1].checkout);
  EXPECT_EQ(host.log().params[1].index, host.log().params[0].index);
}

TEST_F(DynamicFlags, aFailingCheckOutClearsWideTime) {
  host.faults().fail("checkout_param", 1, 5);
  query(1);
  EXPECT_FALSE(wideTime());
  host.books().clear();  // the check-in of what was not checked out is a complaint of this host
}

}  // namespace
