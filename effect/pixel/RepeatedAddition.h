// Many additions of one number, without making each of them.
//
// Places on the lattice come from adding the pitch again and again, x on a side of an outline from adding the slope.
// Every addition rounds: the product gives other last bits. But the roundings follow a rule. As long as sums stay
// between two neighbouring powers of two, all of them are multiples of the same smallest number, so each addition grows
// the sum by the same rounded step (a tie goes to the even multiple, so that the rule holds from the first sum on).
// Such a stretch is one exact multiplication and one exact addition. A run from one side of zero to the other crosses a
// few dozen powers of two, however long it is.
#pragma once

#include <cstdint>

namespace vindrel {

/// What `sum += step`, `count` times, makes of start, to the last bit. Costs a few additions for each power of two that
/// the sum crosses.
/// @param start  any number.
/// @param step   above 0 and finite.
/// @param count  0 gives start.
double addRepeatedly(double start, double step, int32_t count) noexcept;

}  // namespace vindrel
