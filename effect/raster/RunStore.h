// Keeps the runs of the pixel row in hand, and paints it: the one place where it is decided whether a row goes by the
// table or by lists.
//
// Each pixel row begins on the table. It is handed over to the lists, with all that it has got so far, at the moment a
// run finds no place, or at the end if the row isn't orderly. Nothing is painted before the end of a row, so no pixel
// is painted by both.
#pragma once

#include <cstdint>

#include "effect/raster/CanvasView.h"
#include "effect/raster/CoverageRows.h"
#include "effect/raster/GeneralFiller.h"
#include "effect/raster/PaintPixel.h"
#include "effect/raster/PaintTable.h"
#include "effect/raster/SpanTable.h"

namespace vindrel {

/// One for each fill; between two, the lists are empty.
template <class Pixel>
class RunStore {
 public:
  /// @param lastSubRow  of the outline
  /// @param orderly     each pixel row is known to be orderly, as SpanTable tells it
  RunStore(CoverageRows& coverage, const CanvasView<Pixel>& canvas, const Pixel& color, int32_t lastSubRow,
           bool orderly)
      : coverage_(coverage),
        canvas_(canvas),
        color_(color),
        painter_(color),
        lastSubRow_(lastSubRow),
        orderly_(orderly) {}

  /// Adds a run of sub-columns to sub-row y. Throws std::bad_alloc when it must go into lists and there is no memory.
  void add(ColumnRun run, int32_t y) {
    if (!onLists_ && table_.append(y & 7, run)) return;
    if (!onLists_) handOver();
    addSpan(coverage_, run.start, run.end, y);
  }

  /// The table, for whoever knows that it has room for what comes; null while the pixel row in hand is on lists.
  SpanTable* table() { return onLists_ ? nullptr : &table_; }

  /// Whether the last run went to the eighth sub-row of a pixel row.
  bool ready() const { return (onLists_ ? coverage_.lastRow : table_.last()) == 7; }

  /// Paints the pixel row of sub-row y, and empties the store; a row off the canvas is only emptied.
  void flush(int32_t y) {
    if (!onLists_ && !orderly_ && !table_.isOrderly()) handOver();
    if (onLists_) {
      flushRow(coverage_, canvas_, color_, y);
      onLists_ = false;
    } else {
      const int32_t row = y >> 3;
      if (row >= 0 && row < canvas_.height && table_.first() >= 0) {
        paintTable(table_, painter_, canvas_.row(row), canvas_.width);
      }
      table_.reset();
    }
    lastSubRow_ = -1;
  }

  /// Forgets the pixel row in hand.
  void reset() {
    table_.reset();
    if (onLists_) resetRows(coverage_);
    onLists_ = false;
  }

 private:
  /// Gives the lists all that the table holds of the row in hand, as if it had been added to them from the start.
  void handOver() {
    resetRows(coverage_);
    onLists_ = true;
    coverage_.lastSubRow = lastSubRow_;
    for (int32_t r = 0; r < 8; ++r) {
      for (int32_t k = 0; k < table_.count(r); ++k) {
        const ColumnRun run = table_.layer(k)[r];
        if (r == 7 && table_.last() == 7) {
          // Only here are solid pixels made, from what the slots from the first one on hold.
          coverage_.firstRow = table_.first();
          addSpan(coverage_, run.start, run.end, 7);
        } else {
          spanAppend(coverage_.rows[r], run.start, run.end);
        }
      }
    }
    coverage_.firstRow = table_.first();
    coverage_.lastRow = table_.last();
    table_.reset();
  }

  CoverageRows& coverage_;
  CanvasView<Pixel> canvas_;
  const Pixel& color_;
  RowPainter<Pixel> painter_;
  SpanTable table_;
  int32_t lastSubRow_;
  bool orderly_;
  bool onLists_ = false;
};

}  // namespace vindrel
