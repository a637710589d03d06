#include <gtest/gtest.h>

#include "ScriptedEffect.h"

namespace {

using scripted::Call;
using scripted::definition;
using scripted::joined;
using standin::ById;
using standin::ByIndex;
using standin::Control;
using standin::Depth;
using standin::FrameRequest;
using standin::Image;
using standin::LayerValue;
using standin::Matter;
using standin::ParameterValues;

PF_ParamDef popup(const char* name, A_long id, const char* items, A_short count, A_short dephault) {
  PF_ParamDef def = definition(PF_Param_POPUP, name, id);
  def.u.pd.u.namesptr = items;
  def.u.pd.num_choices = count;
  def.u.pd.dephault = dephault;
  return def;
}

// One of each kind: index 1 to 9, ids 11 to 19.
std::vector<PF_ParamDef> oneOfEach() {
  PF_ParamDef size = definition(PF_Param_FLOAT_SLIDER, "Size", 11);
  size.u.fs_d.dephault = 12.5F;
  size.flags = PF_ParamFlag_SUPERVISE;
  PF_ParamDef count = definition(PF_Param_SLIDER, "Count", 12);
  count.u.sd.dephault = 7;
  PF_ParamDef turn = definition(PF_Param_ANGLE, "Turn", 13);
  turn.u.ad.dephault = 45 * 65536;
  PF_ParamDef check = definition(PF_Param_CHECKBOX, "Check", 14);
  check.u.bd.dephault = 1;
  check.u.bd.u.nameptr = "beside";
  PF_ParamDef color = definition(PF_Param_COLOR, "Color", 15);
  color.u.cd.dephault = {255, 1, 2, 3};
  PF_ParamDef point = definition(PF_Param_POINT, "Point", 16);
  point.u.td.x_dephault = 50 << 16;
  point.u.td.y_dephault = 25 << 16;
  PF_ParamDef layer = definition(PF_Param_LAYER, "Layer", 18);
  layer.u.ld.dephault = PF_LayerDefault_NONE;
  PF_ParamDef own = definition(PF_Param_LAYER, "Own", 19);
  own.u.ld.dephault = PF_LayerDefault_MYSELF;
  return {size, count, turn, check, color, point, popup("Kind", 17, "One|Two|(-|Four", 4, 2), layer, own};
}

class Parameters : public testing::Test {
 protected:
  Parameters() : host(scripted::Effect::entry) {
    scripted::declare(effect, oneOfEach());
    EXPECT_EQ(host.start(), PF_Err_NONE);
  }
  // Checks out one parameter while a frame is rendered.
  PF_ParamDef fetched(PF_ParamIndex index, const ParameterValues& values, const FrameRequest& frame) {
    PF_ParamDef def{};
    effect.on[PF_Cmd_RENDER] = [&](const Call& call) {
      PF_Err err = call.checkout(index, &def);
      PF_ParamDef copy = def;
      if (err == PF_Err_NONE) err = call.in->inter.checkin_param(call.in->effect_ref, &copy);
      return err;
    };
    EXPECT_EQ(host.renderClassic(frame, values).error, PF_Err_NONE);
    return def;
  }
  static FrameRequest frameOf(int32_t width, int32_t height) {
    FrameRequest frame;
    frame.input = Image(Depth::k8, width, height);
    return frame;
  }
  std::string report() { return joined(host.books().report()); }
  scripted::Effect effect;
  standin::StandInHost host;
};

TEST_F(Parameters, controlsComeAsTheEffectDeclaredThem) {
  ASSERT_EQ(host.controls().size(), 9u);
  EXPECT_EQ(host.numParams(), 10);
  const Control& kind = *host.control("Kind");
  EXPECT_EQ(kind.index, 7);
  EXPECT_EQ(kind.id, 17);
  EXPECT_EQ(kind.choices, (std::vector<std::string>{"One", "Two", "(-", "Four"}));
  EXPECT_STREQ(kind.definition.u.pd.u.namesptr, "One|Two|(-|Four");
  EXPECT_EQ(host.control(ById{14})->label, "beside");
  EXPECT_EQ(host.control(ByIndex{1})->definition.flags, PF_ParamFlag_SUPERVISE);
  EXPECT_EQ(host.control("No such"), nullptr);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Parameters, theTextOfAPopupIsCopiedAtOnce) {
  char items[] = "A|B";
  scripted::declare(effect, {popup("Late", 1, items, 2, 1)});
  host.paramsSetup();
  items[0] = '!';
  EXPECT_EQ(host.controls()[0].choices[0], "A");
  EXPECT_STREQ(host.controls()[0].definition.u.pd.u.namesptr, "A|B");
}

TEST_F(Parameters, valuesStartWithTheDefaults) {
  const ParameterValues values = host.defaults();
  EXPECT_EQ(values.number("Size"), 12.5);
  EXPECT_EQ(values.number("Count"), 7.0);
  EXPECT_EQ(values.angle("Turn"), 45.0);
  EXPECT_TRUE(values.checkbox("Check"));
  EXPECT_EQ(values.color("Color").blue, 3);
  EXPECT_EQ(values.point("Point"), (standin::PointValue{50.0, 25.0, true}));
  EXPECT_EQ(values.popup("Kind"), 2);
  EXPECT_EQ(values.layer("Layer"), LayerValue::none());
  EXPECT_EQ(values.layer("Own"), LayerValue::itself());
}

TEST_F(Parameters, aValueOfTheWrongKindOrForNoControlThrows) {
  ParameterValues values = host.defaults();
  EXPECT_THROW(values.setNumber("Kind", 1.0), std::invalid_argument);
  EXPECT_THROW(values.setPopup(ById{11}, 1), std::invalid_argument);
  EXPECT_THROW(values.setPopup("Nobody", 1), std::out_of_range);
}

TEST_F(Parameters, valuesReachTheEffectInItsUnits) {
  ParameterValues values = host.defaults();
  values.setNumber("Size", 0.1);
  values.setNumber("Count", -3);
  values.setAngle("Turn", -400.5);
  values.setCheckbox("Check", false);
  values.setColor("Color", {9, 8, 7, 6});
  values.setPopup("Kind", 4);
  const FrameRequest frame = frameOf(10, 10);
  EXPECT_EQ(fetched(1, values, frame).u.fs_d.value, 0.1);
  EXPECT_EQ(fetched(2, values, frame).u.sd.value, -3);
  EXPECT_EQ(fetched(3, values, frame).u.ad.value, -400 * 65536 - 32768);
  EXPECT_EQ(fetched(4, values, frame).u.bd.value, 0);
  EXPECT_EQ(fetched(5, values, frame).u.cd.value.green, 7);
  EXPECT_EQ(fetched(7, values, frame).u.pd.value, 4);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Parameters, aPointIsScaledByTheDownSamplingAndASliderIsNot) {
  ParameterValues values = host.defaults();
  FrameRequest frame = frameOf(100, 50);
  frame.layerWidth = 400;
  frame.layerHeight = 100;
  frame.downsampleX = {1, 4};
  frame.downsampleY = {1, 2};
  // Default: half of 400 across, a quarter of 100 down; at a quarter and a half resolution.
  EXPECT_EQ(fetched(6, values, frame).u.td.x_value, 50 << 16);
  EXPECT_EQ(fetched(6, values, frame).u.td.y_value, (12 << 16) + 32768);
  values.setPoint("Point", 10.0, -1.0);
  EXPECT_EQ(fetched(6, values, frame).u.td.x_value, (2 << 16) + 32768);
  EXPECT_EQ(fetched(6, values, frame).u.td.y_value, -32768);
  EXPECT_EQ(fetched(1, values, frame).u.fs_d.value, 12.5);
}

TEST_F(Parameters, aLayerSetToNoneIsSuccessAndAllZero) {
  const PF_ParamDef def = fetched(8, host.defaults(), frameOf(4, 4));
  EXPECT_EQ(def.u.ld.data, nullptr);
  EXPECT_EQ(def.u.ld.width, 0);
}

TEST_F(Parameters, aLayerSetToItselfIsTheInput) {
  const FrameRequest frame = frameOf(6, 4);
  const PF_ParamDef def = fetched(9, host.defaults(), frame);
  EXPECT_EQ(def.u.ld.width, 6);
  EXPECT_EQ(def.u.ld.height, 4);
  EXPECT_EQ(fetched(0, host.defaults(), frame).u.ld.width, 6);
}

TEST_F(Parameters, aPictureComesAtTheFramesResolutionAndDepth) {
  Image picture(Depth::k8, 8, 4);
  PF_EffectWorld whole = picture.view();
  for (int32_t x = 0; x < 8; ++x) {
    for (int32_t y = 0; y < 4; ++y) picture.at<PF_Pixel>(x, y) = {255, 255, 0, 0};
  }
  (void)whole;
  ParameterValues values = host.defaults();
  values.setLayer("Layer", LayerValue::of(picture));
  FrameRequest frame;
  frame.input = Image(Depth::k16, 10, 10);
  frame.downsampleX = {1, 2};
  frame.downsampleY = {1, 2};
  A_u_short red = 0;
  A_long width = 0;
  effect.on[PF_Cmd_RENDER] = [&](const Call& call) {
    PF_ParamDef def{};
    call.checkout(8, &def);
    width = def.u.ld.width;
    red = reinterpret_cast<const PF_Pixel16*>(def.u.ld.data)->red;
    return call.in->inter.checkin_param(call.in->effect_ref, &def);
  };
  EXPECT_EQ(host.renderClassic(frame, values).error, PF_Err_NONE);
  EXPECT_EQ(width, 4);
  EXPECT_EQ(red, 32768);
}

TEST_F(Parameters, aParameterThatIsNotCheckedInIsReportedByName) {
  effect.on[PF_Cmd_RENDER] = [](const Call& call) {
    PF_ParamDef def{};
    return call.checkout(2, &def);
  };
  host.renderClassic(frameOf(4, 4), host.defaults());
  ASSERT_EQ(host.books().report().size(), 1u);
  EXPECT_EQ(host.books().report()[0], "parameter 1 (index 2, \"Count\"), lent in PF_Cmd_RENDER, never checked in");
}

TEST_F(Parameters, aCheckinWithoutACheckoutIsAComplaint) {
  effect.on[PF_Cmd_RENDER] = [](const Call& call) {
    PF_ParamDef def{};
    return call.in->inter.checkin_param(call.in->effect_ref, &def);
  };
  host.renderClassic(frameOf(4, 4), host.defaults());
  EXPECT_EQ(host.books().complaintCount(Matter::kStrayCheckin), 1) << report();
}

TEST_F(Parameters, aSecondCheckinOfOneCheckoutIsAComplaint) {
  effect.on[PF_Cmd_RENDER] = [](const Call& call) {
    PF_ParamDef def{};
    call.checkout(2, &def);
    call.in->inter.checkin_param(call.in->effect_ref, &def);
    return call.in->inter.checkin_param(call.in->effect_ref, &def);
  };
  host.renderClassic(frameOf(4, 4), host.defaults());
  EXPECT_EQ(host.books().complaintCount(Matter::kStrayCheckin), 1) << report();
}

TEST_F(Parameters, aRecordWhoseDebtWasWrittenOffIsForgotten) {
  PF_ParamDef first{};
  effect.on[PF_Cmd_RENDER] = [&](const Call& call) { return call.checkout(1, &first); };
  EXPECT_EQ(host.renderClassic(frameOf(4, 4), host.defaults()).error, PF_Err_NONE);
  host.books().clear();
  effect.on[PF_Cmd_RENDER] = [&](const Call& call) {
    PF_ParamDef second{};
    EXPECT_EQ(call.checkout(2, &second), PF_Err_NONE);
    call.in->inter.checkin_param(call.in->effect_ref, &first);
    return call.in->inter.checkin_param(call.in->effect_ref, &second);
  };
  EXPECT_EQ(host.renderClassic(frameOf(4, 4), host.defaults()).error, PF_Err_NONE);
  EXPECT_EQ(host.books().complaintCount(Matter::kStrayCheckin), 1) << report();
}

class ValuesOverTime : public Parameters {
 protected:
  // What is asked for at `time` in 1/scale seconds, while frame 5 of 10 a second is drawn.
  PF_ParamDef fetchedAt(PF_ParamIndex index, A_long time, A_u_long scale) {
    PF_ParamDef def{};
    effect.on[PF_Cmd_RENDER] = [&](const Call& call) {
      const PF_Err err = call.in->inter.checkout_param(call.in->effect_ref, index, time, 1, scale, &def);
      PF_ParamDef copy = def;
      call.in->inter.checkin_param(call.in->effect_ref, &copy);
      return err;
    };
    FrameRequest frame = frameOf(4, 4);
    frame.currentTime = 5;
    frame.timeScale = 10;
    EXPECT_EQ(host.renderClassic(frame, host.defaults()).error, PF_Err_NONE);
    return def;
  }
};

TEST_F(ValuesOverTime, aControlAskedForAtAnotherTimeGetsItsValueOfThatTime) {
  host.valueAt = [](int32_t index, A_long time, A_u_long timeScale) {
    EXPECT_EQ(index, 1);
    return ParameterValues::Value(100.0 + static_cast<double>(time) / static_cast<double>(timeScale));
  };
  EXPECT_EQ(fetchedAt(1, 3, 4).u.fs_d.value, 100.75);
  EXPECT_EQ(fetchedAt(1, -2, 1).u.fs_d.value, 98.0);
}

TEST_F(ValuesOverTime, theFramesOwnTimeHasTheFramesOwnValuesHoweverItIsWritten) {
  host.valueAt = [](int32_t, A_long, A_u_long) {
    ADD_FAILURE() << "asked for the frame's own time";
    return ParameterValues::Value(0.0);
  };
  EXPECT_EQ(fetchedAt(1, 5, 10).u.fs_d.value, 12.5);
  EXPECT_EQ(fetchedAt(1, 1, 2).u.fs_d.value, 12.5);
  EXPECT_EQ(fetchedAt(1, 2147483645, 4294967290U).u.fs_d.value, 12.5) << "a product of more than 32 bits";
}

TEST_F(ValuesOverTime, withoutAnAnswererTheFramesValuesHoldAtAllTimes) {
  EXPECT_EQ(fetchedAt(1, 3, 4).u.fs_d.value, 12.5);
}

TEST_F(ValuesOverTime, aLayerMayBeAnotherPictureAtAnotherTime) {
  host.valueAt = [](int32_t, A_long, A_u_long) {
    return ParameterValues::Value(LayerValue::of(Image(Depth::k8, 7, 3)));
  };
  EXPECT_EQ(fetchedAt(8, 6, 10).u.ld.width, 7);
  EXPECT_EQ(fetchedAt(8, 5, 10).u.ld.width, 0) << "none at the frame's own time";
}

TEST_F(Parameters, aCheckoutIntoTheCommandsOwnArrayIsAComplaint) {
  effect.on[PF_Cmd_RENDER] = [](const Call& call) {
    call.checkout(1, call.params[1]);
    return call.in->inter.checkin_param(call.in->effect_ref, call.params[1]);
  };
  host.renderClassic(frameOf(4, 4), host.defaults());
  EXPECT_EQ(host.books().complaintCount(Matter::kWrongArgument), 1) << report();
}

TEST_F(Parameters, anIndexBeyondTheListIsRefused) {
  PF_Err err = 0;
  effect.on[PF_Cmd_RENDER] = [&](const Call& call) {
    PF_ParamDef def{};
    err = call.checkout(10, &def);
    return PF_Err{0};
  };
  host.renderClassic(frameOf(4, 4), host.defaults());
  EXPECT_EQ(err, PF_Err_INVALID_INDEX);
}

TEST_F(Parameters, theArrayOfACommandHoldsValuesButNoLayers) {
  std::vector<PF_ParamDef> seen;
  bool closed = false;
  effect.on[PF_Cmd_RENDER] = [&](const Call& call) {
    for (int i = 0; i < 10; ++i) seen.push_back(*call.params[i]);
    closed = call.params[10] == nullptr;
    return PF_Err{0};
  };
  host.renderClassic(frameOf(6, 4), host.defaults());
  ASSERT_EQ(seen.size(), 10u);
  EXPECT_TRUE(closed);
  EXPECT_EQ(seen[0].u.ld.width, 6);
  EXPECT_EQ(seen[1].u.fs_d.value, 12.5);
  EXPECT_STREQ(seen[1].name, "Size");
  EXPECT_EQ(seen[9].u.ld.data, nullptr);
}

TEST_F(Parameters, wrongCountsAndIdsOfADeclarationAreComplaints) {
  standin::StandInHost other(scripted::Effect::entry);
  scripted::declare(effect, {definition(PF_Param_SLIDER, "A", 1), definition(PF_Param_SLIDER, "B", 1),
                             definition(PF_Param_SLIDER, "C", 0), definition(PF_Param_GROUP_START, "G", 3),
                             popup("D", 4, "x|y|z", 2, 1)});
  auto addThem = effect.on[PF_Cmd_PARAMS_SETUP];
  effect.on[PF_Cmd_PARAMS_SETUP] = [addThem](const Call& call) {
    const PF_Err err = addThem(call);
    call.out->num_params = 99;
    return err;
  };
  other.paramsSetup();
  // Twice an id, no id, a popup's count, num_params, an open group.
  EXPECT_EQ(other.books().complaintCount(Matter::kDeclaration), 5) << joined(other.books().report());
}

TEST_F(Parameters, addParamAtAnotherTimeIsRefused) {
  effect.on[PF_Cmd_RENDER] = [](const Call& call) {
    PF_ParamDef def = definition(PF_Param_SLIDER, "Late", 77);
    return call.in->inter.add_param(call.in->effect_ref, -1, &def);
  };
  EXPECT_EQ(host.renderClassic(frameOf(4, 4), host.defaults()).error, PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(host.controls().size(), 9u);
}

// Greys or frees one parameter at the update of the controls.
void greyOnUpdate(scripted::Effect& effect, PF_ParamIndex index, bool grey) {
  effect.on[PF_Cmd_UPDATE_PARAMS_UI] = [index, grey](const Call& call) {
    const auto* suite = call.suite<PF_ParamUtilsSuite1>(kPFParamUtilsSuite, 2);
    PF_ParamDef copy = *call.params[index];
    copy.ui_flags = grey ? copy.ui_flags | PF_PUI_DISABLED : copy.ui_flags & ~PF_PUI_DISABLED;
    suite->PF_UpdateParamUI(call.in->effect_ref, index, &copy);
    return PF_Err{call.in->pica_basicP->ReleaseSuite(kPFParamUtilsSuite, 2)};
  };
}

TEST_F(Parameters, aGreyedParameterStaysGreyInLaterArrays) {
  greyOnUpdate(effect, 3, true);
  EXPECT_EQ(host.updateParamsUi(host.defaults()), PF_Err_NONE);
  EXPECT_TRUE(host.control("Turn")->greyed());
  EXPECT_FALSE(host.control("Size")->greyed());
  PF_ParamUIFlags seen = 0;
  effect.on[PF_Cmd_RENDER] = [&](const Call& call) {
    seen = call.params[3]->ui_flags;
    return PF_Err{0};
  };
  host.renderClassic(frameOf(4, 4), host.defaults());
  EXPECT_EQ(seen & PF_PUI_DISABLED, PF_PUI_DISABLED);
  greyOnUpdate(effect, 3, false);
  host.updateParamsUi(host.defaults());
  EXPECT_FALSE(host.control("Turn")->greyed());
  ASSERT_EQ(host.log().paramUi.size(), 2u);
  EXPECT_EQ(host.log().paramUi[0].index, 3);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Parameters, theLookOfTheLayerItselfIsNotChanged) {
  greyOnUpdate(effect, 0, true);
  host.updateParamsUi(host.defaults());
  EXPECT_EQ(host.books().complaintCount(Matter::kLayerParamUi), 1) << report();
  EXPECT_TRUE(host.books().clean({Matter::kLayerParamUi})) << report();
}

TEST_F(Parameters, writingIntoTheArrayDuringAnUpdateIsAComplaint) {
  effect.on[PF_Cmd_UPDATE_PARAMS_UI] = [](const Call& call) {
    call.params[2]->u.sd.value = 5;
    return PF_Err{0};
  };
  host.updateParamsUi(host.defaults());
  EXPECT_EQ(host.books().complaintCount(Matter::kWrongArgument), 1) << report();
}

TEST_F(Parameters, aCheckoutDuringAnUpdateIsAComplaint) {
  effect.on[PF_Cmd_UPDATE_PARAMS_UI] = [](const Call& call) {
    PF_ParamDef def{};
    call.checkout(1, &def);
    return call.in->inter.checkin_param(call.in->effect_ref, &def);
  };
  host.updateParamsUi(host.defaults());
  EXPECT_EQ(host.books().complaintCount(Matter::kWrongMoment), 1) << report();
}

TEST_F(Parameters, onlyMarkedChangesAreTakenOver) {
  effect.on[PF_Cmd_USER_CHANGED_PARAM] = [](const Call& call) {
    EXPECT_EQ(static_cast<PF_UserChangedParamExtra*>(call.extra)->param_index, 7);
    EXPECT_EQ(call.params[1]->uu.change_flags, 0);
    call.params[1]->u.fs_d.value = 99.0;
    call.params[1]->uu.change_flags |= PF_ChangeFlag_CHANGED_VALUE;
    call.params[2]->u.sd.value = 98;
    return PF_Err{0};
  };
  ParameterValues values = host.defaults();
  const standin::ChangedParams changed = host.userChangedParam("Kind", values);
  EXPECT_EQ(changed.error, PF_Err_NONE);
  EXPECT_EQ(changed.indices, std::vector<int32_t>{1});
  EXPECT_EQ(values.number("Size"), 99.0);
  EXPECT_EQ(values.number("Count"), 7.0);
}

TEST_F(Parameters, anAngleThatTheEffectChangesIsTakenOverInDegrees) {
  effect.on[PF_Cmd_USER_CHANGED_PARAM] = [](const Call& call) {
    call.params[3]->u.ad.value = -90 * 65536 - 32768;
    call.params[3]->uu.change_flags |= PF_ChangeFlag_CHANGED_VALUE;
    return PF_Err{0};
  };
  ParameterValues values = host.defaults();
  EXPECT_EQ(host.userChangedParam("Turn", values).indices, std::vector<int32_t>{3});
  EXPECT_EQ(values.angle("Turn"), -90.5);
}

}  // namespace
