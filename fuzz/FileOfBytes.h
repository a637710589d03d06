// The fuzzer's bytes as a file, for what reads files.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <system_error>

namespace fuzz {

/// A file of these bytes that is gone with the object. Several fuzzers at once don't meet: the name has the process in
/// it.
class FileOfBytes {
 public:
  explicit FileOfBytes(std::span<const uint8_t> bytes, const std::string& ending = "")
      : path_(std::filesystem::temp_directory_path() / ("vindrel_fuzz." + std::to_string(getpid()) + ending)) {
    std::ofstream out(path_, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  }
  FileOfBytes(const FileOfBytes&) = delete;
  FileOfBytes& operator=(const FileOfBytes&) = delete;
  ~FileOfBytes() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace fuzz
