#include "check/Expected.h"

#include <fstream>
#include <stdexcept>

#include "check/Promise.h"

namespace check {

namespace {

std::string trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) return "";
  return std::string(text.substr(first, text.find_last_not_of(" \t\r") - first + 1));
}

}  // namespace

Expectations readExpectations(const std::filesystem::path& file) {
  std::error_code ignored;
  std::ifstream lines(file);
  if (!std::filesystem::is_regular_file(file, ignored) || !lines) {
    throw std::runtime_error("can't read the expectations in " + file.string());
  }
  Expectations expectations;
  std::string line;
  for (int32_t number = 1; std::getline(lines, line); ++number) {
    const std::string text = trimmed(line);
    if (text.empty() || text.front() == '#') continue;
    const std::string where = file.string() + ", line " + std::to_string(number);
    const size_t first = text.find(" | ");
    const size_t second = first == std::string::npos ? first : text.find(" | ", first + 3);
    if (second == std::string::npos) throw std::runtime_error(where + " is not of the form PROMISE | PATTERN | REASON");
    Expectation made{trimmed(text.substr(0, first)), trimmed(text.substr(first + 3, second - first - 3)),
                     trimmed(text.substr(second + 3))};
    if (findPromise(made.promise) == nullptr) {
      throw std::runtime_error(where + " names no promise: \"" + made.promise + "\"");
    }
    expectations.push_back(std::move(made));
  }
  return expectations;
}

bool matches(std::string_view text, std::string_view pattern) {
  // The usual walk: at a difference the last star takes one letter more.
  size_t at = 0;
  size_t inPattern = 0;
  size_t star = std::string_view::npos;
  size_t starTook = 0;
  while (at < text.size()) {
    if (inPattern < pattern.size() && pattern[inPattern] == '*') {
      star = inPattern++;
      starTook = at;
    } else if (inPattern < pattern.size() && pattern[inPattern] == text[at]) {
      ++inPattern;
      ++at;
    } else if (star != std::string_view::npos) {
      inPattern = star + 1;
      at = ++starTook;
    } else {
      return false;
    }
  }
  while (inPattern < pattern.size() && pattern[inPattern] == '*') ++inPattern;
  return inPattern == pattern.size();
}

const Expectation* findExpectation(const Expectations& expectations, std::string_view promise,
                                   std::string_view finding) {
  for (const Expectation& each : expectations) {
    if (each.promise == promise && matches(finding, each.pattern)) return &each;
  }
  return nullptr;
}

}  // namespace check
