// A canvas for tests that draw: rows with padding behind them and guard rows around, so that a pixel written
// where none may be written shows.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "effect/pixel/Pixel.h"
#include "effect/raster/PolygonRasterizer.h"
#include "tests/support/AllPixels.h"
#include "tests/support/PixelText.h"
#include "tests/support/Points.h"
#include "tests/support/SameBytes.h"

namespace vindrel::test {

/// Also owns the context and the rasteriser that draw on it. Empty (all channels 0) at first.
template <class Pixel>
class TestCanvas {
 public:
  static constexpr int32_t padding = 3;  ///< pixels behind each row
  static constexpr int32_t guardRows = 2;

  TestCanvas(int32_t columns, int32_t rowCount)
      : width(columns),
        height(rowCount),
        memory_(static_cast<std::size_t>(columns + padding) * static_cast<std::size_t>(rowCount + 2 * guardRows)) {
    std::memset(static_cast<void*>(memory_.data()), guardByte, memory_.size() * sizeof(Pixel));
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) at(x, y) = Pixel{};
    }
    context.canvas = {&at(0, 0), width, height, (width + padding) * static_cast<int32_t>(sizeof(Pixel))};
    context.rasterizer = &rasterizer;
  }
  TestCanvas(const TestCanvas&) = delete;
  TestCanvas& operator=(const TestCanvas&) = delete;

  Pixel& at(int32_t x, int32_t y) {
    const int32_t index = (y + guardRows) * (width + padding) + x;
    return memory_[static_cast<std::size_t>(index)];
  }

  /// Whether nothing was written but pixels of the canvas.
  bool guardsAreWhole() {
    Pixel untouched;
    std::memset(static_cast<void*>(&untouched), guardByte, sizeof untouched);
    for (int32_t y = -guardRows; y < height + guardRows; ++y) {
      for (int32_t x = 0; x < width + padding; ++x) {
        const bool inside = y >= 0 && y < height && x < width;
        if (!inside && !sameBytes(at(x, y), untouched)) return false;
      }
    }
    return true;
  }

  /// The canvas alone, row after row.
  std::vector<Pixel> pixels() {
    std::vector<Pixel> all;
    for (int32_t y = 0; y < height; ++y) all.insert(all.end(), &at(0, y), &at(width, y));
    return all;
  }

  int32_t paintedPixels() {
    int32_t count = 0;
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) count += at(x, y) != Pixel{};
    }
    return count;
  }

  /// Covered samples of a pixel that was empty and has been painted once, in a colour of full opacity.
  int32_t count(int32_t x, int32_t y) {
    const double share = static_cast<double>(at(x, y).alpha) / static_cast<double>(PixelTraits<Pixel>::fullScale);
    return static_cast<int32_t>(std::lround(share * 64.0));
  }

  /// Empty when both hold the same bytes, otherwise the first pixel that differs.
  std::string differenceFrom(TestCanvas& other) {
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) {
        if (!sameBytes(at(x, y), other.at(x, y))) {
          std::ostringstream out;
          out << "pixel (" << x << ", " << y << ") is " << textOf(at(x, y)) << ", should be " << textOf(other.at(x, y));
          return out.str();
        }
      }
    }
    return {};
  }

  /// Empties the outline and appends the points, without filling.
  void setOutline(const Points& points) {
    rasterizer.resetPath();
    for (const PathVertex& vertex : verticesOf(points)) rasterizer.addVertex(vertex);
  }

  void fill(const Points& points, const Pixel& color) {
    context.color = color;
    setOutline(points);
    rasterizer.finishPath(context.canvas, context.matrix, color);
  }

  int32_t width, height;
  DrawContext<Pixel> context;
  PolygonRasterizer<Pixel> rasterizer;

 private:
  static constexpr int guardByte = 0x5A;
  std::vector<Pixel> memory_;
};

/// Full red, full opacity.
template <class Pixel>
Pixel opaqueRed() {
  return {PixelTraits<Pixel>::fullScale, PixelTraits<Pixel>::fullScale, 0, 0};
}

}  // namespace vindrel::test
