/// What the error stream is shown on.
#pragma once

#include <cstdint>
#include <functional>

namespace cli {

struct Terminal {
  bool present = false;  ///< false: a file, a pipe, or nothing is to be shown
  bool plain = false;    ///< it can't go back in a line
  bool color = false;
  std::function<int32_t()> columns;  ///< its width now; without it, 80
};

/// Looks at the stream, at TERM (`dumb` is plain, as it is when not set) and at NO_COLOR, which any text but the empty
/// one sets.
/// @param stream  the number of an open file
Terminal terminalOf(int stream);

}  // namespace cli
