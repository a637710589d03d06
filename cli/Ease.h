/// How a value goes from one key to the next, as After Effects' graph of speed has it.
#pragma once

namespace cli {

/// One side of a key.
struct Ease {
  enum class Kind { linear, hold, bezier };
  Kind kind = Kind::linear;
  double influence = 100.0 / 3.0;  ///< bezier: percent of the time between the keys, above 0 to 100
  double speed = 0.0;              ///< bezier: units a second at the key; of colours and places along their way
};

/// How far the way between two keys has been gone: 0 at the first, 1 at the second; a Bezier may go beyond both.
/// @param out       of the first key
/// @param in        of the second key
/// @param part      of the time between them, 0 to 1
/// @param seconds   between them, above 0
/// @param distance  from the first value to the second, with its sign; speeds are told in its units
double easedPart(const Ease& out, const Ease& in, double part, double seconds, double distance);

}  // namespace cli
