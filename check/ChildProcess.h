/// A program started beside this one, that can be looked at, timed and ended: what crashes or hangs there leaves this
/// process whole. One source for each system.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace check {

/// How a process came to its end.
struct ChildEnd {
  bool byItself = true;     ///< it returned or called exit; else it crashed or was ended from outside
  int32_t code = 0;         ///< exit code, or the number of the signal or exception
  std::string text;         ///< "exit code 3", "signal 11 (Segmentation fault)"
  uint64_t peakMemory = 0;  ///< most bytes that it held at once; 0 where the system doesn't tell
};

class ChildProcess {
 public:
  /// Starts program with the words. It reads nothing, and what it writes to its output and error streams goes to the
  /// end of outputFile. On Linux it ends with this process.
  /// @throws std::runtime_error when it can't be started
  ChildProcess(const std::filesystem::path& program, const std::vector<std::string>& words,
               const std::filesystem::path& outputFile);
  ChildProcess(ChildProcess&&) noexcept;
  ChildProcess& operator=(ChildProcess&&) noexcept;
  ~ChildProcess();  ///< ends it when it still runs

  /// Its end, as soon as it has come. Doesn't wait.
  std::optional<ChildEnd> ended();

  /// Ends it at once; ended() tells soon after.
  void end();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// The program that this process runs. @throws std::runtime_error
std::filesystem::path ownProgram();

/// For a process that is expected to crash: no dialog, no debugger, no core file.
void crashQuietly();

/// Bytes of memory that this process holds now; 0 where the system doesn't tell.
uint64_t residentMemory();

}  // namespace check
