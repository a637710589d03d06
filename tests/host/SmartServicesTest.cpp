// The calls of the smart road with arguments, at moments and in an order in which they can't be answered, and with
// faults.
#include <functional>
#include <string>

#include "HostTest.h"
#include "host/Image.h"
#include "host/Rects.h"

namespace {

using scripted::Call;
using standin::Depth;
using standin::Image;
using standin::Matter;

class SmartServices : public scripted::HostTest {
 protected:
  SmartServices() {
    scripted::declare(
        effect, {scripted::definition(PF_Param_LAYER, "Layer", 1), scripted::definition(PF_Param_SLIDER, "Slider", 2)});
    EXPECT_EQ(host.start(), PF_Err_NONE);
    frame.input = Image(Depth::k8, 4, 4);
  }

  // Runs one smart frame: the layer itself is checked out as 0, then work is done in the pre-render.
  standin::PreRendered inPreRender(const std::function<void(const Call&)>& work) {
    effect.on[PF_Cmd_SMART_PRE_RENDER] = [=, this](const Call& call) {
      PF_PreRenderExtra& extra = call.preRender();
      preCallbacks = *extra.cb;
      PF_CheckoutResult result{};
      const PF_Err err = extra.cb->checkout_layer(ref(), 0, 0, &extra.input->output_request, 0, 1, 30, &result);
      extra.output->result_rect = result.result_rect;
      extra.output->max_result_rect = result.max_result_rect;
      work(call);
      return err;
    };
    return host.preRender(frame, host.defaults());
  }

  // The same, with work in the render.
  void inRender(const std::function<void(PF_SmartRenderCallbacks&)>& work) {
    effect.on[PF_Cmd_SMART_RENDER] = [&](const Call& call) {
      callbacks = *call.smartRender().cb;
      work(callbacks);
      return PF_Err{PF_Err_NONE};
    };
    inPreRender([](const Call&) {}).render();
  }

  void expectComplaint(Matter matter, const std::string& text) {
    ASSERT_EQ(host.books().complaints().size(), 1U) << text << "\n" << report();
    EXPECT_EQ(host.books().complaints()[0].matter, matter) << text;
    EXPECT_EQ(host.books().complaints()[0].text, text);
    host.books().clear();
  }

  standin::FrameRequest frame;
  PF_PreRenderCallbacks preCallbacks{};
  PF_SmartRenderCallbacks callbacks{};
};

TEST_F(SmartServices, checkOutLayersOnly) {
  inPreRender([&](const Call& call) {
    PF_CheckoutResult result{};
    const PF_RenderRequest& whole = call.preRender().input->output_request;
    for (const PF_ParamIndex index : {-1, 2, 3}) {
      EXPECT_EQ(preCallbacks.checkout_layer(ref(), index, 7, &whole, 0, 1, 30, &result), PF_Err_INVALID_INDEX);
      expectComplaint(Matter::kWrongArgument,
                      "checkout_layer of index " + std::to_string(index) + ", which is no layer");
    }
  });
}

TEST_F(SmartServices, checkOutUnderNumbersFromZeroOnlyOnceEach) {
  const auto pre = inPreRender([&](const Call& call) {
    PF_CheckoutResult result{};
    const PF_RenderRequest& whole = call.preRender().input->output_request;
    EXPECT_EQ(preCallbacks.checkout_layer(ref(), 0, -1, &whole, 0, 1, 30, &result), PF_Err_BAD_CALLBACK_PARAM);
    expectComplaint(Matter::kWrongArgument, "checkout_layer with the id -1, which is negative");
    EXPECT_EQ(preCallbacks.checkout_layer(ref(), 0, 0, &whole, 0, 1, 30, &result), PF_Err_BAD_CALLBACK_PARAM);
    expectComplaint(Matter::kWrongArgument, "checkout_layer with the id 0, which is taken");
  });
  EXPECT_EQ(pre.checkouts().size(), 1U) << "what was refused is no check-out";
}

TEST_F(SmartServices, checkOutForARequestIntoAPlace) {
  inPreRender([&](const Call& call) {
    PF_CheckoutResult result{};
    const PF_RenderRequest& whole = call.preRender().input->output_request;
    EXPECT_EQ(preCallbacks.checkout_layer(ref(), 0, 1, nullptr, 0, 1, 30, &result), PF_Err_BAD_CALLBACK_PARAM);
    expectComplaint(Matter::kWrongArgument, "checkout_layer without a request or a place for the result");
    EXPECT_EQ(preCallbacks.checkout_layer(ref(), 0, 1, &whole, 0, 1, 30, nullptr), PF_Err_BAD_CALLBACK_PARAM);
    expectComplaint(Matter::kWrongArgument, "checkout_layer without a request or a place for the result");
  });
}

TEST_F(SmartServices, areRefusedOutsideTheirCommand) {
  inRender([&](PF_SmartRenderCallbacks&) {
    PF_CheckoutResult result{};
    const PF_RenderRequest request{};
    EXPECT_EQ(preCallbacks.checkout_layer(ref(), 0, 9, &request, 0, 1, 30, &result), PF_Err_BAD_CALLBACK_PARAM);
    expectComplaint(Matter::kWrongMoment, "checkout_layer outside a pre-render");
  });
  const auto expectNone = [&] {
    PF_EffectWorld world{};
    PF_EffectWorld* place = &world;
    EXPECT_EQ(callbacks.checkout_layer_pixels(ref(), 0, &place), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(place, nullptr);
    expectComplaint(Matter::kWrongMoment, "checkout_layer_pixels outside a smart render");
    place = &world;
    EXPECT_EQ(callbacks.checkout_output(ref(), &place), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(place, nullptr);
    expectComplaint(Matter::kWrongMoment, "checkout_output outside a smart render");
    EXPECT_EQ(callbacks.checkin_layer_pixels(ref(), 0), PF_Err_BAD_CALLBACK_PARAM);
    expectComplaint(Matter::kStrayPixels, "checkin_layer_pixels of id 0, which is not out");
  };
  inPreRender([&](const Call&) { expectNone(); });
  expectNone();
  PF_CheckoutResult result{};
  const PF_RenderRequest request{};
  EXPECT_EQ(preCallbacks.checkout_layer(ref(), 0, 9, &request, 0, 1, 30, &result), PF_Err_BAD_CALLBACK_PARAM);
  expectComplaint(Matter::kWrongMoment, "checkout_layer outside a pre-render");
}

TEST_F(SmartServices, givePixelsOfWhatWasCheckedOutAndTakeThemBackOnce) {
  inRender([&](PF_SmartRenderCallbacks& cb) {
    PF_EffectWorld* pixels = nullptr;
    EXPECT_EQ(cb.checkout_layer_pixels(ref(), 5, &pixels), PF_Err_BAD_CALLBACK_PARAM);
    expectComplaint(Matter::kStrayPixels, "checkout_layer_pixels of id 5, which was never checked out");
    EXPECT_EQ(cb.checkin_layer_pixels(ref(), 5), PF_Err_BAD_CALLBACK_PARAM);
    expectComplaint(Matter::kStrayPixels, "checkin_layer_pixels of id 5, which is not out");
    EXPECT_EQ(cb.checkin_layer_pixels(ref(), 0), PF_Err_BAD_CALLBACK_PARAM) << "before they were taken";
    expectComplaint(Matter::kStrayPixels, "checkin_layer_pixels of id 0, which is not out");
    EXPECT_EQ(cb.checkout_layer_pixels(ref(), 0, &pixels), PF_Err_NONE);
    EXPECT_EQ(cb.checkout_layer_pixels(ref(), 0, &pixels), PF_Err_BAD_CALLBACK_PARAM);
    expectComplaint(Matter::kStrayPixels, "checkout_layer_pixels of id 0, whose pixels were already taken");
    EXPECT_EQ(cb.checkin_layer_pixels(ref(), 0), PF_Err_NONE);
    EXPECT_EQ(cb.checkin_layer_pixels(ref(), 0), PF_Err_BAD_CALLBACK_PARAM);
    expectComplaint(Matter::kStrayPixels, "checkin_layer_pixels of id 0, which is not out");
  });
}

TEST_F(SmartServices, refuseToWriteNowhere) {
  inRender([&](PF_SmartRenderCallbacks& cb) {
    EXPECT_EQ(cb.checkout_layer_pixels(ref(), 0, nullptr), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(cb.checkout_output(ref(), nullptr), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(report(), "");
  });
}

TEST_F(SmartServices, answerAFaultWithItsCodeAndGiveNothing) {
  host.faults().fail("checkout_layer", 2, 77);
  const auto pre = inPreRender([&](const Call& call) {
    PF_CheckoutResult result{};
    result.ref_width = 123;
    const PF_RenderRequest& whole = call.preRender().input->output_request;
    EXPECT_EQ(preCallbacks.checkout_layer(ref(), 0, 1, &whole, 0, 1, 30, &result), 77);
    EXPECT_EQ(result.ref_width, 123);
  });
  ASSERT_EQ(pre.checkouts().size(), 2U);
  EXPECT_EQ(pre.checkouts()[1].error, 77);
  EXPECT_EQ(host.log().calls.back().result, 77);
  inRender([&](PF_SmartRenderCallbacks& cb) {
    PF_EffectWorld* world = nullptr;
    host.faults().fail("checkout_layer_pixels", 1, 78);
    EXPECT_EQ(cb.checkout_layer_pixels(ref(), 0, &world), 78);
    EXPECT_EQ(world, nullptr);
    host.faults().fail("checkout_output", 1, 79);
    EXPECT_EQ(cb.checkout_output(ref(), &world), 79);
    EXPECT_EQ(world, nullptr);
    EXPECT_EQ(cb.checkout_layer_pixels(ref(), 0, &world), PF_Err_NONE) << "the fault took nothing";
    host.faults().fail("checkin_layer_pixels", 1, 80);
    EXPECT_EQ(cb.checkin_layer_pixels(ref(), 0), 80);
  });
  EXPECT_EQ(host.faults().waiting(), 0);
  EXPECT_EQ(report(), "") << "the effect has done its part";
}

TEST_F(SmartServices, serveAForeignEffectRefWithAComplaint) {
  inPreRender([&](const Call& call) {
    PF_CheckoutResult result{};
    const PF_RenderRequest& whole = call.preRender().input->output_request;
    EXPECT_EQ(preCallbacks.checkout_layer(nullptr, 0, 1, &whole, 0, 1, 30, &result), PF_Err_NONE);
    expectComplaint(Matter::kWrongArgument, "checkout_layer with a foreign effect_ref");
  });
  inRender([&](PF_SmartRenderCallbacks& cb) {
    PF_EffectWorld* world = nullptr;
    EXPECT_EQ(cb.checkout_layer_pixels(nullptr, 0, &world), PF_Err_NONE);
    // The pixels are lent meanwhile, which is a debt and no complaint.
    ASSERT_EQ(host.books().complaints().size(), 1U);
    EXPECT_EQ(host.books().complaints()[0].text, "checkout_layer_pixels with a foreign effect_ref");
    EXPECT_EQ(cb.checkout_output(nullptr, &world), PF_Err_NONE);
    EXPECT_EQ(cb.checkin_layer_pixels(nullptr, 0), PF_Err_NONE);
    ASSERT_EQ(host.books().complaints().size(), 3U);
    EXPECT_EQ(host.books().complaints()[1].text, "checkout_output with a foreign effect_ref");
    EXPECT_EQ(host.books().complaints()[2].text, "checkin_layer_pixels with a foreign effect_ref");
  });
}

TEST_F(SmartServices, refuseTheMixThatNoEffectMayAskFor) {
  inPreRender([&](const Call&) {
    EXPECT_EQ(preCallbacks.GuidMixInPtr(ref(), 0, nullptr), PF_Err_INVALID_CALLBACK);
    expectComplaint(Matter::kUnknownService, "GuidMixInPtr, which this host does not have, was called");
  });
}

class PreRenders : public SmartServices {
 protected:
  // A pre-render with a handle as its data.
  standin::PreRendered withData() {
    return inPreRender(
        [](const Call& call) { call.preRender().output->pre_render_data = call.in->utils->host_new_handle(8); });
  }
};

TEST_F(PreRenders, thatAreReplacedEndTheirData) {
  standin::PreRendered pre = withData();
  void* const first = pre.data();
  standin::PreRendered other = withData();
  void* const second = other.data();
  ASSERT_NE(first, second);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), 2);
  pre = std::move(other);
  EXPECT_EQ(pre.data(), second);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), 1);
  standin::PreRendered& same = pre;
  pre = std::move(same);
  EXPECT_EQ(pre.data(), second) << "onto itself";
  const standin::PreRendered moved(std::move(pre));
  EXPECT_EQ(moved.data(), second);
  EXPECT_EQ(host.books().openCount(Matter::kHandle), 1);
  pre = withData();
  EXPECT_EQ(host.books().openCount(Matter::kHandle), 2) << "there was nothing left to end in what was moved from";
}

TEST_F(PreRenders, areRenderedOnceOnly) {
  int renders = 0;
  effect.on[PF_Cmd_SMART_RENDER] = [&](const Call&) { return ++renders, PF_Err{PF_Err_NONE}; };
  standin::PreRendered pre = withData();
  EXPECT_TRUE(pre.render().rendered);
  EXPECT_FALSE(pre.render().rendered);
  EXPECT_EQ(renders, 1);
}

TEST_F(PreRenders, thatFailedAreNotRendered) {
  effect.on[PF_Cmd_SMART_PRE_RENDER] = [](const Call& call) {
    call.preRender().output->result_rect = {0, 0, 9, 9};
    return PF_Err{99};
  };
  effect.on[PF_Cmd_SMART_RENDER] = [](const Call&) {
    ADD_FAILURE() << "rendered";
    return PF_Err{PF_Err_NONE};
  };
  standin::PreRendered pre = host.preRender(frame, host.defaults());
  EXPECT_EQ(pre.error(), 99);
  EXPECT_EQ(pre.render().error, 99);
  EXPECT_EQ(report(), "") << "nobody looks at the rectangles of a pre-render that failed";
}

TEST_F(PreRenders, mustNotPromiseLessThanTheyResultIn) {
  inPreRender([](const Call& call) { call.preRender().output->max_result_rect = {0, 0, 4, 3}; });
  expectComplaint(Matter::kPreRender, "the result (0, 0, 4, 4) exceeds the largest one (0, 0, 4, 3)");
}

TEST(Rects, lieInOneAnotherWhenNoSideIsBeyond) {
  const PF_LRect outer{0, 0, 4, 4};
  EXPECT_TRUE(standin::contains(outer, {1, 1, 3, 3}));
  EXPECT_TRUE(standin::contains(outer, outer));
  for (const PF_LRect& beyond : {PF_LRect{-1, 0, 4, 4}, {0, -1, 4, 4}, {0, 0, 5, 4}, {0, 0, 4, 5}}) {
    EXPECT_FALSE(standin::contains(outer, beyond)) << beyond.left << " " << beyond.top;
    EXPECT_FALSE(standin::sameRect(outer, beyond)) << beyond.left << " " << beyond.top;
  }
  EXPECT_TRUE(standin::contains(outer, {9, 9, 9, 20})) << "an empty rectangle lies in any";
}

TEST_F(PreRenders, seeBytesThatTheirRenderChangedBesideTheOutput) {
  effect.on[PF_Cmd_SMART_RENDER] = [&](const Call& call) {
    PF_EffectWorld* world = nullptr;
    PF_SmartRenderCallbacks& cb = *call.smartRender().cb;
    EXPECT_EQ(cb.checkout_layer_pixels(ref(), 0, &world), PF_Err_NONE);
    EXPECT_EQ(cb.checkout_output(ref(), &world), PF_Err_NONE);
    reinterpret_cast<uint8_t*>(world->data)[4 * world->rowbytes] = 0;
    return cb.checkin_layer_pixels(ref(), 0);
  };
  inPreRender([](const Call&) {}).render();
  ASSERT_GE(host.books().complaints().size(), 1U);
  EXPECT_EQ(host.books().complaints()[0].text, "bytes outside the output were changed");
  EXPECT_EQ(host.books().complaints()[0].matter, Matter::kOutside);
}

}  // namespace
