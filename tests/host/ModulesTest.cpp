// Small modules that use the host's services as published ones do, each loaded from its file and drawn; expected pixels
// are worked out by hand.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "ScriptedEffect.h"
#include "host/Image.h"
#include "host/LoadedModule.h"
#include "host/StandInHost.h"

namespace {

using standin::FrameRequest;
using standin::Image;
using standin::LoadedModule;
using standin::RenderResult;
using standin::StandInHost;

/// A module of the folder, started in a host of its own; ends with clean books.
class Hosted {
 public:
  explicit Hosted(const std::string& name)
      : module(std::string(MODULES_FOLDER) + "/" + name + MODULES_SUFFIX), host(module) {
    EXPECT_EQ(host.start(), PF_Err_NONE);
  }
  ~Hosted() {
    EXPECT_EQ(host.finish(), PF_Err_NONE);
    EXPECT_TRUE(host.books().clean()) << scripted::joined(host.books().report());
  }
  Hosted(const Hosted&) = delete;
  Hosted& operator=(const Hosted&) = delete;

  RenderResult drawn(Image input) {
    FrameRequest frame;
    frame.input = std::move(input);
    RenderResult result = host.renderClassic(frame, host.defaults());
    EXPECT_EQ(result.error, PF_Err_NONE);
    return result;
  }

  LoadedModule module;
  StandInHost host;
};

template <class Pixel>
Image row(std::initializer_list<Pixel> pixels) {
  Image image(standin::PixelFacts<Pixel>::depth, static_cast<int32_t>(pixels.size()), 1, 4);
  int32_t x = 0;
  for (const Pixel& pixel : pixels) image.at<Pixel>(x++, 0) = pixel;
  return image;
}

template <class Pixel>
void expectPixel(const Image& image, int32_t x, int32_t y, const Pixel& expected) {
  const auto& got = image.at<Pixel>(x, y);
  EXPECT_TRUE(got.alpha == expected.alpha && got.red == expected.red && got.green == expected.green &&
              got.blue == expected.blue)
      << x << " " << y << ": " << +got.alpha << " " << +got.red << " " << +got.green << " " << +got.blue;
}

TEST(Modules, invertTurnsEveryChannelRoundAtThreeDepthsOnBothRoads) {
  Hosted invert("invert");
  EXPECT_EQ(invert.module.entryName(), "EntryPointFunc");
  EXPECT_TRUE(invert.host.smartRoadOffered());
  for (const bool smart : {false, true}) {
    const auto draw = [&](Image input) {
      FrameRequest frame;
      frame.input = std::move(input);
      const auto values = invert.host.defaults();
      RenderResult result = smart ? invert.host.renderSmart(frame, values) : invert.host.renderClassic(frame, values);
      EXPECT_EQ(result.error, PF_Err_NONE);
      return std::move(result.output);
    };
    const Image small = draw(row<PF_Pixel>({{255, 0, 1, 255}, {7, 100, 200, 30}}));
    expectPixel<PF_Pixel>(small, 0, 0, {255, 255, 254, 0});
    expectPixel<PF_Pixel>(small, 1, 0, {7, 155, 55, 225});
    const Image deep = draw(row<PF_Pixel16>({{32768, 0, 1, 32768}}));
    expectPixel<PF_Pixel16>(deep, 0, 0, {32768, 32768, 32767, 0});
    const Image floating = draw(row<PF_PixelFloat>({{0.5F, 0.25F, 1.5F, 0.0F}}));
    expectPixel<PF_PixelFloat>(floating, 0, 0, {0.5F, 0.75F, -0.5F, 1.0F});
  }
}

TEST(Modules, smartBlurDrawsBeyondTheLayerAndItsBareHandleIsDisposedOf) {
  Hosted blur("smart_blur");
  EXPECT_EQ(blur.module.entryName(), "EffectMain");
  FrameRequest frame;
  frame.input = row<PF_Pixel>({{255, 30, 0, 0}, {255, 60, 0, 0}, {255, 90, 0, 0}});
  const RenderResult result = blur.host.renderSmart(frame, blur.host.defaults());
  ASSERT_EQ(result.error, PF_Err_NONE);
  ASSERT_EQ(result.output.width(), 5);
  ASSERT_EQ(result.output.height(), 3);
  EXPECT_EQ(result.output.originX, -1);
  // Thirds of 0+0+30, 0+30+60, 30+60+90, 60+90+0, 90+0+0; alpha is 255 for each pixel that is there.
  expectPixel<PF_Pixel>(result.output, 0, 1, {85, 10, 0, 0});
  expectPixel<PF_Pixel>(result.output, 1, 1, {170, 30, 0, 0});
  expectPixel<PF_Pixel>(result.output, 2, 1, {255, 60, 0, 0});
  expectPixel<PF_Pixel>(result.output, 3, 1, {170, 50, 0, 0});
  expectPixel<PF_Pixel>(result.output, 4, 1, {85, 30, 0, 0});
  for (int32_t x = 0; x < 5; ++x) {
    expectPixel<PF_Pixel>(result.output, x, 0, {0, 0, 0, 0});
    expectPixel<PF_Pixel>(result.output, x, 2, {0, 0, 0, 0});
  }
}

TEST(Modules, arbitraryDataGoesThroughDefaultsTextsAndBytes) {
  Hosted shift("arbitrary_shift");
  EXPECT_EQ(shift.module.entryName(), "entryPointFunc");
  const Image input = row<PF_Pixel>({{255, 5, 6, 7}});
  EXPECT_EQ(shift.host.arbitraryText("Shift"), "10 0 -10");
  expectPixel<PF_Pixel>(shift.drawn(input).output, 0, 0, {255, 15, 6, 0});
  EXPECT_TRUE(shift.host.setArbitraryText("Shift", "1 2 3"));
  expectPixel<PF_Pixel>(shift.drawn(input).output, 0, 0, {255, 6, 8, 10});
  const std::vector<uint8_t> bytes = shift.host.arbitraryBytes("Shift");
  EXPECT_EQ(bytes, (std::vector<uint8_t>{1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0}));
  EXPECT_FALSE(shift.host.setArbitraryText("Shift", "no numbers"));
  EXPECT_FALSE(shift.host.setArbitraryBytes("Shift", {1, 2}));
  EXPECT_EQ(shift.host.arbitraryText("Shift"), "1 2 3") << "what was refused changes nothing";
  EXPECT_TRUE(shift.host.setArbitraryBytes("Shift", {0, 0, 0, 0, 0, 0, 0, 0, 248, 0, 0, 0}));
  expectPixel<PF_Pixel>(shift.drawn(input).output, 0, 0, {255, 5, 6, 255});
}

TEST(Modules, aLookupTableIsFoundByItsRegistrationAndKeepsAlphaAndBlue) {
  Hosted lookup("lookup_table");
  EXPECT_EQ(lookup.module.entryName(), "LookupEntry");
  // 128 * 128 / 255 = 64.25, 51 * 51 / 255 = 10.2, 255 * 255 / 255.
  const RenderResult result = lookup.drawn(row<PF_Pixel>({{200, 128, 51, 77}, {255, 255, 0, 1}}));
  expectPixel<PF_Pixel>(result.output, 0, 0, {200, 64, 10, 77});
  expectPixel<PF_Pixel>(result.output, 1, 0, {255, 255, 0, 1});
}

TEST(Modules, layersAtOtherTimesAreMixedHalfAndHalf) {
  Hosted layers("layers_in_time");
  EXPECT_EQ(layers.module.entryName(), "PluginMain");
  FrameRequest frame;
  frame.input = row<PF_Pixel>({{255, 100, 0, 0}});
  frame.currentTime = 7;
  frame.timeStep = 2;
  auto values = layers.host.defaults();
  expectPixel<PF_Pixel>(layers.host.renderClassic(frame, values).output, 0, 0, {255, 100, 0, 0});
  values.setLayer("Ahead", standin::LayerValue::of(row<PF_Pixel>({{255, 200, 0, 0}})));
  layers.host.log().clear();
  // 100 with itself is 100, with 200 is 150, with 100 again is 125.
  expectPixel<PF_Pixel>(layers.host.renderClassic(frame, values).output, 0, 0, {255, 125, 0, 0});
  std::vector<A_long> times;
  for (const auto& call : layers.host.log().params) {
    if (call.checkout) times.push_back(call.time);
  }
  EXPECT_EQ(times, (std::vector<A_long>{5, 9, 7}));
}

TEST(Modules, aModuleInPlainCSwapsRedAndBlue) {
  Hosted plain("plain_c");
  EXPECT_EQ(plain.module.entryName(), "xMain");
  expectPixel<PF_Pixel>(plain.drawn(row<PF_Pixel>({{255, 1, 2, 3}})).output, 0, 0, {255, 3, 2, 1});
}

}  // namespace
