// A folder of its own for one test, gone with everything in it at the end.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace vindrel::test {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    const testing::TestInfo& info = *testing::UnitTest::GetInstance()->current_test_info();
    // Several builds may run the same test at the same time.
    std::random_device random;
    folder = std::filesystem::temp_directory_path() /
             (std::string("vindrel-") + info.name() + "-" + std::to_string(random()));
    std::filesystem::create_directories(folder);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// Full path of a file in the folder.
  [[nodiscard]] std::string path(const std::string& name) const { return (folder / name).string(); }

  void write(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
  }

  /// The text of a file with lines ended by a line feed only; empty when there is no such file.
  [[nodiscard]] std::string read(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    std::string text;
    for (auto it = std::istreambuf_iterator<char>(file); it != std::istreambuf_iterator<char>(); ++it) {
      if (*it != '\r') text += *it;
    }
    return text;
  }

  [[nodiscard]] bool has(const std::string& name) const { return std::filesystem::exists(path(name)); }

 private:
  std::filesystem::path folder;
};

}  // namespace vindrel::test
