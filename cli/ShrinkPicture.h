/// Makes the small picture that a host hands to an effect when it works at reduced resolution.
#pragma once

#include "host/Image.h"

namespace cli {

/// The picture at 1/factor of its size, width and height rounded up. Each new pixel is the mean of the factor x factor
/// block that it covers, at the right and lower edge of what there is of it. Colours are weighted by their alpha, so
/// that the colour under clear pixels doesn't bleed; where all of a block is clear, they are plain means. Channels of
/// whole numbers are rounded to the nearest.
/// @param factor  1 or more; 1 gives the picture as it is
standin::Image shrunk(const standin::Image& picture, int32_t factor);

}  // namespace cli
