// A folder of a test's own, empty at first and gone with everything in it at the end.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <system_error>
#include <vector>

#include "tests/support/ReadFile.h"

namespace vindrel::test {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    // Several builds may run the same test at the same time.
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / ("vindrel-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

  /// Full path of a file in the folder, as text.
  std::string path(const std::string& name) const { return (path_ / name).string(); }

  bool has(const std::string& name) const { return std::filesystem::exists(path_ / name); }

  /// Names of all that lies in it, hidden files included, in order.
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  /// Returns the file's path.
  std::filesystem::path write(const std::string& name, const std::string& content) const {
    std::ofstream(path_ / name, std::ios::binary) << content;
    return path_ / name;
  }

  /// The bytes of a file; empty when there is no such file.
  std::string read(const std::string& name) const { return readFile(path_ / name); }

  /// The same with lines ended by a line feed only, whatever the system ends them with.
  std::string readLines(const std::string& name) const {
    std::string text = read(name);
    std::erase(text, '\r');
    return text;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace vindrel::test
