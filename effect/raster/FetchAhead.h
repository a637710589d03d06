// Asks the memory for a dot's pixels before they are painted.
//
// A dot's pixels lie on many rows, each of them far from the last in memory, and waiting for one row after the other
// would take a quarter of a star's time and a third of a small circle's. The memory answers only so many requests at
// once, and whoever asks for more has to wait as well: so a dot that is painted while it is scanned asks for one row
// more with each that it paints, and only one that is painted in one go asks for all at the start. It changes nothing
// that anybody reads: so a compiler would leave a call of these out, and they are inline by force.
#pragma once

#include <algorithm>
#include <cstdint>

#include "effect/pixel/Int32.h"
#include "effect/raster/CanvasView.h"

namespace vindrel {

/// The part of an outline's pixel rows between its sides, as far as it wasn't asked for yet.
template <class Pixel>
class RowsAhead {
 public:
  /// How many rows are on their way while one is painted.
  static constexpr int32_t distance = 4;

  /// @param left, right        of the outline, canvas pixels; any numbers
  /// @param firstRow, lastRow  pixel rows that will be painted, both inclusive; those off the canvas are left out
  RowsAhead(const CanvasView<Pixel>& canvas, double left, double right, int32_t firstRow, int32_t lastRow)
      : canvas_(canvas),
        begin_(std::max(truncateToInt32(left), 0)),
        end_(static_cast<int32_t>(std::min(int64_t{truncateToInt32(right)} + 1, int64_t{canvas.width}))),
        row_(std::max(firstRow, 0)),
        last_(std::min(lastRow, canvas.height - 1)) {
    if (begin_ >= end_) {
      last_ = -1;
    } else {
      end_ = std::min(end_, begin_ + mostLines * pixelsAtOnce);
    }
  }

  /// Asks for the next rows, as many as are left.
  [[gnu::always_inline]] inline void ask(int32_t rows) {
    for (; rows > 0 && row_ <= last_; --rows) {
      const Pixel* const pixels = canvas_.row(row_++);
      for (int32_t p = begin_; p < end_; p += pixelsAtOnce) __builtin_prefetch(pixels + p);
      __builtin_prefetch(pixels + (end_ - 1));
    }
  }

 private:
  static constexpr auto pixelsAtOnce = static_cast<int32_t>(64 / sizeof(Pixel));  // a line of the memory
  // Of a row. By then the processor has seen by itself where the row goes on.
  static constexpr int32_t mostLines = 20;

  const CanvasView<Pixel>& canvas_;
  int32_t begin_, end_;  ///< columns, the second not inclusive
  int32_t row_, last_;   ///< the row to ask for next, and the last one; above that one when there is nothing to ask for
};

}  // namespace vindrel
