#include "effect/raster/PaintTable.h"

#include <algorithm>

#include "effect/pixel/Pixel.h"
#include "effect/raster/RowPainter.h"
#include "effect/raster/RunVectors.h"

namespace vindrel {
namespace {

/// Counts of covered samples for a window of neighbouring pixels.
class CountWindow {
 public:
  /// Counts samples of the pixels from `firstPixel` to `lastPixel`, as far as the window reaches. Needs an orderly row.
  void count(const SpanTable& table, const SpanTable::Shape& shape, int32_t firstPixel, int32_t lastPixel) {
    first_ = firstPixel;
    size_ = std::min(lastPixel - firstPixel + 1, reach);
    std::fill(counts_, counts_ + reach + 16, int16_t{0});
    for (int32_t k = 0; k < shape.layers; ++k) {
      // Only where the layer lies, eight pixels at a time.
      const LayerExtent& extent = shape.extent[k];
      const int32_t end = std::min(extent.greatestEnd >> 3, first_ + size_ - 1);
      for (int32_t p = std::max(extent.leastStart >> 3, first_); p <= end; p += 8) {
        int16_t* const counts = counts_ + (p - first_);
        if (extent.leastStart < vectors::leastColumn) {
          plain_vectors::addCounts(table.layer(k), p, counts);
        } else {
          vectors::addCounts(table.layer(k), p, counts);
        }
      }
    }
  }

  /// Of 16 pixels; those behind the last one count for nothing.
  lanes::Counts from(int32_t pixel) const { return lanes::Counts::of(counts_ + (pixel - first_)); }
  int32_t first() const { return first_; }
  int32_t last() const { return first_ + size_ - 1; }

 private:
  static constexpr int32_t reach = 64;
  int16_t counts_[reach + 16];
  int32_t first_ = 0;
  int32_t size_ = 0;
};

}  // namespace

template <class Pixel>
void paintTable(const SpanTable& table, Pixel* pixels, int32_t width, const Pixel& color) {
  RowPainter<Pixel> painter(color);
  const SpanTable::Shape shape = table.shape();
  SpanTable::Runs touched, solid;
  table.joinInto(shape, touched);
  table.solidPixelsInto(shape, solid);
  CountWindow window;
  for (int32_t t = 0; t < touched.count; ++t) {
    const int32_t touchedStart = touched.run[t].start >> 3;
    const int32_t touchedEnd = (touched.run[t].end + 7) >> 3;
    if (touchedStart >= width || touchedEnd < 0) continue;
    const int32_t last = std::min(touchedEnd, width - 1);
    int32_t s = 0;
    for (int32_t p = std::max(touchedStart, 0); p <= last;) {
      while (s < solid.count && solid.run[s].end < p) ++s;
      if (s < solid.count && solid.run[s].start <= p) {
        const int32_t stop = std::min(solid.run[s].end, last);
        painter.paintWhole(pixels + p, stop - p + 1);
        p = stop + 1;
        continue;
      }
      // A run that stands the wrong way round lets no later one through as long as it ends at or right of the pixel.
      int32_t stop = last;
      if (s < solid.count) stop = std::min({last, solid.run[s].start - 1, solid.run[s].end});
      if (p < window.first() || p > window.last()) {
        window.count(table, shape, p, std::min(width - 1, (touched.run[touched.count - 1].end + 7) >> 3));
      }
      for (stop = std::min(stop, window.last()); p <= stop;) {
        const int32_t n = std::min(stop - p + 1, 16);
        painter.paint(pixels + p, n, window.from(p));
        p += n;
      }
    }
  }
}

template void paintTable(const SpanTable&, Pixel8*, int32_t, const Pixel8&);
template void paintTable(const SpanTable&, Pixel16*, int32_t, const Pixel16&);
template void paintTable(const SpanTable&, Pixel32*, int32_t, const Pixel32&);

}  // namespace vindrel
