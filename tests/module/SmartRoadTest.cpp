// The smart road of a frame: what the pre-render asks for and keeps, and what the render makes of it.
#include <tuple>

#include "tests/module/WholeFrame.h"

namespace {

using standin::Depth;
using standin::FrameRequest;
using standin::Image;
using standin::LayerCheckout;
using standin::LayerValue;
using standin::Matter;
using standin::ParameterValues;
using standin::PreRendered;
using standin::RenderResult;
using vindrel::test::opaquePicture;

std::string text(const PF_LRect& rect) {
  return std::to_string(rect.left) + ' ' + std::to_string(rect.top) + ' ' + std::to_string(rect.right) + ' ' +
         std::to_string(rect.bottom);
}

class SmartRoad : public vindrel::test::HostedModule {
 protected:
  void SetUp() override {
    HostedModule::SetUp();
    values = host.defaults();
  }

  void TearDown() override {
    if (!finished) {
      finishOwing(leftCheckedOut);
    }
    HostedModule::TearDown();
  }

  FrameRequest frame(Depth depth = Depth::k8) const {
    FrameRequest request;
    request.input = opaquePicture(depth, 24, 16);
    return request;
  }

  /// An input that covers columns 5 to 28 and rows 6 to 21 of a layer of 40 x 30.
  FrameRequest partOfALayer() const {
    FrameRequest request = frame();
    request.layerWidth = 40;
    request.layerHeight = 30;
    request.input.originX = 5;
    request.input.originY = 6;
    return request;
  }

  // On this road values are never given back, nor the pixels of the side layers. The greying of the controls speaks of
  // the layer itself where an id is empty.
  static constexpr auto leftCheckedOut = {Matter::kParameter, Matter::kLayerPixels, Matter::kLayerParamUi};

  ParameterValues values;
};

TEST_F(SmartRoad, isOffered) {
  EXPECT_TRUE(host.smartRoadOffered());
}

TEST_F(SmartRoad, aNormalMaskAsksForWhatTheInputCovers) {
  const PreRendered made = host.preRender(partOfALayer(), values);
  ASSERT_EQ(made.error(), 0);
  EXPECT_EQ(text(made.resultRect()), "5 6 29 22");
  EXPECT_EQ(text(made.maxResultRect()), "5 6 29 22");
  EXPECT_EQ(made.flags(), 0);
}

TEST_F(SmartRoad, anInvertedNormalMaskAsksForTheWholeLayer) {
  values.setCheckbox("Invert Mask", true);
  const PreRendered made = host.preRender(partOfALayer(), values);
  ASSERT_EQ(made.error(), 0);
  EXPECT_EQ(text(made.resultRect()), "0 0 40 30");
  EXPECT_EQ(text(made.maxResultRect()), "0 0 40 30");
  EXPECT_EQ(made.flags(), PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS);
}

TEST_F(SmartRoad, aMaskOfNoneAsksForTheWholeLayer) {
  values.setPopup("Mask", vindrel::test::maskNone);
  const PreRendered made = host.preRender(partOfALayer(), values);
  ASSERT_EQ(made.error(), 0);
  EXPECT_EQ(text(made.resultRect()), "0 0 40 30");
  EXPECT_EQ(text(made.maxResultRect()), "0 0 40 30");
  EXPECT_EQ(made.flags(), 1);
}

TEST_F(SmartRoad, aMaskLayerAsksForTheWholeDownsampledLayer) {
  values.setPopup("Mask", vindrel::test::maskLayer);
  FrameRequest request = partOfALayer();
  request.layerWidth = 81;
  request.layerHeight = 121;
  request.downsampleX = {1, 2};
  request.downsampleY = {1, 4};
  const PreRendered made = host.preRender(request, values);
  ASSERT_EQ(made.error(), 0);
  EXPECT_EQ(text(made.resultRect()), "0 0 41 30");  // 40.5 + 0.5 and 30.25 + 0.5, truncated
  EXPECT_EQ(text(made.maxResultRect()), "0 0 41 30");
  EXPECT_EQ(made.flags(), 1);
}

TEST_F(SmartRoad, theRequestGoesToTheInputUnchanged) {
  FrameRequest request = partOfALayer();
  request.requestRect = PF_LRect{7, 8, 20, 15};
  const PreRendered made = host.preRender(request, values);
  ASSERT_EQ(made.error(), 0);
  const LayerCheckout& input = made.checkouts().back();
  EXPECT_EQ(input.index, 0);
  EXPECT_EQ(input.id, 0);
  EXPECT_EQ(text(input.request.rect), "7 8 20 15");
  EXPECT_EQ(text(made.resultRect()), "7 8 20 15");
  EXPECT_EQ(text(made.maxResultRect()), "5 6 29 22");
}

TEST_F(SmartRoad, layersAreRequestedInOrderWithAProbeEach) {
  const PreRendered made = host.preRender(frame(), values);
  ASSERT_EQ(made.error(), 0);
  std::vector<std::tuple<PF_ParamIndex, A_long>> asked;
  for (const LayerCheckout& checkout : made.checkouts()) {
    asked.emplace_back(checkout.index, checkout.id);
  }
  const auto index = [this](int32_t id) { return host.control(standin::ById{id})->index; };
  const std::vector<std::tuple<PF_ParamIndex, A_long>> expected = {
      {index(15), 1000001}, {index(15), 1},        {index(45), 1000002}, {index(45), 2}, {index(75), 1000003},
      {index(75), 3},       {index(105), 1000004}, {index(105), 4},      {0, 0}};
  EXPECT_EQ(asked, expected);
}

TEST_F(SmartRoad, aProbeAsksForNothingAndTheRequestForAllOfTheLayer) {
  values.setLayer("Custom Map Layer 2", LayerValue::of(opaquePicture(Depth::k8, 31, 17)));
  const PreRendered made = host.preRender(frame(), values);
  ASSERT_EQ(made.error(), 0);
  int32_t seen = 0;
  for (const LayerCheckout& checkout : made.checkouts()) {
    if (checkout.index == 0) continue;
    EXPECT_EQ(checkout.request.channel_mask, 15) << checkout.id;
    if (checkout.id >= 1000000) {
      EXPECT_EQ(text(checkout.request.rect), "0 0 0 0") << checkout.id;
    }
    if (checkout.id == 3) {
      EXPECT_EQ(text(checkout.request.rect), "0 0 31 17");
      ++seen;
    }
  }
  EXPECT_EQ(seen, 1);
}

/// Calls PF_Cmd_SMART_PRE_RENDER with rectangles that the test chooses on both sides.
class RectanglesOfBothSides : public SmartRoad {
 protected:
  /// The rectangle that stands in the answer, when the host's was `mine` and the input's is `inputs`.
  std::string united(const PF_LRect& mine, const PF_LRect& inputs) {
    inputRect = inputs;
    PF_PreRenderInput input{};
    input.bitdepth = 8;
    PF_PreRenderOutput output{};
    output.result_rect = mine;
    output.max_result_rect = mine;
    output.flags = 6;
    PF_PreRenderCallbacks callbacks{};
    callbacks.checkout_layer = [](PF_ProgPtr, PF_ParamIndex, A_long, const PF_RenderRequest*, A_long, A_long, A_u_long,
                                  PF_CheckoutResult* result) -> PF_Err {
      *result = {};
      result->result_rect = inputRect;
      result->max_result_rect = inputRect;
      return PF_Err_NONE;
    };
    PF_PreRenderExtra extra{&input, &output, &callbacks};
    // The command needs values to fetch: those of an ordinary frame.
    { const PreRendered ordinary = host.preRender(frame(), values); }
    EXPECT_EQ(host.call(PF_Cmd_SMART_PRE_RENDER, nullptr, nullptr, &extra), 0);
    EXPECT_EQ(output.flags, 6) << "flags stay as the host gave them";
    EXPECT_EQ(text(output.max_result_rect), text(output.result_rect));
    EXPECT_NE(output.delete_pre_render_data_func, nullptr);
    if (output.delete_pre_render_data_func != nullptr) {
      output.delete_pre_render_data_func(output.pre_render_data);
    }
    return text(output.result_rect);
  }

  static inline PF_LRect inputRect{};
};

TEST_F(RectanglesOfBothSides, areUnitedWhenNeitherIsEmpty) {
  EXPECT_EQ(united({10, 20, 30, 40}, {5, 25, 28, 50}), "5 20 30 50");
}

TEST_F(RectanglesOfBothSides, areTheInputsWhenTheHostsIsEmpty) {
  EXPECT_EQ(united({10, 20, 10, 40}, {5, 25, 28, 50}), "5 25 28 50");
  EXPECT_EQ(united({10, 40, 30, 40}, {5, 25, 28, 50}), "5 25 28 50");
}

TEST_F(RectanglesOfBothSides, areTheHostsWhenTheInputsIsEmpty) {
  EXPECT_EQ(united({10, 20, 30, 40}, {5, 25, 5, 50}), "10 20 30 40");
}

TEST_F(RectanglesOfBothSides, areTheInputsEvenWhenBothAreEmpty) {
  EXPECT_EQ(united({10, 20, 10, 20}, {5, 25, 5, 25}), "5 25 5 25");
}

TEST_F(SmartRoad, anInputWithoutPixelsIsNotDrawnButCheckedIn) {
  FrameRequest request = frame();
  request.input = Image();
  request.layerWidth = 24;
  request.layerHeight = 16;
  values.setPopup("Mask", vindrel::test::maskNone);  // else nothing would be asked for at all
  PreRendered made = host.preRender(request, values);
  ASSERT_EQ(made.error(), 0);
  const RenderResult result = made.render();
  EXPECT_EQ(result.error, 0);
  EXPECT_EQ(host.log().fills.size(), 0U);
  EXPECT_EQ(host.log().newWorlds.size(), 0U);
  EXPECT_EQ(host.log().count("checkin_layer_pixels"), 1);
}

TEST_F(SmartRoad, aMissingOutputIsNotDrawnButTheInputCheckedIn) {
  host.faults().fail("checkout_output", 1, 0);
  EXPECT_EQ(host.renderSmart(frame(), values).error, 0);
  EXPECT_EQ(host.log().fills.size(), 0U);
  EXPECT_EQ(host.log().count("checkin_layer_pixels"), 1);
}

TEST_F(SmartRoad, layersThatAreNotSetAreAskedForAllTheSame) {
  PreRendered made = host.preRender(frame(), values);
  ASSERT_EQ(made.error(), 0);
  EXPECT_EQ(made.render().error, 0);
  EXPECT_EQ(host.log().count("checkout_layer_pixels"), 5);
  for (const LayerCheckout& checkout : made.checkouts()) {
    EXPECT_EQ(checkout.pixelsTaken, checkout.id <= 4) << checkout.id;
  }
}

TEST_F(SmartRoad, onlyTheInputIsCheckedIn) {
  values.setLayer("Mask Target Layer", LayerValue::of(opaquePicture(Depth::k8, 24, 16)));
  values.setLayer("Custom Map Layer 1", LayerValue::of(opaquePicture(Depth::k8, 24, 16)));
  values.setLayer("Custom Map Layer 2", LayerValue::of(opaquePicture(Depth::k8, 24, 16)));
  values.setLayer("Custom Map Layer 3", LayerValue::of(opaquePicture(Depth::k8, 24, 16)));
  PreRendered made = host.preRender(frame(), values);
  ASSERT_EQ(made.render().error, 0);
  for (const LayerCheckout& checkout : made.checkouts()) {
    EXPECT_EQ(checkout.pixelsGivenBack, checkout.id == 0) << checkout.id;
  }
  EXPECT_EQ(host.books().openCount(Matter::kLayerPixels), 4);
}

TEST_F(SmartRoad, noValueIsGivenBack) {
  ASSERT_EQ(host.renderSmart(frame(), values).error, 0);
  EXPECT_EQ(host.log().count("checkin_param"), 0);
  // 122 controls, of which 8 only order the list and 4 are layers, which are not fetched here.
  EXPECT_EQ(host.log().count("checkout_param"), 110);
  EXPECT_EQ(host.books().openCount(Matter::kParameter), 110);
}

TEST_F(SmartRoad, theRenderUsesTheValuesOfItsPreRender) {
  values.setNumber("Dot Size", 30);
  PreRendered early = host.preRender(frame(), values);
  const RenderResult expected = host.renderSmart(frame(), values);
  values.setNumber("Dot Size", 3);
  const RenderResult between = host.renderSmart(frame(), values);
  const RenderResult late = early.render();
  ASSERT_EQ(late.error, 0);
  EXPECT_TRUE(samePixels(late.output, expected.output));
  EXPECT_FALSE(samePixels(late.output, between.output));
}

TEST_F(SmartRoad, aPreRenderWithoutARenderLeavesNoBlockBehind) {
  const int32_t handles = host.books().openCount(Matter::kHandle);
  {
    const PreRendered made = host.preRender(frame(), values);
    ASSERT_EQ(made.error(), 0);
    EXPECT_GT(host.books().openCount(Matter::kHandle), handles);
  }
  EXPECT_EQ(host.books().openCount(Matter::kHandle), handles);
}

TEST_F(SmartRoad, theCanvasLivesUntilTheHostDropsTheFrame) {
  PreRendered made = host.preRender(frame(), values);
  ASSERT_EQ(made.render().error, 0);
  EXPECT_EQ(host.books().openCount(Matter::kWorld), 1);
  made.discard();
  EXPECT_EQ(host.books().openCount(Matter::kWorld), 0);
}

TEST_F(SmartRoad, aFrameThatIsDroppedAfterTheSetDownEndsQuietly) {
  PreRendered made = host.preRender(frame(), values);
  ASSERT_EQ(made.render().error, 0);
  finished = true;
  EXPECT_EQ(host.finish(), 0);
  // By then the effect has no way to the host's memory any more: what the frame held stays with the host.
  made.discard();
  EXPECT_GT(host.books().openCount(Matter::kHandle), 0);
  EXPECT_EQ(host.books().openCount(Matter::kWorld), 1);
  EXPECT_EQ(owed({Matter::kHandle, Matter::kWorld, Matter::kParameter, Matter::kLayerPixels}), "");
}

TEST_F(SmartRoad, aSecondRenderOfAFrameReplacesItsCanvas) {
  PreRendered made = host.preRender(frame(), values);
  ASSERT_EQ(made.render().error, 0);
  ASSERT_EQ(host.log().newWorlds.size(), 1U);
  ASSERT_EQ(host.log().count("PF_DisposeWorld"), 0);
  // The format can't be read, so that nothing is drawn: the canvas is made all the same.
  static PF_EffectWorld world{};
  PF_SmartRenderInput input{};
  input.pre_render_data = made.data();
  PF_SmartRenderCallbacks callbacks{};
  callbacks.checkout_layer_pixels = [](PF_ProgPtr, A_long, PF_EffectWorld** pixels) -> PF_Err {
    *pixels = &world;
    return PF_Err_NONE;
  };
  callbacks.checkout_output = [](PF_ProgPtr, PF_EffectWorld** output) -> PF_Err {
    *output = &world;
    return PF_Err_NONE;
  };
  PF_SmartRenderExtra extra{&input, &callbacks};
  host.faults().fail("PF_GetPixelFormat", 1, 87);
  EXPECT_EQ(host.call(PF_Cmd_SMART_RENDER, nullptr, nullptr, &extra), 87);
  EXPECT_EQ(host.log().newWorlds.size(), 2U);
  EXPECT_EQ(host.log().count("PF_DisposeWorld"), 1) << "the first canvas went back when the second came";
  EXPECT_EQ(host.books().openCount(Matter::kWorld), 1);
}

TEST_F(SmartRoad, aPreRenderWithoutABasicSuiteIsDamageAndLeavesNoFrame) {
  host.settings().withoutBasicSuite = true;
  const PreRendered made = host.preRender(frame(), values);
  EXPECT_EQ(made.error(), PF_Err_INTERNAL_STRUCT_DAMAGED);
  EXPECT_EQ(made.data(), nullptr);
  EXPECT_EQ(host.log().count("checkout_param"), 0);
  host.settings().withoutBasicSuite = false;
}

TEST_F(SmartRoad, aRenderWithoutABasicSuiteIsDamageBeforeAnythingIsDrawn) {
  PreRendered made = host.preRender(frame(), values);
  ASSERT_EQ(made.error(), 0);
  host.settings().withoutBasicSuite = true;
  EXPECT_EQ(made.render().error, PF_Err_INTERNAL_STRUCT_DAMAGED);
  EXPECT_EQ(host.log().newWorlds.size(), 1U) << "worlds come by the suites of the first call";
  EXPECT_EQ(host.log().fills.size(), 0U);
  host.settings().withoutBasicSuite = false;
}

TEST_F(SmartRoad, aRenderWithoutPreRenderDataIsDamage) {
  PF_SmartRenderInput input{};
  PF_SmartRenderCallbacks callbacks{};
  PF_SmartRenderExtra extra{&input, &callbacks};
  EXPECT_EQ(host.call(PF_Cmd_SMART_RENDER, nullptr, nullptr, &extra), PF_Err_INTERNAL_STRUCT_DAMAGED);
}

TEST_F(SmartRoad, aPreRenderWithoutMemoryIsDamage) {
  host.faults().fail("host_new_handle", 1, 0);
  EXPECT_EQ(host.preRender(frame(), values).error(), PF_Err_INTERNAL_STRUCT_DAMAGED);
}

TEST_F(SmartRoad, aFailedFetchIsToldAndNoLayerIsRequested) {
  host.faults().fail("checkout_param", 7, 81);
  const PreRendered made = host.preRender(frame(), values);
  EXPECT_EQ(made.error(), 81);
  EXPECT_TRUE(made.checkouts().empty());
  EXPECT_NE(made.data(), nullptr) << "the record is the host's to drop";
}

TEST_F(SmartRoad, aFailedFetchStillFillsTheRectangles) {
  // "Mask" is fetched before the value that fails.
  values.setPopup("Mask", vindrel::test::maskNone);
  host.faults().fail("checkout_param", 60, 81);
  const PreRendered made = host.preRender(partOfALayer(), values);
  EXPECT_EQ(made.error(), 81);
  EXPECT_EQ(text(made.resultRect()), "0 0 40 30");
  EXPECT_EQ(made.flags(), 1);
}

TEST_F(SmartRoad, aFailedLayerRequestEndsTheRequests) {
  host.faults().fail("checkout_layer", 4, 82);
  const PreRendered made = host.preRender(frame(), values);
  EXPECT_EQ(made.error(), 82);
  EXPECT_EQ(host.log().count("checkout_layer"), 4);
}

TEST_F(SmartRoad, aFailedInputEndsTheFrameWithoutACheckIn) {
  host.faults().fail("checkout_layer_pixels", 1, 83);
  EXPECT_EQ(host.renderSmart(frame(), values).error, 83);
  EXPECT_EQ(host.log().count("checkout_output"), 0);
  EXPECT_EQ(host.log().count("checkin_layer_pixels"), 0);
}

TEST_F(SmartRoad, aFailedSideLayerEndsTheFrameAfterTheCanvasWasMade) {
  host.faults().fail("checkout_layer_pixels", 3, 84);
  EXPECT_EQ(host.renderSmart(frame(), values).error, 84);
  EXPECT_EQ(host.log().count("checkout_layer_pixels"), 3);
  EXPECT_EQ(host.log().newWorlds.size(), 1U);
  EXPECT_EQ(host.log().fills.size(), 0U);
  EXPECT_EQ(host.log().count("checkin_layer_pixels"), 0);
}

TEST_F(SmartRoad, aFailedDrawingIsToldWithoutACheckIn) {
  host.faults().fail("transfer_rect", 1, 85);
  EXPECT_EQ(host.renderSmart(frame(), values).error, 85);
  EXPECT_EQ(host.log().count("checkin_layer_pixels"), 0);
}

TEST_F(SmartRoad, aFailedCheckInIsTheResult) {
  host.faults().fail("checkin_layer_pixels", 1, 86);
  EXPECT_EQ(host.renderSmart(frame(), values).error, 86);
}

TEST_F(SmartRoad, aCanvasThatTheHostCantMakeBringsTheHostsError) {
  host.faults().fail("PF_NewWorld", 1, PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.renderSmart(frame(), values).error, PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(host.books().openCount(Matter::kWorld), 0);
}

/// The two roads to one frame.
class BothRoads : public SmartRoad {
 protected:
  void TearDown() override {
    // The classic road checks in every control with a value, greyed layers too, which it hasn't checked out.
    finishOwing({Matter::kParameter, Matter::kLayerPixels, Matter::kLayerParamUi, Matter::kStrayCheckin});
    SmartRoad::TearDown();
  }
};

TEST_F(BothRoads, giveTheSamePixelsAtEveryDepthAndMask) {
  Image mask(Depth::k8, 24, 16);
  for (int32_t y = 0; y < 16; ++y) {
    for (int32_t x = 0; x < 24; ++x) {
      mask.at<PF_Pixel>(x, y) = {static_cast<A_u_char>(10 * x), 0, 0, 0};
    }
  }
  values.setLayer("Mask Target Layer", LayerValue::of(mask));
  values.setAngle("Global Rotation", 20);
  for (const Depth depth : standin::kAllDepths) {
    for (const int32_t item : {vindrel::test::maskNormal, vindrel::test::maskNone, vindrel::test::maskLayer}) {
      for (const bool inverted : {false, true}) {
        values.setPopup("Mask", item);
        values.setCheckbox("Invert Mask", inverted);
        // As the user's host would: the greyed state follows the values.
        ASSERT_EQ(host.updateParamsUi(values), 0);
        const RenderResult classic = host.renderClassic(frame(depth), values);
        const RenderResult smart = host.renderSmart(frame(depth), values);
        ASSERT_EQ(classic.error, 0);
        ASSERT_EQ(smart.error, 0);
        EXPECT_TRUE(samePixels(classic.output, smart.output))
            << "mask " << item << (inverted ? " inverted" : "") << " at " << static_cast<int32_t>(depth) << " bits";
      }
    }
  }
}

TEST_F(BothRoads, giveEachEffectorItsOwnMap) {
  // Three maps that are dark in a third of the layer each. Dots shrink to nothing where a map is bright.
  for (int32_t n = 0; n < 3; ++n) {
    Image map(Depth::k8, 24, 16);
    for (int32_t y = 0; y < 16; ++y) {
      for (int32_t x = 0; x < 24; ++x) {
        const bool dark = x / 8 == n;
        const A_u_char level = dark ? 0 : 255;
        map.at<PF_Pixel>(x, y) = {255, level, level, level};
      }
    }
    const std::string number = std::to_string(n + 1);
    values.setLayer("Custom Map Layer " + number, LayerValue::of(map));
    values.setPopup("Effect Map " + number, 1);
    values.setCheckbox("Fit to Layer " + number, true);
    values.setCheckbox("Absolute " + number, true);
    values.setNumber("ABS Size " + number, 0);
  }
  values.setNumber("Dot Size", 6);
  values.setNumber("Dot Distance X", 2);
  values.setNumber("Dot Distance Y", 2);
  values.setCheckbox("Clear Background", true);
  std::vector<Image> pictures;
  for (const char* const enabled : {"Enable Effector 1", "Enable Effector 2", "Enable Effector 3"}) {
    values.setCheckbox(enabled, true);
    ASSERT_EQ(host.updateParamsUi(values), 0);
    const RenderResult classic = host.renderClassic(frame(), values);
    const RenderResult smart = host.renderSmart(frame(), values);
    ASSERT_EQ(classic.error, 0);
    ASSERT_EQ(smart.error, 0);
    EXPECT_TRUE(samePixels(classic.output, smart.output)) << enabled;
    pictures.push_back(smart.output);
    values.setCheckbox(enabled, false);
  }
  EXPECT_FALSE(samePixels(pictures[0], pictures[1]));
  EXPECT_FALSE(samePixels(pictures[1], pictures[2]));
  EXPECT_FALSE(samePixels(pictures[0], pictures[2]));
}

TEST_F(BothRoads, differWhereALayerIsGreyedThoughItIsAskedFor) {
  values.setLayer("Mask Target Layer", LayerValue::of(opaquePicture(Depth::k8, 24, 16)));
  values.setCheckbox("Clear Background", true);
  values.setNumber("Dot Size", 200);
  values.setPopup("Mask", vindrel::test::maskNone);
  ASSERT_EQ(host.updateParamsUi(values), 0);
  // The mask is switched to the layer, and the frame comes before the controls were updated: the classic road doesn't
  // fetch a greyed layer, the smart road asks for every layer.
  values.setPopup("Mask", vindrel::test::maskLayer);
  const RenderResult classic = host.renderClassic(frame(), values);
  const RenderResult smart = host.renderSmart(frame(), values);
  EXPECT_TRUE(vindrel::test::isTransparentBlack(classic.output));
  EXPECT_FALSE(vindrel::test::isTransparentBlack(smart.output));
}

}  // namespace
