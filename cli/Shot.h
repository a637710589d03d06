/// Which frames are to be rendered, from which files into which.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cli/Arguments.h"

namespace cli {

struct ShotFrame {
  int32_t number = 0;  ///< of the file
  std::filesystem::path input;
  std::filesystem::path output;
};

/// True when the words name more than one picture: a pattern as input or output, or --frames.
bool isShot(const Arguments& arguments);

/// The frames of this process's part, ascending.
/// @throws UserError for a pattern without files, gaps, an output without a place for the number, two frames of one
/// file,
///         a frame before --start, an output that can't be written
std::vector<ShotFrame> framesOfShot(const Arguments& arguments);

/// What a frame has behind it.
enum class FrameStep { read, drawn };

/// What became of one frame.
struct FrameResult {
  enum class Kind { done, skipped, failed };
  std::size_t index = 0;  ///< among the frames of the shot
  Kind kind = Kind::failed;
  double seconds = 0.0;     ///< reading, drawing and writing, without waiting
  uint64_t peakMemory = 0;  ///< bytes, of the process that made it, since its start
  std::string message;      ///< why it failed
};

}  // namespace cli
