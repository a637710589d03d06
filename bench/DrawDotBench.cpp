// What the short cuts of the rasteriser are worth, the plain form beside it in the same run.
//
// The plain form walks the last pixel row of every dot from column 0, and counts samples for each pixel. The canvas is
// a full frame of 1920 x 1080; the argument of each benchmark is the dots' diameter in pixels. Both draw the same dots.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "effect/raster/DrawDot.h"
#include "effect/raster/PolygonRasterizer.h"
#include "tests/raster/PlainRasterizer.h"

namespace vindrel {
namespace {

constexpr int32_t width = 1920;
constexpr int32_t height = 1080;

/// A field of dots with a pitch of 19.2 by 10.8 pixels, all over the frame.
template <class Pixel>
std::vector<DotRecord<Pixel>> dotField(int32_t shape, double size) {
  constexpr auto full = PixelTraits<Pixel>::fullScale;
  std::vector<DotRecord<Pixel>> dots;
  for (int row = 0; row < 100; ++row) {
    for (int column = 0; column < 100; ++column) {
      dots.push_back(
          {-1.0, 19.2 * (column + 0.4), 10.8 * (row + 0.4), Pixel{full, full, 0, 0}, size, size, 0.2, shape});
    }
  }
  return dots;
}

template <class Pixel>
void shippedForm(benchmark::State& state, int32_t shape) {
  const auto dots = dotField<Pixel>(shape, static_cast<double>(state.range(0)));
  std::vector<Pixel> canvas(static_cast<std::size_t>(width) * height);
  PolygonRasterizer<Pixel> rasterizer;
  constexpr auto rowBytes = width * static_cast<int32_t>(sizeof(Pixel));
  DrawContext<Pixel> context{.canvas = {canvas.data(), width, height, rowBytes}, .rasterizer = &rasterizer};
  for (auto _ : state) {
    for (const auto& dot : dots) drawDot(context, dot);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(dots.size()));
}

template <class Pixel>
void plainForm(benchmark::State& state, int32_t shape) {
  const auto dots = dotField<Pixel>(shape, static_cast<double>(state.range(0)));
  std::vector<Pixel> canvas(static_cast<std::size_t>(width) * height);
  plain::Rasterizer<Pixel> rasterizer(canvas.data(), width, height, width * static_cast<int32_t>(sizeof(Pixel)));
  for (auto _ : state) {
    for (const auto& dot : dots) rasterizer.drawDot(dot);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(dots.size()));
}

template <class Pixel>
void compare(const std::string& depth) {
  struct Row {
    const char* name;
    int32_t shape;
  };
  for (const Row row :
       {Row{"circle", circleShape}, Row{"square", squareShape}, Row{"cross", crossShape}, Row{"star", starShape}}) {
    const std::string name = depth + "/" + row.name;
    for (const int64_t size : {2, 6, 14, 40}) {
      benchmark::RegisterBenchmark((name + "/plain").c_str(), plainForm<Pixel>, row.shape)
          ->Arg(size)
          ->Unit(benchmark::kMillisecond);
      benchmark::RegisterBenchmark((name + "/shipped").c_str(), shippedForm<Pixel>, row.shape)
          ->Arg(size)
          ->Unit(benchmark::kMillisecond);
    }
  }
}

}  // namespace
}  // namespace vindrel

int main(int argc, char** argv) {
  vindrel::compare<vindrel::Pixel8>("8bit");
  vindrel::compare<vindrel::Pixel16>("16bit");
  vindrel::compare<vindrel::Pixel32>("float");
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
