/// Frames as files that every program can write: one line of text, then the pixels.
///
/// The line is "VINDREL-RAW 1 WIDTH HEIGHT DEPTH" with one blank between the words and a line feed behind; the depth is
/// 8, 16 or 32. Behind it lie HEIGHT rows of WIDTH pixels from the top down, nothing between the rows and nothing
/// behind the last; a pixel is alpha, red, green, blue in straight colour, each a byte (full scale 255), a 16-bit whole
/// number (full scale 32768) or a 32-bit float (full scale 1.0), the latter two with their low byte first.
#pragma once

#include <string>

#include "host/Image.h"

namespace standin {

/// Reads a frame.
/// @param path  UTF-8
/// @throws std::runtime_error  with one line that names the file and what is wrong with it
Image readRawFrame(const std::string& path);

/// Writes a frame beside path first and moves it there when it is whole.
/// @throws std::runtime_error  as above; nothing is left behind then
void writeRawFrame(const std::string& path, const Image& image);

}  // namespace standin
