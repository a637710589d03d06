#include <iostream>

#include "check/OnePromise.h"
#include "host/program/HostProgram.h"

int main(int count, char** words) {
  const std::vector<std::string> arguments(words + 1, words + count);
  if (const auto exitCode = check::tryOnePromise(arguments)) return *exitCode;
  return standin::runHostProgram(arguments, std::cout, std::cerr);
}
