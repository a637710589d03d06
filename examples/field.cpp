// Dots without any host: settings, a canvas, one call. Prints the canvas, a character a pixel.
#include <cstdio>
#include <vector>

#include "effect/dots/RenderDotField.h"
#include "effect/pixel/Pixel.h"
#include "effect/raster/PolygonRasterizer.h"

int main() {
  using namespace vindrel;
  FieldSettings<Pixel8> settings;
  settings.lattice = {.centerX = 16.0, .centerY = 6.0, .pitchX = 8.0, .pitchY = 6.0};
  settings.base = {.baseSize = 4.0, .baseOpacity = 1.0, .baseColor = {255, 20, 60, 180}, .shape = squareShape};

  constexpr int32_t width = 32;
  constexpr int32_t height = 12;
  std::vector<Pixel8> pixels(static_cast<std::size_t>(width) * height);
  PolygonRasterizer<Pixel8> rasterizer;
  constexpr auto rowBytes = width * static_cast<int32_t>(sizeof(Pixel8));
  DrawContext<Pixel8> context{.canvas = {pixels.data(), width, height, rowBytes}, .rasterizer = &rasterizer};

  const int32_t result = RenderDotField(settings, context, {});
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    std::putchar(pixels[i].alpha == 255 ? '#' : '-');
    if (i % width == width - 1) std::putchar('\n');
  }
  return result;
}
