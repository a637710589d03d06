/// Short texts drawn into a picture, for labels.
#pragma once

#include <string>

#include "host/Image.h"

namespace cli {

inline constexpr int32_t labelLineHeight = 22;  ///< pixels from one line to the next

/// Pixels that the text is wide.
int32_t labelWidth(const std::string& text);

/// Draws a line of text with its top left corner at (x, y) into a picture of 8 bits; what lies outside is left out.
/// Letters beyond ASCII become question marks.
void drawLabel(standin::Image& picture, int32_t x, int32_t y, const std::string& text, PF_Pixel color);

}  // namespace cli
