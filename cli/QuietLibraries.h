/// Keeps what libraries print of their own accord off the error stream.
///
/// The PNG library writes a line of its own about a broken file before it reports the error; the user gets one clear
/// line, ours, which holds the reason too.
#pragma once

#include <fcntl.h>
#include <unistd.h>

namespace cli {

/// While it lives, the process's standard error leads nowhere. Not for two threads at once.
class QuietLibraries {
 public:
  QuietLibraries() : kept_(dup(STDERR_FILENO)) {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0) return;
    if (kept_ >= 0) dup2(nowhere, STDERR_FILENO);
    close(nowhere);
  }
  QuietLibraries(const QuietLibraries&) = delete;
  QuietLibraries& operator=(const QuietLibraries&) = delete;
  ~QuietLibraries() {
    if (kept_ < 0) return;
    dup2(kept_, STDERR_FILENO);
    close(kept_);
  }

 private:
  int kept_;
};

}  // namespace cli
