#include "effect/raster/PaintTable.h"

#include <algorithm>

#include "effect/pixel/Pixel.h"
#include "effect/raster/PaintPixel.h"

namespace vindrel {
namespace {

/// Counts of covered samples for a window of neighbouring pixels.
class CountWindow {
 public:
  /// Counts samples of the pixels from `firstPixel` to `lastPixel`, as far as the window reaches. Needs an orderly row.
  void count(const SpanTable& table, int32_t firstPixel, int32_t lastPixel) {
    first_ = firstPixel;
    size_ = std::min(lastPixel - firstPixel + 1, reach);
    for (int32_t i = 0; i < size_; ++i) counts_[i] = 0;
    for (int32_t k = 0; k < table.layerCount(); ++k) countLayer(table.layer(k));
  }

  int32_t at(int32_t pixel) const { return counts_[pixel - first_]; }
  int32_t first() const { return first_; }
  int32_t last() const { return first_ + size_ - 1; }

 private:
  static constexpr int32_t reach = 64;

  void countLayer(const SpanTable::Layer& layer) {
    // From the window's first column on; ends are behind the last column of a run.
    const int32_t c0 = first_ * 8;
    const int32_t c1 = c0 + size_ * 8;
    int16_t start[8], end[8];
    int32_t leastStart = reach * 8, greatestStart = 0, leastEnd = reach * 8, greatestEnd = 0;
    for (int32_t r = 0; r < 8; ++r) {
      const int32_t s = std::clamp(layer[r].start, c0, c1) - c0;
      const int32_t e = std::clamp(layer[r].end + 1, c0, c1) - c0;
      start[r] = static_cast<int16_t>(s);
      end[r] = static_cast<int16_t>(e);
      if (s < e) leastStart = std::min(leastStart, s);
      greatestStart = std::max(greatestStart, s);
      leastEnd = std::min(leastEnd, e);
      greatestEnd = std::max(greatestEnd, e);
    }
    const int32_t stop = (greatestEnd + 7) >> 3;
    for (int32_t p = leastStart >> 3; p < stop; ++p) {
      if (p > greatestStart >> 3 && p < leastEnd >> 3) {
        counts_[p] += 64;
        continue;
      }
      const auto left = static_cast<int16_t>(p * 8);
      int32_t sum = 0;
      for (int32_t r = 0; r < 8; ++r) {
        const auto before = static_cast<int16_t>(std::clamp<int16_t>(static_cast<int16_t>(start[r] - left), 0, 8));
        const auto behind = static_cast<int16_t>(std::clamp<int16_t>(static_cast<int16_t>(end[r] - left), 0, 8));
        sum += behind - before;
      }
      counts_[p] += sum;
    }
  }

  int32_t counts_[reach];
  int32_t first_ = 0;
  int32_t size_ = 0;
};

}  // namespace

template <class Pixel>
void paintTable(const SpanTable& table, Pixel* pixels, int32_t width, const Pixel& colour) {
  SpanTable::Runs touched;
  table.joinInto(touched);
  SpanTable::Runs solid;
  table.solidPixelsInto(solid);
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
        for (const int32_t stop = std::min(solid.run[s].end, last); p <= stop; ++p) paintPixel(pixels[p], colour, 64);
        continue;
      }
      // A run that stands the wrong way round lets no later one through as long as it ends at or right of the pixel.
      int32_t stop = last;
      if (s < solid.count) stop = std::min({last, solid.run[s].start - 1, solid.run[s].end});
      if (p < window.first() || p > window.last()) {
        window.count(table, p, std::min(width - 1, (touched.run[touched.count - 1].end + 7) >> 3));
      }
      for (stop = std::min(stop, window.last()); p <= stop; ++p) paintPixel(pixels[p], colour, window.at(p));
    }
  }
}

template void paintTable(const SpanTable&, Pixel8*, int32_t, const Pixel8&);
template void paintTable(const SpanTable&, Pixel16*, int32_t, const Pixel16&);
template void paintTable(const SpanTable&, Pixel32*, int32_t, const Pixel32&);

}  // namespace vindrel
