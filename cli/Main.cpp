// The program `vindrel`. All it does itself is to find out where it runs.

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include "check/OnePromise.h"
#include "cli/Run.h"
#include "cli/files/Interrupts.h"

namespace {

/// Where programs keep what belongs to a user; empty when the system tells none.
std::filesystem::path userFolder() {
  // A relative path counts as none, by the rule that made the variable.
  const char* const data = std::getenv("XDG_DATA_HOME");
  if (data != nullptr && data[0] == '/') return std::filesystem::path(data) / "vindrel";
  const char* const home = std::getenv("HOME");
  if (home != nullptr && home[0] == '/') return std::filesystem::path(home) / ".local" / "share" / "vindrel";
  return {};
}

}  // namespace

int main(int count, char** words) {
  const std::vector<std::string> arguments(words + 1, words + count);
  if (const auto exitCode = check::tryOnePromise(arguments)) return *exitCode;
  cli::heedInterrupts();
  std::error_code ignored;
  const std::filesystem::path program = std::filesystem::canonical("/proc/self/exe", ignored);
  const cli::Surroundings surroundings{std::cout, std::cerr, cli::terminalOf(STDERR_FILENO), program.parent_path(),
                                       userFolder()};
  return cli::run(arguments, surroundings);
}
