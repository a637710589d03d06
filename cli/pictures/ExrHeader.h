/// What an EXR's header may ask of memory before the file is opened.
#pragma once

#include <cstdint>
#include <span>

namespace cli {

/// Refuses a header that would have the library take memory which the file can't fill: it takes the room for an
/// attribute, and for the table of the picture's chunks, before it reads either. A header that isn't in order otherwise
/// is left to the library.
/// @param file  the whole file, which begins as an EXR does
/// @throws BrokenPicture
void checkExrHeader(std::span<const uint8_t> file);

}  // namespace cli
