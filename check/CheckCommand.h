/// `check MODULE` as a function: words in, a report out, an exit code; for each program that has it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace check {

inline constexpr int kNothingFailed = 0;
inline constexpr int kSomethingFailed = 1;
inline constexpr int kBadInput = 2;

/// What the words ask for.
struct CheckWords {
  std::filesystem::path module;
  std::vector<std::string> only;  ///< names of promises; empty: all
  uint64_t seed = 1;
  int32_t jobs = 0;       ///< processes at once; 0: one for each processor
  double timeFactor = 1;  ///< stretches all time limits
  std::string expected;   ///< a file, or "none"; empty: the one beside the module, if there is one
  bool json = false;
  bool list = false;
  bool markdown = false;  ///< with list: as the page of the documentation
};

/// What is wrong with the words or the files that they name; one line.
struct BadInput : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Reads `MODULE [--only NAME]... [--seed N] [--jobs N] [--time-factor F] [--expected FILE] [--json]` or
/// `--list [--markdown]`. @throws BadInput
CheckWords readCheckWords(const std::vector<std::string>& words);

/// @param program  is started for each promise; its main asks tryOnePromise first
/// @param command  what a person types before the module: "vindrel check"
/// @return kNothingFailed or kSomethingFailed
/// @throws BadInput, and std::runtime_error when no process can be started
int runCheck(const CheckWords& words, const std::filesystem::path& program, const std::string& command,
             std::ostream& out);

}  // namespace check
