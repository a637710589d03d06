/// Variants of a picture: which ones, and side by side with a label under each.
#pragma once

#include <string>
#include <vector>

#include "cli/Preset.h"
#include "host/Image.h"

namespace cli {

inline constexpr std::size_t mostVariants = 100;

/// All combinations of the values that are varied, the last control's changing first.
/// @param varied  a control and its values, between commas, or between semicolons where one of them is in the text
/// @return for each variant a value for each control
/// @throws UserError for an empty value, a control that is varied twice, more than mostVariants
std::vector<std::vector<Assignment>> variantsOf(const std::vector<Assignment>& varied);

/// How many variants stand beside each other: those of the last control, if two or more are varied; else as many as
/// make the sheet about as wide as high.
/// @param width   of one picture, with @param height
std::size_t columnsFor(const std::vector<std::vector<Assignment>>& variants, int32_t width, int32_t height);

/// Puts the pictures, all of one size and 8 bits, side by side, row after row.
/// @param labels  for each picture some lines, equally many for all
standin::Image sheetOf(const std::vector<standin::Image>& pictures, const std::vector<std::vector<std::string>>& labels,
                       std::size_t columns);

}  // namespace cli
