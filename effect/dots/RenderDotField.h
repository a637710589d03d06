// The halftone of one frame: from the settings of its field to dots on the canvas.
#pragma once

#include <cstdint>

#include "effect/dots/FieldSettings.h"
#include "effect/raster/DrawContext.h"

namespace vindrel {

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
