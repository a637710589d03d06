/// The built program as a process of its own, for what can't be tried inside the test's: limits, signals, crashes.
#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <vector>

/// For a new process that is killed, or whose writes fail: where a build counts its lines, it would spoil the counts of
/// all others.
inline void keepCountsApart() {
#ifdef VINDREL_COUNTS_APART
  setenv("GCOV_PREFIX", VINDREL_COUNTS_APART, 1);
  setenv("GCOV_ERROR_FILE", "/dev/null", 1);
#endif
}

class Program {
 public:
  /// Starts `vindrel` with these words; its texts go to nowhere, or to the file `log` when one is named.
  /// @param before  done in the new process before the program begins, such as to set a limit
  /// @param program  another one, which may stand in front of it; looked for as a shell does
  explicit Program(const std::vector<std::string>& words, const std::function<void()>& before = {},
                   const std::string& log = "/dev/null", const char* program = VINDREL_PROGRAM) {
    process_ = fork();
    if (process_ != 0) return;
    const int out = open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(out, STDOUT_FILENO);
    dup2(out, STDERR_FILENO);
    if (before) before();
    std::vector<char*> arguments = {const_cast<char*>(program)};  // NOLINT: as the system's call wants them
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));  // NOLINT
    arguments.push_back(nullptr);
    execvp(program, arguments.data());
    _exit(127);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() {
    if (process_ > 0) {
      kill(process_, SIGKILL);
      waitpid(process_, nullptr, 0);
    }
  }

  void send(int signal) const { kill(process_, signal); }
  pid_t process() const { return process_; }

  bool ended() {
    if (process_ <= 0) return true;
    if (waitpid(process_, &status_, WNOHANG) != process_) return false;
    process_ = 0;
    return true;
  }

  /// As a shell tells it: the exit code, or 128 and the number of the signal; -1 after two minutes.
  int wait() {
    for (int i = 0; i < 24000 && !ended(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    if (process_ > 0) return -1;
    return WIFSIGNALED(status_) ? 128 + WTERMSIG(status_) : WEXITSTATUS(status_);
  }

 private:
  pid_t process_ = 0;
  int status_ = 0;
};
