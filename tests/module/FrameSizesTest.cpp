// Frames of the smallest size, and of more rows than fit when a row's eighths are counted in 16 bits.
#include "tests/module/WholeFrame.h"

namespace vindrel::test {
namespace {

class FrameSizes : public WholeFrame {
 protected:
  void TearDown() override {
    // The class between asks for clean books, which these don't have:
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    LoadedOnly::TearDown();
    // The smart road gives no value back.
    finishOwing({standin::Matter::kParameter, standin::Matter::kLayerPixels, standin::Matter::kLayerParamUi});
  }

  /// The frame by both roads, each held against the squares.
  template <class Pixel>
  void expectByBothRoads(const standin::FrameRequest& request, const std::vector<SquareDot<Pixel>>& squares) {
    expectSquares<Pixel>(render(request), squares);
    const standin::RenderResult smart = host.renderSmart(request, values);
    ASSERT_EQ(smart.error, 0);
    expectSquares<Pixel>(smart.output, squares);
  }
};

TEST_F(FrameSizes, aSinglePixelIsADotsColorOrNothing) {
  atEveryDepth([&](auto pixel) {
    using Pixel = decltype(pixel);
    standin::FrameRequest request;
    request.input = opaquePicture(standin::PixelFacts<Pixel>::depth, 1, 1);
    values.setPoint("Center Position", 0.5, 0.5);
    expectByBothRoads<Pixel>(request, {{0.5, 0.5, 8, dotColorOf<Pixel>(ownColor)}});
    values.setPoint("Center Position", 100, 100);
    expectByBothRoads<Pixel>(request, {});
  });
}

TEST_F(FrameSizes, dotsAreDrawnBelowRow4096) {
  values.setNumber("Dot Size", 2);
  values.setPoint("Center Position", 3, 2100);
  setPitch(1000, 500);
  atEveryDepth([&](auto pixel) {
    using Pixel = decltype(pixel);
    standin::FrameRequest request;
    request.input = opaquePicture(standin::PixelFacts<Pixel>::depth, 6, 4200);
    std::vector<SquareDot<Pixel>> squares;
    for (int32_t y = 100; y <= 4100; y += 500) {
      squares.push_back({3, static_cast<double>(y), 2, dotColorOf<Pixel>(ownColor)});
    }
    expectByBothRoads<Pixel>(request, squares);
  });
}

TEST_F(FrameSizes, everyShapeCoversAsMuchBelowRow4096AsAtTheTop) {
  values.setNumber("Dot Size", 8);
  values.setPoint("Center Position", 8, 2100);
  setPitch(1000, 2000);
  const auto areaOfRows = [](const standin::Image& picture, int32_t first, int32_t behind) {
    double area = 0;
    for (int32_t y = first; y < behind; ++y) {
      for (int32_t x = 0; x < picture.width(); ++x) area += alphaAt(picture, x, y);
    }
    return area;
  };
  for (int32_t shape = 1; shape <= itemsOf("Dot Shape"); ++shape) {
    values.setPopup("Dot Shape", shape);
    for (const standin::Depth depth : standin::kAllDepths) {
      SCOPED_TRACE("shape " + std::to_string(shape) + bitsOf(depth));
      const standin::Image picture = render(depth, 16, 4200);
      const double top = areaOfRows(picture, 95, 105);
      EXPECT_GT(top, 10);  // a star of this size covers some 18 pixels, the others more
      EXPECT_NEAR(areaOfRows(picture, 4095, 4105), top, 0.5);
    }
  }
}

}  // namespace
}  // namespace vindrel::test
