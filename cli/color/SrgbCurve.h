/// The curve of sRGB, between numbers for a display and those of light.
#pragma once

namespace cli {

// Both go on beyond 0 and 1: straight below, by the power above. They are each other's inverse.

/// Light from a display's number.
float lightFromSrgb(float number);

/// A display's number from light.
float srgbFromLight(float light);

}  // namespace cli
