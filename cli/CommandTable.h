/// The commands and their options as plain facts, taken from what the command line itself parses by, for texts that
/// tell of them.
#pragma once

#include <string>
#include <vector>

#include "cli/ControlFacts.h"

namespace cli {

/// What may stand after an option.
enum class Word { none, any, oneOf, file, set, layer, control };

struct OptionFacts {
  std::string name;   ///< "--depth"; of a place "IN"
  std::string shown;  ///< what stands after it: "FILE.json"; empty for none
  std::string help;
  Word word = Word::none;
  std::vector<std::string> choices;  ///< of oneOf
};

struct CommandFacts {
  std::string name;
  std::string help;
  std::vector<OptionFacts> places;  ///< words without an option, in order
  std::vector<OptionFacts> options;
};

/// In the order of the help.
std::vector<CommandFacts> commandTable();

/// A script for the shell that completes commands, options, and the controls with their items. Only `bash` and `zsh`.
std::string completionFor(const std::string& shell, const std::vector<ControlFacts>& controls);

/// The manual page, in roff.
std::string manPage(const std::vector<ControlFacts>& controls);

}  // namespace cli
