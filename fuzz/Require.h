// How a fuzz target says that something which must hold does not.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace fuzz {

/// Ends the run with the reason when something that must hold does not: libFuzzer keeps the input.
inline void require(bool holds, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", what.c_str());
  std::abort();
}

}  // namespace fuzz
