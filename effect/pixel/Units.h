// The factors between units: each stands here once, with the last bits that pictures were made with.
#pragma once

namespace vindrel {

/// 2 to the power -16: makes a double of a 16.16 number, and a share of the whole of a draw of 16 bits.
inline constexpr double twoToMinus16 = 1.52587890625e-05;
/// The other way round: a number of a control's own unit becomes 16.16.
inline constexpr double twoTo16 = 65536.0;

inline constexpr double radiansPerDegree = 0.017453292519943295;
inline constexpr double quarterTurn = 1.5707963267948966;  ///< radians
inline constexpr double halfTurn = 3.141592653589793;      ///< radians
inline constexpr double fullTurn = 6.283185307179586;      ///< radians
inline constexpr double degreesPerTurn = 360.0;

}  // namespace vindrel
