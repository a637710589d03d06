// What the walk over the lattice costs, beside its slow twin: pitch 1.0, so one dot a pixel and the margin.
//
// The walk touches the border cells of each ring, so its cost grows with the visited cells; the twin passes by the
// whole square of each ring, so its cost grows with the cube of the ring count. Frames are 16 : 9 and double in width
// from one to the next: the walk's time grows by 4, the twin's by 8. Both call for the same dots with the same draws.
#include <benchmark/benchmark.h>

#include <cstdint>

#include "effect/dots/Grid.h"
#include "effect/dots/RenderDotField.h"
#include "effect/params/Choices.h"
#include "effect/pixel/Pixel.h"
#include "tests/dots/Frames.h"
#include "tests/dots/PlainGridWalk.h"

namespace vindrel {
namespace {

int32_t heightOf(int32_t width) {
  return width * 9 / 16;
}

RenderParams onePixelLattice(int32_t width) {
  RenderParams params = test::plainParams();
  params.dotSize = 1.0;
  params.distanceBetween = distanceBetweenCentersItem;
  params.dotDistanceX = params.dotDistanceY = 1.0;
  test::placeCenter(params, width * 0.5, heightOf(width) * 0.5);
  return params;
}

void showCells(benchmark::State& state, int64_t rings, int64_t dots) {
  const int64_t cells = (2 * rings - 1) * (2 * rings - 1);
  state.counters["dots"] = static_cast<double>(dots);
  state.counters["cells"] = static_cast<double>(cells);
  state.counters["time/cell"] = benchmark::Counter(
      static_cast<double>(cells), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void walk(benchmark::State& state) {
  const auto width = static_cast<int32_t>(state.range(0));
  const DotGrid grid = test::gridOf(onePixelLattice(width), width, heightOf(width));
  int64_t dots = 0;
  for (auto _ : state) {
    randomState = 0;
    dots = 0;
    double sum = 0.0;
    walkGrid(grid, [&](double x, double y) {
      for (int draw = 0; draw < drawsPerCell; ++draw) NextRandom();
      sum += x + y;
      ++dots;
    });
    benchmark::DoNotOptimize(sum);
  }
  // The ring that ends the walk is the first beyond half the width and the margin.
  showCells(state, width / 2 + 3, dots);
}

void plainWalk(benchmark::State& state) {
  const auto width = static_cast<int32_t>(state.range(0));
  const plain::Grid grid = plain::makeGrid(onePixelLattice(width), width, heightOf(width));
  int64_t dots = 0;
  int32_t rings = 0;
  for (auto _ : state) {
    plain::Generator generator;
    dots = 0;
    double sum = 0.0;
    rings = plain::walkGrid(grid, generator, width, [&](double x, double y, int32_t, int32_t, int32_t) {
      for (int draw = 0; draw < drawsPerCell; ++draw) generator.next();
      sum += x + y;
      ++dots;
    });
    benchmark::DoNotOptimize(sum);
  }
  showCells(state, rings, dots);
}

// The same frame from the controls to the records: jitter, colour and finishing of each dot included.
template <class Pixel>
void collectRecords(benchmark::State& state) {
  const auto width = static_cast<int32_t>(state.range(0));
  const auto settings = test::settingsOf<Pixel>(onePixelLattice(width));
  std::size_t dots = 0;
  for (auto _ : state) {
    const DotField<Pixel> field = collectDots(settings, width, heightOf(width));
    dots = field.records.size();
    benchmark::DoNotOptimize(field.records.data());
  }
  state.counters["dots"] = static_cast<double>(dots);
}

// A centre far outside: the rings on the way are leapt over.
void walkFromAfar(benchmark::State& state) {
  RenderParams params = onePixelLattice(1920);
  test::placeCenter(params, static_cast<double>(state.range(0)), 540.0);
  const DotGrid grid = test::gridOf(params, 1920, 1080);
  int64_t dots = 0;
  for (auto _ : state) {
    dots = 0;
    walkGrid(grid, [&](double, double) {
      skipCellDraws();
      ++dots;
    });
  }
  state.counters["dots"] = static_cast<double>(dots);
}

BENCHMARK(walk)->Arg(240)->Arg(480)->Arg(960)->Arg(1920)->Arg(3840)->Unit(benchmark::kMillisecond);
BENCHMARK(plainWalk)->Arg(240)->Arg(480)->Arg(960)->Arg(1920)->Unit(benchmark::kMillisecond);
BENCHMARK(walkFromAfar)->Arg(4000)->Arg(16000)->Arg(32000)->Unit(benchmark::kMillisecond);
BENCHMARK(collectRecords<Pixel8>)->Arg(1920)->Unit(benchmark::kMillisecond);
BENCHMARK(collectRecords<Pixel32>)->Arg(1920)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vindrel

BENCHMARK_MAIN();
