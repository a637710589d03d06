/// Numbered files, and which of their numbers are meant.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace cli {

inline constexpr int32_t lastFrameNumber = 1000000;

/// "in.####.exr" or "in.%04d.exr": a file's name with a place for a number.
class FramePattern {
 public:
  /// Nothing for a name without such a place. Folders are not looked at.
  /// @throws UserError for a name with two of them
  static std::optional<FramePattern> in(const std::filesystem::path& file);

  /// The file of a number, filled up with zeros to the pattern's width; longer numbers are longer.
  std::filesystem::path fileOf(int32_t number) const;

  /// The numbers of all files that there are, ascending; a number that is filled up otherwise doesn't count.
  std::vector<int32_t> numbersOnDisk() const;

 private:
  std::filesystem::path folder_;
  std::string before_;
  std::string after_;
  std::size_t width_ = 1;
};

/// "1-200", "1-200x2", "1,5,9-12": ascending, each once.
/// @throws UserError
std::vector<int32_t> frameList(const std::string& text);

}  // namespace cli
