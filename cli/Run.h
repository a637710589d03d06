/// The command line as a function: words in, texts and files out, an exit code.
#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "cli/Terminal.h"

namespace cli {

inline constexpr int exitDone = 0;
inline constexpr int exitEffectFailed = 1;
inline constexpr int exitWrongUse = 2;

/// Where the program runs.
struct Surroundings {
  std::ostream& out;                    ///< results
  std::ostream& err;                    ///< messages, one line each, and the progress bar
  Terminal terminal;                    ///< that err is shown on
  std::filesystem::path programFolder;  ///< the module built with the program lies here
  std::filesystem::path userFolder{};   ///< what the user saves by name goes below it; empty: nowhere
};

/// Does what the words ask for, the program's own name not among them. Never throws. On anything but exitDone one line
/// stands on the error stream, and no file has been made or changed; only of a shot some frames may stand, and the
/// others have a line each.
int run(const std::vector<std::string>& words, const Surroundings& surroundings);

}  // namespace cli
