// The dots of a frame: made as records, sorted once, drawn one after the other on a canvas.
//
// collectDots walks the lattice and makes each dot in one pass: jitter, effectors, finishing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "effect/dots/FieldSettings.h"
#include "effect/dots/MakeDot.h"
#include "effect/raster/PolygonRasterizer.h"

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

/// Who hears how far the drawing is.
struct ProgressCall {
  /// Gets the share of the dots that are drawn, in whole percent; a result that is not 0 ends the drawing.
  int32_t (*tell)(void* listener, int32_t percent) = nullptr;  ///< null for nobody
  void* listener = nullptr;                                    ///< handed to `tell`; not owned
};

/// The share of the dots that is drawn, truncated. In 64 bits: a frame may hold more dots than a 32-bit product with
/// 100 can bear. `total` is at least 1.
constexpr int32_t progressPercent(uint64_t drawn, uint64_t total) noexcept {
  return static_cast<int32_t>(100 * drawn / total);
}

/// Draws all dots of the frame on the canvas of the context, and tells the progress after each.
/// @param context  its width and height bound the lattice; its rasteriser must not be null when a dot is drawn.
/// @returns 0, or the progress call's result when that was not 0; the rest of the dots is then not drawn.
/// Throws std::bad_alloc when there is no memory. Without memory for the records nothing is drawn.
/// Two frames must not be rendered at the same time (see Random.h).
/// @tparam Pixel  Pixel8, Pixel16 or Pixel32.
template <class Pixel>
int32_t RenderDotField(const FieldSettings<Pixel>& settings, DrawContext<Pixel>& context, const ProgressCall& progress);

}  // namespace vindrel
