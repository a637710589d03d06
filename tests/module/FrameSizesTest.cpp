// Frames of the smallest size, and of more rows than fit when a row's eighths are counted in 16 bits.
#include "tests/module/WholeFrame.h"

namespace moduletest {
namespace {

class FrameSizes : public WholeFrame {
 protected:
  void TearDown() override {
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

}  // namespace
}  // namespace moduletest
