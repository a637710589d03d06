#include "effect/raster/PaintTable.h"

#include <algorithm>

#include "effect/pixel/Pixel.h"
#include "effect/raster/RowPainter.h"

namespace vindrel {
namespace {

/// The layers of a row, as far as they lie in a window of pixels: what a strip's counts are drawn from.
class LayerWindow {
 public:
  /// Needs an orderly row, and its shape. The window is empty until it is moved to some pixel.
  LayerWindow(const SpanTable& table, const SpanTable::Shape& shape) : table_(table), shape_(shape) {}

  /// Makes the pixels from p to p + 15 part of the window, as far as they lie on the row.
  void reach(int32_t p, int32_t rowWidth) {
    if (p >= left_ && p + 16 <= left_ + width_) return;
    left_ = p;
    width_ = lanes::Slots::widest;
    for (int32_t k = 0; k < shape_.layers; ++k) {
      slots_[k] = lanes::Slots(lanes::loadRuns(&table_.layer(k)[0].start), left_, std::min(rowWidth - p, width_));
    }
  }

  /// Paints n pixels from p on, at most 16 and in the window, each by what all layers cover of it. Pixels behind them
  /// are read and written back as long as the row has any, so that fours are whole.
  template <class Pixel>
  void paint(const RowPainter<Pixel>& painter, Pixel* pixels, int32_t p, int32_t n, int32_t rowWidth) const {
    lanes::Strip strips[SpanTable::runsPerSlot];
    int32_t count = 0;
    for (int32_t k = 0; k < shape_.layers; ++k) {
      const LayerExtent& extent = shape_.extent[k];
      if ((extent.leastStart >> 3) < p + n && (extent.greatestEnd >> 3) >= p) {
        strips[count++] = lanes::Strip(slots_[k], p - left_);
      }
    }
    for (int32_t four = 0; 4 * four < n; ++four) {
      lanes::FourCounts counts = lanes::FourCounts::none();
      for (int32_t k = 0; k < count; ++k) counts = counts + strips[k].counts(four);
      const int32_t at = p + 4 * four;
      counts = counts.onlyFirst(n - 4 * four);
      painter.paintUpToFour(pixels + at, std::min(rowWidth - at, 4), counts);
    }
  }

 private:
  const SpanTable& table_;
  const SpanTable::Shape& shape_;
  int32_t left_ = 0, width_ = 0;
  lanes::Slots slots_[SpanTable::runsPerSlot];
};

}  // namespace

template <class Pixel>
void paintTable(const SpanTable& table, RowPainter<Pixel>& painter, Pixel* pixels, int32_t width) {
  const SpanTable::Shape shape = table.shape();
  SpanTable::Runs touched, solid;
  table.joinInto(shape, touched);
  table.solidPixelsInto(shape, solid);
  LayerWindow window(table, shape);
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
      while (p <= stop) {
        const int32_t n = std::min(stop - p + 1, 16);
        window.reach(p, width);
        window.paint(painter, pixels, p, n, width);
        p += n;
      }
    }
  }
}

template void paintTable(const SpanTable&, RowPainter<Pixel8>&, Pixel8*, int32_t);
template void paintTable(const SpanTable&, RowPainter<Pixel16>&, Pixel16*, int32_t);
template void paintTable(const SpanTable&, RowPainter<Pixel32>&, Pixel32*, int32_t);

}  // namespace vindrel
