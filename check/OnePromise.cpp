#include "check/OnePromise.h"

#include <cstdlib>
#include <exception>

#include "check/ChildProcess.h"
#include "check/Promise.h"
#include "check/Trial.h"

namespace check {

std::optional<int> tryOnePromise(const std::vector<std::string>& words) {
  if (words.size() != 5 || words[0] != kOnePromise) return std::nullopt;
  const Promise* promise = findPromise(words[1]);
  if (promise == nullptr) return EXIT_FAILURE;
  crashQuietly();
  // On Linux a module may carry an unwinder of its own; the frames of this process are left by the process's, which
  // aborts until a first throw of the process itself has filled its table of register sizes.
  try {
    throw 1;
  } catch (int) {
  }
  Trial trial(words[2], std::strtoull(words[3].c_str(), nullptr, 10),
              std::filesystem::path(reinterpret_cast<const char8_t*>(words[4].c_str())));
  try {
    promise->run(trial);
    trial.finished();
  } catch (const Skipped& reason) {
    trial.skipped(reason.what());
  } catch (...) {
    // Nothing of this program's own throws anything else.
    trial.finding(whatWasThrown());
    trial.finished();
  }
  return EXIT_SUCCESS;
}

}  // namespace check
