#include "effect/params/ParamRules.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "ae/Constants.h"
#include "effect/params/ParamObjects.h"
#include "effect/params/SequenceRecord.h"
#include "effect/share/util/SuiteCache.h"
#include "tests/params/GreyingTwin.h"
#include "tests/params/PlainHost.h"

namespace vindrel {
namespace {

using test::Deciders;
using test::PlainHost;
using test::Tellings;

class ParamRules : public testing::Test {
 protected:
  void SetUp() override {
    nextHostIndex = 1;
    AEUtil::openGlobalSuites(&host.basic);
    host.inData.pica_basicP = &host.basic;
    host.inData.sequence_data = &sequenceBlock;
    DeclareParams(&host.inData);
    for (PF_ParamDef& def : defs) pointers.push_back(&def);
    pointers.push_back(nullptr);
    outData.num_params = 123;
  }
  void TearDown() override {
    DropParams();
    AEUtil::closeGlobalSuites();
  }

  PF_ParamDef& at(const std::string& name) { return defs.at(static_cast<size_t>(indexOf(name))); }

  /// The place of a control in the list, 0 for the empty text.
  static int32_t indexOf(const std::string& name) {
    if (name.empty()) return 0;
    for (int32_t index = 1; index <= 122; ++index) {
      if (name == byIndex[index]->name) return index;
    }
    ADD_FAILURE() << "no control is called " << name;
    return 0;
  }

  void set(const Deciders& deciders) {
    at("Mask").u.pd.value = deciders.mask;
    for (size_t i = 0; i < 3; ++i) {
      const std::string n = " " + std::to_string(i + 1);
      at("Enable Effector" + n).u.bd.value = deciders.effector[i].enable;
      at("Effect Map" + n).u.pd.value = deciders.effector[i].map;
      at("Fit to Layer" + n).u.bd.value = deciders.effector[i].fit;
      at("Absolute" + n).u.bd.value = deciders.effector[i].absolute;
      at("Color" + n).u.bd.value = deciders.effector[i].color;
    }
  }

  static std::vector<PlainHost::Update> updatesOf(const Tellings& told) {
    std::vector<PlainHost::Update> updates;
    for (const auto& [name, free] : told) updates.push_back({indexOf(name), free});
    return updates;
  }

  /// What the host was told of a control last.
  bool lastTold(const std::string& name) {
    const int32_t index = indexOf(name);
    const auto last = std::find_if(host.updates.rbegin(), host.updates.rend(),
                                   [index](const PlainHost::Update& each) { return each.index == index; });
    if (last == host.updates.rend()) throw std::logic_error("the host was not told of " + name);
    return last->enabled;
  }

  PF_Err update() { return UpdateParamsRules(&host.inData, &outData, pointers.data()); }
  PF_Err change(int32_t index = 8) {
    PF_UserChangedParamExtra extra{index};
    return UserChangedRules(&host.inData, &outData, pointers.data(), &extra);
  }

  PlainHost host;
  PF_OutData outData{};
  SequenceRecord sequence;
  void* sequenceBlock = &sequence;
  std::vector<PF_ParamDef> defs = std::vector<PF_ParamDef>(123, zeroedDef());
  std::vector<PF_ParamDef*> pointers;
};

TEST_F(ParamRules, theHostIsToldOfEveryRuleInOrderForAnySettings) {
  constexpr uint32_t seed = 20260801;
  std::mt19937 random(seed);
  for (int round = 0; round < 400; ++round) {
    const Deciders deciders = test::randomDeciders(random);
    set(deciders);
    host.updates.clear();
    ASSERT_EQ(update(), PF_Err_NONE);
    ASSERT_EQ(host.updates, updatesOf(test::greyingTwin(deciders)))
        << "seed " << seed << " round " << round << ": " << deciders;
  }
}

TEST_F(ParamRules, theHostIsToldOfEveryRuleForAllCombinationsOfAnEffectorsControls) {
  const auto effector = [](int32_t number) {
    Deciders::OfEffector e;
    e.enable = number % 2;
    e.map = 1 + number / 2 % 6;
    e.fit = number / 12 % 2;
    e.absolute = number / 24 % 2;
    e.color = number / 48;
    return e;
  };
  for (int32_t mask = 1; mask <= 3; ++mask) {
    for (int32_t number = 0; number < 96; ++number) {
      Deciders deciders;
      deciders.mask = mask;
      // Each of the three goes through all 96, at another pace than its neighbours.
      deciders.effector = {effector(number), effector((number + 35) % 96), effector((number + 71) % 96)};
      set(deciders);
      host.updates.clear();
      ASSERT_EQ(update(), PF_Err_NONE);
      ASSERT_EQ(host.updates, updatesOf(test::greyingTwin(deciders))) << deciders;
    }
  }
}

TEST_F(ParamRules, anEffectorIsOnOnlyWhenItsBoxIsExactlyOne) {
  Deciders deciders;
  deciders.effector[0] = {2, 1, 0, 1, 1};
  set(deciders);
  ASSERT_EQ(update(), PF_Err_NONE);
  EXPECT_EQ(host.updates.size(), 2U + 3U * 29U);
  for (size_t call = 2; call < host.updates.size(); ++call) EXPECT_FALSE(host.updates[call].enabled) << call;
}

TEST_F(ParamRules, anyFitThatIsNotZeroTakesACustomMapItsPlace) {
  Deciders deciders;
  deciders.effector[0] = {1, 1, 2, 0, 0};
  set(deciders);
  ASSERT_EQ(update(), PF_Err_NONE);
  EXPECT_FALSE(lastTold("Angle 1"));
  EXPECT_FALSE(lastTold("Position 1"));
}

TEST_F(ParamRules, absoluteAndColorFreeTheirControlsOnlyWhenExactlyOne) {
  Deciders deciders;
  deciders.effector[0] = {1, 3, 0, 2, 2};
  set(deciders);
  ASSERT_EQ(update(), PF_Err_NONE);
  for (const char* name : {"ABS Size 1", "ABS Aspect 1", "ABS Rotation 1", "ABS Opacity 1"}) {
    EXPECT_FALSE(lastTold(name)) << name;
  }
  EXPECT_FALSE(lastTold("Blend Mode 1"));
  EXPECT_FALSE(lastTold("Blend Color 1"));
}

TEST_F(ParamRules, theTwoEmptyIdsOfAnEffectorReachTheHostAsIndexZero) {
  Deciders deciders;
  deciders.effector[1].enable = 1;
  set(deciders);
  ASSERT_EQ(update(), PF_Err_NONE);
  std::vector<PlainHost::Update> layer;
  for (const PlainHost::Update& each : host.updates) {
    if (each.index == 0) layer.push_back(each);
  }
  const std::vector<PlainHost::Update> expected = {{0, false}, {0, false}, {0, true},
                                                   {0, true},  {0, false}, {0, false}};
  EXPECT_EQ(layer, expected);
}

TEST_F(ParamRules, theHostsArrayIsOnlyRead) {
  Deciders deciders;
  deciders.effector[0].enable = 1;
  set(deciders);
  const std::vector<PF_ParamDef> before = defs;
  ASSERT_EQ(update(), PF_Err_NONE);
  EXPECT_EQ(std::memcmp(before.data(), defs.data(), defs.size() * sizeof(PF_ParamDef)), 0);
}

TEST_F(ParamRules, otherFlagsOfAControlStay) {
  static PF_ParamUIFlags seen;
  seen = 0;
  at("Invert Mask").ui_flags = PF_PUI_CONTROL | PF_PUI_DISABLED;
  struct Utils {
    static PF_Err note(PF_ProgPtr, PF_ParamIndex index, const PF_ParamDef* def) {
      if (index == 17) seen = def->ui_flags;
      return PF_Err_NONE;
    }
  };
  host.paramUtils.PF_UpdateParamUI = Utils::note;
  Deciders deciders;
  set(deciders);
  ASSERT_EQ(update(), PF_Err_NONE);
  EXPECT_EQ(seen, PF_PUI_CONTROL);
}

TEST_F(ParamRules, aRefusalOfTheHostIsNotLookedAt) {
  host.updateResult = PF_Err_INVALID_INDEX;
  EXPECT_EQ(update(), PF_Err_NONE);
  EXPECT_EQ(host.updates.size(), 2U + 3U * 29U);
}

TEST_F(ParamRules, theParamUtilsSuiteIsHeldForOneCommand) {
  ASSERT_EQ(update(), PF_Err_NONE);
  EXPECT_EQ(host.held(kPFParamUtilsSuite), 0);
  EXPECT_EQ(host.suites.front(), (PlainHost::SuiteUse{true, kPFParamUtilsSuite, 2}));
}

TEST_F(ParamRules, aMissingParamUtilsSuiteIsThrownAsABareNumber) {
  host.withoutParamUtils = true;
  EXPECT_THROW(update(), long);
  EXPECT_TRUE(host.updates.empty());
}

TEST_F(ParamRules, theParamUtilsSuiteIsGivenBackWhenTheHandleSuiteIsMissing) {
  host.withoutHandles = true;
  long thrown = 0;
  try {
    update();
  } catch (long code) {
    thrown = code;
  }
  EXPECT_EQ(thrown, 516);
  EXPECT_EQ(host.held(kPFParamUtilsSuite), 0);
  EXPECT_EQ(host.suites.back(), (PlainHost::SuiteUse{false, kPFParamUtilsSuite, 2}));
}

TEST_F(ParamRules, inARenderEngineEveryControlIsGreyedAndNothingIsRemembered) {
  host.inData.appl_id = kAppIdAfterEffects;
  host.renderEngine = true;
  outData.num_params = 100;  // the count that bounds the walk
  Deciders deciders;
  deciders.effector[0].enable = 1;
  set(deciders);
  ASSERT_EQ(update(), PF_Err_NONE);
  std::vector<PlainHost::Update> expected;
  for (int32_t index = 1; index < 100; ++index) expected.push_back({index, false});
  EXPECT_EQ(host.updates, expected);
  EXPECT_EQ(host.locks, 0);
  EXPECT_EQ(sequence.distanceModeKnown, 0);
  EXPECT_EQ(host.held(kPFParamUtilsSuite), 0);
}

// Distance Between.

TEST_F(ParamRules, theFirstUpdateRemembersTheModeAndLaterOnesDoNot) {
  at("Distance Between").u.pd.value = 2;
  ASSERT_EQ(update(), PF_Err_NONE);
  EXPECT_EQ(sequence.distanceModeKnown, 1);
  EXPECT_EQ(sequence.distanceMode, 2);
  at("Distance Between").u.pd.value = 1;
  ASSERT_EQ(update(), PF_Err_NONE);
  EXPECT_EQ(sequence.distanceMode, 2);
  EXPECT_EQ(host.locks, 2);
  EXPECT_EQ(host.unlocks, 2);
}

TEST_F(ParamRules, aStoredFormIsNotWrittenInto) {
  sequence.flattened = 1;
  at("Distance Between").u.pd.value = 2;
  ASSERT_EQ(update(), PF_Err_NONE);
  EXPECT_EQ(sequence.distanceModeKnown, 0);
  EXPECT_EQ(host.unlocks, 1);
}

TEST_F(ParamRules, anUpdateWithoutASequenceRemembersNothing) {
  host.inData.sequence_data = nullptr;
  ASSERT_EQ(update(), PF_Err_NONE);
  EXPECT_EQ(host.locks, 0);
}

TEST_F(ParamRules, anUpdateWhoseSequenceCannotBeLockedUnlocksNothing) {
  host.refuseLock = true;
  ASSERT_EQ(update(), PF_Err_NONE);
  EXPECT_EQ(host.locks, 1);
  EXPECT_EQ(host.unlocks, 0);
}

/// A sequence that knows its mode, and the three sizes that a change looks at.
class DistanceChange : public ParamRules {
 protected:
  void SetUp() override {
    ParamRules::SetUp();
    knows(1);
    at("Dot Size").u.fs_d.value = 10.0;
    at("Dot Distance X").u.fs_d.value = 20.0;
    at("Dot Distance Y").u.fs_d.value = 3.5;
  }
  void knows(int32_t mode) {
    sequence.distanceModeKnown = 1;
    sequence.distanceMode = mode;
  }
  PF_Err changeTo(int32_t mode) {
    at("Distance Between").u.pd.value = mode;
    return change();
  }
  double x() { return at("Dot Distance X").u.fs_d.value; }
  double y() { return at("Dot Distance Y").u.fs_d.value; }
  bool marked() {
    const PF_ChangeFlags flagsX = at("Dot Distance X").uu.change_flags;
    const PF_ChangeFlags flagsY = at("Dot Distance Y").uu.change_flags;
    EXPECT_EQ(flagsX, flagsY);
    return flagsX == PF_ChangeFlag_CHANGED_VALUE;
  }
};

TEST_F(DistanceChange, toCentersAddsTheSizeOfADotAndBackTakesItOff) {
  ASSERT_EQ(changeTo(2), PF_Err_NONE);
  EXPECT_EQ(x(), 30.0);
  EXPECT_EQ(y(), 13.5);
  EXPECT_TRUE(marked());
  EXPECT_EQ(sequence.distanceMode, 2);
  ASSERT_EQ(changeTo(1), PF_Err_NONE);
  EXPECT_EQ(x(), 20.0);
  EXPECT_EQ(y(), 3.5);
}

TEST_F(DistanceChange, aDistanceSmallerThanTheDotIsLostOnTheWayThroughZero) {
  knows(2);
  at("Dot Distance X").u.fs_d.value = 5.0;
  ASSERT_EQ(changeTo(1), PF_Err_NONE);
  EXPECT_EQ(x(), 0.0);
  ASSERT_EQ(changeTo(2), PF_Err_NONE);
  EXPECT_EQ(x(), 10.0);
}

TEST_F(DistanceChange, noUpperLimitIsApplied) {
  at("Dot Distance X").u.fs_d.value = 10000.0;
  ASSERT_EQ(changeTo(2), PF_Err_NONE);
  EXPECT_EQ(x(), 10010.0);
}

TEST_F(DistanceChange, theSameModeChangesNothing) {
  ASSERT_EQ(changeTo(1), PF_Err_NONE);
  EXPECT_EQ(x(), 20.0);
  EXPECT_FALSE(marked());
  EXPECT_EQ(host.locks, 1);
  EXPECT_EQ(host.unlocks, 1);
}

TEST_F(DistanceChange, anUnknownModeMarksTheValuesAndLeavesThem) {
  ASSERT_EQ(changeTo(3), PF_Err_NONE);
  EXPECT_EQ(x(), 20.0);
  EXPECT_EQ(y(), 3.5);
  EXPECT_TRUE(marked());
  EXPECT_EQ(sequence.distanceMode, 3);
  EXPECT_EQ(host.unlocks, 1);
}

TEST_F(DistanceChange, markingKeepsOtherMarks) {
  at("Dot Distance X").uu.change_flags = PF_ChangeFlag_SET_TO_VARY;
  ASSERT_EQ(changeTo(2), PF_Err_NONE);
  EXPECT_EQ(at("Dot Distance X").uu.change_flags, PF_ChangeFlag_SET_TO_VARY | PF_ChangeFlag_CHANGED_VALUE);
}

TEST_F(DistanceChange, aChangeOfAnotherControlIsIgnored) {
  at("Distance Between").u.pd.value = 2;
  ASSERT_EQ(change(9), PF_Err_NONE);
  EXPECT_EQ(x(), 20.0);
  EXPECT_EQ(host.locks, 0);
}

TEST_F(DistanceChange, aChangeWithoutASequenceIsIgnored) {
  host.inData.sequence_data = nullptr;
  ASSERT_EQ(changeTo(2), PF_Err_NONE);
  EXPECT_EQ(x(), 20.0);
  EXPECT_EQ(host.locks, 0);
}

TEST_F(DistanceChange, aChangeBeforeTheFirstUpdateLeavesTheLock) {
  sequence.distanceModeKnown = 0;
  ASSERT_EQ(changeTo(2), PF_Err_NONE);
  EXPECT_EQ(x(), 20.0);
  EXPECT_FALSE(marked());
  EXPECT_EQ(host.locks, 1);
  EXPECT_EQ(host.unlocks, 0);
}

TEST_F(DistanceChange, aSequenceThatCannotBeLockedIsLeftAlone) {
  host.refuseLock = true;
  ASSERT_EQ(changeTo(2), PF_Err_NONE);
  EXPECT_EQ(x(), 20.0);
  EXPECT_EQ(host.unlocks, 0);
}

TEST_F(DistanceChange, itsSuitesAreHeldForOneCommand) {
  ASSERT_EQ(changeTo(2), PF_Err_NONE);
  const std::vector<PlainHost::SuiteUse> expected = {{true, kPFHandleSuite, 2}, {false, kPFHandleSuite, 2}};
  EXPECT_EQ(host.suites, expected);
}

TEST_F(DistanceChange, aMissingHandleSuiteIsThrownAsABareNumber) {
  host.withoutHandles = true;
  EXPECT_THROW(changeTo(2), long);
}

}  // namespace
}  // namespace vindrel
