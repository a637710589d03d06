/// Makes the small picture that a host hands to an effect when it works at reduced resolution.
#pragma once

#include "host/Image.h"

namespace standin {

/// The picture at 1/factor of its size, width and height rounded to the nearest with halves up, as the host rounds the
/// size of a layer. Each new pixel is the mean of the factor x factor block that it covers, at the right and lower edge
/// of what there is of it; what is left of half a block or more is a pixel, less than half is left out. Colours are
/// weighted by their alpha, so that the colour under clear pixels doesn't bleed; where all of a block is clear, they
/// are plain means. Channels of whole numbers are rounded to the nearest. A picture of less than half a block is empty.
/// @param factor  1 or more; 1 gives the picture as it is
Image shrunk(const Image& picture, int32_t factor);

}  // namespace standin
