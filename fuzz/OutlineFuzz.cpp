// Outlines and dots straight into the rasteriser, at three depths, on canvases that hold any pixels.
//
// Held: every byte as the plain rasteriser of the tests draws it, and nothing written beside the canvas. Places and
// sizes are kept to what the plain form, which goes step by step, draws in a moment; the bits below are anything.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "effect/raster/DrawDot.h"
#include "fuzz/Require.h"
#include "tests/raster/PlainRasterizer.h"
#include "tests/support/TestCanvas.h"

namespace {

using vindrel::DotRecord;

/// A number near the canvas: on the grid of samples, or a fraction.
double anyLength(FuzzedDataProvider& bytes, int32_t reach) {
  const auto kind = bytes.ConsumeIntegral<uint8_t>();
  if (kind < 80) return bytes.ConsumeIntegralInRange<int32_t>(-8 * reach, 8 * reach) / 8.0;
  return bytes.ConsumeFloatingPointInRange<double>(-reach, reach);
}

/// Channels of any bits at 8 and 16 bits within full scale; floats from -0.5 to 2.
template <class Pixel>
Pixel anyPixel(FuzzedDataProvider& bytes) {
  using Channel = typename vindrel::PixelTraits<Pixel>::Channel;
  const auto channel = [&bytes] {
    if constexpr (std::is_floating_point_v<Channel>) {
      return bytes.ConsumeFloatingPointInRange<float>(-0.5F, 2.0F);
    } else {
      return bytes.ConsumeIntegralInRange<Channel>(0, vindrel::PixelTraits<Pixel>::fullScale);
    }
  };
  Pixel pixel;
  pixel.alpha = bytes.ConsumeBool() ? static_cast<Channel>(vindrel::PixelTraits<Pixel>::fullScale) : channel();
  pixel.red = channel();
  pixel.green = channel();
  pixel.blue = channel();
  return pixel;
}

template <class Pixel>
void drawBoth(FuzzedDataProvider& bytes) {
  const auto width = bytes.ConsumeIntegralInRange<int32_t>(1, 40);
  const auto height = bytes.ConsumeIntegralInRange<int32_t>(1, 24);
  vindrel::test::TestCanvas<Pixel> shipped(width, height), expected(width, height);
  if (bytes.ConsumeBool()) {
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) shipped.at(x, y) = expected.at(x, y) = anyPixel<Pixel>(bytes);
    }
  }
  vindrel::plain::Rasterizer<Pixel> plain(expected.context.canvas.pixels, width, height,
                                          expected.context.canvas.rowBytes);
  for (int strokes = 0; strokes < 6 && bytes.remaining_bytes() > 0; ++strokes) {
    const Pixel color = anyPixel<Pixel>(bytes);
    if (bytes.ConsumeBool()) {
      DotRecord<Pixel> dot{-1.0, anyLength(bytes, 60), anyLength(bytes, 60), color, anyLength(bytes, 80), 0.0, 0.0, 0};
      dot.height = bytes.ConsumeBool() ? dot.width : anyLength(bytes, 80);
      dot.angle = anyLength(bytes, 7);
      dot.shape = bytes.ConsumeIntegralInRange<int32_t>(0, 7);
      vindrel::drawDot(shipped.context, dot);
      plain.drawDot(dot);
    } else {
      vindrel::test::Points points;
      for (int n = bytes.ConsumeIntegralInRange<int>(0, 12); n > 0; --n) {
        const double x = anyLength(bytes, 60);
        points.emplace_back(x, anyLength(bytes, 60));
      }
      shipped.fill(points, color);
      plain.color = color;
      plain.vertices.clear();
      for (const auto& [x, y] : points) plain.add(x, y);
      plain.finishPath();
    }
  }
  fuzz::require(shipped.guardsAreWhole(), "nothing is written beside the canvas");
  fuzz::require(shipped.differenceFrom(expected).empty(), shipped.differenceFrom(expected));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider bytes(data, size);
  switch (bytes.ConsumeIntegralInRange<int>(0, 2)) {
    case 0:
      drawBoth<vindrel::Pixel8>(bytes);
      break;
    case 1:
      drawBoth<vindrel::Pixel16>(bytes);
      break;
    default:
      drawBoth<vindrel::Pixel32>(bytes);
      break;
  }
  return 0;
}
