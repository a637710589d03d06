// Both roads of a frame, sequence data and the rest of the conversation.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "ScriptedEffect.h"
#include "ae/Suites.h"
#include "host/HandleStore.h"
#include "host/Rects.h"
#include "host/SideBySide.h"

namespace {

using scripted::Call;
using scripted::definition;
using scripted::joined;
using standin::Depth;
using standin::FrameRequest;
using standin::Image;
using standin::LayerValue;
using standin::Matter;
using standin::ParameterValues;
using standin::RenderResult;

int32_t g_deleted = 0;

class Roads : public testing::Test {
 protected:
  Roads() : host(scripted::Effect::entry) {
    PF_ParamDef layer = definition(PF_Param_LAYER, "Layer", 5);
    scripted::declare(effect, {layer, definition(PF_Param_SLIDER, "Slider", 6)});
    EXPECT_EQ(host.start(), PF_Err_NONE);
    g_deleted = 0;
  }
  static FrameRequest frameOf(int32_t width, int32_t height, Depth depth = Depth::k8) {
    FrameRequest frame;
    frame.input = Image(depth, width, height, 4);
    return frame;
  }
  std::string report() { return joined(host.books().report()); }
  scripted::Effect effect;
  standin::StandInHost host;
};

TEST_F(Roads, theClassicRoadSendsItsThreeCommandsInOrder) {
  std::string order;
  effect.on[PF_Cmd_FRAME_SETUP] = [&](const Call&) { return order += "setup ", PF_Err{0}; };
  effect.on[PF_Cmd_RENDER] = [&](const Call&) { return order += "render ", PF_Err{0}; };
  effect.on[PF_Cmd_FRAME_SETDOWN] = [&](const Call&) { return order += "setdown ", PF_Err{0}; };
  const RenderResult result = host.renderClassic(frameOf(8, 6), host.defaults());
  EXPECT_EQ(order, "setup render setdown ");
  EXPECT_TRUE(result.rendered);
  EXPECT_EQ(result.output.width(), 8);
  EXPECT_EQ(result.output.height(), 6);
}

TEST_F(Roads, aFailedRenderIsStillSetDown) {
  int setdowns = 0;
  effect.on[PF_Cmd_RENDER] = [](const Call&) { return PF_Err{517}; };
  effect.on[PF_Cmd_FRAME_SETDOWN] = [&](const Call&) { return ++setdowns, PF_Err{512}; };
  EXPECT_EQ(host.renderClassic(frameOf(8, 6), host.defaults()).error, 517);
  EXPECT_EQ(setdowns, 1);
}

TEST_F(Roads, aSetUpThatAsksForNoOutputSkipsTheRender) {
  effect.on[PF_Cmd_FRAME_SETUP] = [](const Call& call) {
    call.out->width = 0;
    call.out->height = 0;
    return PF_Err{0};
  };
  effect.on[PF_Cmd_RENDER] = [](const Call&) { return PF_Err{512}; };
  const RenderResult result = host.renderClassic(frameOf(8, 6), host.defaults());
  EXPECT_EQ(result.error, PF_Err_NONE);
  EXPECT_FALSE(result.rendered);
}

TEST_F(Roads, theFramesNumbersReachTheEffect) {
  FrameRequest frame = frameOf(10, 5);
  frame.layerWidth = 21;
  frame.layerHeight = 40;
  frame.downsampleX = {1, 2};
  frame.downsampleY = {1, 8};
  frame.currentTime = -7;
  frame.timeStep = 3;
  frame.timeScale = 90;
  frame.quality = PF_Quality_LO;
  frame.extent = PF_Rect{1, 2, 3, 4};
  frame.outputPadding = 16;
  frame.outputWidth = 12;
  frame.outputHeight = 9;
  frame.input.pixelAspect = {16, 11};
  PF_InData in{};
  PF_EffectWorld output{};
  effect.on[PF_Cmd_RENDER] = [&](const Call& call) {
    in = *call.in;
    output = *call.output;
    return PF_Err{0};
  };
  host.renderClassic(frame, host.defaults());
  EXPECT_EQ(in.width, 21);
  EXPECT_EQ(in.height, 40);
  EXPECT_EQ(in.downsample_x.den, 2u);
  EXPECT_EQ(in.downsample_y.den, 8u);
  EXPECT_EQ(in.current_time, -7);
  EXPECT_EQ(in.time_step, 3);
  EXPECT_EQ(in.time_scale, 90u);
  EXPECT_EQ(in.quality, PF_Quality_LO);
  EXPECT_EQ(in.extent_hint.bottom, 4);
  EXPECT_EQ(in.num_params, 3);
  EXPECT_EQ(in.appl_id, kAppIdAfterEffects);
  EXPECT_EQ(in.version.major, 13);
  EXPECT_EQ(output.width, 12);
  EXPECT_EQ(output.height, 9);
  EXPECT_EQ(output.rowbytes, 12 * 4 + 16);
  EXPECT_EQ(in.pixel_aspect_ratio.num, 16);
  EXPECT_EQ(in.pixel_aspect_ratio.den, 11u);
  EXPECT_EQ(output.pix_aspect_ratio.num, 16);
  EXPECT_EQ(output.pix_aspect_ratio.den, 11u);
}

TEST_F(Roads, aFrameWhoseScaleIsNoneIsAsLargeAsItsInput) {
  FrameRequest frame = frameOf(10, 5);
  frame.downsampleX = {0, 1};
  frame.downsampleY = {-1, 2};
  EXPECT_EQ(frame.fullWidth(), 10);
  EXPECT_EQ(frame.fullHeight(), 5);
  frame.downsampleX = {1, 3};
  frame.downsampleY = {2, 3};
  EXPECT_EQ(frame.fullWidth(), 30);
  EXPECT_EQ(frame.fullHeight(), 7);  // 7.5
}

TEST_F(Roads, aWriteBehindARowOfTheOutputIsSeen) {
  effect.on[PF_Cmd_RENDER] = [](const Call& call) {
    reinterpret_cast<uint8_t*>(call.output->data)[call.output->width * 4] = 1;
    return PF_Err{0};
  };
  FrameRequest frame = frameOf(4, 4);
  frame.outputPadding = 4;
  host.renderClassic(frame, host.defaults());
  EXPECT_EQ(host.books().complaintCount(Matter::kOutside), 1) << report();
}

TEST_F(Roads, aChangedInputIsSeen) {
  effect.on[PF_Cmd_RENDER] = [](const Call& call) {
    call.params[0]->u.ld.data->red = 5;
    return PF_Err{0};
  };
  host.renderClassic(frameOf(4, 4), host.defaults());
  EXPECT_EQ(host.books().complaintCount(Matter::kOutside), 1) << report();
}

TEST_F(Roads, aFillOfTheInputIsAComplaint) {
  effect.on[PF_Cmd_RENDER] = [](const Call& call) {
    return call.in->utils->fill(call.in->effect_ref, nullptr, nullptr, &call.params[0]->u.ld);
  };
  host.renderClassic(frameOf(4, 4), host.defaults());
  EXPECT_EQ(host.books().complaintCount(Matter::kBadWorld), 1) << report();
}

TEST_F(Roads, progressGoesToTheHookAndItsAnswerToTheEffect) {
  effect.on[PF_Cmd_RENDER] = [](const Call& call) {
    PF_Err err = 0;
    for (A_long i = 0; i < 5 && err == 0; ++i) err = call.in->inter.progress(call.in->effect_ref, i, 5);
    return err;
  };
  host.onProgress = [](A_long current, A_long total) {
    EXPECT_EQ(total, 5);
    return current == 2 ? PF_Err{PF_Interrupt_CANCEL} : PF_Err{0};
  };
  EXPECT_EQ(host.renderClassic(frameOf(4, 4), host.defaults()).error, PF_Interrupt_CANCEL);
  EXPECT_EQ(host.log().progressCalls, 3);
}

TEST_F(Roads, abortGoesToItsHook) {
  effect.on[PF_Cmd_RENDER] = [](const Call& call) { return call.in->inter.abort(call.in->effect_ref); };
  host.onAbort = [] { return PF_Err{PF_Interrupt_CANCEL}; };
  EXPECT_EQ(host.renderClassic(frameOf(4, 4), host.defaults()).error, PF_Interrupt_CANCEL);
}

// A smart effect that checks out the input for the request and fills its output with one colour.
void smartEffect(scripted::Effect& effect) {
  effect.on[PF_Cmd_SMART_PRE_RENDER] = [](const Call& call) {
    PF_PreRenderExtra& extra = call.preRender();
    PF_CheckoutResult result{};
    const PF_Err err =
        extra.cb->checkout_layer(call.in->effect_ref, 0, 0, &extra.input->output_request, call.in->current_time,
                                 call.in->time_step, call.in->time_scale, &result);
    extra.output->result_rect = result.result_rect;
    extra.output->max_result_rect = result.max_result_rect;
    extra.output->pre_render_data = std::malloc(4);
    extra.output->delete_pre_render_data_func = [](void* data) {
      ++g_deleted;
      std::free(data);
    };
    return err;
  };
  effect.on[PF_Cmd_SMART_RENDER] = [](const Call& call) {
    PF_SmartRenderCallbacks& cb = *call.smartRender().cb;
    PF_EffectWorld* input = nullptr;
    PF_EffectWorld* output = nullptr;
    PF_Err err = cb.checkout_layer_pixels(call.in->effect_ref, 0, &input);
    if (err == 0) err = cb.checkout_output(call.in->effect_ref, &output);
    const PF_Pixel white{255, 255, 255, 255};
    if (err == 0 && output != nullptr) {
      err = call.in->utils->fill(call.in->effect_ref, &white, nullptr, output);
    }
    const PF_Err back = cb.checkin_layer_pixels(call.in->effect_ref, 0);
    return err != 0 ? err : back;
  };
}

TEST_F(Roads, theSmartRoadDrawsTheRequestedPart) {
  smartEffect(effect);
  for (const Depth depth : standin::kAllDepths) {
    FrameRequest frame = frameOf(10, 8, depth);
    frame.requestRect = PF_LRect{2, 3, 30, 7};
    const RenderResult result = host.renderSmart(frame, host.defaults());
    EXPECT_EQ(result.error, PF_Err_NONE);
    ASSERT_TRUE(result.rendered);
    EXPECT_EQ(result.output.depth(), depth);
    EXPECT_EQ(result.output.width(), 8);
    EXPECT_EQ(result.output.height(), 4);
    EXPECT_EQ(result.output.originX, 2);
    EXPECT_EQ(result.output.originY, 3);
    EXPECT_EQ(result.output.converted(Depth::k8).at<PF_Pixel>(7, 3).red, 255);
  }
  EXPECT_EQ(g_deleted, 3);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Roads, theSmartCommandsGetNoParameters) {
  smartEffect(effect);
  bool none = true;
  const auto pre = effect.on[PF_Cmd_SMART_PRE_RENDER];
  effect.on[PF_Cmd_SMART_PRE_RENDER] = [&none, pre](const Call& call) {
    none = none && call.params == nullptr && call.output == nullptr;
    EXPECT_TRUE(standin::isEmpty(call.preRender().output->result_rect));
    EXPECT_EQ(call.preRender().output->flags, 0);
    return pre(call);
  };
  host.renderSmart(frameOf(4, 4), host.defaults());
  EXPECT_TRUE(none);
}

TEST_F(Roads, preRenderDataIsDeletedWithoutARenderToo) {
  smartEffect(effect);
  {
    const standin::PreRendered pre = host.preRender(frameOf(4, 4), host.defaults());
    EXPECT_NE(pre.data(), nullptr);
    EXPECT_EQ(g_deleted, 0);
  }
  EXPECT_EQ(g_deleted, 1);
}

TEST_F(Roads, preRenderDataMayOutliveOtherFrames) {
  smartEffect(effect);
  standin::PreRendered first = host.preRender(frameOf(4, 4), host.defaults());
  standin::PreRendered second = host.preRender(frameOf(6, 6), host.defaults());
  EXPECT_EQ(second.render().output.width(), 6);
  EXPECT_EQ(first.render().output.width(), 4);
  second.discard();
  EXPECT_EQ(g_deleted, 1);
  EXPECT_EQ(second.data(), nullptr);
  first.discard();
  EXPECT_EQ(g_deleted, 2);
}

TEST_F(Roads, aHandleWithoutADeleterIsDisposedOf) {
  effect.on[PF_Cmd_SMART_PRE_RENDER] = [](const Call& call) {
    call.preRender().output->pre_render_data = call.in->utils->host_new_handle(64);
    return PF_Err{0};
  };
  standin::PreRendered pre = host.preRender(frameOf(4, 4), host.defaults());
  EXPECT_EQ(host.books().openCount(Matter::kHandle), 1);
  pre.discard();
  EXPECT_EQ(pre.data(), nullptr);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Roads, anInputSmallerThanTheLayerBearsItsOrigin) {
  smartEffect(effect);
  PF_EffectWorld seen{};
  A_u_char red = 0;
  effect.on[PF_Cmd_SMART_RENDER] = [&](const Call& call) {
    PF_EffectWorld* input = nullptr;
    PF_SmartRenderCallbacks& cb = *call.smartRender().cb;
    cb.checkout_layer_pixels(call.in->effect_ref, 0, &input);
    seen = *input;
    red = input->data->red;
    return cb.checkin_layer_pixels(call.in->effect_ref, 0);
  };
  FrameRequest frame = frameOf(6, 5);
  frame.layerWidth = 20;
  frame.layerHeight = 20;
  frame.input.originX = 4;
  frame.input.originY = 3;
  frame.input.at<PF_Pixel>(1, 2).red = 77;
  frame.requestRect = PF_LRect{5, 5, 20, 20};
  standin::PreRendered pre = host.preRender(frame, host.defaults());
  const standin::LayerCheckout& checkout = pre.checkouts().at(0);
  EXPECT_TRUE(standin::sameRect(checkout.result.max_result_rect, {4, 3, 10, 8}));
  EXPECT_TRUE(standin::sameRect(checkout.result.result_rect, {5, 5, 10, 8}));
  EXPECT_EQ(checkout.result.ref_width, 20);
  pre.render();
  EXPECT_EQ(seen.origin_x, 5);
  EXPECT_EQ(seen.origin_y, 5);
  EXPECT_EQ(seen.width, 5);
  EXPECT_EQ(seen.height, 3);
  EXPECT_EQ(red, 77) << "pixel (5, 5) of the layer is (1, 2) of the input";
}

TEST_F(Roads, anEmptyInputGivesEmptyRectanglesAndNoPixels) {
  PF_EffectWorld* input = nullptr;
  bool called = false;
  smartEffect(effect);
  effect.on[PF_Cmd_SMART_PRE_RENDER] = [](const Call& call) {
    PF_PreRenderExtra& extra = call.preRender();
    PF_CheckoutResult result{};
    extra.cb->checkout_layer(call.in->effect_ref, 0, 0, &extra.input->output_request, 0, 1, 1, &result);
    EXPECT_TRUE(standin::isEmpty(result.result_rect));
    extra.output->result_rect = {0, 0, 3, 3};
    extra.output->max_result_rect = {0, 0, 3, 3};
    return PF_Err{0};
  };
  effect.on[PF_Cmd_SMART_RENDER] = [&](const Call& call) {
    called = true;
    PF_EffectWorld other{};
    input = &other;
    return call.smartRender().cb->checkout_layer_pixels(call.in->effect_ref, 0, &input);
  };
  FrameRequest frame;
  frame.input = Image(Depth::k16, 0, 0);
  frame.layerWidth = 8;
  frame.layerHeight = 8;
  const RenderResult result = host.renderSmart(frame, host.defaults());
  EXPECT_TRUE(called);
  EXPECT_EQ(result.error, PF_Err_NONE);
  EXPECT_EQ(input, nullptr);
  EXPECT_EQ(result.output.depth(), Depth::k16);
}

TEST_F(Roads, anEmptyResultIsNotRendered) {
  smartEffect(effect);
  FrameRequest frame = frameOf(4, 4);
  frame.requestRect = PF_LRect{0, 0, 0, 0};
  const RenderResult result = host.renderSmart(frame, host.defaults());
  EXPECT_EQ(result.error, PF_Err_NONE);
  EXPECT_FALSE(result.rendered);
}

// Probes the layer parameter for its size, then checks it out whole; takes its pixels without giving them back.
void layerEffect(scripted::Effect& effect, A_long* width) {
  smartEffect(effect);
  const auto pre = effect.on[PF_Cmd_SMART_PRE_RENDER];
  effect.on[PF_Cmd_SMART_PRE_RENDER] = [pre](const Call& call) {
    PF_RenderRequest request{};
    request.channel_mask = PF_ChannelMask_ARGB;
    PF_CheckoutResult result{};
    auto* checkout = call.preRender().cb->checkout_layer;
    checkout(call.in->effect_ref, 1, 1000001, &request, 0, 1, 1, &result);
    request.rect = {0, 0, result.ref_width, result.ref_height};
    checkout(call.in->effect_ref, 1, 1, &request, 0, 1, 1, &result);
    return pre(call);
  };
  const auto render = effect.on[PF_Cmd_SMART_RENDER];
  effect.on[PF_Cmd_SMART_RENDER] = [render, width](const Call& call) {
    PF_EffectWorld* world = nullptr;
    call.smartRender().cb->checkout_layer_pixels(call.in->effect_ref, 1, &world);
    *width = world == nullptr ? -1 : world->width;
    return render(call);
  };
}

TEST_F(Roads, aLayerIsProbedAndThenTakenWhole) {
  A_long width = 0;
  layerEffect(effect, &width);
  ParameterValues values = host.defaults();
  values.setLayer("Layer", LayerValue::of(Image(Depth::k8, 12, 6)));
  standin::PreRendered pre = host.preRender(frameOf(4, 4), values);
  ASSERT_EQ(pre.checkouts().size(), 3u);
  EXPECT_EQ(pre.checkouts()[0].id, 1000001);
  EXPECT_TRUE(standin::isEmpty(pre.checkouts()[0].result.result_rect));
  EXPECT_EQ(pre.checkouts()[0].result.ref_width, 12);
  EXPECT_TRUE(standin::sameRect(pre.checkouts()[1].result.result_rect, {0, 0, 12, 6}));
  pre.render();
  EXPECT_EQ(width, 12);
  EXPECT_EQ(
      host.books().report(),
      std::vector<std::string>{"layer pixels 1 (id 1, \"Layer\"), lent in PF_Cmd_SMART_RENDER, never checked in"});
}

TEST_F(Roads, underDownSamplingALayerKeepsItsFullReferenceSize) {
  A_long width = 0;
  layerEffect(effect, &width);
  ParameterValues values = host.defaults();
  values.setLayer("Layer", LayerValue::of(Image(Depth::k8, 12, 6)));
  FrameRequest frame = frameOf(4, 4);
  frame.downsampleX = {1, 2};
  frame.downsampleY = {1, 2};
  standin::PreRendered pre = host.preRender(frame, values);
  EXPECT_EQ(pre.checkouts()[1].result.ref_width, 12);
  EXPECT_TRUE(standin::sameRect(pre.checkouts()[1].result.result_rect, {0, 0, 6, 3}));
  pre.render();
  EXPECT_EQ(width, 6);
}

TEST_F(Roads, aLayerSetToNoneChecksOutAndGivesNoPixels) {
  A_long width = 0;
  layerEffect(effect, &width);
  EXPECT_EQ(host.renderSmart(frameOf(4, 4), host.defaults()).error, PF_Err_NONE);
  EXPECT_EQ(width, -1);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Roads, pixelsAskedForTwiceAreRefused) {
  smartEffect(effect);
  PF_Err again = 0;
  const auto render = effect.on[PF_Cmd_SMART_RENDER];
  effect.on[PF_Cmd_SMART_RENDER] = [&again, render](const Call& call) {
    const PF_Err err = render(call);
    PF_EffectWorld* world = nullptr;
    again = call.smartRender().cb->checkout_layer_pixels(call.in->effect_ref, 0, &world);
    return err;
  };
  host.renderSmart(frameOf(4, 4), host.defaults());
  EXPECT_EQ(again, PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(host.books().complaintCount(Matter::kStrayPixels), 1) << report();
}

TEST_F(Roads, anIdMayBeUsedOnceInAFrame) {
  PF_Err second = 0;
  effect.on[PF_Cmd_SMART_PRE_RENDER] = [&](const Call& call) {
    PF_PreRenderExtra& extra = call.preRender();
    PF_CheckoutResult result{};
    extra.cb->checkout_layer(call.in->effect_ref, 0, 3, &extra.input->output_request, 0, 1, 1, &result);
    second = extra.cb->checkout_layer(call.in->effect_ref, 0, 3, &extra.input->output_request, 0, 1, 1, &result);
    return PF_Err{0};
  };
  host.preRender(frameOf(4, 4), host.defaults());
  EXPECT_EQ(second, PF_Err_BAD_CALLBACK_PARAM);
}

TEST_F(Roads, aResultBeyondTheRequestNeedsItsFlag) {
  PF_RenderOutputFlags flags = 0;
  effect.on[PF_Cmd_SMART_PRE_RENDER] = [&](const Call& call) {
    call.preRender().output->result_rect = {-5, 0, 50, 50};
    call.preRender().output->max_result_rect = {-5, 0, 50, 50};
    call.preRender().output->flags = flags;
    return PF_Err{0};
  };
  host.preRender(frameOf(4, 4), host.defaults());
  EXPECT_EQ(host.books().complaintCount(Matter::kPreRender), 1) << report();
  flags = PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS;
  standin::PreRendered pre = host.preRender(frameOf(4, 4), host.defaults());
  EXPECT_EQ(host.books().complaintCount(Matter::kPreRender), 1) << report();
  const RenderResult result = pre.render();
  EXPECT_EQ(result.output.width(), 55);
  EXPECT_EQ(result.output.originX, -5);
}

TEST_F(Roads, anOutputBeforeAnyInputIsAComplaint) {
  smartEffect(effect);
  effect.on[PF_Cmd_SMART_RENDER] = [](const Call& call) {
    PF_EffectWorld* output = nullptr;
    return call.smartRender().cb->checkout_output(call.in->effect_ref, &output);
  };
  host.renderSmart(frameOf(4, 4), host.defaults());
  EXPECT_EQ(host.books().complaintCount(Matter::kWrongMoment), 1) << report();
}

TEST_F(Roads, handlesLieInBothRecordsAndAreCarriedOver) {
  PF_Handle made = nullptr;
  effect.on[PF_Cmd_SEQUENCE_SETUP] = [&](const Call& call) {
    made = call.in->utils->host_new_handle(16);
    call.out->sequence_data = made;
    return PF_Err{0};
  };
  host.sequenceSetup();
  EXPECT_EQ(host.sequenceData(), made);
  effect.on[PF_Cmd_SEQUENCE_SETDOWN] = [&](const Call& call) {
    EXPECT_EQ(call.in->sequence_data, made);
    EXPECT_EQ(call.out->sequence_data, made);
    EXPECT_EQ(call.out->num_params, 3);
    call.in->utils->host_dispose_handle(call.in->sequence_data);
    return PF_Err{0};
  };
  host.sequenceSetdown();
  EXPECT_EQ(host.sequenceData(), nullptr);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Roads, aLockLeftOnTheSequenceDataIsReportedAndUndone) {
  host.loadSequence({1, 2, 3});
  effect.on[PF_Cmd_USER_CHANGED_PARAM] = [](const Call& call) {
    call.in->utils->host_lock_handle(call.in->sequence_data);
    return PF_Err{0};
  };
  ParameterValues values = host.defaults();
  host.userChangedParam("Slider", values);
  EXPECT_EQ(host.books().openCount(Matter::kHandleLock), 1) << report();
  // Only what is not locked can be resized.
  PF_Handle handle = host.sequenceData();
  EXPECT_EQ(host.utils()->host_resize_handle(100, &handle), PF_Err_NONE) << "the host takes the lock off";
  effect.on.erase(PF_Cmd_USER_CHANGED_PARAM);
  host.userChangedParam("Slider", values);
  EXPECT_EQ(host.books().openCount(Matter::kHandleLock), 1) << "one lock, one entry";
  host.dropSequence();
}

TEST_F(Roads, anUnlockTooManyOfTheSequenceDataIsAComplaint) {
  host.loadSequence({1, 2, 3});
  effect.on[PF_Cmd_RENDER] = [](const Call& call) {
    call.in->utils->host_unlock_handle(call.in->sequence_data);
    return PF_Err{0};
  };
  host.renderClassic(frameOf(4, 4), host.defaults());
  EXPECT_EQ(host.books().complaintCount(Matter::kBadHandle), 1) << report();
  host.dropSequence();
}

TEST_F(Roads, aReplacedSequenceHandleThatIsNotFreedIsReported) {
  host.loadSequence({9, 9});
  effect.on[PF_Cmd_SEQUENCE_FLATTEN] = [](const Call& call) {
    call.out->sequence_data = call.in->utils->host_new_handle(1);
    std::memset(*call.out->sequence_data, 7, 1);
    return PF_Err{0};
  };
  host.sequenceFlatten();
  EXPECT_EQ(host.sequenceBytes(), std::vector<uint8_t>{7});
  host.dropSequence();
  EXPECT_EQ(host.books().openCount(Matter::kHandle), 1);
  EXPECT_NE(host.books().report()[0].find("2 bytes"), std::string::npos) << report();
}

TEST_F(Roads, flagsAreGivenBackForSingleBitsToBeChanged) {
  effect.on[PF_Cmd_GLOBAL_SETUP] = [](const Call& call) {
    call.out->my_version = 5;
    call.out->out_flags = PF_OutFlag_WIDE_TIME_INPUT | PF_OutFlag_I_DO_DIALOG;
    call.out->out_flags2 = PF_OutFlag2_SUPPORTS_SMART_RENDER;
    return PF_Err{0};
  };
  effect.on[PF_Cmd_QUERY_DYNAMIC_FLAGS] = [](const Call& call) {
    call.out->out_flags &= ~PF_OutFlag_WIDE_TIME_INPUT;
    return PF_Err{0};
  };
  host.globalSetup();
  EXPECT_TRUE(host.smartRoadOffered());
  EXPECT_EQ(host.effectVersion(), 5u);
  host.queryDynamicFlags(host.defaults());
  EXPECT_EQ(host.outFlags(), PF_OutFlag_I_DO_DIALOG);
  EXPECT_EQ(host.outFlags2(), PF_OutFlag2_SUPPORTS_SMART_RENDER);

  // What a command that fails leaves in the record doesn't count, and the next one finds the flags as they were.
  effect.on[PF_Cmd_EVENT] = [](const Call& call) {
    call.out->out_flags = 0;
    call.out->out_flags2 = 0;
    return PF_Err{77};
  };
  PF_OutData found{};
  effect.on[PF_Cmd_QUERY_DYNAMIC_FLAGS] = [&](const Call& call) {
    found = *call.out;
    return PF_Err{0};
  };
  EXPECT_EQ(host.call(PF_Cmd_EVENT), 77);
  host.queryDynamicFlags(host.defaults());
  EXPECT_EQ(found.out_flags, PF_OutFlag_I_DO_DIALOG);
  EXPECT_EQ(found.out_flags2, PF_OutFlag2_SUPPORTS_SMART_RENDER);
}

TEST_F(Roads, theAboutTextComesBack) {
  effect.on[PF_Cmd_ABOUT] = [](const Call& call) {
    EXPECT_EQ(call.out->return_msg[0], '\0');
    std::strcpy(call.out->return_msg, "A text");
    return PF_Err{0};
  };
  EXPECT_EQ(host.about(), "A text");
  EXPECT_EQ(host.about(), "A text");
}

TEST_F(Roads, theBasicSuiteCanBeMissing) {
  host.settings().withoutBasicSuite = true;
  bool missing = false;
  effect.on[PF_Cmd_ABOUT] = [&](const Call& call) {
    missing = call.in->pica_basicP == nullptr;
    return PF_Err{0};
  };
  host.about();
  EXPECT_TRUE(missing);
}

TEST_F(Roads, anyCommandNumberCanBeSent) {
  effect.on[-5] = [](const Call& call) { return call.params == nullptr ? PF_Err{33} : PF_Err{34}; };
  EXPECT_EQ(host.call(-5), 33);
  EXPECT_EQ(host.call(4000), 0);
}

TEST_F(Roads, servicesActOnTheHostThatCalled) {
  standin::StandInHost other(scripted::Effect::entry);
  effect.on[PF_Cmd_ABOUT] = [](const Call& call) {
    call.in->utils->host_new_handle(3);
    return PF_Err{0};
  };
  other.about();
  EXPECT_EQ(other.books().openCount(Matter::kHandle), 1);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), 0);
}

TEST_F(Roads, droppingASequenceThatIsNoneIsNothing) {
  host.dropSequence();
  EXPECT_EQ(host.sequenceData(), nullptr);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Roads, droppingASequenceThatTheEffectHasClosedForgetsItAndFreesNothingTwice) {
  host.loadSequence({1, 2, 3});
  PF_Handle closed = host.sequenceData();
  host.utils()->host_dispose_handle(closed);
  host.dropSequence();
  EXPECT_EQ(host.sequenceData(), nullptr);
  // What was already closed must not be put among the disposed a second time: the two next handles would be one.
  for (size_t i = 0; i < 2 * standin::HandleStore::kQuarantine; ++i) {
    PF_Handle handle = host.utils()->host_new_handle(1);
    host.utils()->host_dispose_handle(handle);
  }
  PF_Handle one = host.utils()->host_new_handle(1);
  PF_Handle two = host.utils()->host_new_handle(1);
  EXPECT_NE(one, two);
  host.utils()->host_dispose_handle(one);
  host.utils()->host_dispose_handle(two);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Roads, anOriginThatTheSetUpLeavesAloneIsZeroAgain) {
  bool moves = true;
  std::vector<A_long> seen;
  effect.on[PF_Cmd_FRAME_SETUP] = [&](const Call& call) {
    if (moves) call.out->origin = {3, 4};
    return PF_Err{0};
  };
  effect.on[PF_Cmd_RENDER] = [&](const Call& call) {
    seen.push_back(call.in->output_origin_x);
    seen.push_back(call.in->output_origin_y);
    return PF_Err{0};
  };
  host.renderClassic(frameOf(4, 4), host.defaults());
  moves = false;
  host.renderClassic(frameOf(4, 4), host.defaults());
  EXPECT_EQ(seen, (std::vector<A_long>{3, 4, 0, 0}));
}

TEST_F(Roads, aFrameWhoseSetUpFailsIsNeitherDrawnNorSetDown) {
  effect.on[PF_Cmd_FRAME_SETUP] = [](const Call&) { return PF_Err{99}; };
  const auto unwanted = [](const Call&) {
    ADD_FAILURE() << "called";
    return PF_Err{0};
  };
  effect.on[PF_Cmd_RENDER] = unwanted;
  effect.on[PF_Cmd_FRAME_SETDOWN] = unwanted;
  const RenderResult result = host.renderClassic(frameOf(4, 4), host.defaults());
  EXPECT_EQ(result.error, 99);
  EXPECT_FALSE(result.rendered);
}

TEST_F(Roads, anOutputWithoutAHeightIsNotDrawn) {
  effect.on[PF_Cmd_FRAME_SETUP] = [](const Call& call) {
    call.out->height = 0;
    return PF_Err{0};
  };
  const RenderResult result = host.renderClassic(frameOf(4, 4), host.defaults());
  EXPECT_EQ(result.error, PF_Err_NONE);
  EXPECT_FALSE(result.rendered);
}

TEST_F(Roads, anErrorOfTheSetDownCountsWhereTheFrameHadNone) {
  effect.on[PF_Cmd_FRAME_SETDOWN] = [](const Call&) { return PF_Err{98}; };
  EXPECT_EQ(host.renderClassic(frameOf(4, 4), host.defaults()).error, 98);
}

TEST_F(Roads, startEndsWithTheFirstErrorAndFinishSendsBoth) {
  std::string order;
  PF_Cmd failing = PF_Cmd_GLOBAL_SETUP;
  const auto note = [&](PF_Cmd command, const char* name) {
    effect.on[command] = [&order, &failing, command, name](const Call& call) {
      order += name;
      call.out->num_params = 1;
      return command == failing ? PF_Err{90 + command} : PF_Err{0};
    };
  };
  note(PF_Cmd_GLOBAL_SETUP, "global ");
  note(PF_Cmd_PARAMS_SETUP, "params ");
  note(PF_Cmd_SEQUENCE_SETUP, "sequence ");
  note(PF_Cmd_SEQUENCE_SETDOWN, "-sequence ");
  note(PF_Cmd_GLOBAL_SETDOWN, "-global ");
  EXPECT_EQ(host.start(), 90 + PF_Cmd_GLOBAL_SETUP);
  failing = PF_Cmd_PARAMS_SETUP;
  EXPECT_EQ(host.start(), 90 + PF_Cmd_PARAMS_SETUP);
  failing = PF_Cmd_SEQUENCE_SETUP;
  EXPECT_EQ(host.start(), 90 + PF_Cmd_SEQUENCE_SETUP);
  EXPECT_EQ(order, "global global params global params sequence ");
  order.clear();
  failing = PF_Cmd_SEQUENCE_SETDOWN;
  EXPECT_EQ(host.finish(), 90 + PF_Cmd_SEQUENCE_SETDOWN);
  failing = PF_Cmd_GLOBAL_SETDOWN;
  EXPECT_EQ(host.finish(), 90 + PF_Cmd_GLOBAL_SETDOWN);
  EXPECT_EQ(order, "-sequence -global -sequence -global ");
}

TEST_F(Roads, aListOfParametersThatFailsIsNotLookedAt) {
  effect.on[PF_Cmd_PARAMS_SETUP] = [](const Call& call) {
    call.out->num_params = 55;
    return PF_Err{99};
  };
  EXPECT_EQ(host.paramsSetup(), 99);
  EXPECT_EQ(host.books().complaintCount(Matter::kDeclaration), 0) << report();
}

TEST_F(Roads, theRarerCommandsGetWhatTheyAreFor) {
  bool resetUp = false;
  effect.on[PF_Cmd_SEQUENCE_RESETUP] = [&](const Call& call) {
    resetUp = call.params == nullptr;
    return PF_Err{0};
  };
  EXPECT_EQ(host.sequenceResetup(), PF_Err_NONE);
  EXPECT_TRUE(resetUp);
  effect.on[PF_Cmd_DO_DIALOG] = [](const Call& call) {
    call.out->out_flags |= PF_OutFlag_REFRESH_UI;
    return PF_Err{call.params[2]->u.sd.value};
  };
  ParameterValues values = host.defaults();
  values.setNumber("Slider", 41);
  EXPECT_EQ(host.doDialog(values), 41);
  EXPECT_NE(host.outData().out_flags & PF_OutFlag_REFRESH_UI, 0);
}

TEST_F(Roads, aSequenceMayBeEmptyOrSomebodyElsesHandle) {
  EXPECT_TRUE(host.sequenceBytes().empty());
  host.loadSequence({});
  EXPECT_NE(host.sequenceData(), nullptr);
  EXPECT_TRUE(host.sequenceBytes().empty());
  host.dropSequence();
  PF_Handle handle = host.utils()->host_new_handle(2);
  std::memcpy(*handle, "ab", 2);
  host.setSequenceData(handle);
  EXPECT_EQ(host.sequenceBytes(), (std::vector<uint8_t>{'a', 'b'}));
  host.utils()->host_dispose_handle(handle);
  EXPECT_TRUE(host.sequenceBytes().empty()) << "it was disposed of";
  effect.on[PF_Cmd_ABOUT] = [&](const Call& call) { return call.in->sequence_data == handle ? PF_Err{0} : PF_Err{1}; };
  EXPECT_EQ(host.call(PF_Cmd_ABOUT), PF_Err_NONE);
  host.setSequenceData(nullptr);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Roads, aPreRenderTellsWhatTheEffectPromised) {
  effect.on[PF_Cmd_SMART_PRE_RENDER] = [](const Call& call) {
    call.preRender().output->result_rect = {0, 0, 2, 3};
    call.preRender().output->max_result_rect = {0, 0, 4, 4};
    call.preRender().output->flags = PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS;
    return PF_Err{0};
  };
  const standin::PreRendered pre = host.preRender(frameOf(4, 4), host.defaults());
  EXPECT_TRUE(standin::sameRect(pre.resultRect(), {0, 0, 2, 3}));
  EXPECT_TRUE(standin::sameRect(pre.maxResultRect(), {0, 0, 4, 4}));
  EXPECT_EQ(pre.flags(), PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS);
}

TEST_F(Roads, aLayerThatWasTakenEmptyIsGivenBackLikeAnyOther) {
  PF_Err answer = -1;
  effect.on[PF_Cmd_SMART_PRE_RENDER] = [](const Call& call) {
    PF_CheckoutResult result{};
    call.preRender().output->result_rect = call.preRender().output->max_result_rect = {0, 0, 1, 1};
    return call.preRender().cb->checkout_layer(call.in->effect_ref, 1, 0, &call.preRender().input->output_request, 0, 1,
                                               1, &result);
  };
  effect.on[PF_Cmd_SMART_RENDER] = [&](const Call& call) {
    PF_EffectWorld* world = nullptr;
    PF_SmartRenderCallbacks& cb = *call.smartRender().cb;
    EXPECT_EQ(cb.checkout_layer_pixels(call.in->effect_ref, 0, &world), PF_Err_NONE);
    EXPECT_EQ(world, nullptr);
    answer = cb.checkin_layer_pixels(call.in->effect_ref, 0);
    return PF_Err{0};
  };
  host.renderSmart(frameOf(4, 4), host.defaults());
  EXPECT_EQ(answer, PF_Err_NONE);
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST_F(Roads, aHostBesideAnotherDrawsByItsControlsAndKeepsBooksOfItsOwn) {
  host.loadSequence({7});
  const auto beside = standin::hostBeside(host);
  EXPECT_EQ(beside->controls().size(), host.controls().size());
  EXPECT_EQ(beside->numParams(), host.numParams());
  EXPECT_EQ(beside->sequenceBytes(), std::vector<uint8_t>{7});
  A_long seen = 0;
  effect.on[PF_Cmd_RENDER] = [&](const Call& call) {
    seen = call.params[2]->u.sd.value;
    // Nobody can tell whose lock this is.
    call.in->utils->host_lock_handle(call.in->sequence_data);
    return call.in->utils->fill(nullptr, nullptr, nullptr, call.output);
  };
  ParameterValues values = beside->defaults();
  values.setNumber("Slider", 12);
  EXPECT_TRUE(beside->renderClassic(frameOf(4, 4), values).rendered);
  EXPECT_EQ(seen, 12);
  EXPECT_EQ(beside->books().openCount(Matter::kHandleLock), 0);
  EXPECT_EQ(beside->books().complaintCount(Matter::kWrongArgument), 1) << "the fill's foreign effect_ref";
  host.dropSequence();
  EXPECT_TRUE(host.books().clean()) << report();
}

TEST(CommandNames, areNumbersWhereThereIsNoName) {
  EXPECT_EQ(standin::commandName(11), "PF_Cmd_RENDER");
  EXPECT_EQ(standin::commandName(99), "command 99");
  EXPECT_EQ(standin::commandName(-5), "command -5");
  EXPECT_EQ(standin::commandName(-1), "no command");
}

}  // namespace
