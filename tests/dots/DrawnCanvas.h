// A canvas with its rasteriser, and a host that listens to progress, for tests that draw.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ae/InOutData.h"
#include "effect/raster/DrawContext.h"
#include "effect/raster/PolygonRasterizer.h"

namespace vindrel::testing {

/// Transparent at first.
template <class Pixel>
struct DrawnCanvas {
  DrawnCanvas(int32_t width, int32_t height)
      : pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)),
        context(makeContext(pixels, width, height)),
        rasterizer(context) {
    context.rasterizer = &rasterizer;
  }

  const Pixel& at(int32_t column, int32_t row) const {
    return pixels[static_cast<std::size_t>(row * context.width + column)];
  }

  bool isEmpty() const {
    for (const Pixel& pixel : pixels) {
      if (pixel != Pixel{}) return false;
    }
    return true;
  }

  std::vector<Pixel> pixels;
  DrawContext<Pixel> context;
  PolygonRasterizer<Pixel> rasterizer;

 private:
  static DrawContext<Pixel> makeContext(std::vector<Pixel>& pixels, int32_t width, int32_t height) {
    DrawContext<Pixel> context;
    context.pixels = pixels.data();
    context.width = width;
    context.height = height;
    context.rowBytes = width * static_cast<int32_t>(sizeof(Pixel));
    return context;
  }
};

/// Writes down each progress call, and answers 0 until `failAt` calls have come, then `failure`.
struct ProgressListener {
  struct Call {
    A_long current, total;
    friend bool operator==(const Call&, const Call&) = default;
  };

  ProgressListener() {
    in_data.inter.progress = &ProgressListener::progress;
    in_data.effect_ref = reinterpret_cast<PF_ProgPtr>(this);
  }
  ProgressListener(const ProgressListener&) = delete;
  ProgressListener& operator=(const ProgressListener&) = delete;

  static PF_Err progress(PF_ProgPtr effect_ref, A_long current, A_long total) {
    auto* listener = reinterpret_cast<ProgressListener*>(effect_ref);
    listener->calls.push_back({current, total});
    return listener->calls.size() == listener->failAt ? listener->failure : 0;
  }

  PF_InData in_data{};
  std::vector<Call> calls;
  std::size_t failAt = 0;  ///< counted from 1; 0 for never
  PF_Err failure = 0;
};

}  // namespace vindrel::testing
