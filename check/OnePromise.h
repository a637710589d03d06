/// The side of a check that lives in a process of its own: one promise of one module.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace check {

/// The first word of a process that tries one promise: kOnePromise NAME MODULE SEED REPORT-FILE.
inline constexpr const char* kOnePromise = "--check-one-promise";

/// To be asked first of all by the main of each program that has the check.
/// @param words  without the program's own name
/// @return an exit code when the words are those of such a process; nothing when they are anything else
std::optional<int> tryOnePromise(const std::vector<std::string>& words);

}  // namespace check
