// Cosine and sine at every half degree of the full turn, as constants.
//
// Constants and not computed at start: every build and every C library then draws the same circles. Each value is the
// mathematical one, rounded once to double, so cos 90 degrees is 0 and sin 30 degrees is 0.5.
#pragma once

namespace vindrel {

inline constexpr int circleSteps = 720;

/// Entry i is the cosine of i * 0.5 degrees.
extern const double cosTable[circleSteps];

/// Entry i is the sine of i * 0.5 degrees.
extern const double sinTable[circleSteps];

}  // namespace vindrel
