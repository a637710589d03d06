// Writes the property list into the file that is the only argument. Runs on the machine that builds.
#include <cstdio>

#include "effect/filter/PropertyList.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  std::FILE* const file = std::fopen(argv[1], "wb");
  if (!file) return 1;
  constexpr auto bytes = vindrel::propertyList();
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && written ? 0 : 1;
}
