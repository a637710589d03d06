// A canvas with its rasteriser, and a listener to its progress, for tests that draw.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "effect/dots/RenderDotField.h"
#include "effect/raster/DrawContext.h"
#include "effect/raster/PolygonRasterizer.h"

namespace vindrel::test {

/// Transparent at first.
template <class Pixel>
struct DrawnCanvas {
  DrawnCanvas(int32_t width, int32_t height)
      : pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)),
        context{.canvas = {pixels.data(), width, height, width * static_cast<int32_t>(sizeof(Pixel))},
                .rasterizer = &rasterizer} {}
  DrawnCanvas(const DrawnCanvas&) = delete;
  DrawnCanvas& operator=(const DrawnCanvas&) = delete;

  const Pixel& at(int32_t column, int32_t row) const {
    return pixels[static_cast<std::size_t>(row * context.canvas.width + column)];
  }

  bool isEmpty() const {
    for (const Pixel& pixel : pixels) {
      if (pixel != Pixel{}) return false;
    }
    return true;
  }

  std::vector<Pixel> pixels;
  PolygonRasterizer<Pixel> rasterizer;
  DrawContext<Pixel> context;
};

/// Writes down each share that it is told, and answers 0 but to the call numbered `failAt`, to which it says `failure`.
struct ProgressListener {
  ProgressListener() = default;
  ProgressListener(const ProgressListener&) = delete;
  ProgressListener& operator=(const ProgressListener&) = delete;

  static int32_t tell(void* listener, int32_t percent) {
    auto& self = *static_cast<ProgressListener*>(listener);
    self.percents.push_back(percent);
    return self.percents.size() == self.failAt ? self.failure : 0;
  }

  ProgressCall call() { return {&ProgressListener::tell, this}; }

  std::vector<int32_t> percents;
  std::size_t failAt = 0;  ///< counted from 1; 0 for never
  int32_t failure = 0;
};

}  // namespace vindrel::test
