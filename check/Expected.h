/// What a module is known to do otherwise, by name: a file that its author keeps beside it.
///
/// A line is "PROMISE | PATTERN | REASON"; lines that begin with # and empty ones say nothing. PATTERN holds for a
/// finding as a whole, with * for any text. A promise is taken as expected only when each of its findings is matched by
/// one of its lines: anything else still fails.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace check {

struct Expectation {
  std::string promise;
  std::string pattern;
  std::string reason;
};

using Expectations = std::vector<Expectation>;

/// @throws std::runtime_error with one line: the file can't be read, or a line is of another form or names no promise
Expectations readExpectations(const std::filesystem::path& file);

/// True when text is as pattern says, * standing for any text, also for none.
bool matches(std::string_view text, std::string_view pattern);

/// The expectation that holds for this finding of this promise, or null.
const Expectation* findExpectation(const Expectations& expectations, std::string_view promise,
                                   std::string_view finding);

}  // namespace check
