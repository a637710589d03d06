#include "effect/params/ParamObjects.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <set>
#include <vector>

#include "ae/Constants.h"
#include "effect/params/RenderParams.h"
#include "effect/share/util/SuiteCache.h"
#include "tests/params/PlainHost.h"

namespace vindrel {
namespace {

using test::PlainHost;

class ParamObjects : public testing::Test {
 protected:
  void SetUp() override {
    nextHostIndex = 1;
    DeclareParams(&host.inData);
  }
  void TearDown() override {
    DropParams();
    AEUtil::closeGlobalSuites();
  }

  /// A value of a float slider, as the host would hand it out.
  static PF_ParamDef number(double value) {
    PF_ParamDef def = zeroedDef();
    def.u.fs_d.value = value;
    return def;
  }

  PlainHost host;
};

TEST_F(ParamObjects, anEmptySlotHasHostIndexZero) {
  for (const int32_t id : {0, 28, 38, 51, 56, 116, 142, 255}) {
    EXPECT_EQ(HostIndexOf(id), 0) << id;
    EXPECT_EQ(byId[id], nullptr) << id;
  }
}

TEST_F(ParamObjects, lateIdsStandInTheMiddleOfTheList) {
  EXPECT_EQ(HostIndexOf(125), 12);   // Center Dot to Front
  EXPECT_EQ(HostIndexOf(12), 13);    // Global Rotation
  EXPECT_EQ(HostIndexOf(132), 21);   // Random Array
  EXPECT_EQ(HostIndexOf(136), 39);   // Effect Map 1
  EXPECT_EQ(HostIndexOf(141), 101);  // Fit to Layer 3
  ASSERT_NE(byIndex[12], nullptr);
  EXPECT_EQ(byIndex[12]->id, 125);
  EXPECT_STREQ(byIndex[12]->name, "Center Dot to Front");
}

TEST_F(ParamObjects, theListHasAllObjectsInOrderAndAnEmptyEntryBeforeThem) {
  EXPECT_EQ(byIndex[0], nullptr);
  for (int32_t index = 1; index <= 122; ++index) {
    ASSERT_NE(byIndex[index], nullptr) << index;
    EXPECT_EQ(byIndex[index]->hostIndex, index);
    EXPECT_EQ(byId[byIndex[index]->id], byIndex[index]);
  }
  for (int32_t index = 123; index <= 256; ++index) {
    EXPECT_EQ(byIndex[index], nullptr) << index;
  }
  EXPECT_EQ(nextHostIndex, 123);
}

TEST_F(ParamObjects, aWalkVisitsEachObjectOnce) {
  struct Counting final : ParamGetter {
    PF_Err Get(int32_t index, PF_ParamDef* /*def*/) override {
      gets.push_back(index);
      return PF_Err_NONE;
    }
    PF_Err Checkin(PF_ParamDef* /*def*/) override { return PF_Err_NONE; }
    bool DeferLayers() override { return false; }
    bool IsEnabled(int32_t /*index*/) override { return true; }
    std::vector<int32_t> gets;
  } getter;
  ASSERT_EQ(FetchAll(nullptr, getter), PF_Err_NONE);
  // 122 without the four groups' starts and ends.
  const std::set<int32_t> withoutValue = {19, 32, 33, 62, 63, 92, 93, 122};
  std::vector<int32_t> expected;
  for (int32_t index = 1; index <= 122; ++index) {
    if (withoutValue.count(index) == 0) expected.push_back(index);
  }
  EXPECT_EQ(getter.gets, expected);
  ASSERT_EQ(AddAll(&host.inData, nullptr), PF_Err_NONE);
  EXPECT_EQ(host.added.size(), 122U);
}

TEST_F(ParamObjects, aGroupMakesNoHostCallInAWalk) {
  RenderParams record{};
  GetParamByCheckout getter(&host.inData, nullptr, false);
  for (const int32_t index : {19, 32}) {
    EXPECT_EQ(byIndex[index]->Fetch(&record, getter), PF_Err_NONE);
    EXPECT_EQ(byIndex[index]->Release(getter), PF_Err_NONE);
  }
  EXPECT_TRUE(host.checkouts.empty());
  EXPECT_EQ(host.checkins, 0);
}

TEST_F(ParamObjects, aSecondDeclarationDeletesTheFirstAndGoesOnCounting) {
  struct Watched final : BaseParam {
    explicit Watched(bool* flag) : BaseParam("", ParamTarget{}, zeroedDef()), gone(flag) {}
    ~Watched() override { *gone = true; }
    PF_Err Add(PF_InData* /*in_data*/, int32_t /*paramId*/, const char* /*settingsPath*/) override { return 0; }
    bool* gone;
  };
  bool gone = false;
  byId[200] = new Watched(&gone);  // takes host index 123
  DeclareParams(&host.inData);
  EXPECT_TRUE(gone);
  EXPECT_EQ(byId[200], nullptr);
  EXPECT_EQ(nextHostIndex, 246);
  EXPECT_EQ(HostIndexOf(1), 124);
  EXPECT_EQ(HostIndexOf(51), 0);
  for (int32_t entry = 1; entry <= 122; ++entry) {
    ASSERT_NE(byIndex[entry], nullptr);
    EXPECT_EQ(byIndex[entry]->hostIndex, 123 + entry);
  }
  EXPECT_EQ(byIndex[123], nullptr);
}

TEST_F(ParamObjects, aSecondLifeAddsAsManyControlsAsTheFirst) {
  DropParams();
  DeclareParams(&host.inData);
  EXPECT_EQ(nextHostIndex, 245);
  ASSERT_EQ(AddAll(&host.inData, nullptr), PF_Err_NONE);
  ASSERT_EQ(host.added.size(), 122U);
  EXPECT_EQ(host.added.front().uu.id, 1);
  EXPECT_EQ(host.added.back().uu.id, 96);
}

TEST_F(ParamObjects, droppingLeavesNoPointer) {
  DropParams();
  for (const BaseParam* param : byId) EXPECT_EQ(param, nullptr);
  for (const BaseParam* param : byIndex) EXPECT_EQ(param, nullptr);
}

TEST_F(ParamObjects, addingStopsAtTheFirstErrorAndTellsIt) {
  host.addErrorAt = 5;
  EXPECT_EQ(AddAll(&host.inData, nullptr), PF_Err_INVALID_CALLBACK);
  EXPECT_EQ(host.added.size(), 5U);
}

TEST_F(ParamObjects, everyControlIsAppendedToTheHostsList) {
  ASSERT_EQ(AddAll(&host.inData, nullptr), PF_Err_NONE);
  EXPECT_EQ(host.addedAt, std::vector<int32_t>(122, -1));
}

TEST_F(ParamObjects, aFetchWithoutARecordRefreshesTheObjectOnly) {
  host.values[3] = number(33.5);
  GetParamByCheckout getter(&host.inData, nullptr, false);
  ASSERT_EQ(byId[3]->Fetch(nullptr, getter), PF_Err_NONE);
  EXPECT_EQ(byId[3]->def.u.fs_d.value, 33.5);
}

TEST_F(ParamObjects, aFetchChecksOutAtTheCurrentTime) {
  GetParamByCheckout getter(&host.inData, nullptr, false);
  ASSERT_EQ(byId[125]->Fetch(nullptr, getter), PF_Err_NONE);
  ASSERT_EQ(host.checkouts.size(), 1U);
  EXPECT_EQ(host.checkouts[0].index, 12);
  EXPECT_EQ(host.checkouts[0].time, 700);
  EXPECT_EQ(host.checkouts[0].timeStep, 100);
  EXPECT_EQ(host.checkouts[0].timeScale, 3000U);
}

TEST_F(ParamObjects, eachKindOfValueIsCopiedUnconverted) {
  PF_ParamDef popup = zeroedDef();
  popup.u.pd.value = 5;
  host.values[1] = popup;
  PF_ParamDef color = zeroedDef();
  color.u.cd.value = {1, 2, 3, 4};
  host.values[2] = color;
  host.values[4] = number(250.0);  // beyond the control's limit: whoever reads the record clamps
  PF_ParamDef angle = zeroedDef();
  angle.u.ad.value = -2949121;
  host.values[5] = angle;
  PF_ParamDef point = zeroedDef();
  point.u.td.x_value = 11;
  point.u.td.y_value = -22;
  host.values[11] = point;
  PF_ParamDef box = zeroedDef();
  box.u.bd.value = 0x1FE;  // only the low byte is taken
  host.values[12] = box;
  PF_ParamDef whole = zeroedDef();
  whole.u.sd.value = 123456;
  host.values[20] = whole;
  host.values[106] = number(7.25);  // ABS Size 3
  RenderParams record{};
  GetParamByCheckout getter(&host.inData, nullptr, false);
  ASSERT_EQ(FetchAll(&record, getter), PF_Err_NONE);
  EXPECT_EQ(record.dotShape, 5);
  EXPECT_EQ(record.dotColor.alpha, 1);
  EXPECT_EQ(record.dotColor.red, 2);
  EXPECT_EQ(record.dotColor.green, 3);
  EXPECT_EQ(record.dotColor.blue, 4);
  EXPECT_EQ(record.dotAspect, 250.0);
  EXPECT_EQ(record.dotRotation, -2949121);
  EXPECT_EQ(record.centerPosition.x, 11);
  EXPECT_EQ(record.centerPosition.y, -22);
  EXPECT_EQ(record.centerDotToFront, 0xFE);
  EXPECT_EQ(record.randomInterval, 123456);
  EXPECT_EQ(record.effector[2].absSize, 7.25);
}

TEST_F(ParamObjects, aFailingCheckoutZeroesTheObjectAndStopsTheWalk) {
  host.checkoutErrors[5] = PF_Err_OUT_OF_MEMORY;
  RenderParams record;
  std::memset(&record, 0x11, sizeof record);
  GetParamByCheckout getter(&host.inData, nullptr, false);
  EXPECT_EQ(FetchAll(&record, getter), PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.checkouts.size(), 5U);
  EXPECT_EQ(record.dotAspect, 0.0);
  // The failing control and those behind it keep what the record held.
  EXPECT_EQ(record.dotRotation, 0x11111111);
  EXPECT_EQ(record.rotationType, 0x11111111);
  EXPECT_TRUE(test::sameBytes(byId[5]->def, zeroedDef()));
}

TEST_F(ParamObjects, aReleaseChecksInEveryControlWithAValue) {
  GetParamByCheckout getter(&host.inData, nullptr, false);
  ASSERT_EQ(ReleaseAll(getter), PF_Err_NONE);
  EXPECT_EQ(host.checkins, 114);  // 122 without 8 starts and ends of groups
}

TEST_F(ParamObjects, aFailingCheckinStopsTheWalk) {
  host.checkinErrors[3] = PF_Err_INVALID_INDEX;
  GetParamByCheckout getter(&host.inData, nullptr, false);
  EXPECT_EQ(ReleaseAll(getter), PF_Err_INVALID_INDEX);
  EXPECT_EQ(host.checkins, 3);
}

/// An array as a command gets it: 123 records, all zero.
struct CommandParams {
  CommandParams() : defs(123, zeroedDef()) {
    for (PF_ParamDef& def : defs) pointers.push_back(&def);
    pointers.push_back(nullptr);
  }
  std::vector<PF_ParamDef> defs;
  std::vector<PF_ParamDef*> pointers;
};

TEST_F(ParamObjects, aGreyedLayerIsNotCheckedOutAndGivesNull) {
  CommandParams params;
  params.defs[40].ui_flags = PF_PUI_DISABLED;
  RenderParams record{};
  PF_EffectWorld other{};
  record.effector[0].customMapLayer = &other;
  GetParamByCheckout getter(&host.inData, params.pointers.data(), false);
  ASSERT_EQ(byId[45]->Fetch(&record, getter), PF_Err_NONE);
  EXPECT_EQ(record.effector[0].customMapLayer, nullptr);
  EXPECT_TRUE(host.checkouts.empty());
}

TEST_F(ParamObjects, aLayerThatIsFreeGivesTheImageInsideItsObject) {
  CommandParams params;
  PF_ParamDef layer = zeroedDef();
  layer.u.ld.width = 64;
  host.values[40] = layer;
  RenderParams record{};
  GetParamByCheckout getter(&host.inData, params.pointers.data(), false);
  ASSERT_EQ(byId[45]->Fetch(&record, getter), PF_Err_NONE);
  ASSERT_EQ(record.effector[0].customMapLayer, &byId[45]->def.u.ld);
  EXPECT_EQ(record.effector[0].customMapLayer->width, 64);
}

TEST_F(ParamObjects, aFrameKeepsItsLayerWhenAnotherFetchesTheSameControl) {
  CommandParams params;
  PF_ParamDef layer = zeroedDef();
  layer.u.ld.width = 64;
  host.values[40] = layer;
  RenderParams record{};
  FrameDefinitions definitions;
  GetParamByCheckout getter(&host.inData, params.pointers.data(), false, &definitions);
  ASSERT_EQ(byId[45]->Fetch(&record, getter), PF_Err_NONE);
  EXPECT_EQ(byId[45]->def.u.ld.width, 64) << "the object holds what the host returned last";

  host.values[40].u.ld.width = 99;
  RenderParams otherRecord{};
  FrameDefinitions otherDefinitions;
  GetParamByCheckout otherGetter(&host.inData, params.pointers.data(), false, &otherDefinitions);
  ASSERT_EQ(byId[45]->Fetch(&otherRecord, otherGetter), PF_Err_NONE);
  EXPECT_EQ(byId[45]->def.u.ld.width, 99);
  EXPECT_EQ(record.effector[0].customMapLayer->width, 64);
}

TEST_F(ParamObjects, theDefinitionsOfAFrameBeginAsThoseOfTheControls) {
  const FrameDefinitions definitions;
  EXPECT_TRUE(test::sameBytes(definitions.byId[8], byId[8]->def));
  EXPECT_EQ(definitions.byId[8].flags, PF_ParamFlag_COLLAPSE_TWIRLY | PF_ParamFlag_SUPERVISE);
  EXPECT_TRUE(test::sameBytes(definitions.byId[51], zeroedDef())) << "no control has this id";
}

TEST_F(ParamObjects, everyIdHasItsPlaceAmongTheDefinitionsOfAFrame) {
  for (int32_t id = FrameDefinitions::count; id < paramSlots; ++id) EXPECT_EQ(byId[id], nullptr) << id;
}

TEST_F(ParamObjects, aLayerThatCannotBeCheckedOutIsNull) {
  host.checkoutErrors[16] = PF_Err_OUT_OF_MEMORY;
  RenderParams record{};
  PF_EffectWorld other{};
  record.maskTargetLayer = &other;
  GetParamByCheckout getter(&host.inData, nullptr, false);
  EXPECT_EQ(byId[15]->Fetch(&record, getter), PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(record.maskTargetLayer, nullptr);
}

TEST_F(ParamObjects, deferredLayersAreNullAndCostNoCall) {
  RenderParams record{};
  PF_EffectWorld other{};
  record.maskTargetLayer = &other;
  GetParamByCheckout getter(&host.inData, nullptr, true);
  ASSERT_EQ(FetchAll(&record, getter), PF_Err_NONE);
  EXPECT_EQ(record.maskTargetLayer, nullptr);
  EXPECT_EQ(host.checkouts.size(), 110U);  // 114 with a value, less 4 layers
}

TEST_F(ParamObjects, aLayerIsFetchedIntoItsObjectWithoutARecordToo) {
  PF_ParamDef layer = zeroedDef();
  layer.u.ld.width = 64;
  host.values[16] = layer;
  GetParamByCheckout getter(&host.inData, nullptr, false);
  ASSERT_EQ(byId[15]->Fetch(nullptr, getter), PF_Err_NONE);
  EXPECT_EQ(byId[15]->def.u.ld.width, 64);
}

TEST_F(ParamObjects, theArrayGivesWholeRecordsAndTakesNothingBack) {
  CommandParams params;
  params.defs[3].u.fs_d.value = 12.0;
  params.defs[3].ui_flags = PF_PUI_DISABLED | PF_PUI_CONTROL;
  params.defs[3].uu.change_flags = 77;
  GetParamFromArray getter(params.pointers.data());
  PF_ParamDef def = zeroedDef();
  EXPECT_EQ(getter.Get(3, &def), PF_Err_NONE);
  EXPECT_TRUE(test::sameBytes(def, params.defs[3]));
  EXPECT_EQ(getter.Checkin(&def), PF_Err_NONE);
  EXPECT_FALSE(getter.DeferLayers());
  EXPECT_FALSE(getter.IsEnabled(3));
  EXPECT_TRUE(getter.IsEnabled(4));
  EXPECT_TRUE(host.checkouts.empty());
  EXPECT_EQ(host.checkins, 0);
}

TEST_F(ParamObjects, onlyTheGreyedBitMakesAControlDisabled) {
  CommandParams params;
  params.defs[16].ui_flags = ~PF_PUI_DISABLED;
  GetParamByCheckout withArray(&host.inData, params.pointers.data(), false);
  EXPECT_TRUE(withArray.IsEnabled(16));
  params.defs[16].ui_flags = PF_PUI_DISABLED;
  EXPECT_FALSE(withArray.IsEnabled(16));
  GetParamByCheckout withoutArray(&host.inData, nullptr, false);
  EXPECT_TRUE(withoutArray.IsEnabled(16));
}

// The render engine.

TEST_F(ParamObjects, aHostThatIsNotAfterEffectsIsNoRenderEngine) {
  host.renderEngine = true;
  AEUtil::openGlobalSuites(&host.basic);
  EXPECT_FALSE(IsRenderEngine(&host.inData));
  EXPECT_TRUE(host.suites.empty());
}

TEST_F(ParamObjects, afterEffectsIsAskedWhetherItIsARenderEngine) {
  host.inData.appl_id = kAppIdAfterEffects;
  AEUtil::openGlobalSuites(&host.basic);
  EXPECT_FALSE(IsRenderEngine(&host.inData));
  host.renderEngine = true;
  EXPECT_TRUE(IsRenderEngine(&host.inData));
  // Cached in the global record: asked for once, given back with the record.
  const std::vector<PlainHost::SuiteUse> once = {{true, kPFAppSuite, 6}};
  EXPECT_EQ(host.suites, once);
  AEUtil::closeGlobalSuites();
  EXPECT_EQ(host.held(kPFAppSuite), 0);
}

TEST_F(ParamObjects, aMissingAppSuiteIsThrownAsABareNumber) {
  host.inData.appl_id = kAppIdAfterEffects;
  host.withoutAppSuite = true;
  AEUtil::openGlobalSuites(&host.basic);
  long thrown = 0;
  try {
    IsRenderEngine(&host.inData);
  } catch (long code) {
    thrown = code;
  }
  EXPECT_EQ(thrown, 516);
}

TEST_F(ParamObjects, inARenderEngineEveryControlButTheGroupEndsStartsGreyed) {
  host.inData.appl_id = kAppIdAfterEffects;
  host.renderEngine = true;
  AEUtil::openGlobalSuites(&host.basic);
  DeclareParams(&host.inData);
  for (int32_t entry = 1; entry <= 122; ++entry) {
    const bool end = byIndex[entry]->name[0] == '\0';
    EXPECT_EQ(byIndex[entry]->def.ui_flags, end ? 0 : PF_PUI_DISABLED) << byIndex[entry]->name;
  }
}

}  // namespace
}  // namespace vindrel
