// The program `vindrel`. All it does itself is to find out where it runs.

#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include "check/OnePromise.h"
#include "cli/Run.h"
#include "cli/files/Interrupts.h"

int main(int count, char** words) {
  const std::vector<std::string> arguments(words + 1, words + count);
  if (const auto exitCode = check::tryOnePromise(arguments)) return *exitCode;
  cli::heedInterrupts();
  std::error_code ignored;
  const std::filesystem::path program = std::filesystem::canonical("/proc/self/exe", ignored);
  const cli::Surroundings surroundings{std::cout, std::cerr, isatty(STDERR_FILENO) != 0, program.parent_path()};
  return cli::run(arguments, surroundings);
}
