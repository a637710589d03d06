#include "effect/raster/GeneralFiller.h"

#include <algorithm>
#include <cmath>

#include "effect/pixel/Int32.h"
#include "effect/pixel/Pixel.h"
#include "effect/raster/Crossings.h"
#include "effect/raster/EdgeTable.h"
#include "effect/raster/FetchAhead.h"
#include "effect/raster/PaintLists.h"
#include "effect/raster/PaintTable.h"
#include "effect/raster/SpanTable.h"

namespace vindrel {
namespace {

/// Whether all coordinates lie within ordinaryReach. The order of equal edges doesn't matter then: a run that ends and
/// the next one that begins on the same column merge, whichever edges meet there.
bool isOrdinary(const std::vector<PathVertex>& vertices) {
  return std::all_of(vertices.begin(), vertices.end(), [](const PathVertex& v) {
    return std::abs(v.tx) <= ordinaryReach && std::abs(v.ty) <= ordinaryReach;
  });
}

/// Keeps the runs of the pixel row in hand, and paints it: the one place where it is decided whether a row goes by the
/// table or by lists. Each pixel row begins on the table. It is handed over to the lists, with all that it has got so
/// far, at the moment a run finds no place, or at the end if the row isn't orderly. Nothing is painted before the end
/// of a row, so no pixel is painted by both.
///
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

}  // namespace

SubRowRange scannedSubRows(const std::vector<PathVertex>& vertices) {
  double yMin = 1.7976931348623157e+308;
  // The smallest positive double, not the most negative one, so an outline above the canvas is scanned on to sub-row 0.
  // Kept as is (anOutlineAboveTheCanvasIsScannedDownToSubRowZero).
  double yMax = 2.2250738585072014e-308;
  for (const PathVertex& v : vertices) {
    if (v.ty < yMin) yMin = v.ty;
    if (v.ty > yMax) yMax = v.ty;
  }
  return {nearestSub(yMin * 8.0), nearestSub(yMax * 8.0)};
}

template <class Pixel>
void fillGeneral(std::vector<ScanEdge>& storage, CoverageRows& coverage, const std::vector<PathVertex>& outline,
                 const CanvasView<Pixel>& canvas, const Pixel& color) {
  const SubRowRange range = scannedSubRows(outline);
  const bool ordinary = isOrdinary(outline);
  const auto [left, right] = std::minmax_element(outline.begin(), outline.end(),
                                                 [](const PathVertex& a, const PathVertex& b) { return a.tx < b.tx; });
  RowsAhead<Pixel> ahead(canvas, left->tx, right->tx, range.first >> 3, range.last >> 3);
  ahead.ask(RowsAhead<Pixel>::distance);
  EdgeTable edges(storage, outline, ordinary);
  RunStore<Pixel> store(coverage, canvas, color, range.last, ordinary);
  const auto flushIfDone = [&](int32_t next) {
    if (!store.ready() && next - 1 != range.last) return;
    ahead.ask(1);
    store.flush(next - 1);
  };
  // Above the canvas nothing is painted. Below it neither, and nobody looks at the edges again.
  const int32_t behind = std::min(range.last, wrapMultiply(canvas.height, 8) - 1) + 1;
  edges.pass(range.first, std::min(behind, 0));
  for (int32_t y = std::max(range.first, 0); y < behind;) {
    edges.enter(y);
    const int32_t change = edges.nextChange(y, behind);
    while (y < change) {
      if (ordinary && edges.activeCount() <= Crossings::most && store.table() != nullptr) {
        Crossings crossings(edges);
        do {
          y = crossings.scan(*store.table(), y, std::min(change, (y | 7) + 1));
          flushIfDone(y);
        } while (y < change && crossings.inOrder());
        crossings.giveBack(edges);
      } else {
        forEachRun(edges, [&](int32_t open, int32_t close) {
          store.add({nearestSub(edges.active(open).x), nearestSub(edges.active(close).x)}, y);
        });
        edges.step();
        flushIfDone(++y);
      }
      if (y < change) edges.sortActive();
    }
  }
  store.reset();
}

template void fillGeneral(std::vector<ScanEdge>&, CoverageRows&, const std::vector<PathVertex>&,
                          const CanvasView<Pixel8>&, const Pixel8&);
template void fillGeneral(std::vector<ScanEdge>&, CoverageRows&, const std::vector<PathVertex>&,
                          const CanvasView<Pixel16>&, const Pixel16&);
template void fillGeneral(std::vector<ScanEdge>&, CoverageRows&, const std::vector<PathVertex>&,
                          const CanvasView<Pixel32>&, const Pixel32&);

}  // namespace vindrel
