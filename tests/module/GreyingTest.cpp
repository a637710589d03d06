// Which controls the host shows as greyed, command by command.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/module/HostedModule.h"
#include "tests/params/GreyingTwin.h"
#include "tests/support/PopupItems.h"

namespace vindrel::test {
namespace {

using standin::Control;
using standin::Matter;

class Greying : public HostedModule {
 protected:
  void SetUp() override {
    HostedModule::SetUp();
    values = host.defaults();
  }

  void TearDown() override {
    // The empty ids of each group go to the host as index 0, the layer itself.
    finishOwing({Matter::kLayerParamUi});
    HostedModule::TearDown();
  }

  void set(const Deciders& deciders) {
    values.setPopup("Mask", deciders.mask);
    for (size_t i = 0; i < 3; ++i) {
      const std::string n = " " + std::to_string(i + 1);
      const Deciders::OfEffector& e = deciders.effector.at(i);
      values.setCheckbox("Enable Effector" + n, e.enable == 1);
      values.setPopup("Effect Map" + n, e.map);
      values.setCheckbox("Fit to Layer" + n, e.fit == 1);
      values.setCheckbox("Absolute" + n, e.absolute == 1);
      values.setCheckbox("Color" + n, e.color == 1);
    }
  }

  /// Turns effector 1 on and sets its map.
  void turnOn(int32_t map, bool fit = false) {
    values.setCheckbox("Enable Effector 1", true);
    values.setPopup("Effect Map 1", map);
    values.setCheckbox("Fit to Layer 1", fit);
  }

  void update() { ASSERT_EQ(host.updateParamsUi(values), 0); }

  /// Names of the controls that are greyed, out of those asked for.
  std::vector<std::string> greyed(const std::vector<std::string>& names) {
    std::vector<std::string> result;
    for (const std::string& name : names) {
      if (host.control(name)->greyed()) result.push_back(name);
    }
    return result;
  }

  standin::ParameterValues values;
};

const std::vector<std::string> mapControls = {"Angle 1",        "Position 1",         "Size 1",
                                              "Falloff 1",      "Custom Map Layer 1", "Tiling 1",
                                              "Fit to Layer 1", "Pick Source Color 1"};

TEST_F(Greying, aMaskOfNoneGreysItsLayerAndItsInversion) {
  values.setPopup("Mask", maskNone);
  update();
  EXPECT_TRUE(host.control("Mask Target Layer")->greyed());
  EXPECT_TRUE(host.control("Invert Mask")->greyed());
}

TEST_F(Greying, aNormalMaskGreysItsLayerOnly) {
  update();
  EXPECT_TRUE(host.control("Mask Target Layer")->greyed());
  EXPECT_FALSE(host.control("Invert Mask")->greyed());
}

TEST_F(Greying, aLayerMaskGreysNeither) {
  values.setPopup("Mask", maskLayer);
  update();
  EXPECT_FALSE(host.control("Mask Target Layer")->greyed());
  EXPECT_FALSE(host.control("Invert Mask")->greyed());
}

TEST_F(Greying, anEffectorThatIsOffIsGreyAllButItsSwitch) {
  values.setCheckbox("Enable Effector 2", true);
  update();
  values.setCheckbox("Enable Effector 2", false);
  update();
  for (int32_t index = 63; index <= 92; ++index) {
    const Control& control = *host.control(standin::ByIndex{index});
    const bool stays = control.name == "Enable Effector 2" || !control.hasValue();
    EXPECT_EQ(control.greyed(), !stays) << control.name;
  }
}

TEST_F(Greying, aRadialMapNeedsNoAngleAndNoLayer) {
  turnOn(3);
  update();
  const std::vector<std::string> expected = {"Angle 1", "Custom Map Layer 1", "Tiling 1", "Fit to Layer 1",
                                             "Pick Source Color 1"};
  EXPECT_EQ(greyed(mapControls), expected);
}

TEST_F(Greying, aLinearMapHasAnAngleToo) {
  const std::vector<std::string> expected = {"Custom Map Layer 1", "Tiling 1", "Fit to Layer 1", "Pick Source Color 1"};
  for (const int32_t linear : {5, 6}) {
    turnOn(linear);
    update();
    EXPECT_EQ(greyed(mapControls), expected) << linear;
  }
}

TEST_F(Greying, aCustomMapOfItsOwnSizeHasAPlaceAndAnAngle) {
  turnOn(1, false);
  update();
  const std::vector<std::string> expected = {"Size 1", "Falloff 1"};
  EXPECT_EQ(greyed(mapControls), expected);
}

TEST_F(Greying, aCustomMapThatFitsTheLayerHasNone) {
  turnOn(1, true);
  update();
  const std::vector<std::string> expected = {"Angle 1", "Position 1", "Size 1", "Falloff 1"};
  EXPECT_EQ(greyed(mapControls), expected);
}

TEST_F(Greying, absoluteGreysTheAbsoluteSizesAndNothingElse) {
  const std::vector<std::string> names = {"ABS Size 1",   "ABS Aspect 1",  "ABS Rotation 1", "ABS Opacity 1",
                                          "Ratio Size 1", "Offset Size 1", "Shift Hue 1",    "Center Dot to Front 1"};
  turnOn(3);
  update();
  const std::vector<std::string> expected = {"ABS Size 1", "ABS Aspect 1", "ABS Rotation 1", "ABS Opacity 1"};
  EXPECT_EQ(greyed(names), expected);
  values.setCheckbox("Absolute 1", true);
  update();
  EXPECT_EQ(greyed(names), std::vector<std::string>{});
}

TEST_F(Greying, theBlendGoesWithTheColorBox) {
  turnOn(3);
  update();
  EXPECT_TRUE(host.control("Blend Mode 1")->greyed());
  EXPECT_TRUE(host.control("Blend Color 1")->greyed());
  values.setCheckbox("Color 1", true);
  update();
  EXPECT_FALSE(host.control("Blend Mode 1")->greyed());
  EXPECT_FALSE(host.control("Blend Color 1")->greyed());
}

TEST_F(Greying, followsThePlainRulesForAnySettings) {
  constexpr uint32_t seed = 77001;
  std::mt19937 random(seed);
  for (int round = 0; round < 150; ++round) {
    const Deciders deciders = randomDeciders(random);
    set(deciders);
    host.log().clear();
    update();
    const Tellings told = greyingTwin(deciders);
    std::vector<std::pair<int32_t, bool>> expected, calls;
    for (const auto& [name, free] : told) {
      expected.emplace_back(name.empty() ? 0 : host.control(name)->index, free);
    }
    for (const standin::UpdateParamUiCall& call : host.log().paramUi) {
      calls.emplace_back(call.index, (call.uiFlags & PF_PUI_DISABLED) == 0);
    }
    ASSERT_EQ(calls, expected) << "seed " << seed << " round " << round << ": " << deciders;
    for (const auto& [name, free] : finalState(told)) {
      ASSERT_EQ(host.control(name)->greyed(), !free)
          << name << ", seed " << seed << " round " << round << ": " << deciders;
    }
  }
}

TEST_F(Greying, namesTheLayerItselfForTheTwoEmptyIdsOfEachEffector) {
  update();
  EXPECT_EQ(host.books().complaintCount(Matter::kLayerParamUi), 6);
}

TEST_F(Greying, isLeftToTheHostWhenItRefuses) {
  host.faults().failFrom("PF_UpdateParamUI", 1, PF_Err_INVALID_INDEX);
  update();
  EXPECT_EQ(host.log().count("PF_UpdateParamUI"), 2 + 3 * 29);
  host.faults().clear();
}

/// A host without "PF Param Utils Suite".
class GreyingWithoutItsSuite : public LoadedOnly {
 protected:
  GreyingWithoutItsSuite() : LoadedOnly(withoutParamUtils()) {}
  static standin::HostSettings withoutParamUtils() {
    standin::HostSettings settings = plainHost();
    settings.withheld = {{kPFParamUtilsSuite, 2}};
    return settings;
  }
};

TEST_F(GreyingWithoutItsSuite, isAnInternalErrorToTheHost) {
  ASSERT_EQ(host.start(), 0);
  EXPECT_EQ(host.updateParamsUi(host.defaults()), PF_Err_INTERNAL_STRUCT_DAMAGED);
  EXPECT_EQ(host.finish(), 0);
  EXPECT_EQ(owed(), "");
}

class GreyingInARenderEngine : public LoadedOnly {
 protected:
  GreyingInARenderEngine() : LoadedOnly(renderEngine()) {}
  static standin::HostSettings renderEngine() {
    standin::HostSettings settings = plainHost();
    settings.renderEngine = true;
    return settings;
  }
};

TEST_F(GreyingInARenderEngine, isOfEveryControlAndNoModeIsRemembered) {
  ASSERT_EQ(host.start(), 0);
  standin::ParameterValues values = host.defaults();
  values.setCheckbox("Enable Effector 1", true);
  host.log().clear();
  ASSERT_EQ(host.updateParamsUi(values), 0);
  ASSERT_EQ(host.log().paramUi.size(), 122U);
  for (int32_t index = 1; index <= 122; ++index) {
    EXPECT_EQ(host.log().paramUi.at(static_cast<size_t>(index - 1)).index, index);
    EXPECT_TRUE(host.control(standin::ByIndex{index})->greyed()) << index;
  }
  // A byte at offset 24 of the sequence record tells whether a mode is remembered.
  ASSERT_EQ(host.sequenceBytes().size(), 32U);
  EXPECT_EQ(host.sequenceBytes()[24], 0);
  EXPECT_EQ(host.finish(), 0);
  EXPECT_EQ(owed(), "");
}

}  // namespace
}  // namespace vindrel::test
