// Ids of the controls that code asks for by name. Their rows in ControlRows.cpp use them; the ids of all other controls
// stand in the rows alone.
#pragma once

#include <cstdint>

namespace vindrel {

inline constexpr int effectorCount = 3;

namespace controlId {

inline constexpr int32_t dotSize = 3;
inline constexpr int32_t distanceBetween = 8;
inline constexpr int32_t dotDistanceX = 9;
inline constexpr int32_t dotDistanceY = 10;
inline constexpr int32_t mask = 14;
inline constexpr int32_t maskTargetLayer = 15;
inline constexpr int32_t invertMask = 16;
inline constexpr int32_t randomInterval = 20;

/// An id of an effector group, for N = 1, 2 or 3. The first controls of the groups got their ids group by group, with
/// 30 from one group to the next; those that came later got them control by control.
struct OfEffector {
  int32_t first;
  int32_t step;
  constexpr int32_t operator()(int n) const { return first + step * (n - 1); }
};

inline constexpr OfEffector enableEffector{37, 30};
inline constexpr OfEffector angle{40, 30};
inline constexpr OfEffector position{41, 30};
inline constexpr OfEffector size{42, 30};
inline constexpr OfEffector falloff{43, 30};
inline constexpr OfEffector customMapLayer{45, 30};
inline constexpr OfEffector absolute{46, 30};
inline constexpr OfEffector absSize{47, 30};
inline constexpr OfEffector absAspect{48, 30};
inline constexpr OfEffector absRotation{49, 30};
inline constexpr OfEffector absOpacity{50, 30};
inline constexpr OfEffector color{61, 30};
inline constexpr OfEffector blendMode{62, 30};
inline constexpr OfEffector blendColor{63, 30};
inline constexpr OfEffector shiftHue{64, 30};
inline constexpr OfEffector centerDotToFront{126, 1};
inline constexpr OfEffector pickSourceColor{129, 1};
inline constexpr OfEffector tiling{133, 1};
inline constexpr OfEffector effectMap{136, 1};
inline constexpr OfEffector fitToLayer{139, 1};

}  // namespace controlId

}  // namespace vindrel
