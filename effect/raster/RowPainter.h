// Lays one colour over stretches of a pixel row, from counts of covered samples: the inner loop of all fillers.
//
// Pixels are painted in fours where the colour allows it (lanes::Painter), which gives what paintPixel gives. Three
// short cuts, none of which changes a byte: wholly covered pixels under an opaque colour become the colour; wholly
// covered pixels that hold what the four before held become what those became, since a pixel's new value follows from
// its old one, the colour and the count alone; and the fours at the end of a row are mixed in a copy. A four may reach
// beyond the pixels that are meant: those count 0, and keep what they hold.
#pragma once

#include <algorithm>
#include <cstdint>

#include "effect/raster/MixLanes.h"
#include "effect/raster/PaintPixel.h"
#include "effect/raster/RunLanes.h"
#include "effect/raster/WideLanes.h"

namespace vindrel {

/// One for each outline.
template <class Pixel>
class RowPainter {
  using Four = typename lanes::Painter<Pixel>::Four;

 public:
  explicit RowPainter(const Pixel& color)
      : color_(color), painter_(color), byFours_(lanes::Painter<Pixel>::suits(color)) {}

  /// Paints the first n of four pixels, 1 to 4, where the rest can't be touched.
  void paintUpToFour(Pixel* pixels, int32_t n, lanes::FourCounts counts) const {
    if (n == 4) {
      paintFour(pixels, counts);
      return;
    }
    Pixel copy[4] = {};
    std::copy(pixels, pixels + n, copy);
    paintFour(copy, counts);
    std::copy(copy, copy + n, pixels);
  }

  /// Paints the first n pixels of a strip, 1 to 16.
  void paintStrip(Pixel* pixels, int32_t n, const lanes::Strip& strip) const {
    for (int32_t four = 0; 4 * four < n; ++four)
      paintUpToFour(pixels + 4 * four, std::min(n - 4 * four, 4), strip.counts(four));
  }

  /// Paints n pixels that are covered wholly; any n.
  void paintWhole(Pixel* pixels, int32_t n) {
    const lanes::FourCounts all = lanes::FourCounts::all64();
    if (color_.alpha == 0) return;
    if (lanes::Painter<Pixel>::isOpaque(color_)) {
      // A copy of its own, or the compiler has to fear that a pixel is the colour, and reads it again for each.
      const Pixel color = color_;
      std::fill(pixels, pixels + std::max(n, 0), color);
      return;
    }
    int32_t p = 0;
    if (n >= leastWide && byFours_ && wide_lanes::available()) p = wide_lanes::paintWhole(pixels, n, color_, last_);
    for (; byFours_ && p + 4 <= n; p += 4) {
      const Four old = lanes::loadFour(pixels + p);
      if (!known_ || !lanes::sameFour(old, old_)) {
        Four mixed = old;
        if (!painter_.mix(mixed, all)) {
          paintFour(pixels + p, all);
          continue;
        }
        known_ = true;
        old_ = old;
        new_ = mixed;
      }
      lanes::storeFour(pixels + p, new_);
    }
    for (; p < n; ++p) paintPixel(pixels[p], color_, 64);
  }

  /// Paints four pixels, each by its count.
  void paintFour(Pixel* pixels, lanes::FourCounts counts) const {
    Four four = lanes::loadFour(pixels);
    if (byFours_ && painter_.mix(four, counts)) {
      lanes::storeFour(pixels, four);
      return;
    }
    int32_t of[4];
    counts.storeTo(of);
    for (int32_t i = 0; i < 4; ++i) paintPixel(pixels[i], color_, of[i]);
  }

 private:
  /// Pixels, from which on a call of the wide painter pays.
  static constexpr int32_t leastWide = 16;

  Pixel color_;
  lanes::Painter<Pixel> painter_;
  bool byFours_;
  wide_lanes::Remembered last_;
  bool known_ = false;  ///< whether the next two are set
  Four old_{}, new_{};  ///< four wholly covered pixels before and after
};

/// Paints what the eight runs cover of a pixel row. The counts of a pixel depend only on what of the runs lies in it,
/// so blocks of 16 pixels are counted one by one, and not at all where every sub-row covers them from side to side.
/// @param runs    ends below 2^31 - 1
/// @param pixels  first pixel of the row
template <class Pixel>
void paintRuns(RowPainter<Pixel>& painter, const lanes::EightRuns& runs, Pixel* pixels, int32_t width) {
  constexpr int32_t widest = lanes::Slots::widest;
  for (int32_t left = 0; left < width; left += widest) {
    const int32_t windowWidth = std::min(width - left, widest);
    const lanes::Slots slots(runs, left, windowWidth);
    const lanes::SlotReach reach = lanes::reachOf(slots);
    if (reach.leastStart >= reach.greatestEnd) continue;
    Pixel* const window = pixels + left;
    const int32_t behind = (reach.greatestEnd + 7) >> 3;
    const int32_t wholeStart = (reach.greatestStart + 7) >> 3;
    const int32_t wholeEnd = reach.leastEnd >> 3;
    for (int32_t p = reach.leastStart >> 3; p < behind;) {
      if (p >= wholeStart && wholeEnd - p >= 8) {
        const int32_t whole = (wholeEnd - p) & ~3;
        painter.paintWhole(window + p, whole);
        p += whole;
        continue;
      }
      // Up to the whole stretch, if there will be one, or to the end; but in fours as long as the canvas has room: the
      // pixels that come with them are counted like all others.
      const bool stops = p < wholeStart && wholeEnd - wholeStart >= 8;
      const int32_t wanted = ((stops ? wholeStart : behind) - p + 3) & ~3;
      const int32_t n = std::min({wanted, windowWidth - p, 16});
      painter.paintStrip(window + p, n, lanes::Strip(slots, p));
      p += n;
    }
  }
}

}  // namespace vindrel
