/// What each control does, in a sentence and where it needs one a paragraph: the texts of manual/controls.json.
///
/// The texts stand outside of the module, which shows none of them; they are built into the program from the file.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cli {

struct ControlHelp {
  std::string help;  ///< one sentence
  std::string more;  ///< may be empty
};

/// The help of a control by its name as the module bears it; "Size 2" finds the text of "Size #". Nothing for a control
/// that the texts don't know, such as one of another module.
std::optional<ControlHelp> helpOf(std::string_view controlName);

}  // namespace cli
