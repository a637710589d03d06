/// The one fact of a camera's notes that pictures are read by: how the camera was held.
#pragma once

#include <cstdint>
#include <span>

namespace cli {

/// The orientation, 1 to 8, in an Exif block that begins with its byte order ("II" or "MM"); 1 when there is none or
/// the block makes no sense.
int32_t exifOrientation(std::span<const uint8_t> block);

/// Makes the block one of an upright picture, orientation 1; one that tells no orientation stays as it is.
void makeExifUpright(std::span<uint8_t> block);

}  // namespace cli
