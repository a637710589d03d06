#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "check/ChildProcess.h"

namespace check {

namespace {

// Between fork and exec only calls that are safe beside other threads are made.
[[noreturn]] void become(const char* program, char* const* words, const char* outputFile, pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(127);
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  const int output = open(outputFile, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  if (nothing < 0 || output < 0) _exit(127);
  dup2(nothing, STDIN_FILENO);
  dup2(output, STDOUT_FILENO);
  dup2(output, STDERR_FILENO);
  execv(program, words);
  _exit(127);
}

}  // namespace

struct ChildProcess::State {
  pid_t process = 0;
  bool running = false;
  ChildEnd end;
};

ChildProcess::ChildProcess(const std::filesystem::path& program, const std::vector<std::string>& words,
                           const std::filesystem::path& outputFile)
    : state_(std::make_unique<State>()) {
  std::vector<std::string> texts = {program.string()};
  texts.insert(texts.end(), words.begin(), words.end());
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  const pid_t parent = getpid();
  state_->process = fork();
  if (state_->process == 0) become(texts[0].c_str(), pointers.data(), outputFile.c_str(), parent);
  if (state_->process < 0) {
    throw std::runtime_error("can't start a process: " + std::generic_category().message(errno));
  }
  state_->running = true;
}

ChildProcess::ChildProcess(ChildProcess&&) noexcept = default;
ChildProcess& ChildProcess::operator=(ChildProcess&&) noexcept = default;

ChildProcess::~ChildProcess() {
  if (!state_ || !state_->running) return;
  end();
  waitpid(state_->process, nullptr, 0);
}

std::optional<ChildEnd> ChildProcess::ended() {
  if (!state_->running) return state_->end;
  int status = 0;
  rusage used{};
  if (wait4(state_->process, &status, WNOHANG, &used) != state_->process) return std::nullopt;
  state_->running = false;
  ChildEnd& end = state_->end;
  end.byItself = WIFEXITED(status);
  end.code = end.byItself ? WEXITSTATUS(status) : WTERMSIG(status);
  const std::string number = std::to_string(end.code);
  // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread starts and ends processes here
  end.text = end.byItself ? "exit code " + number : "signal " + number + " (" + strsignal(end.code) + ")";
  end.peakMemory = static_cast<uint64_t>(used.ru_maxrss) * 1024;
  return end;
}

void ChildProcess::end() {
  if (state_->running) kill(state_->process, SIGKILL);
}

std::filesystem::path ownProgram() {
  return std::filesystem::canonical("/proc/self/exe");
}

void crashQuietly() {
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);
}

uint64_t residentMemory() {
  // Pages: all, then those in memory.
  std::ifstream file("/proc/self/statm");
  uint64_t all = 0;
  uint64_t resident = 0;
  file >> all >> resident;
  return resident * static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
}

}  // namespace check
