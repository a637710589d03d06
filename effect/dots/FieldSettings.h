// Everything that decides how the dots of one frame look, in the field's own units: pixels of the canvas, radians,
// shares from 0 to 1, named choices. Where the values come from is not the field's business; the effect makes them of
// its controls (effect/filter/MakeFieldSettings.h).
#pragma once

#include <array>

#include "effect/dots/Effector.h"
#include "effect/dots/Grid.h"
#include "effect/dots/MakeDot.h"
#include "effect/dots/Random.h"

namespace vindrel {

/// A plain value; only the pixels of the effectors' layers stand elsewhere, and must stay there while it is in use.
/// As it is made here, it says: nothing at all, on a lattice of single pixels.
/// @tparam Pixel  Pixel8, Pixel16 or Pixel32.
template <class Pixel>
struct FieldSettings {
  LatticeSettings lattice;
  RandomSchedule random;
  BaseDot<Pixel> base;      ///< what every dot is before jitter and effectors
  JitterAmounts jitter;     ///< how far single dots may differ from it
  bool centerDotToFront{};  ///< the lattice's centre is a front centre
  std::array<EffectorState<Pixel>, 3> effectors;
};

}  // namespace vindrel
