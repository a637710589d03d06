// What single classes do beyond the rows that the effect has: parts of a definition that no row exercises.
#include "effect/params/ParamClasses.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "ae/Constants.h"
#include "effect/params/ParamObjects.h"
#include "tests/params/PlainHost.h"

namespace vindrel {
namespace {

using test::PlainHost;

ControlRow row(const char* name) {
  ControlRow result;
  std::snprintf(result.name.data(), result.name.size(), "%s", name);
  result.target = {0, 8};
  return result;
}

TEST(ParamClasses, aPointDefaultLosesItsFraction) {
  PlainHost host;
  ControlRow place = row("Place");
  place.pointDefault = {50 * 65536 + 40000, -3 * 65536 + 1};
  ParamAddPoint param(place, zeroedDef());
  ASSERT_EQ(param.Add(&host.inData, 7, nullptr), PF_Err_NONE);
  const PF_PointDef& def = host.added.at(0).u.td;
  EXPECT_EQ(def.x_value, 50 * 65536);
  EXPECT_EQ(def.x_dephault, 50 * 65536);
  EXPECT_EQ(def.y_value, -3 * 65536);
  EXPECT_EQ(def.y_dephault, -3 * 65536);
  EXPECT_EQ(def.restrict_bounds, 0);
}

TEST(ParamClasses, theAlphaOfADefaultColorPlaysNoPart) {
  PlainHost host;
  ControlRow tint = row("Tint");
  tint.color = {9, 10, 20, 30};
  ParamAddColor param(tint, zeroedDef());
  ASSERT_EQ(param.Add(&host.inData, 7, nullptr), PF_Err_NONE);
  const PF_ColorDef& def = host.added.at(0).u.cd;
  EXPECT_EQ(def.value.alpha, 255);
  EXPECT_EQ(def.value.red, 10);
  EXPECT_EQ(def.dephault.alpha, 255);
  EXPECT_EQ(def.dephault.blue, 30);
}

TEST(ParamClasses, anAngleDefaultWithAFractionIsKept) {
  PlainHost host;
  ControlRow turn = row("Turn");
  turn.defaultValue = -12.25;
  ParamAddAngle param(turn, zeroedDef());
  ASSERT_EQ(param.Add(&host.inData, 7, nullptr), PF_Err_NONE);
  EXPECT_EQ(host.added.at(0).u.ad.value, -802816);  // -12.25 * 65536
  EXPECT_EQ(host.added.at(0).u.ad.dephault, -802816);
}

TEST(ParamClasses, theEndOfAGroupHasAZeroDefinitionAndNoName) {
  PlainHost host;
  ParamEndTopic param;
  ASSERT_EQ(param.Add(&host.inData, 19, "/nowhere/x.ini"), PF_Err_NONE);
  PF_ParamDef expected = zeroedDef();
  expected.param_type = PF_Param_GROUP_END;
  expected.uu.id = 19;
  EXPECT_TRUE(test::sameBytes(host.added.at(0), expected));
}

TEST(ParamClasses, theNameIsCopiedByTheHostsOwnRoutine) {
  PlainHost host;
  host.utils.ansi.strcpy = [](A_char* to, const A_char* from) {
    to[0] = '>';
    std::snprintf(to + 1, 31, "%s", from);
    return to;
  };
  const ControlRow group = row("Group");
  ParamAddTopic param(group, zeroedDef());
  ASSERT_EQ(param.Add(&host.inData, 18, nullptr), PF_Err_NONE);
  EXPECT_STREQ(host.added.at(0).name, ">Group");
}

TEST(ParamClasses, theTextsOfAWholeSliderAreEmptiedWhateverTheTemplateHolds) {
  PlainHost host;
  PF_ParamDef definition = zeroedDef();
  definition.u.sd.value_str[0] = 'x';
  definition.u.sd.value_desc[0] = 'y';
  const ControlRow count = row("Count");
  ParamAddSlider param(count, definition);
  ASSERT_EQ(param.Add(&host.inData, 7, nullptr), PF_Err_NONE);
  EXPECT_STREQ(host.added.at(0).u.sd.value_str, "");
  EXPECT_STREQ(host.added.at(0).u.sd.value_desc, "");
}

TEST(ParamClasses, aLayerWithoutAValueIsNotFetched) {
  PlainHost host;
  ControlRow layer = row("Layer");
  layer.target = {};
  ParamAddLayer param(layer, zeroedDef());
  GetParamByCheckout getter(&host.inData, nullptr, false);
  EXPECT_EQ(param.Fetch(nullptr, getter), PF_Err_NONE);
  EXPECT_TRUE(host.checkouts.empty());
}

TEST(ParamClasses, theErrorOfTheHostComesBack) {
  PlainHost host;
  host.addErrorAt = 1;
  const ControlRow group = row("Group");
  ParamAddTopic param(group, zeroedDef());
  EXPECT_EQ(param.Add(&host.inData, 18, nullptr), PF_Err_INVALID_CALLBACK);
}

}  // namespace
}  // namespace vindrel
