// What stands around the dots of a frame: background, down-sampling, and the way of the canvas through the mask.
#include "tests/module/HostedModule.h"

namespace {

using standin::Depth;
using standin::FrameRequest;
using standin::Image;
using standin::LayerValue;
using standin::ParameterValues;
using standin::RenderResult;
using standin::TransferCall;
using vindrel::test::isTransparentBlack;
using vindrel::test::opaquePicture;

enum MaskItem : int32_t { normal = 1, none = 2, layer = 3 };

class FrameSetup : public vindrel::test::HostedModule {
 protected:
  void SetUp() override {
    HostedModule::SetUp();
    values = host.defaults();
  }

  void TearDown() override {
    // The smart road gives no value back and no pixels of the side layers, and neither does a frame that a missing
    // suite has ended.
    finishOwing({standin::Matter::kParameter, standin::Matter::kLayerPixels});
    HostedModule::TearDown();
  }

  FrameRequest frame(Depth depth = Depth::k8, int32_t width = 24, int32_t height = 16) const {
    FrameRequest request;
    request.input = opaquePicture(depth, width, height);
    return request;
  }

  /// An input that covers a part of a layer of 40 x 30, from column 5 and row 6 on.
  FrameRequest partOfALayer(Depth depth = Depth::k8) const {
    FrameRequest request = frame(depth);
    request.layerWidth = 40;
    request.layerHeight = 30;
    request.input.originX = 5;
    request.input.originY = 6;
    return request;
  }

  void drawNoDots() {
    values.setNumber("Dot Size", 0);
    values.setNumber("Dot Distance X", 50);
    values.setNumber("Dot Distance Y", 50);
  }

  RenderResult classic(const FrameRequest& request) { return host.renderClassic(request, values); }
  RenderResult smart(const FrameRequest& request) { return host.renderSmart(request, values); }

  const TransferCall& transfer() {
    EXPECT_EQ(host.log().transfers.size(), 1U);
    return host.log().transfers.back();
  }

  ParameterValues values;
};

std::string text(const std::optional<PF_Rect>& rect) {
  return rect ? std::to_string(rect->left) + ' ' + std::to_string(rect->top) + ' ' + std::to_string(rect->right) + ' ' +
                    std::to_string(rect->bottom)
              : "none";
}

TEST_F(FrameSetup, aClearedBackgroundWithoutDotsIsTransparent) {
  drawNoDots();
  values.setCheckbox("Clear Background", true);
  for (const Depth depth : standin::kAllDepths) {
    const RenderResult result = classic(frame(depth));
    ASSERT_EQ(result.error, 0);
    EXPECT_TRUE(isTransparentBlack(result.output));
  }
  EXPECT_EQ(host.log().copies.size(), 0U);
}

TEST_F(FrameSetup, aKeptBackgroundWithoutDotsIsTheSource) {
  drawNoDots();
  for (const Depth depth : standin::kAllDepths) {
    const FrameRequest request = frame(depth);
    const RenderResult result = classic(request);
    ASSERT_EQ(result.error, 0);
    EXPECT_TRUE(samePixels(result.output, request.input));
  }
}

TEST_F(FrameSetup, aKeptBackgroundStandsAtItsPlaceInTheOutput) {
  drawNoDots();
  values.setPopup("Mask", none);  // the output is then the whole layer
  const FrameRequest request = partOfALayer();
  const RenderResult result = smart(request);
  ASSERT_EQ(result.error, 0);
  ASSERT_EQ(result.output.width(), 40);
  ASSERT_EQ(result.output.height(), 30);
  for (int32_t y = 0; y < 30; ++y) {
    for (int32_t x = 0; x < 40; ++x) {
      const bool inside = x >= 5 && x < 29 && y >= 6 && y < 22;
      const PF_Pixel expected = inside ? request.input.at<PF_Pixel>(x - 5, y - 6) : PF_Pixel{};
      const PF_Pixel& found = result.output.at<PF_Pixel>(x, y);
      ASSERT_TRUE(found.alpha == expected.alpha && found.red == expected.red && found.green == expected.green &&
                  found.blue == expected.blue)
          << "at " << x << ", " << y;
    }
  }
}

TEST_F(FrameSetup, theWholeOutputIsFilledWithTransparentBlackFirst) {
  ASSERT_EQ(classic(frame()).error, 0);
  ASSERT_EQ(host.log().fills.size(), 1U);
  const standin::FillCall& fill = host.log().fills[0];
  EXPECT_TRUE(fill.hasColor);
  EXPECT_EQ(fill.color.alpha + fill.color.red + fill.color.green + fill.color.blue, 0);
  EXPECT_EQ(text(fill.rect), "0 0 24 16");
  EXPECT_LT(fill.order, host.log().copies.at(0).order);
}

TEST_F(FrameSetup, theSourceGoesToItsOriginLessThatOfTheOutput) {
  FrameRequest request = frame();
  request.input.originX = 3;
  request.input.originY = 5;
  request.outputWidth = 60;
  request.outputHeight = 50;
  request.outputOriginX = -2;
  request.outputOriginY = -4;
  ASSERT_EQ(classic(request).error, 0);
  ASSERT_EQ(host.log().copies.size(), 1U);
  EXPECT_EQ(text(host.log().copies[0].sourceRect), "0 0 24 16");
  EXPECT_EQ(text(host.log().copies[0].targetRect), "5 9 29 25");
}

TEST_F(FrameSetup, aSourceThatReachesBeyondTheOutputIsSqueezedIntoIt) {
  FrameRequest request = frame();
  request.input.originX = 6;
  request.input.originY = -4;
  request.outputWidth = 20;
  request.outputHeight = 10;
  ASSERT_EQ(classic(request).error, 0);
  ASSERT_EQ(host.log().copies.size(), 1U);
  // The far sides end at the output, the near ones may lie outside; the source stays whole.
  EXPECT_EQ(text(host.log().copies[0].sourceRect), "0 0 24 16");
  EXPECT_EQ(text(host.log().copies[0].targetRect), "6 -4 20 10");
}

TEST_F(FrameSetup, aSourceBeyondTheOutputHasItsNearSidesClampedToo) {
  FrameRequest request = frame();
  request.input.originX = 30;
  request.input.originY = 40;
  request.outputWidth = 20;
  request.outputHeight = 10;
  ASSERT_EQ(classic(request).error, 0);
  EXPECT_EQ(text(host.log().copies.at(0).targetRect), "20 10 20 10");
}

TEST_F(FrameSetup, originsCountByTheirLowSixteenBits) {
  FrameRequest request = frame();
  request.input.originX = 0x10003;  // 3
  request.input.originY = 0xFFFE;   // -2
  request.outputWidth = 60;
  request.outputHeight = 50;
  request.outputOriginX = 0x20001;  // 1
  ASSERT_EQ(classic(request).error, 0);
  EXPECT_EQ(text(host.log().copies.at(0).targetRect), "2 -2 26 14");
  EXPECT_EQ(text(transfer().sourceRect), "3 -2 27 14");
}

TEST_F(FrameSetup, theFarSideOfTheSourceCountsByItsLowSixteenBits) {
  FrameRequest request = frame();
  request.input.originX = 32760;  // 32784 at the far side, which is -32752
  ASSERT_EQ(classic(request).error, 0);
  EXPECT_EQ(text(host.log().copies.at(0).targetRect), "24 0 -32752 16");
}

TEST_F(FrameSetup, theWayFromTheOutputsOriginIsMeasuredInFullWidth) {
  FrameRequest request = frame();
  request.input.originX = -30000;
  request.input.originY = 29984;
  request.outputWidth = 60;
  request.outputHeight = 50;
  request.outputOriginX = 20000;
  request.outputOriginY = -20000;
  ASSERT_EQ(classic(request).error, 0);
  // 16 bits would make 15536 and 15560 of -50000 and -49976, and -15552 and -15536 of 49984 and 50000.
  EXPECT_EQ(text(host.log().copies.at(0).targetRect), "-50000 50 -49976 50");
}

TEST_F(FrameSetup, sizesCountByTheirLowSixteenBits) {
  FrameRequest request = frame(Depth::k8, 0x10018, 2);  // 24
  request.outputWidth = 0x10014;                        // 20
  request.outputHeight = 3;
  request.layerWidth = 30;  // of which the host makes the canvas; worlds of 65536 pixels it refuses
  request.layerHeight = 2;
  ASSERT_EQ(classic(request).error, 0);
  EXPECT_EQ(text(host.log().fills.at(0).rect), "0 0 20 3");
  EXPECT_EQ(text(host.log().copies.at(0).sourceRect), "0 0 24 2");
  EXPECT_EQ(text(host.log().copies.at(0).targetRect), "0 0 20 2");
  EXPECT_EQ(text(transfer().sourceRect), "0 0 24 2");
}

TEST_F(FrameSetup, theBestQualityCopiesWithInterpolation) {
  FrameRequest request = frame();
  request.quality = PF_Quality_HI;
  ASSERT_EQ(classic(request).error, 0);
  EXPECT_TRUE(host.log().copies.at(0).highQuality);
  EXPECT_EQ(transfer().quality, PF_Quality_HI);
}

TEST_F(FrameSetup, anyOtherQualityCopiesPlainly) {
  FrameRequest request = frame();
  request.quality = PF_Quality_LO;
  ASSERT_EQ(classic(request).error, 0);
  EXPECT_FALSE(host.log().copies.at(0).highQuality);
  EXPECT_EQ(transfer().quality, PF_Quality_LO);
}

TEST_F(FrameSetup, theCanvasGoesInFrontStraightAndOpaqueFromTheInputsPlaceToTheOutputsCorner) {
  ASSERT_EQ(smart(partOfALayer()).error, 0);
  const TransferCall& call = transfer();
  EXPECT_EQ(text(call.sourceRect), "5 6 29 22");
  EXPECT_EQ(call.targetX, 0);
  EXPECT_EQ(call.targetY, 0);
  EXPECT_EQ(call.modeFlags, PF_MF_Alpha_STRAIGHT);
  EXPECT_EQ(call.field, PF_Field_FRAME);
  EXPECT_EQ(call.mode.xfer, PF_Xfer_IN_FRONT);
  EXPECT_EQ(call.mode.rand_seed, 0);
  EXPECT_EQ(call.mode.opacity, 255);
  EXPECT_EQ(call.mode.rgb_only, 0);
  EXPECT_EQ(call.mode.opacitySu, 32768);
  EXPECT_EQ(call.source.width, 40) << "the canvas has the size of the layer";
}

TEST_F(FrameSetup, aWholeLayerFrameStillTakesThePartThatTheInputCovers) {
  values.setPopup("Mask", none);
  ASSERT_EQ(smart(partOfALayer()).error, 0);
  EXPECT_EQ(text(transfer().sourceRect), "5 6 29 22");
}

TEST_F(FrameSetup, theNormalMaskIsTheInputAtTheCorner) {
  ASSERT_EQ(smart(partOfALayer()).error, 0);
  const TransferCall& call = transfer();
  ASSERT_TRUE(call.mask.has_value());
  EXPECT_EQ(call.mask->mask.width, 24);
  EXPECT_NE(call.mask->mask.data, nullptr);
  EXPECT_EQ(call.mask->offset.h, 0);
  EXPECT_EQ(call.mask->offset.v, 0);
  EXPECT_EQ(call.mask->what_is_mask, PF_MaskFlag_NONE);
}

TEST_F(FrameSetup, theInvertedNormalMaskStandsAtTheInputsOrigin) {
  values.setCheckbox("Invert Mask", true);
  ASSERT_EQ(smart(partOfALayer()).error, 0);
  const TransferCall& call = transfer();
  ASSERT_TRUE(call.mask.has_value());
  EXPECT_EQ(call.mask->offset.h, 5);
  EXPECT_EQ(call.mask->offset.v, 6);
  EXPECT_EQ(call.mask->what_is_mask, PF_MaskFlag_INVERTED);
}

TEST_F(FrameSetup, aLayerMaskWithoutALayerIsAllZeroAndStillPassed) {
  values.setPopup("Mask", layer);
  ASSERT_EQ(smart(frame()).error, 0);
  const TransferCall& call = transfer();
  ASSERT_TRUE(call.mask.has_value());
  EXPECT_EQ(call.mask->mask.data, nullptr);
  EXPECT_EQ(call.mask->mask.width, 0);
  EXPECT_EQ(call.mask->mask.height, 0);
  EXPECT_EQ(call.mask->mask.rowbytes, 0);
  EXPECT_EQ(call.mask->offset.h, 0);
  EXPECT_EQ(call.mask->offset.v, 0);
  EXPECT_EQ(call.mask->what_is_mask, PF_MaskFlag_NONE);
}

TEST_F(FrameSetup, aLayerMaskSetToNoneOnTheClassicRoadIsAWorldOfNoSizeInTheMiddle) {
  values.setPopup("Mask", layer);
  ASSERT_EQ(classic(frame()).error, 0);
  const TransferCall& call = transfer();
  ASSERT_TRUE(call.mask.has_value());
  EXPECT_EQ(call.mask->mask.width, 0);
  EXPECT_EQ(call.mask->offset.h, 12);
  EXPECT_EQ(call.mask->offset.v, 8);
}

TEST_F(FrameSetup, aLayerMaskLetsTheDotsThroughWhereItIsOpaque) {
  values.setPopup("Mask", layer);
  values.setCheckbox("Clear Background", true);
  values.setNumber("Dot Size", 200);
  Image mask(Depth::k8, 24, 16);
  for (int32_t y = 0; y < 16; ++y) {
    for (int32_t x = 12; x < 24; ++x) {
      mask.at<PF_Pixel>(x, y) = {255, 0, 0, 0};
    }
  }
  values.setLayer("Mask Target Layer", LayerValue::of(mask));
  const RenderResult result = smart(frame());
  ASSERT_EQ(result.error, 0);
  EXPECT_EQ(result.output.at<PF_Pixel>(11, 8).alpha, 0);
  EXPECT_EQ(result.output.at<PF_Pixel>(12, 8).alpha, 255);
}

TEST_F(FrameSetup, anInvertedMaskOfNoneIsNoMask) {
  values.setPopup("Mask", none);
  values.setCheckbox("Invert Mask", true);
  ASSERT_EQ(smart(frame()).error, 0);
  EXPECT_FALSE(transfer().mask.has_value());
}

TEST_F(FrameSetup, aMaskLayerIsCentredWithHalvesRoundedUp) {
  values.setPopup("Mask", layer);
  // 10 - 13 = -3, half of it -1.5, which becomes -1; 13 - 10 = 3, half of it 1.5, which becomes 2.
  values.setLayer("Mask Target Layer", LayerValue::of(opaquePicture(Depth::k8, 13, 10)));
  ASSERT_EQ(classic(frame(Depth::k8, 10, 13)).error, 0);
  const TransferCall& call = transfer();
  ASSERT_TRUE(call.mask.has_value());
  EXPECT_EQ(call.mask->mask.width, 13);
  EXPECT_EQ(call.mask->offset.h, -1);
  EXPECT_EQ(call.mask->offset.v, 2);
}

TEST_F(FrameSetup, aMaskLayerLargerThanTheOutputIsCentredOnWholePixelsDownward) {
  values.setPopup("Mask", layer);
  // 10 - 14 = -4 and half of it -2, 10 - 15 = -5 and half of it -2.5: both are the floor of a half more.
  values.setLayer("Mask Target Layer", LayerValue::of(opaquePicture(Depth::k8, 14, 15)));
  ASSERT_EQ(classic(frame(Depth::k8, 10, 10)).error, 0);
  EXPECT_EQ(transfer().mask->offset.h, -2);
  EXPECT_EQ(transfer().mask->offset.v, -2);
}

TEST_F(FrameSetup, aMaskLayerIsCentredInFullWidthAndItsOffsetCutToSixteenBits) {
  values.setPopup("Mask", layer);
  const auto centred = [&](int32_t maskWidth, int32_t maskHeight, const FrameRequest& request) {
    host.log().clear();
    values.setLayer("Mask Target Layer", LayerValue::of(opaquePicture(Depth::k8, maskWidth, maskHeight)));
    EXPECT_EQ(classic(request).error, 0);
    const auto& offset = transfer().mask->offset;
    return std::to_string(offset.h) + ' ' + std::to_string(offset.v);
  };
  // Half of 24 - 65560 is -32768; by low halves both would be 24.
  EXPECT_EQ(centred(0x10018, 2, frame(Depth::k8, 24, 16)), "-32768 7");
  EXPECT_EQ(centred(2, 0x10010, frame(Depth::k8, 24, 16)), "11 -32768");
  // Half of 65560 - 10 is 32775, which is -32761 in 16 bits; by low halves it would be 7.
  FrameRequest request = frame(Depth::k8, 24, 16);
  request.outputWidth = 0x10018;
  request.outputHeight = 2;
  EXPECT_EQ(centred(10, 2, request), "-32761 0");
  request.outputWidth = 2;
  request.outputHeight = 0x10018;
  EXPECT_EQ(centred(2, 10, request), "0 -32761");
  // The same by the origin: half of 65536 - 10 + 24.
  request = frame(Depth::k8, 24, 24);
  request.outputOriginX = 0x10000;
  request.outputOriginY = 0x10000;
  EXPECT_EQ(centred(10, 10, request), "-32761 -32761");
}

TEST_F(FrameSetup, anInvertedMaskLayerIsCentredAsAPlainOneAndSaysThatItIsInverted) {
  values.setPopup("Mask", layer);
  values.setCheckbox("Invert Mask", true);
  values.setLayer("Mask Target Layer", LayerValue::of(opaquePicture(Depth::k8, 10, 10)));
  FrameRequest request = frame();
  request.input.originX = 5;
  request.input.originY = 6;
  ASSERT_EQ(classic(request).error, 0);
  const TransferCall& call = transfer();
  ASSERT_TRUE(call.mask.has_value());
  EXPECT_EQ(call.mask->what_is_mask, PF_MaskFlag_INVERTED);
  EXPECT_EQ(call.mask->offset.h, 7);  // (24 - 10) / 2
  EXPECT_EQ(call.mask->offset.v, 3);  // (16 - 10) / 2
}

TEST_F(FrameSetup, theCentreOfAMaskLayerMovesWithTheOutputsOrigin) {
  values.setPopup("Mask", layer);
  values.setLayer("Mask Target Layer", LayerValue::of(opaquePicture(Depth::k8, 10, 10)));
  FrameRequest request = frame(Depth::k8, 30, 30);
  request.outputOriginX = 8;
  request.outputOriginY = -4;
  ASSERT_EQ(classic(request).error, 0);
  EXPECT_EQ(transfer().mask->offset.h, 14);  // (8 - 10 + 30) / 2
  EXPECT_EQ(transfer().mask->offset.v, 8);   // (-4 - 10 + 30) / 2
}

/// A frame at full resolution whose sizes were divided by hand equals the down-sampled one: the same canvas, the same
/// places. A quarter across, a half down: sizes take the smaller factor.
class Downsampling : public FrameSetup {
 protected:
  RenderResult downsampled() {
    FrameRequest request = frame(Depth::k8, 60, 60);
    request.downsampleX = {1, 4};
    request.downsampleY = {1, 2};
    return classic(request);
  }

  RenderResult full() { return classic(frame(Depth::k8, 60, 60)); }
};

TEST_F(Downsampling, scalesDotSizeByTheSmallerFactorAndEachDistanceByItsOwn) {
  values.setNumber("Dot Size", 20);
  values.setNumber("Dot Distance X", 12);
  values.setNumber("Dot Distance Y", 10);
  const RenderResult scaled = downsampled();
  ASSERT_EQ(scaled.error, 0);
  values.setNumber("Dot Size", 5);
  values.setNumber("Dot Distance X", 3);
  values.setNumber("Dot Distance Y", 5);
  const RenderResult byHand = full();
  EXPECT_TRUE(samePixels(scaled.output, byHand.output));
  values.setNumber("Dot Distance Y", 2.5);
  EXPECT_FALSE(samePixels(scaled.output, full().output)) << "the distances must show";
}

TEST_F(Downsampling, theSmallerFactorMayBeTheOneDown) {
  values.setNumber("Dot Size", 20);
  values.setNumber("Dot Distance X", 12);
  values.setNumber("Dot Distance Y", 10);
  FrameRequest request = frame(Depth::k8, 60, 60);
  request.downsampleX = {1, 2};
  request.downsampleY = {1, 4};
  const RenderResult scaled = classic(request);
  ASSERT_EQ(scaled.error, 0);
  values.setNumber("Dot Size", 5);
  values.setNumber("Dot Distance X", 6);
  values.setNumber("Dot Distance Y", 2.5);
  EXPECT_TRUE(samePixels(scaled.output, full().output));
  values.setNumber("Dot Size", 10);
  EXPECT_FALSE(samePixels(scaled.output, full().output)) << "the size must show";
}

TEST_F(Downsampling, scalesTheSizesOfAnEffectorByTheSmallerFactor) {
  values.setNumber("Dot Size", 20);
  values.setNumber("Dot Distance X", 12);
  values.setNumber("Dot Distance Y", 10);
  for (const char* const number : {"1", "2", "3"}) {
    const auto named = [number](const char* name) { return std::string(name) + ' ' + number; };
    values.setCheckbox(named("Enable Effector"), true);
    values.setPopup(named("Effect Map"), 3);
    values.setNumber(named("Size"), 80);
    values.setCheckbox(named("Absolute"), true);
    values.setNumber(named("ABS Size"), 40);
    values.setNumber(named("Offset Size"), 8);
  }
  const RenderResult scaled = downsampled();
  ASSERT_EQ(scaled.error, 0);
  values.setNumber("Dot Size", 5);
  values.setNumber("Dot Distance X", 3);
  values.setNumber("Dot Distance Y", 5);
  for (const char* const number : {"1", "2", "3"}) {
    const auto named = [number](const char* name) { return std::string(name) + ' ' + number; };
    values.setNumber(named("Size"), 20);
    values.setNumber(named("ABS Size"), 10);
    values.setNumber(named("Offset Size"), 2);
  }
  const RenderResult byHand = full();
  EXPECT_TRUE(samePixels(scaled.output, byHand.output));
  for (const char* const sized : {"Size 1", "ABS Size 2", "Offset Size 3"}) {
    const double kept = values.number(sized);
    values.setNumber(sized, kept * 4);
    EXPECT_FALSE(samePixels(scaled.output, full().output)) << sized << " must show";
    values.setNumber(sized, kept);
  }
}

TEST_F(FrameSetup, aFailingFillEndsTheFrame) {
  host.faults().fail("fill", 1, 71);
  EXPECT_EQ(classic(frame()).error, 71);
  EXPECT_EQ(host.log().copies.size(), 0U);
  EXPECT_EQ(host.log().transfers.size(), 0U);
}

TEST_F(FrameSetup, aFailingCopyEndsTheFrame) {
  host.faults().fail("copy_hq", 1, 72);
  EXPECT_EQ(classic(frame()).error, 72);
  EXPECT_EQ(host.log().progressCalls, 0);
  EXPECT_EQ(host.log().transfers.size(), 0U);
}

TEST_F(FrameSetup, aFailingTransferIsTheResult) {
  host.faults().fail("transfer_rect", 1, 73);
  EXPECT_EQ(classic(frame()).error, 73);
}

TEST_F(FrameSetup, anInterruptedFrameHoldsItsBackground) {
  host.onProgress = [](A_long, A_long) { return PF_Interrupt_CANCEL; };
  const FrameRequest request = frame();
  const RenderResult result = classic(request);
  EXPECT_EQ(result.error, PF_Interrupt_CANCEL);
  EXPECT_EQ(host.log().transfers.size(), 0U);
}

TEST_F(FrameSetup, itsSuitesAreHeldForOneFrame) {
  const int32_t before = host.books().openCount(standin::Matter::kSuite);
  ASSERT_EQ(classic(frame()).error, 0);
  EXPECT_EQ(host.books().openCount(standin::Matter::kSuite), before);
  for (const char* const suite : {"PF Fill Matte Suite", "PF World Transform Suite"}) {
    int32_t acquired = 0;
    int32_t released = 0;
    for (const standin::SuiteCall& call : host.log().suites) {
      if (call.name == suite) {
        ++(call.acquire ? acquired : released);
      }
    }
    EXPECT_EQ(acquired, 1) << suite;
    EXPECT_EQ(released, 1) << suite;
  }
}

TEST_F(FrameSetup, itsSuitesGoBackWhenTheSecondOneIsMissing) {
  const int32_t before = host.books().openCount(standin::Matter::kSuite);
  host.settings().withheld = {{"PF World Transform Suite", 1}};
  EXPECT_EQ(classic(frame()).error, PF_Err_INTERNAL_STRUCT_DAMAGED);
  EXPECT_EQ(host.books().openCount(standin::Matter::kSuite), before);
}

}  // namespace
