// What holds for every frame, tried on random ones. A test's number is its seed. What fails prints the seed and all
// values; if a frame ends the whole program, they are found in the file "random frame ..." of the temporary folder.
#include <cmath>
#include <cstdio>
#include <fstream>

#include "tests/module/RandomFrame.h"
#include "tests/module/WholeFrame.h"

namespace vindrel::test {
namespace {

using standin::Depth;
using standin::Image;
using standin::LayerValue;
using standin::Matter;
using standin::ParameterValues;
using standin::RenderResult;

/// Seeds of a test's own.
class EveryFrame : public HostedModule, public ::testing::WithParamInterface<int32_t> {
 protected:
  static constexpr int32_t framesPerSeed = 16;

  void SetUp() override {
    HostedModule::SetUp();
    remarks_ = host.books().complaints().size();
    const auto* const info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string("random frame ") + info->name();
    std::replace(name.begin(), name.end(), '/', ' ');
    lastFrame_ = ::testing::TempDir() + name;
  }

  void TearDown() override {
    std::remove(lastFrame_.c_str());
    // Values and the pixels of side layers on the smart road.
    finishOwing({Matter::kParameter, Matter::kLayerPixels});
    HostedModule::TearDown();
  }

  RenderResult render(const RandomFrame& frame) {
    std::ofstream(lastFrame_) << "seed " << GetParam() << '\n' << frame.text();
    host.log().clear();
    return frame.smartRoad ? host.renderSmart(frame.request, frame.values)
                           : host.renderClassic(frame.request, frame.values);
  }

  /// False when the frame just rendered had an input without pixels, which on the smart road leaves the output as the
  /// host made it.
  bool reachedTheOutput() { return !host.log().transfers.empty(); }

  std::string text(const RandomFrame& frame) const {
    return "seed " + std::to_string(GetParam()) + '\n' + frame.text();
  }

  /// Work with each frame of this test's seed, until one fails.
  template <class Work>
  void withFrames(int32_t count, Work&& work) {
    RandomFrames frames(static_cast<uint64_t>(GetParam()), host.controls());
    for (int32_t i = 0; i < count && !HasFailure(); ++i) {
      work(frames.next(), frames);
    }
  }

  /// True while the host has nothing to say against the effect and got back every world and suite.
  ::testing::AssertionResult tidy() {
    const auto& complaints = host.books().complaints();
    if (complaints.size() != remarks_) return ::testing::AssertionFailure() << complaints.back().text;
    const int32_t worlds = host.books().openCount(Matter::kWorld);
    if (worlds != 0) return ::testing::AssertionFailure() << worlds << " worlds are left";
    return ::testing::AssertionSuccess();
  }

 private:
  size_t remarks_ = 0;
  std::string lastFrame_;
};

INSTANTIATE_TEST_SUITE_P(OfSeed, EveryFrame, ::testing::Range(1, 13), ::testing::PrintToStringParamName());

/// Every channel between 0 and full scale; in float alpha alone is held, and colours are finite.
::testing::AssertionResult withinScale(const Image& picture) {
  return standin::withPixelOf(picture.depth(), [&](auto kind) {
    using Pixel = decltype(kind);
    for (int32_t y = 0; y < picture.height(); ++y) {
      for (int32_t x = 0; x < picture.width(); ++x) {
        const Pixel& pixel = picture.at<Pixel>(x, y);
        const auto fits = [](auto channel) {
          return PlainDepth<Pixel>::isFloat ? std::isfinite(static_cast<double>(channel))
                                            : static_cast<double>(channel) <= PlainDepth<Pixel>::full;
        };
        const auto alpha = static_cast<double>(pixel.alpha);
        if (!(alpha >= 0) || alpha > PlainDepth<Pixel>::full || !fits(pixel.red) || !fits(pixel.green) ||
            !fits(pixel.blue)) {
          return ::testing::AssertionFailure() << "pixel " << x << ", " << y << " is " << textOf(pixel);
        }
      }
    }
    return ::testing::AssertionSuccess();
  });
}

TEST_P(EveryFrame, isDrawnInsideItsBoundsAndScale) {
  int32_t drawn = 0;
  withFrames(framesPerSeed, [&](const RandomFrame& frame, RandomFrames&) {
    const RenderResult result = render(frame);
    ASSERT_EQ(result.error, 0) << text(frame);
    EXPECT_TRUE(tidy()) << text(frame);
    if (!result.rendered) return;
    EXPECT_TRUE(result.output.guardsIntact()) << text(frame);
    if (!reachedTheOutput()) return;
    EXPECT_TRUE(withinScale(result.output)) << text(frame);
    ++drawn;
  });
  EXPECT_GT(drawn, framesPerSeed / 2);
}

TEST_P(EveryFrame, dependsOnNothingButItsValues) {
  withFrames(framesPerSeed / 2, [&](const RandomFrame& frame, RandomFrames& frames) {
    const RenderResult first = render(frame);
    const RenderResult again = render(frame);
    EXPECT_TRUE(samePixels(first.output, again.output)) << text(frame);
    const RandomFrame other = frames.next();
    render(other);
    const RenderResult later = render(frame);
    EXPECT_TRUE(samePixels(first.output, later.output)) << text(frame) << "\nafter this one:\n" << text(other);
  });
}

TEST_P(EveryFrame, isTheSameWithAnEffectorThatChangesNothing) {
  withFrames(framesPerSeed, [&](RandomFrame frame, RandomFrames& frames) {
    const int32_t number = frames.whole(1, 3);
    ParameterValues& values = frame.values;
    for (const char* const off : {"Absolute", "Color", "Pick Source Color", "Center Dot to Front", "Enable Effector"}) {
      values.setCheckbox(numbered(off, number), false);
    }
    for (const char* const ratio : {"Ratio Size", "Ratio Aspect", "Ratio Rotation", "Ratio Opacity"}) {
      values.setNumber(numbered(ratio, number), 1);
    }
    for (const char* const offset : {"Offset Size", "Offset Aspect", "Offset Opacity"}) {
      values.setNumber(numbered(offset, number), 0);
    }
    values.setAngle(numbered("Offset Rotation", number), 0);
    values.setAngle(numbered("Shift Hue", number), 0);
    const RenderResult without = render(frame);
    values.setCheckbox(numbered("Enable Effector", number), true);
    const RenderResult with = render(frame);
    ASSERT_EQ(with.error, 0) << text(frame);
    EXPECT_TRUE(samePixels(with.output, without.output)) << text(frame);
  });
}

TEST_P(EveryFrame, isTheSameWithAnEffectorThatWeighsNothing) {
  withFrames(framesPerSeed, [&](RandomFrame frame, RandomFrames& frames) {
    const int32_t number = frames.whole(1, 3);
    ParameterValues& values = frame.values;
    values.setCheckbox(numbered("Center Dot to Front", number), false);
    if (frames.happens(0.5)) {
      // Out of reach of any dot; "Pick Source Color" is of custom maps alone.
      values.setPopup("Global Rotation Center", centerCenter);
      values.setPopup(numbered("Effect Map", number), radialMap);
      values.setPoint(numbered("Position", number), -20000, 15000);
      values.setNumber(numbered("Size", number), 300);
    } else {
      // A layer without a single pixel that weighs.
      Image black(frame.request.depth(), frames.whole(1, 30), frames.whole(1, 30));
      values.setPopup(numbered("Effect Map", number), customMap);
      values.setLayer(numbered("Custom Map Layer", number), LayerValue::of(black));
      values.setCheckbox(numbered("Pick Source Color", number), false);
    }
    values.setCheckbox(numbered("Enable Effector", number), false);
    const RenderResult without = render(frame);
    values.setCheckbox(numbered("Enable Effector", number), true);
    const RenderResult with = render(frame);
    ASSERT_EQ(with.error, 0) << text(frame);
    EXPECT_TRUE(samePixels(with.output, without.output)) << text(frame);
  });
}

TEST_P(EveryFrame, hasAPickedColorEvenWhereTheEffectorWeighsNothing) {
  int32_t colored = 0;
  withFrames(framesPerSeed, [&](RandomFrame frame, RandomFrames& frames) {
    // At full resolution, where a layer comes as it is.
    while (frame.request.downsampleX.den != 1 || frame.request.downsampleY.den != 1) frame = frames.next();
    const int32_t number = frames.whole(1, 3);
    ParameterValues& values = frame.values;
    for (int32_t other = 1; other <= 3; ++other) {
      // The other effectors may do anything but give colours of their own.
      for (const char* const off : {"Color", "Pick Source Color", "Center Dot to Front"}) {
        values.setCheckbox(numbered(off, other), false);
      }
      values.setAngle(numbered("Shift Hue", other), 0);
    }
    values.setAngle("H", 0);
    values.setNumber("S", 0);
    values.setNumber("V", 0);
    values.setCheckbox("Clear Background", true);
    values.setPopup("Mask", maskNone);
    const PF_Pixel faint{0, 200, 10, 60};  // transparent, so of no weight
    Image layer(Depth::k8, 5, 4);
    for (int32_t y = 0; y < 4; ++y) {
      for (int32_t x = 0; x < 5; ++x) layer.at<PF_Pixel>(x, y) = faint;
    }
    layer = layer.converted(frame.request.depth());
    values.setPopup(numbered("Effect Map", number), customMap);
    values.setLayer(numbered("Custom Map Layer", number), LayerValue::of(layer));
    values.setPopup(numbered("Tiling", number), frames.whole(tilingRepeat, tilingExtend));
    values.setCheckbox(numbered("Pick Source Color", number), true);
    values.setCheckbox(numbered("Enable Effector", number), false);
    const RenderResult without = render(frame);
    values.setCheckbox(numbered("Enable Effector", number), true);
    const RenderResult with = render(frame);
    ASSERT_EQ(with.error, 0) << text(frame);
    ASSERT_EQ(with.output.width(), without.output.width());
    if (!reachedTheOutput()) return;
    standin::withPixelOf(frame.request.depth(), [&](auto kind) {
      using Pixel = decltype(kind);
      const Pixel picked = throughHsv(layer.at<Pixel>(0, 0));
      for (int32_t y = 0; y < with.output.height(); ++y) {
        for (int32_t x = 0; x < with.output.width(); ++x) {
          const Pixel& found = with.output.at<Pixel>(x, y);
          Pixel expected = picked;
          expected.alpha = without.output.at<Pixel>(x, y).alpha;
          if (expected.alpha == 0) {
            ASSERT_EQ(found.alpha, expected.alpha) << text(frame);
          } else {
            ASSERT_TRUE(sameColor(found, expected))
                << x << ", " << y << ": " << textOf(found) << " instead of " << textOf(expected) << '\n'
                << text(frame);
            ++colored;
          }
        }
      }
    });
  });
  EXPECT_GT(colored, 100);
}

TEST_P(EveryFrame, endsWithTheFirstAnswerToItsProgressThatIsNotZero) {
  int32_t ended = 0;
  withFrames(framesPerSeed, [&](const RandomFrame& frame, RandomFrames& frames) {
    int32_t calls = 0;
    host.onProgress = [&](A_long, A_long) -> PF_Err {
      ++calls;
      return 0;
    };
    ASSERT_EQ(render(frame).error, 0) << text(frame);
    if (calls == 0) return;
    const int32_t last = frames.whole(1, calls);
    calls = 0;
    host.onProgress = [&](A_long, A_long) -> PF_Err { return ++calls < last ? 0 : 1000 + calls; };
    EXPECT_EQ(render(frame).error, 1000 + last) << text(frame);
    EXPECT_EQ(calls, last) << text(frame);
    EXPECT_TRUE(tidy()) << text(frame);
    ++ended;
  });
  EXPECT_GT(ended, framesPerSeed / 2);
}

}  // namespace
}  // namespace vindrel::test
