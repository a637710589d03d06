#include "effect/dots/Random.h"

namespace vindrel {
namespace {

// Quotient and remainder as the processor would have them, but for the one pair that it refuses: the smallest integer
// by -1, whose quotient wraps to itself.
int32_t wrappingQuotient(int32_t dividend, int32_t divisor) noexcept {
  if (divisor == -1) return static_cast<int32_t>(0U - static_cast<uint32_t>(dividend));
  return dividend / divisor;
}

int32_t wrappingRemainder(int32_t dividend, int32_t divisor) noexcept {
  return divisor == -1 ? 0 : dividend % divisor;
}

// The number by which the time moves the seed.
int32_t patternNumber(const RandomSchedule& schedule) noexcept {
  if (schedule.interval == 0 || schedule.timeStep == 0) return 0;
  const int32_t frame = wrappingQuotient(schedule.currentTime, schedule.timeStep);
  const int32_t pattern = wrappingQuotient(frame, schedule.interval);
  return schedule.array == 0 ? pattern : wrappingRemainder(pattern, schedule.array);
}

}  // namespace

uint32_t randomState = 0;

void skipDrawsOfCells(int64_t cells) noexcept {
  // A seed may fill all 32 bits of the word, and only a step cuts it to 16. Without a step it must stay whole.
  if (cells == 0) return;
  const RandomLeap leap = repeatLeap(cellLeap, static_cast<uint64_t>(cells));
  randomState = (randomState * leap.factor + leap.term) & 65535U;
}

void RandomReseed(const RandomSchedule& schedule) noexcept {
  randomState = static_cast<uint32_t>(schedule.seed) + static_cast<uint32_t>(patternNumber(schedule));
  // Spreads neighbouring seeds, whose sequences start very much alike. Kept as is: the digit is taken of the word as a
  // signed number, so that a negative state is not warmed up (aNegativeLastDigitGetsNoWarmUp).
  const int32_t warmUp = static_cast<int32_t>(randomState) % 10;
  for (int32_t step = 0; step < warmUp; ++step) NextRandom();
}

}  // namespace vindrel
