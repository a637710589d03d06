// The generator of the frame's irregularities, and the jitter that is drawn from it.
//
// A linear congruential generator of 16 bits: state = (state * 2061 + 7) modulo 65536, with the full period of 65536.
// It is seeded anew for each frame from the seed and the time, and each cell of the lattice takes exactly nine draws,
// in or out of the frame, so that a dot looks the same however large a part of the lattice is visible.
//
// One step is the affine map s -> a*s + c, and so is any number of steps. What a rejected cell or a whole rejected ring
// costs is therefore one multiplication, whatever the number of draws that are left out.
#pragma once

#include <cstdint>

#include "effect/pixel/Units.h"

namespace vindrel {

/// Draws of one visited cell.
constexpr int drawsPerCell = 9;

/// Some number of generator steps as one: state -> (state * factor + term) modulo 65536.
struct RandomLeap {
  uint32_t factor = 1;
  uint32_t term = 0;

  /// The leap that goes this one first and `next` after it.
  constexpr RandomLeap then(const RandomLeap& next) const noexcept {
    return {factor * next.factor & 65535U, (term * next.factor + next.term) & 65535U};
  }
};

constexpr RandomLeap randomStep{2061, 7};

/// `count` times `one`, in about log2(count) multiplications.
constexpr RandomLeap repeatLeap(RandomLeap one, uint64_t count) noexcept {
  RandomLeap all;
  for (; count != 0; count >>= 1U) {
    if ((count & 1U) != 0) all = all.then(one);
    one = one.then(one);
  }
  return all;
}

constexpr RandomLeap cellLeap = repeatLeap(randomStep, drawsPerCell);

/// The generator's word. Written at the start of each frame; nothing of it is seen by the next.
///
/// Threads: the word belongs to the thread that renders a frame, from RandomReseed to the last dot of the walk, and
/// nobody else may draw in that time. Kept as is: it is one word for the whole process, without a lock, so two frames
/// that are rendered at the same time disturb each other's sequence; a frame that is rendered alone is the same every
/// time (theFrameBeforeLeavesNoTrace). The settings, the records and the maps of a frame are that frame's own.
extern uint32_t randomState;

/// Advances the generator and returns its new value, 0 to 65535.
inline uint32_t NextRandom() noexcept {
  randomState = (randomState * randomStep.factor + randomStep.term) & 65535U;
  return randomState;
}

/// Leaves out the nine draws of one cell.
inline void skipCellDraws() noexcept {
  randomState = (randomState * cellLeap.factor + cellLeap.term) & 65535U;
}

/// Leaves out the draws of `cells` cells, 0 or more.
void skipDrawsOfCells(int64_t cells) noexcept;

/// What decides the pattern of a frame.
struct RandomSchedule {
  int32_t seed = 0;
  int32_t interval = 0;     ///< frames for which a pattern stands; 0 for ever
  int32_t array = 0;        ///< number of patterns through which the frames cycle; 0 for no cycle
  int32_t currentTime = 0;  ///< the host's time units, may be negative
  int32_t timeStep = 0;     ///< the host's time units a frame; 0 is as an interval of 0
};

/// Starts the sequence of a frame: the seed, moved by the number of the pattern that the time falls into, and then up
/// to nine steps of warming up. All divisions truncate toward zero, and what leaves 32 bits wraps.
void RandomReseed(const RandomSchedule& schedule) noexcept;

/// Draws a jitter from -amount up to just below amount; a negative amount mirrors the range.
inline double drawJitter(double amount) noexcept {
  return (amount - (-amount)) * static_cast<double>(NextRandom()) * twoToMinus16 + (-amount);
}

}  // namespace vindrel
