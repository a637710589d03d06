// Golden pictures on disk, and their comparison with what was rendered.
//
// A picture per depth: 8.png and 16.png with straight alpha, 32.exr. At 16 bits a channel of 0 to 32768 is spread over
// 0 to 65535, which no two channels share. The EXR holds the straight colour as it is, without a premultiplication that
// would round. Reading needs no image library of the system, so that the Windows build compares too.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "host/Image.h"

namespace golden {

/// "8.png", "16.png" or "32.exr".
std::string fileName(standin::Depth depth);

/// Reads an 8-bit PNG as a picture of the depth: 255 becomes full scale. Throws std::runtime_error naming the file.
standin::Image readInput(const std::filesystem::path& file, standin::Depth depth);

/// Reads a golden picture. Throws std::runtime_error naming the file when it is missing or no picture of that depth.
standin::Image readGolden(const std::filesystem::path& file, standin::Depth depth);

/// A channel of 0 to 32768 spread over 0 to 65535, and back.
uint16_t spread16(uint16_t channel);
uint16_t gather16(uint16_t channel);

/// How two pictures of the same depth differ.
struct Difference {
  int64_t pixels = 0;   ///< that differ by more than the tolerance in a channel
  int32_t firstX = -1;  ///< of the first differing pixel in reading order
  int32_t firstY = -1;
  double largest = 0.0;  ///< in a channel, in the depth's own scale
  std::string text;      ///< one line: sizes, or the first differing pixel and the largest difference
};

/// @param floatTolerance  largest difference of a float channel that counts as none; whole channels must be equal
Difference compare(const standin::Image& expected, const standin::Image& actual, double floatTolerance);

}  // namespace golden
