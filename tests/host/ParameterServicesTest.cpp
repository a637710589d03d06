// The services about parameters with wrong arguments and at wrong moments, the rarer kinds of controls, and what an
// update may change of a control's look.
#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <limits>
#include <string>

#include "HostTest.h"
#include "ae/AppSuites.h"
#include "tests/support/Fixed.h"

namespace {

using scripted::Call;
using scripted::definition;
using standin::ByIndex;
using standin::Control;
using standin::Depth;
using standin::Image;
using standin::LayerValue;
using standin::ParameterValues;
using testing::ElementsAre;
using vindrel::test::fixed;

class ParameterServices : public scripted::HostTest {
 protected:
  ParameterServices() { frame.input = Image(Depth::k8, 4, 4); }

  void start(std::vector<PF_ParamDef> definitions) {
    scripted::declare(effect, std::move(definitions));
    EXPECT_EQ(host.start(), PF_Err_NONE);
  }

  // Work in a command with a frame of its own.
  void inRender(const std::function<void(const Call&)>& work, const ParameterValues& values) {
    during(PF_Cmd_RENDER, work);
    EXPECT_EQ(host.renderClassic(frame, values).error, PF_Err_NONE);
  }

  void during(PF_Cmd command, const std::function<void(const Call&)>& work) {
    effect.on[command] = [=](const Call& call) {
      work(call);
      return PF_Err{PF_Err_NONE};
    };
  }

  // What was checked out of one parameter, and given back at once.
  PF_ParamDef fetched(PF_ParamIndex index, const ParameterValues& values) {
    PF_ParamDef def{};
    inRender(
        [&](const Call& call) {
          EXPECT_EQ(call.checkout(index, &def), PF_Err_NONE);
          PF_ParamDef copy = def;
          EXPECT_EQ(call.in->inter.checkin_param(ref(), &copy), PF_Err_NONE);
        },
        values);
    return def;
  }

  // The complaints so far, which are forgotten then.
  std::vector<std::string> complaints() {
    std::vector<std::string> texts;
    for (const standin::Entry& entry : host.books().complaints()) texts.push_back(entry.text);
    host.books().clear();
    return texts;
  }

  standin::FrameRequest frame;
};

PF_ParamDef withText(PF_ParamDef def, const char* text) {
  if (def.param_type == PF_Param_BUTTON) def.u.button_d.u.namesptr = text;
  if (def.param_type == PF_Param_CHECKBOX) def.u.bd.u.nameptr = text;
  if (def.param_type == PF_Param_POPUP) def.u.pd.u.namesptr = text;
  return def;
}

TEST_F(ParameterServices, theTextsOfButtonsAndBoxesAreKeptAndNoneIsAnEmptyOne) {
  start({withText(definition(PF_Param_BUTTON, "Button", 1), "Press"),
         withText(definition(PF_Param_BUTTON, "Bare", 2), nullptr),
         withText(definition(PF_Param_CHECKBOX, "Box", 3), nullptr)});
  EXPECT_EQ(host.control("Button")->label, "Press");
  EXPECT_STREQ(host.control("Button")->definition.u.button_d.u.namesptr, "Press");
  EXPECT_EQ(host.control("Bare")->label, "");
  EXPECT_STREQ(host.control("Bare")->definition.u.button_d.u.namesptr, "");
  EXPECT_EQ(host.control("Box")->label, "");
  EXPECT_EQ(report(), "");
}

TEST_F(ParameterServices, aPopupWithoutItemsAndOneWithACountBelowNoneAreComplaints) {
  PF_ParamDef negative = withText(definition(PF_Param_POPUP, "Negative", 2), "A|B");
  negative.u.pd.num_choices = -3;
  start({withText(definition(PF_Param_POPUP, "Nothing", 1), nullptr), negative});
  EXPECT_THAT(complaints(), ElementsAre("parameter 1 \"Nothing\" says that it has 0 items and names 1",
                                        "parameter 2 \"Negative\" says that it has -3 items and names 2"));
}

TEST_F(ParameterServices, idsOutsideTheirRangeAreComplaints) {
  start({definition(PF_Param_SLIDER, "Least", 1), definition(PF_Param_SLIDER, "Most", 9999),
         definition(PF_Param_SLIDER, "None", 0), definition(PF_Param_SLIDER, "Beyond", 10000)});
  EXPECT_THAT(complaints(),
              ElementsAre("parameter 3 \"None\" has the id 0", "parameter 4 \"Beyond\" has the id 10000"));
}

TEST_F(ParameterServices, groupsThatDontMatchAreComplaints) {
  start({definition(PF_Param_GROUP_START, "A", 1), definition(PF_Param_GROUP_END, "", 2),
         definition(PF_Param_GROUP_END, "", 3), definition(PF_Param_GROUP_START, "B", 4),
         definition(PF_Param_GROUP_START, "C", 5)});
  EXPECT_THAT(complaints(), ElementsAre("parameter 3 ends a group that was never begun", "2 groups are never ended"));
}

TEST_F(ParameterServices, aKindWithoutANameIsCalledByItsNumber) {
  EXPECT_EQ(standin::kindName(99), "kind 99");
  EXPECT_EQ(standin::kindName(PF_Param_BUTTON), "button");
}

TEST_F(ParameterServices, aParameterIsAddedAtTheEndAndFromARecord) {
  std::vector<PF_Err> answers;
  during(PF_Cmd_PARAMS_SETUP, [&](const Call& call) {
    PF_ParamDef def = definition(PF_Param_SLIDER, "A", 1);
    answers = {call.in->inter.add_param(ref(), -1, nullptr), call.in->inter.add_param(ref(), 0, &def),
               call.in->inter.add_param(ref(), -1, &def)};
    call.out->num_params = 2;
  });
  EXPECT_EQ(host.start(), PF_Err_NONE);
  EXPECT_THAT(answers, ElementsAre(PF_Err_BAD_CALLBACK_PARAM, PF_Err_BAD_CALLBACK_PARAM, PF_Err_NONE));
  EXPECT_THAT(complaints(), ElementsAre("add_param at place -1", "add_param at place 0"));
  EXPECT_EQ(host.controls().size(), 1U);
}

TEST_F(ParameterServices, nothingIsCheckedOutWhereNoInstanceIs) {
  start({definition(PF_Param_SLIDER, "A", 1)});
  for (const PF_Cmd command : {PF_Cmd_ABOUT, PF_Cmd_GLOBAL_SETUP, PF_Cmd_GLOBAL_SETDOWN, PF_Cmd_PARAMS_SETUP}) {
    PF_ParamDef def{};
    PF_Err answer = 0;
    during(command, [&](const Call& call) { answer = call.checkout(1, &def); });
    host.call(command);
    EXPECT_EQ(answer, PF_Err_BAD_CALLBACK_PARAM) << command;
    EXPECT_THAT(complaints(), ElementsAre("checkout_param where no instance is")) << command;
  }
}

TEST_F(ParameterServices, aCheckoutNeedsAPlaceAndAnIndexOfTheList) {
  start({definition(PF_Param_SLIDER, "A", 1)});
  inRender(
      [&](const Call& call) {
        PF_ParamDef def{};
        EXPECT_EQ(call.checkout(1, nullptr), PF_Err_INVALID_INDEX);
        EXPECT_EQ(call.checkout(-1, &def), PF_Err_INVALID_INDEX);
        EXPECT_EQ(call.checkout(2, &def), PF_Err_INVALID_INDEX);
        EXPECT_EQ(call.in->inter.checkin_param(ref(), nullptr), PF_Err_NONE);
      },
      host.defaults());
  EXPECT_THAT(complaints(), ElementsAre("checkout_param of index 1", "checkout_param of index -1",
                                        "checkout_param of index 2", "checkin_param of no record"));
}

TEST_F(ParameterServices, defaultsHoldForACommandThatIsGivenNoValues) {
  PF_ParamDef slider = definition(PF_Param_SLIDER, "A", 1);
  slider.u.sd.dephault = 9;
  PF_ParamDef layer = definition(PF_Param_LAYER, "Layer", 2);
  layer.u.ld.dephault = PF_LayerDefault_MYSELF;
  start({slider, layer});
  EXPECT_EQ(fetched(1, ParameterValues()).u.sd.value, 9);
  EXPECT_EQ(fetched(2, ParameterValues()).u.ld.data, nullptr) << "no value, no picture";
  inRender([](const Call& call) { EXPECT_EQ(call.params[1]->u.sd.value, 9); }, ParameterValues());
}

TEST_F(ParameterServices, withoutAFrameALayerHasNoPicture) {
  PF_ParamDef layer = definition(PF_Param_LAYER, "Layer", 1);
  layer.u.ld.dephault = PF_LayerDefault_MYSELF;
  start({layer});
  host.valueAt = [](int32_t, A_long, A_u_long) { return ParameterValues::Value(LayerValue::itself()); };
  PF_ParamDef def{};
  during(PF_Cmd_EVENT, [&](const Call& call) {
    EXPECT_EQ(call.checkout(0, &def), PF_Err_NONE);
    EXPECT_EQ(def.u.ld.data, nullptr);
    EXPECT_EQ(call.in->inter.checkin_param(ref(), &def), PF_Err_NONE);
    EXPECT_EQ(call.checkout(1, &def), PF_Err_NONE);
    EXPECT_EQ(def.u.ld.data, nullptr);
    EXPECT_EQ(call.in->inter.checkin_param(ref(), &def), PF_Err_NONE);
  });
  EXPECT_EQ(host.call(PF_Cmd_EVENT), PF_Err_NONE);
  EXPECT_EQ(report(), "");
}

TEST_F(ParameterServices, theLayerItselfAndATimeWithoutAScaleAreTheFramesOwn) {
  start({definition(PF_Param_SLIDER, "A", 1)});
  host.valueAt = [](int32_t, A_long, A_u_long) {
    ADD_FAILURE() << "asked";
    return ParameterValues::Value(int32_t{5});
  };
  inRender(
      [&](const Call& call) {
        PF_ParamDef def{};
        EXPECT_EQ(call.in->inter.checkout_param(ref(), 0, 77, 1, 30, &def), PF_Err_NONE);
        EXPECT_EQ(def.u.ld.width, 4);
        EXPECT_EQ(call.in->inter.checkin_param(ref(), &def), PF_Err_NONE);
        EXPECT_EQ(call.in->inter.checkout_param(ref(), 1, 77, 1, 0, &def), PF_Err_NONE);
        EXPECT_EQ(def.u.sd.value, 0);
        EXPECT_EQ(call.in->inter.checkin_param(ref(), &def), PF_Err_NONE);
      },
      host.defaults());
  EXPECT_EQ(report(), "");
}

TEST_F(ParameterServices, fixedPointNumbersAreRoundedAndHeldToThirtyTwoBits) {
  PF_ParamDef slider = definition(PF_Param_FIX_SLIDER, "Fixed", 1);
  slider.u.fd.dephault = fixed(1.5);
  start({slider, definition(PF_Param_ANGLE, "Angle", 2)});
  ParameterValues values = host.defaults();
  EXPECT_EQ(values.number("Fixed"), 1.5);
  EXPECT_EQ(fetched(1, values).u.fd.value, fixed(1.5));
  values.setNumber("Fixed", -0.25 - 0.25 / 65536.0);
  EXPECT_EQ(fetched(1, values).u.fd.value, fixed(-0.25));
  values.setAngle("Angle", 1e9);
  EXPECT_EQ(fetched(2, values).u.ad.value, std::numeric_limits<PF_Fixed>::max());
  values.setAngle("Angle", -1e9);
  EXPECT_EQ(fetched(2, values).u.ad.value, std::numeric_limits<PF_Fixed>::min());
  values.setAngle("Angle", std::nan(""));
  EXPECT_EQ(fetched(2, values).u.ad.value, 0);
}

TEST_F(ParameterServices, aScaleWithoutADenominatorLeavesAPointWhereItIs) {
  start({definition(PF_Param_POINT, "Point", 1)});
  frame.layerWidth = 4;
  frame.layerHeight = 4;
  frame.downsampleX = {1, 0};
  ParameterValues values = host.defaults();
  values.setPoint("Point", 3.0, 1.0);
  EXPECT_EQ(fetched(1, values).u.td.x_value, fixed(3.0));
}

TEST_F(ParameterServices, markedChangesOfEveryKindAreTakenOver) {
  start({definition(PF_Param_SLIDER, "Whole", 1), definition(PF_Param_FIX_SLIDER, "Fixed", 2),
         definition(PF_Param_CHECKBOX, "Check", 3), definition(PF_Param_COLOR, "Color", 4),
         withText(definition(PF_Param_POPUP, "Popup", 5), ""), definition(PF_Param_POINT, "Point", 6),
         definition(PF_Param_LAYER, "Layer", 7), definition(PF_Param_GROUP_START, "Group", 8),
         definition(PF_Param_GROUP_END, "", 9)});
  during(PF_Cmd_USER_CHANGED_PARAM, [](const Call& call) {
    for (int i = 1; i <= 8; ++i) call.params[i]->uu.change_flags |= PF_ChangeFlag_CHANGED_VALUE;
    call.params[1]->u.sd.value = -7;
    call.params[2]->u.fd.value = fixed(-0.5);
    call.params[3]->u.bd.value = 1;
    call.params[4]->u.cd.value = {9, 8, 7, 6};
    call.params[5]->u.pd.value = 3;
    call.params[6]->u.td.x_value = fixed(2.5);
    call.params[6]->u.td.y_value = fixed(-1.0);
  });
  frame.downsampleX = {1, 2};
  frame.downsampleY = {1, 4};
  ParameterValues values = host.defaults();
  values.setLayer("Layer", LayerValue::itself());
  EXPECT_THAT(host.userChangedParam("Whole", values, frame).indices, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
  EXPECT_EQ(values.number("Whole"), -7.0);
  EXPECT_EQ(values.number("Fixed"), -0.5);
  EXPECT_TRUE(values.checkbox("Check"));
  const PF_Pixel color = values.color("Color");
  EXPECT_TRUE(color.alpha == 9 && color.red == 8 && color.green == 7 && color.blue == 6);
  EXPECT_EQ(values.popup("Popup"), 3);
  EXPECT_EQ(values.point("Point"), (standin::PointValue{5.0, -4.0, false})) << "at full resolution";
  EXPECT_EQ(values.layer("Layer"), LayerValue::itself()) << "layers are never taken over";
}

TEST_F(ParameterServices, aChangeOfAControlThatIsNoneThrowsItsName) {
  start({definition(PF_Param_SLIDER, "A", 1)});
  ParameterValues values = host.defaults();
  try {
    host.userChangedParam("B", values);
    FAIL() << "there is no such control";
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "there is no control \"B\"");
  }
}

TEST_F(ParameterServices, valuesAreComparedInAllTheirParts) {
  const standin::PointValue point{1.0, 2.0, false};
  EXPECT_EQ(point, (standin::PointValue{1.0, 2.0, false}));
  EXPECT_NE(point, (standin::PointValue{3.0, 2.0, false}));
  EXPECT_NE(point, (standin::PointValue{1.0, 3.0, false}));
  EXPECT_NE(point, (standin::PointValue{1.0, 2.0, true}));
  const LayerValue picture = LayerValue::of(Image(Depth::k8, 1, 1));
  EXPECT_EQ(picture, LayerValue(picture));
  EXPECT_NE(picture, LayerValue::of(Image(Depth::k8, 1, 1))) << "another picture, if alike";
  EXPECT_NE(LayerValue::none(), LayerValue::itself());
}

/// A slider of whole numbers, one of real ones and a check box, whose look an update changes.
class Looks : public ParameterServices {
 protected:
  Looks() {
    start({definition(PF_Param_SLIDER, "Whole", 1), definition(PF_Param_FLOAT_SLIDER, "Float", 2),
           definition(PF_Param_CHECKBOX, "Box", 3)});
  }
  const PF_ParamUtilsSuite1* utils = suite<PF_ParamUtilsSuite1>(kPFParamUtilsSuite, 2);
};

TEST_F(Looks, ofSlidersAreNamesRangesAndFlagsButNeverValues) {
  during(PF_Cmd_UPDATE_PARAMS_UI, [&](const Call& call) {
    PF_ParamDef whole = *call.params[1];
    std::strcpy(whole.name, "Renamed");
    whole.ui_width = 20;
    whole.ui_height = 30;
    whole.ui_flags = PF_PUI_ECW_SEPARATOR | PF_PUI_TOPIC;
    whole.flags = PF_ParamFlag_COLLAPSE_TWIRLY | PF_ParamFlag_SUPERVISE;
    whole.u.sd.slider_min = -5;
    whole.u.sd.slider_max = 15;
    whole.u.sd.valid_max = 99;
    whole.u.sd.value = 7;
    EXPECT_EQ(utils->PF_UpdateParamUI(ref(), 1, &whole), PF_Err_NONE);
    PF_ParamDef real = *call.params[2];
    real.u.fs_d.slider_min = -0.5F;
    real.u.fs_d.slider_max = 1.5F;
    real.u.fs_d.precision = 3;
    real.u.fs_d.display_flags = PF_ValueDisplayFlag_PERCENT;
    real.u.fs_d.value = 7.0;
    EXPECT_EQ(utils->PF_UpdateParamUI(ref(), 2, &real), PF_Err_NONE);
  });
  EXPECT_EQ(host.updateParamsUi(host.defaults()), PF_Err_NONE);
  EXPECT_EQ(report(), "");
  const Control& whole = *host.control(ByIndex{1});
  EXPECT_EQ(whole.name, "Renamed");
  EXPECT_STREQ(whole.definition.name, "Renamed");
  EXPECT_EQ(whole.definition.ui_width, 20);
  EXPECT_EQ(whole.definition.ui_height, 30);
  EXPECT_EQ(whole.uiFlags, PF_PUI_ECW_SEPARATOR) << "only what may be changed";
  EXPECT_EQ(whole.definition.flags, PF_ParamFlag_COLLAPSE_TWIRLY);
  EXPECT_EQ(whole.definition.u.sd.slider_min, -5);
  EXPECT_EQ(whole.definition.u.sd.slider_max, 15);
  EXPECT_EQ(whole.definition.u.sd.valid_max, 0);
  EXPECT_EQ(host.defaults().number(ByIndex{1}), 0.0);
  const PF_FloatSliderDef& real = host.control("Float")->definition.u.fs_d;
  EXPECT_EQ(real.slider_min, -0.5F);
  EXPECT_EQ(real.slider_max, 1.5F);
  EXPECT_EQ(real.precision, 3);
  EXPECT_EQ(real.display_flags, PF_ValueDisplayFlag_PERCENT);
  EXPECT_EQ(real.value, 0.0);
}

TEST_F(Looks, areChangedForTheUserOnly) {
  PF_ParamDef box = definition(PF_Param_CHECKBOX, "Box", 3);
  box.ui_flags = PF_PUI_DISABLED;
  const auto update = [&](const Call&) { EXPECT_EQ(utils->PF_UpdateParamUI(ref(), 3, &box), PF_Err_NONE); };
  ParameterValues values = host.defaults();
  during(PF_Cmd_USER_CHANGED_PARAM, update);
  EXPECT_EQ(host.userChangedParam("Box", values).error, PF_Err_NONE);
  during(PF_Cmd_EVENT, update);
  EXPECT_EQ(host.call(PF_Cmd_EVENT), PF_Err_NONE);
  EXPECT_THAT(complaints(), ElementsAre());
  EXPECT_EQ(host.log().calls.back().arguments, "index 3, grey");
  inRender(update, values);
  EXPECT_THAT(complaints(), ElementsAre("PF_UpdateParamUI while nobody sees the controls"));
  EXPECT_TRUE(host.control("Box")->greyed());
}

TEST_F(Looks, areNotChangedWithoutARecordOrForNoControl) {
  during(PF_Cmd_UPDATE_PARAMS_UI, [&](const Call& call) {
    PF_ParamDef box = *call.params[3];
    EXPECT_EQ(utils->PF_UpdateParamUI(ref(), 3, nullptr), PF_Err_INVALID_INDEX);
    EXPECT_EQ(utils->PF_UpdateParamUI(ref(), -1, &box), PF_Err_INVALID_INDEX);
    EXPECT_EQ(utils->PF_UpdateParamUI(ref(), 4, &box), PF_Err_INVALID_INDEX);
    EXPECT_EQ(utils->PF_UpdateParamUI(ref(), 3, call.params[3]), PF_Err_NONE);
  });
  EXPECT_EQ(host.updateParamsUi(host.defaults()), PF_Err_NONE);
  EXPECT_THAT(complaints(),
              ElementsAre("PF_UpdateParamUI of index 3", "PF_UpdateParamUI of index -1", "PF_UpdateParamUI of index 4",
                          "PF_UpdateParamUI with the command's own record, not a copy"));
}

/// States of the layer, of a slider, of one that is left out of them, and of a layer parameter.
class States : public ParameterServices {
 protected:
  States() {
    PF_ParamDef left = definition(PF_Param_SLIDER, "Left", 2);
    left.flags = PF_ParamFlag_EXCLUDE_FROM_HAVE_INPUTS_CHANGED;
    start({definition(PF_Param_SLIDER, "Size", 1), left, definition(PF_Param_LAYER, "Layer", 3)});
  }

  // The state at an index in a command that has these values and the frame before.
  PF_State taken(PF_ParamIndex index, const ParameterValues& values) {
    PF_State state{};
    during(PF_Cmd_UPDATE_PARAMS_UI, [&](const Call&) {
      EXPECT_EQ(utils->PF_GetCurrentState(ref(), index, nullptr, nullptr, &state), PF_Err_NONE);
    });
    EXPECT_EQ(host.updateParamsUi(values), PF_Err_NONE);
    return state;
  }

  bool same(PF_ParamIndex index, const ParameterValues& one, const ParameterValues& other) {
    const PF_State before = taken(index, one);
    const PF_State after = taken(index, other);
    A_Boolean answer = 9;
    EXPECT_EQ(utils->PF_AreStatesIdentical(ref(), &before, &after, &answer), PF_Err_NONE);
    return answer != 0;
  }

  const PF_ParamUtilsSuite3* utils = suite<PF_ParamUtilsSuite3>(kPFParamUtilsSuite, 3);
};

TEST_F(States, changeWithTheParametersThatTheyAreOf) {
  const ParameterValues defaults = host.defaults();
  inRender([](const Call&) {}, defaults);
  ParameterValues size = defaults;
  size.setNumber("Size", 1);
  ParameterValues left = defaults;
  left.setNumber("Left", 1);
  ParameterValues layer = defaults;
  layer.setLayer("Layer", LayerValue::itself());
  struct Expected {
    PF_ParamIndex index;
    bool size, left, layer;  // whether the state stays the same when this one changes
  };
  for (const Expected& e :
       {Expected{0, true, true, true}, Expected{1, false, true, true}, Expected{2, true, false, true},
        Expected{3, true, true, false}, Expected{PF_ParamIndex_CHECK_ALL, false, false, false},
        Expected{PF_ParamIndex_CHECK_ALL_EXCEPT_LAYER_PARAMS, false, false, true},
        Expected{PF_ParamIndex_CHECK_ALL_HONOR_EXCLUDE, false, true, false}}) {
    EXPECT_TRUE(same(e.index, defaults, defaults)) << e.index;
    EXPECT_EQ(same(e.index, defaults, size), e.size) << e.index;
    EXPECT_EQ(same(e.index, defaults, left), e.left) << e.index;
    EXPECT_EQ(same(e.index, defaults, layer), e.layer) << e.index;
  }
}

TEST_F(States, ofALayerParameterChangeWithItsPicture) {
  ParameterValues one = host.defaults();
  one.setLayer("Layer", LayerValue::of(Image(Depth::k8, 2, 2)));
  ParameterValues other = host.defaults();
  other.setLayer("Layer", LayerValue::of(Image(Depth::k8, 2, 2)));
  EXPECT_TRUE(same(3, one, one));
  EXPECT_FALSE(same(3, one, other));
}

TEST_F(States, ofTheLayerItselfChangeWithTheFrame) {
  const ParameterValues defaults = host.defaults();
  inRender([](const Call&) {}, defaults);
  const PF_State before = taken(0, defaults);
  inRender([](const Call&) {}, defaults);
  const PF_State after = taken(0, defaults);
  A_Boolean answer = 9;
  EXPECT_EQ(utils->PF_AreStatesIdentical(ref(), &before, &after, &answer), PF_Err_NONE);
  EXPECT_EQ(int{answer}, 0);
}

TEST_F(States, ofParametersWithoutValuesAreAllTheSame) {
  EXPECT_TRUE(same(1, ParameterValues(), ParameterValues()));
}

TEST_F(States, knowNoKeyframes) {
  PF_Boolean found = 9;
  PF_KeyIndex key = 9;
  EXPECT_EQ(utils->PF_FindKeyframeTime(ref(), 1, 0, 30, 0, &found, nullptr, nullptr, nullptr), PF_Err_NONE);
  EXPECT_EQ(int{found}, 0);
  EXPECT_EQ(utils->PF_FindKeyframeTime(ref(), 1, 0, 30, 0, &found, &key, nullptr, nullptr), PF_Err_NONE);
  EXPECT_EQ(key, PF_KeyIndex_NONE);
  EXPECT_EQ(utils->PF_CheckoutKeyframe(ref(), 1, 0, nullptr, nullptr, nullptr), PF_Err_INVALID_INDEX);
  EXPECT_EQ(utils->PF_KeyIndexToTime(ref(), 1, 0, nullptr, nullptr), PF_Err_INVALID_INDEX);
  EXPECT_EQ(report(), "");
}

/// Pictures of a layer parameter as a frame of 8 bits gets them.
class LayerPictures : public ParameterServices {
 protected:
  LayerPictures() { start({definition(PF_Param_LAYER, "Layer", 1)}); }

  // Width, height and depth flag of what is handed out; -1, -1 for none.
  std::array<A_long, 3> delivered(LayerValue value) {
    ParameterValues values = host.defaults();
    values.setLayer("Layer", std::move(value));
    const PF_LayerDef layer = fetched(1, values).u.ld;
    if (layer.data == nullptr) return {-1, -1, 0};
    return {layer.width, layer.height, layer.world_flags & PF_WorldFlag_DEEP};
  }
};

TEST_F(LayerPictures, comeAtTheFramesDepthAndSize) {
  EXPECT_THAT(delivered(LayerValue::of(Image(Depth::k8, 8, 6))), ElementsAre(8, 6, 0));
  EXPECT_THAT(delivered(LayerValue::of(Image(Depth::k16, 8, 6))), ElementsAre(8, 6, 0)) << "another depth alone";
  frame.downsampleY = {1, 2};
  EXPECT_THAT(delivered(LayerValue::of(Image(Depth::k8, 8, 6))), ElementsAre(8, 3, 0)) << "another height alone";
  frame.downsampleX = {1, 4};
  EXPECT_THAT(delivered(LayerValue::of(Image(Depth::k32, 8, 6))), ElementsAre(2, 3, 0));
  frame.input = Image(Depth::k16, 4, 4);
  EXPECT_THAT(delivered(LayerValue::of(Image(Depth::k8, 8, 6))), ElementsAre(2, 3, PF_WorldFlag_DEEP));
}

TEST_F(LayerPictures, areNoneWhereTheValueHasNone) {
  EXPECT_THAT(delivered(LayerValue::none()), ElementsAre(-1, -1, 0));
  EXPECT_THAT(delivered({LayerValue::Source::kPicture, nullptr}), ElementsAre(-1, -1, 0));
}

TEST_F(ParameterServices, aPointMayBeSetInPercentOfTheLayer) {
  start({definition(PF_Param_POINT, "Point", 1)});
  ParameterValues values = host.defaults();
  values.setPointPercent("Point", 25.0, -50.0);
  const PF_PointDef point = fetched(1, values).u.td;
  EXPECT_EQ(point.x_value, fixed(1.0));  // of four pixels
  EXPECT_EQ(point.y_value, fixed(-2.0));
}

}  // namespace
