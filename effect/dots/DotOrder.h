// The two orders in which the dots of a frame are drawn.
//
// Both work on the final places: after the turn of the lattice and after the jitter. Records are sorted in place as
// whole values; the order of two that tie is the sort's own.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "ae/InOutData.h"
#include "effect/raster/DotRecord.h"
#include "effect/raster/DrawContext.h"

namespace vindrel {

enum class DotOrder {
  reading,       ///< top row first, within a row from left to right: lower dots lie over higher ones
  nearestOnTop,  ///< the dots nearest to the front centres last, by frontKey
};

/// All dots of a frame, and the order that they are to be drawn in.
template <class Pixel>
struct DotField {
  std::vector<DotRecord<Pixel>> records;
  DotOrder order = DotOrder::reading;
};

/// Sorts the records once: ascending by y and then x for the reading order, ascending by frontKey for the other, which
/// DrawDots draws from the last record down. No place and no key may be NaN.
template <class Pixel>
void SortDots(std::vector<DotRecord<Pixel>>& records, DotOrder order);

/// The share of the records that is drawn, in whole percent, truncated; 100 of none. A frame may hold more dots than a
/// 32-bit product with 100 can bear.
constexpr int32_t progressPercent(uint64_t drawn, uint64_t total) noexcept {
  return total == 0 ? 100 : static_cast<int32_t>(std::min<uint64_t>(100 * drawn / total, 100));
}

/// Draws the sorted records and tells the host the share that is drawn after each, in percent.
/// @param in_data  null for no progress.
/// @returns the last progress result; one that is not 0 ends the drawing at once.
template <class Pixel>
PF_Err DrawDots(const PF_InData* in_data, DrawContext<Pixel>& context, const DotField<Pixel>& field);

}  // namespace vindrel
