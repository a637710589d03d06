/// The results as text for people, as JSON for programs, and the list of all promises as a page.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "check/Runner.h"

namespace check {

/// A line for each promise by subject, with what was seen below it, and a last line with the counts.
void writeText(std::ostream& out, const std::vector<Result>& results, double seconds);

/// One object: module, seed, counts and results.
void writeJson(std::ostream& out, const RunSettings& settings, const std::vector<Result>& results, double seconds);

/// Names and sentences, one a line.
void writeList(std::ostream& out);

/// The page of the documentation.
void writeMarkdown(std::ostream& out);

int32_t countOf(const std::vector<Result>& results, Verdict verdict);

}  // namespace check
