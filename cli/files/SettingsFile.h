/// The file in which a module keeps the values that new instances begin with.
#pragma once

#include <cstdint>
#include <filesystem>

#include "cli/files/OpenFile.h"

namespace cli {

/// "Vindrel.ini" beside "Vindrel.so".
std::filesystem::path settingsFileOf(const std::filesystem::path& module);

/// Bytes of such a file at most.
inline constexpr uint64_t mostSettings = 1'000'000;

/// @throws UserError when the file is there and is no plain file, or too long for settings
void checkSettingsFile(const std::filesystem::path& settings);

/// A module reads its settings value by value: while this lives, no other of our programs puts other values in their
/// place, or, for the one that writes, none reads or writes them. It is a lock of the folder, since the file itself is
/// replaced.
class SettingsLock {
 public:
  enum class Way { read, write };
  /// Waits until it may. A folder that can't be locked, as on some file systems, is used without.
  SettingsLock(const std::filesystem::path& settings, Way way);

 private:
  OpenFile folder_;
};

}  // namespace cli
