/// Finds what a person probably meant by a misspelt name.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// True when the two are the same but for the case of the letters A to Z.
bool equalIgnoringCase(std::string_view left, std::string_view right);

/// The fewest single-letter insertions, removals, replacements and swaps of two neighbours that turn one name into
/// the other. Case doesn't count.
std::size_t editDistance(std::string_view left, std::string_view right);

/// The name nearest to `wanted`, the first one of several. When more than a third of the letters (and more than one)
/// would have to change, the first name that holds all words of `wanted`, if these are two or more. Empty when there is
/// none: a proposal that is only the least far of all helps nobody.
std::string nearestName(std::string_view wanted, const std::vector<std::string>& names);

/// "; did you mean 'Dot Size'?", or `otherwise` when nothing is near.
std::string suggestion(std::string_view wanted, const std::vector<std::string>& names, std::string_view otherwise = "");

/// "Circle, Square or Diamond"; `last` stands before the last name.
std::string listed(const std::vector<std::string>& names, std::string_view last = "or");

}  // namespace cli
