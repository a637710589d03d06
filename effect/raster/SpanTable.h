// Eight sub-rows of covered runs on a small fixed table: what span lists know about a pixel row, without a block of
// host memory.
//
// An ordinary cross or star has one to three runs on a sub-row, so a few places for each of the eight are enough, and
// the table lives on the stack. Whoever fills it turns to the lists when a run finds no place, or when a row isn't
// `orderly`: a coordinate beyond the 32-bit range has left a run behind whose ends stand the wrong way round.
//
// Exactness. append is the lists' own rule. On an orderly row the runs of each sub-row ascend with a free column
// between neighbours, and no sum on them can wrap, so two things that the lists reach by walking can be had more
// cheaply:
// - Their union, joined one after the other, is the set of longest runs that the columns of all sub-rows make up. In
//   which order columns are gathered doesn't matter to that set.
// - Their intersection decides only which pixels count 64 without counting. What comes of it lies within the true
//   intersection, where counting gives 64 too, as long as each step finds an overlap; and it always does when the first
//   runs of all sub-rows have a column in common. Without such a column it is worked out step by step, with everything
//   that the lists keep though it overlaps nothing; and for wide runs, which that spares the counting.
#pragma once

#include <algorithm>
#include <cstdint>

namespace vindrel {

/// A run of columns, both ends inclusive.
struct ColumnRun {
  int32_t start;
  int32_t end;
  friend bool operator==(const ColumnRun&, const ColumnRun&) = default;
};

/// How far the runs of a layer reach: between which columns each of its ends lies.
struct LayerExtent {
  int32_t leastStart, greatestStart, leastEnd, greatestEnd;
  friend bool operator==(const LayerExtent&, const LayerExtent&) = default;
};

/// The runs of one pixel row. Sub-row y has slot y & 7.
class SpanTable {
 public:
  static constexpr int32_t runsPerSlot = 8;
  static constexpr int32_t mostRuns = 8 * runsPerSlot;

  /// Room for whatever can come of joining or intersecting the eight slots.
  struct Runs {
    int32_t count = 0;
    ColumnRun run[mostRuns];
  };

  /// The first runs of all slots, or the second ones, and so on. What a slot doesn't have is empty: {0, -1}.
  using Layer = ColumnRun[8];

  SpanTable() {
    for (Layer& layer : layers_) clear(layer);
  }

  /// Adds a run at the right end of the slot: merges, drops and keeps as spanAppend does. False when it needs a place
  /// and there is none; the table is then unchanged.
  bool append(int32_t slot, ColumnRun added) {
    const int32_t count = counts_[slot];
    if (count == 0 || !joinLast(layers_[count - 1][slot], added)) {
      if (count == runsPerSlot) return false;
      layers_[count][slot] = added;
      counts_[slot] = count + 1;
      ++slotsWith_[count];
    }
    note(slot);
    return true;
  }

  /// Sets one or two runs of a slot that has none yet, the second one right of the first; they merge if they touch.
  void set(int32_t slot, ColumnRun first, ColumnRun second) {
    const bool touch = second.start <= first.end + 1;
    if (touch) first.end = std::max(first.end, second.end);
    layers_[0][slot] = first;
    ++slotsWith_[0];
    if (!touch) {
      layers_[1][slot] = second;
      ++slotsWith_[1];
    }
    counts_[slot] = touch ? 1 : 2;
    note(slot);
  }
  void set(int32_t slot, ColumnRun run) {
    layers_[0][slot] = run;
    ++slotsWith_[0];
    counts_[slot] = 1;
    note(slot);
  }

  /// Empties all slots.
  void reset() {
    for (int32_t k = 0; k < runsPerSlot && slotsWith_[k] > 0; ++k) {
      clear(layers_[k]);
      slotsWith_[k] = 0;
    }
    for (int32_t& count : counts_) count = 0;
    first_ = last_ = -1;
  }

  /// First slot in use; -1 if none. The slots between first and last may be empty, and those behind may not be, when
  /// sub-rows of several pixel rows have piled up.
  int32_t first() const { return first_; }
  /// The slot that was added to last; -1 if none.
  int32_t last() const { return last_; }
  /// Runs of the slot.
  int32_t count(int32_t slot) const { return counts_[slot]; }
  /// Runs of the slot that has most.
  int32_t layerCount() const {
    int32_t k = 0;
    while (k < runsPerSlot && slotsWith_[k] > 0) ++k;
    return k;
  }
  const Layer& layer(int32_t k) const { return layers_[k]; }

  /// Whether each run stands the right way round, and far enough from the end of the 32-bit range to add to it; and
  /// only the slots from the first to the last one hold any.
  bool isOrderly() const;

  /// The layers that have runs, and how far these reach.
  struct Shape {
    int32_t layers;
    LayerExtent extent[runsPerSlot];
  };
  Shape shape() const;

  /// Joins all slots, sub-columns. Needs an orderly row, and its shape.
  void joinInto(const Shape& shape, Runs& joined) const;

  /// The pixels, covered from side to side, that count 64 without counting, as far as counting wouldn't find the same;
  /// wide stretches that counting would find are among them, since counting them would take longer. In the order of the
  /// lists, and to be read as they are: the first run that ends at or right of a pixel decides. Needs an orderly row,
  /// and its shape.
  void solidPixelsInto(const Shape& shape, Runs& solid) const;

  /// The whole intersection of all eight slots by the lists' rules, as the pixels that it covers from side to side.
  void intersectInto(Runs& solid) const;

 private:
  void note(int32_t slot) {
    if (first_ == -1) first_ = slot;
    last_ = slot;
  }
  /// Whether each slot has a run of its own in the layer.
  bool isFull(int32_t k) const { return slotsWith_[k] == 8; }
  static void clear(Layer& layer) {
    for (ColumnRun& run : layer) run = {0, -1};
  }
  /// Whether the run needs no place of its own.
  static bool joinLast(ColumnRun& last, ColumnRun added);

  Layer layers_[runsPerSlot];
  int32_t counts_[8] = {};
  int32_t slotsWith_[runsPerSlot] = {};  ///< for each layer
  int32_t first_ = -1;
  int32_t last_ = -1;
};

}  // namespace vindrel
