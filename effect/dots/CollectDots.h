// All dots of a frame, as records, and the order in which they are to be drawn.
//
// The lattice, the jitter, the effectors and the finishing of each dot in one pass. Nothing is drawn here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "effect/dots/FieldSettings.h"
#include "effect/dots/MakeDot.h"

namespace vindrel {

/// Both work on the final places: after the turn of the lattice and after the jitter.
enum class DotOrder {
  reading,       ///< top row first, within a row from left to right: lower dots lie over higher ones
  nearestOnTop,  ///< the dots nearest to the front centres last, by frontKey
};

/// All dots of a frame, and the order that they are to be drawn in.
template <class Pixel>
struct DotField {
  std::vector<FinishedDot<Pixel>> records;
  DotOrder order = DotOrder::reading;
};

/// From this many dots on the rest of the walk is counted, and the records get one block that just holds them: growing
/// on by doubling would ask for three times the memory, and soon for more than a block can have.
inline constexpr std::size_t dotsWithoutCounting = 65536;

/// Makes the records in the order of the walk, and says in which order they are to be drawn. Starts the generator anew,
/// so two frames must not be collected at the same time (see Random.h).
/// @param width, height  of the canvas, pixels.
/// Throws std::bad_alloc when there is no memory for the records.
/// @tparam Pixel  Pixel8, Pixel16 or Pixel32.
template <class Pixel>
DotField<Pixel> collectDots(const FieldSettings<Pixel>& settings, int32_t width, int32_t height);

/// Sorts the records once and in place, as whole values: ascending by y and then x for the reading order, ascending by
/// frontKey for the other, which is drawn from the last record down. The order of two that tie is the sort's own. No
/// place and no key may be NaN.
template <class Pixel>
void SortDots(std::vector<FinishedDot<Pixel>>& records, DotOrder order);

}  // namespace vindrel
