// The loads drawn by the effect's rasteriser and by two others, at each depth that these know.
//
// Each pass draws all dots of a load on a canvas that was cleared outside of the measured time. The others get the
// corners of a dot ready made and only add its centre; the effect works from the dot's size and turn. One thread each.
#include <agg_pixfmt_rgba.h>
#include <agg_rasterizer_scanline_aa.h>
#include <agg_renderer_base.h>
#include <agg_renderer_scanline.h>
#include <agg_rendering_buffer.h>
#include <agg_scanline_u.h>
#include <benchmark/benchmark.h>
#include <cairo/cairo.h>

#include <chrono>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "bench/DotLoads.h"
#include "effect/pixel/Convert.h"
#include "effect/raster/PolygonRasterizer.h"

namespace vindrel::bench {
namespace {

constexpr double red = 1.0;
constexpr double green = 0.49;
constexpr double blue = 0.08;

/// Measures draw() on a canvas of all zero bytes and tells the time a dot.
template <class Draw>
void measure(benchmark::State& state, void* canvas, std::size_t bytes, std::size_t dots, Draw&& draw) {
  for (auto _ : state) {
    std::memset(canvas, 0, bytes);
    const auto begin = std::chrono::steady_clock::now();
    draw();
    benchmark::ClobberMemory();
    state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
  }
  state.counters["dots"] = static_cast<double>(dots);
}

template <class Pixel>
void drawByVindrel(benchmark::State& state, const DotLoad& load) {
  const Pixel color{fromUnit<Pixel>(load.opacity), fromUnit<Pixel>(red), fromUnit<Pixel>(green), fromUnit<Pixel>(blue)};
  std::vector<DotRecord<Pixel>> dots;
  for (const Point center : dotCenters(load)) {
    dots.push_back({-1.0, center.x, center.y, color, load.size, load.size, loadTurn, load.shape});
  }
  std::vector<Pixel> canvas(static_cast<std::size_t>(canvasWidth) * canvasHeight);
  PolygonRasterizer<Pixel> rasterizer;
  constexpr auto rowBytes = canvasWidth * static_cast<int32_t>(sizeof(Pixel));
  DrawContext<Pixel> context{.canvas = {canvas.data(), canvasWidth, canvasHeight, rowBytes}, .rasterizer = &rasterizer};
  measure(state, canvas.data(), canvas.size() * sizeof(Pixel), dots.size(), [&] {
    for (const auto& dot : dots) drawDot(context, dot);
  });
}

/// Straight alpha, as the effect's canvas has it.
/// @tparam PixelFormat  one of AGG's straight formats in the order alpha, red, green, blue
template <class PixelFormat>
void drawByAgg(benchmark::State& state, const DotLoad& load) {
  using Color = typename PixelFormat::color_type;
  const std::vector<Point> centers = dotCenters(load);
  const std::vector<Point> corners = dotCorners(load);
  std::vector<agg::int8u> canvas(static_cast<std::size_t>(canvasWidth) * canvasHeight * PixelFormat::pix_width);
  agg::rendering_buffer buffer(canvas.data(), canvasWidth, canvasHeight, canvasWidth * PixelFormat::pix_width);
  PixelFormat format(buffer);
  agg::renderer_base<PixelFormat> base(format);
  agg::renderer_scanline_aa_solid<agg::renderer_base<PixelFormat>> renderer(base);
  renderer.color(Color(agg::rgba(red, green, blue, load.opacity)));
  agg::rasterizer_scanline_aa<> rasterizer;
  rasterizer.clip_box(0, 0, canvasWidth, canvasHeight);
  agg::scanline_u8 scanline;
  measure(state, canvas.data(), canvas.size(), centers.size(), [&] {
    for (const Point center : centers) {
      rasterizer.reset();
      rasterizer.move_to_d(corners[0].x + center.x, corners[0].y + center.y);
      for (std::size_t i = 1; i < corners.size(); ++i) {
        rasterizer.line_to_d(corners[i].x + center.x, corners[i].y + center.y);
      }
      agg::render_scanlines(rasterizer, scanline, renderer);
    }
  });
}

/// Premultiplied alpha, 8 bits: the only canvas of that depth that cairo has.
void drawByCairo(benchmark::State& state, const DotLoad& load) {
  const std::vector<Point> centers = dotCenters(load);
  const std::vector<Point> corners = dotCorners(load);
  const std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface(
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, canvasWidth, canvasHeight), cairo_surface_destroy);
  const std::unique_ptr<cairo_t, void (*)(cairo_t*)> context(cairo_create(surface.get()), cairo_destroy);
  cairo_set_source_rgba(context.get(), red, green, blue, load.opacity);
  const std::size_t bytes = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get())) * canvasHeight;
  measure(state, cairo_image_surface_get_data(surface.get()), bytes, centers.size(), [&] {
    for (const Point center : centers) {
      cairo_move_to(context.get(), corners[0].x + center.x, corners[0].y + center.y);
      for (std::size_t i = 1; i < corners.size(); ++i) {
        cairo_line_to(context.get(), corners[i].x + center.x, corners[i].y + center.y);
      }
      cairo_close_path(context.get());
      cairo_fill(context.get());
    }
    cairo_surface_flush(surface.get());
  });
}

void add(const std::string& name, const DotLoad& load, void (*draw)(benchmark::State&, const DotLoad&)) {
  benchmark::RegisterBenchmark((load.name + "/" + name).c_str(), draw, load)
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

}  // namespace
}  // namespace vindrel::bench

int main(int argc, char** argv) {
  using namespace vindrel;
  for (const bench::DotLoad& load : bench::dotLoads()) {
    bench::add("8/vindrel", load, bench::drawByVindrel<Pixel8>);
    bench::add("8/agg:plainpoly", load, bench::drawByAgg<agg::pixfmt_argb32_plain>);
    bench::add("8/cairo", load, bench::drawByCairo);
    bench::add("16/vindrel", load, bench::drawByVindrel<Pixel16>);
    bench::add("16/agg:plainpoly", load, bench::drawByAgg<agg::pixfmt_argb64_plain>);
    bench::add("32/vindrel", load, bench::drawByVindrel<Pixel32>);
    bench::add("32/agg:plainpoly", load, bench::drawByAgg<agg::pixfmt_argb128_plain>);
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
