/// Tries promises, each in a process of its own, several at once, and gathers what came of it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "check/Expected.h"
#include "check/Promise.h"

namespace check {

enum class Verdict { kPass, kFail, kWarn, kSkip };

/// "pass", "fail", "warn", "skip".
std::string_view verdictName(Verdict verdict);

struct Result {
  const Promise* promise = nullptr;
  Verdict verdict = Verdict::kPass;
  std::vector<std::string> findings;  ///< what was seen against the promise
  std::vector<std::string> warnings;  ///< what was seen besides
  std::vector<std::string> notes;     ///< what was tried
  std::string reason;                 ///< of a skip
  std::vector<std::string> expected;  ///< why findings were expected; the verdict is then a warning
  std::string repeat;                 ///< the words that try it again
  double seconds = 0;
};

struct RunSettings {
  std::filesystem::path module;
  std::vector<const Promise*> promises;
  uint64_t seed = 1;
  int32_t jobs = 1;        ///< processes at once
  double timeFactor = 1;   ///< by which all time limits are stretched
  std::string repeatWith;  ///< the command by which a person repeats a check, as "vindrel check Some.so"
  Expectations expectations;
};

/// Results in the order of the promises. The program that runs is started again for each promise, so its main must ask
/// tryOnePromise first.
/// @param program  the program to start
/// @param told  called with each result as soon as it is there, in any order; may be empty
/// @throws std::runtime_error when no process can be started
std::vector<Result> runPromises(const RunSettings& settings, const std::filesystem::path& program,
                                const std::function<void(const Result&)>& told = {});

}  // namespace check
