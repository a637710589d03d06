// A file as a test compares it.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace vindrel::test {

/// All bytes of a file; empty when there is no such file.
inline std::string readFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace vindrel::test
