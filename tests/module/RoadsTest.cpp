// One frame by both roads: where they give the same pixels, and where what the host lends makes them differ.
#include "tests/module/WholeFrame.h"

namespace vindrel::test {
namespace {

using standin::Depth;
using standin::FrameRequest;
using standin::Image;
using standin::LayerValue;
using standin::Matter;
using standin::ParameterValues;
using standin::RenderResult;

constexpr int32_t layerWidth = 97;  // odd, so that halves and quarters round
constexpr int32_t layerHeight = 62;

class Roads : public HostedModule {
 protected:
  void SetUp() override {
    HostedModule::SetUp();
    values = busyValues();
  }

  void TearDown() override {
    // The smart road gives no value back, nor the side layers' pixels; the classic one gives greyed layers back that it
    // has not taken; the greying speaks of the layer itself where an id is empty.
    finishOwing({Matter::kParameter, Matter::kLayerPixels, Matter::kLayerParamUi, Matter::kStrayCheckin});
    HostedModule::TearDown();
  }

  /// Something of everything: jitter, three effectors, three kinds of maps, picked colours, a blend, an order.
  ParameterValues busyValues() const {
    ParameterValues busy = host.defaults();
    busy.setNumber("Dot Size", 13);
    busy.setNumber("Dot Distance X", 3);
    busy.setNumber("Dot Distance Y", 5);
    busy.setAngle("Global Rotation", 20);
    busy.setPoint("Center Position", 40, 33);
    busy.setCheckbox("Center Dot to Front", true);
    busy.setNumber("Dot Opacity", 80);
    busy.setNumber("Size", 0.3);
    busy.setNumber("Distance X", 0.4);
    busy.setAngle("H", 30);
    for (int32_t number = 1; number <= 3; ++number) busy.setCheckbox(numbered("Enable Effector", number), true);
    busy.setPopup("Effect Map 1", customMap);
    busy.setCheckbox("Pick Source Color 1", true);
    busy.setPopup("Tiling 1", tilingMirror);
    busy.setLayer("Custom Map Layer 1", LayerValue::of(opaquePicture(Depth::k8, 36, 24)));
    busy.setNumber("Ratio Size 1", 1.5);
    busy.setPopup("Effect Map 2", radialMap);
    busy.setPoint("Position 2", 30, 20);
    busy.setNumber("Size 2", 40);
    busy.setCheckbox("Color 2", true);
    busy.setPopup("Blend Mode 2", blendScreen);
    busy.setColor("Blend Color 2", {255, 20, 90, 200});
    busy.setPopup("Effect Map 3", customMap);
    busy.setLayer("Custom Map Layer 3", LayerValue::itself());
    busy.setCheckbox("Fit to Layer 3", true);
    busy.setNumber("Offset Opacity 3", -40);
    busy.setLayer("Mask Target Layer", LayerValue::of(shaded(Depth::k8, 60, 44)));
    return busy;
  }

  static Image shaded(Depth depth, int32_t width, int32_t height, int32_t padding = 0) {
    Image picture(depth, width, height, padding);
    const Image opaque = opaquePicture(depth, width, height);
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) {
        standin::withPixelOf(depth, [&](auto pixel) {
          using Pixel = decltype(pixel);
          pixel = opaque.at<Pixel>(x, y);
          pixel.alpha = PlainDepth<Pixel>::channel((7 * x + 11 * y) % 60 / 59.0);
          picture.at<Pixel>(x, y) = pixel;
        });
      }
    }
    return picture;
  }

  /// A frame of the whole layer at 1/divisor.
  static FrameRequest wholeLayer(Depth depth, int32_t divisor = 1, int32_t padding = 0) {
    FrameRequest request;
    request.layerWidth = layerWidth;
    request.layerHeight = layerHeight;
    request.downsampleX = {1, static_cast<A_u_long>(divisor)};
    request.downsampleY = {1, static_cast<A_u_long>(divisor)};
    const PF_LRect rect = request.layerRect();
    request.input = shaded(depth, rect.right, rect.bottom, padding);
    request.outputPadding = padding;
    return request;
  }

  /// The same with an input that covers the columns from 9 to 70 and the rows from 5 to 50 alone, divided likewise.
  static FrameRequest partOfTheLayer(Depth depth, int32_t divisor = 1) {
    FrameRequest request = wholeLayer(depth, divisor);
    request.input = request.input.part({9 / divisor, 5 / divisor, 70 / divisor, 50 / divisor});
    return request;
  }

  /// By the classic road into an output that lies where the smart road's did.
  RenderResult classicLike(const Image& output, FrameRequest request) {
    request.outputWidth = output.width();
    request.outputHeight = output.height();
    request.outputOriginX = output.originX;
    request.outputOriginY = output.originY;
    return host.renderClassic(request, values);
  }

  void expectSameByBothRoads(const FrameRequest& request) {
    const RenderResult smart = host.renderSmart(request, values);
    ASSERT_EQ(smart.error, 0);
    ASSERT_TRUE(smart.rendered);
    const RenderResult classic = classicLike(smart.output, request);
    ASSERT_EQ(classic.error, 0);
    EXPECT_TRUE(samePixels(classic.output, smart.output));
    EXPECT_TRUE(classic.output.guardsIntact());
    EXPECT_TRUE(smart.output.guardsIntact());
    // It is no comparison of nothing: without dots the frame looks otherwise.
    const double size = values.number("Dot Size");
    values.setNumber("Dot Size", 0);
    values.setCheckbox("Enable Effector 1", false);
    const RenderResult bare = host.renderSmart(request, values);
    EXPECT_FALSE(samePixels(bare.output, smart.output));
    values.setNumber("Dot Size", size);
    values.setCheckbox("Enable Effector 1", true);
  }

  /// Work with each mask, plain and inverted, at each depth.
  template <class Work>
  void withEveryMask(Work&& work) {
    for (const Depth depth : standin::kAllDepths) {
      for (const int32_t mask : {maskNormal, maskNone, maskLayer}) {
        for (const bool inverted : {false, true}) {
          SCOPED_TRACE("mask " + std::to_string(mask) + (inverted ? " inverted" : "") + bitsOf(depth));
          values.setPopup("Mask", mask);
          values.setCheckbox("Invert Mask", inverted);
          work(depth);
        }
      }
    }
  }

  ParameterValues values;
};

TEST_F(Roads, agreeAtEveryDownsampling) {
  for (const int32_t divisor : {1, 2, 4}) {
    SCOPED_TRACE("1/" + std::to_string(divisor));
    withEveryMask([&](Depth depth) { expectSameByBothRoads(wholeLayer(depth, divisor)); });
  }
}

TEST_F(Roads, agreeWhereTheDownsamplingsAcrossAndDownDiffer) {
  withEveryMask([&](Depth depth) {
    FrameRequest request = wholeLayer(depth);
    request.downsampleX = {1, 4};
    request.downsampleY = {1, 2};
    const PF_LRect rect = request.layerRect();
    request.input = shaded(depth, rect.right, rect.bottom);
    expectSameByBothRoads(request);
  });
}

TEST_F(Roads, agreeWhereTheInputIsAPartOfTheLayer) {
  for (const int32_t divisor : {1, 2, 4}) {
    SCOPED_TRACE("1/" + std::to_string(divisor));
    withEveryMask([&](Depth depth) { expectSameByBothRoads(partOfTheLayer(depth, divisor)); });
  }
}

TEST_F(Roads, agreeOnAClearedBackgroundAndAtLowQuality) {
  values.setCheckbox("Clear Background", true);
  withEveryMask([&](Depth depth) {
    FrameRequest request = partOfTheLayer(depth);
    request.quality = PF_Quality_LO;
    expectSameByBothRoads(request);
  });
}

TEST_F(Roads, agreeInEveryFrameOfAChangingPattern) {
  values.setNumber("Random Interval", 2);
  values.setNumber("Random Array", 3);
  for (const A_long time : {0, 20, 40, -30}) {
    for (const Depth depth : standin::kAllDepths) {
      FrameRequest request = wholeLayer(depth);
      request.currentTime = time;
      request.timeStep = 10;
      expectSameByBothRoads(request);
    }
  }
}

TEST_F(Roads, dontMindBytesBehindTheRowsOfInputAndOutput) {
  withEveryMask([&](Depth depth) {
    for (const int32_t padding : {16, 48}) {
      const FrameRequest request = wholeLayer(depth, 1, padding);
      ASSERT_GT(request.input.rowBytes(), request.input.width() * standin::pixelBytes(depth));
      const RenderResult plain = host.renderSmart(wholeLayer(depth), values);
      const RenderResult smart = host.renderSmart(request, values);
      const RenderResult classic = classicLike(smart.output, request);
      EXPECT_TRUE(samePixels(smart.output, plain.output));
      EXPECT_TRUE(samePixels(classic.output, plain.output));
      EXPECT_TRUE(smart.output.guardsIntact());
      EXPECT_TRUE(classic.output.guardsIntact());
    }
  });
}

TEST_F(Roads, dontMindBytesBehindTheRowsOfSideLayers) {
  withEveryMask([&](Depth depth) {
    const auto setLayers = [&](int32_t padding) {
      for (const char* const name : {"Mask Target Layer", "Custom Map Layer 1", "Custom Map Layer 3"}) {
        values.setLayer(name, LayerValue::of(shaded(depth, 45, 31, padding)));
      }
    };
    setLayers(0);
    const RenderResult plain = host.renderSmart(wholeLayer(depth), values);
    setLayers(32);
    const RenderResult smart = host.renderSmart(wholeLayer(depth), values);
    const RenderResult classic = classicLike(smart.output, wholeLayer(depth));
    EXPECT_TRUE(samePixels(smart.output, plain.output));
    EXPECT_TRUE(samePixels(classic.output, plain.output));
  });
}

TEST_F(Roads, agreeOnAPartOfTheFrameWhenTheInputIsThatPart) {
  values.setPopup("Mask", maskNormal);
  values.setLayer("Custom Map Layer 3", LayerValue::of(opaquePicture(Depth::k8, 20, 10)));
  for (const Depth depth : standin::kAllDepths) {
    FrameRequest request = wholeLayer(depth);
    const RenderResult whole = host.renderSmart(request, values);
    request.requestRect = PF_LRect{20, 11, 63, 47};
    const RenderResult smart = host.renderSmart(request, values);
    ASSERT_EQ(smart.error, 0);
    // What was wanted and no more, and the pixels that the whole frame has there.
    EXPECT_EQ(smart.output.width(), 43);
    EXPECT_EQ(smart.output.height(), 36);
    EXPECT_TRUE(samePixels(smart.output, whole.output.part({20, 11, 63, 47})));
    request.input = request.input.part({20, 11, 63, 47});
    EXPECT_TRUE(samePixels(smart.output, classicLike(smart.output, request).output));
  }
}

TEST_F(Roads, dotsOfAPartLieOnTheirSourceInAFrameOfThatPartAndAtTheCornerInAFrameOfTheWholeLayer) {
  // Kept as is: the canvas's part under the input goes to the output's corner, also when the output is the whole layer,
  // as a mask of none makes it on the smart road. The classic road's output is the input's part and shows no shift.
  values = host.defaults();
  values.setPopup("Mask", maskNone);
  values.setCheckbox("Clear Background", true);
  for (const Depth depth : standin::kAllDepths) {
    const Image dots = host.renderSmart(wholeLayer(depth), values).output;
    const FrameRequest part = partOfTheLayer(depth);
    ASSERT_EQ(part.input.originX, 9);
    ASSERT_EQ(part.input.originY, 5);
    const Image smart = host.renderSmart(part, values).output;
    ASSERT_EQ(smart.width(), layerWidth);
    ASSERT_EQ(smart.height(), layerHeight);
    EXPECT_TRUE(samePixels(smart.part({0, 0, 61, 45}), dots.part({9, 5, 70, 50})));
    EXPECT_TRUE(isTransparentBlack(smart.part({61, 0, layerWidth, layerHeight})));
    EXPECT_TRUE(isTransparentBlack(smart.part({0, 45, layerWidth, layerHeight})));
    EXPECT_FALSE(samePixels(smart, dots));

    FrameRequest own = part;
    own.outputOriginX = 9;
    own.outputOriginY = 5;
    EXPECT_TRUE(samePixels(host.renderClassic(own, values).output, dots.part({9, 5, 70, 50})));
  }
}

TEST_F(Roads, anEmptyInputIsATransparentFrameOnTheClassicRoadAndAnUntouchedOneOnTheSmartRoad) {
  values.setPopup("Mask", maskNone);
  for (const Depth depth : standin::kAllDepths) {
    FrameRequest request = wholeLayer(depth);
    request.input = Image(depth, 0, 0);
    const RenderResult smart = host.renderSmart(request, values);
    EXPECT_EQ(smart.error, 0);
    const Image untouched(depth, layerWidth, layerHeight, 0, static_cast<uint8_t>(host.settings().fillOfOutputs));
    EXPECT_TRUE(samePixels(smart.output, untouched));
    const RenderResult classic = classicLike(smart.output, request);
    EXPECT_EQ(classic.error, 0);
    EXPECT_EQ(classic.output.width(), layerWidth);
    EXPECT_TRUE(isTransparentBlack(classic.output));
  }
}

TEST_F(Roads, aMaskLayerOfNoneLooksTheSameThoughItArrivesDifferently) {
  values.setPopup("Mask", maskLayer);
  values.setLayer("Mask Target Layer", LayerValue::none());
  for (const Depth depth : standin::kAllDepths) {
    for (const bool inverted : {false, true}) {
      values.setCheckbox("Invert Mask", inverted);
      host.log().clear();
      const RenderResult smart = host.renderSmart(wholeLayer(depth), values);
      const RenderResult classic = classicLike(smart.output, wholeLayer(depth));
      EXPECT_TRUE(samePixels(classic.output, smart.output));
      // Nothing comes through a mask of nothing; inverted, everything.
      EXPECT_EQ(samePixels(smart.output, wholeLayer(depth).input), !inverted);
      // No world at all by the smart road; a world of no size in the middle of the output by the classic one.
      ASSERT_EQ(host.log().transfers.size(), 2U);
      const auto& onSmart = host.log().transfers[0].mask;
      const auto& onClassic = host.log().transfers[1].mask;
      ASSERT_TRUE(onSmart.has_value() && onClassic.has_value());
      EXPECT_EQ(onSmart->offset.h, 0);
      EXPECT_EQ(onSmart->offset.v, 0);
      EXPECT_EQ(onClassic->offset.h, 49);  // 97 / 2, the half rounded up
      EXPECT_EQ(onClassic->offset.v, 31);
    }
  }
}

TEST_F(Roads, aGreyedLayerIsAskedForByTheSmartRoadAloneAndShowsOnNeither) {
  values.setPopup("Mask", maskNone);
  values.setPopup("Effect Map 1", linearMap);
  values.setPopup("Effect Map 3", radialMap);
  ASSERT_EQ(host.updateParamsUi(values), 0);
  const std::vector<int32_t> layerIds = {15, 45, 75, 105};
  for (const int32_t id : layerIds) ASSERT_TRUE(host.control(standin::ById{id})->greyed());
  for (const Depth depth : standin::kAllDepths) {
    host.log().clear();
    const RenderResult smart = host.renderSmart(wholeLayer(depth), values);
    // Each with a probe and a request, and the input.
    EXPECT_EQ(host.log().count("checkout_layer"), 9);
    host.log().clear();
    const RenderResult classic = classicLike(smart.output, wholeLayer(depth));
    for (const standin::ParamCall& call : host.log().params) {
      for (const int32_t id : layerIds) {
        EXPECT_FALSE(call.checkout && call.index == host.control(standin::ById{id})->index);
      }
    }
    EXPECT_TRUE(samePixels(classic.output, smart.output));
    // Other layers, no other pixels.
    ParameterValues others = values;
    for (const int32_t id : layerIds) others.setLayer(standin::ById{id}, LayerValue::of(shaded(depth, 7, 9)));
    EXPECT_TRUE(samePixels(host.renderSmart(wholeLayer(depth), others).output, smart.output));
  }
}

TEST_F(Roads, aMapLayerThatIsStillGreyedWeighsNothingOnTheClassicRoadAlone) {
  values = host.defaults();
  values.setCheckbox("Clear Background", true);
  values.setPopup("Mask", maskNone);
  values.setCheckbox("Enable Effector 2", true);
  values.setPopup("Effect Map 2", radialMap);
  values.setLayer("Custom Map Layer 2", LayerValue::of(opaquePicture(Depth::k8, layerWidth, layerHeight)));
  values.setNumber("Ratio Opacity 2", 0);
  ASSERT_EQ(host.updateParamsUi(values), 0);
  // A frame comes before the controls were updated for the map.
  values.setPopup("Effect Map 2", customMap);
  for (const Depth depth : standin::kAllDepths) {
    const RenderResult smart = host.renderSmart(wholeLayer(depth), values);
    const RenderResult classic = classicLike(smart.output, wholeLayer(depth));
    EXPECT_FALSE(samePixels(classic.output, smart.output));
    ParameterValues without = values;
    without.setCheckbox("Enable Effector 2", false);
    EXPECT_TRUE(samePixels(classic.output, host.renderClassic(wholeLayer(depth), without).output));
  }
  // Once they were, the roads agree.
  ASSERT_EQ(host.updateParamsUi(values), 0);
  for (const Depth depth : standin::kAllDepths) {
    const RenderResult smart = host.renderSmart(wholeLayer(depth), values);
    EXPECT_TRUE(samePixels(classicLike(smart.output, wholeLayer(depth)).output, smart.output));
  }
}

}  // namespace
}  // namespace vindrel::test
