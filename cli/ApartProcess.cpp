#include "cli/ApartProcess.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <new>
#include <optional>
#include <streambuf>
#include <string>
#include <system_error>
#include <thread>

#include "cli/ControlValue.h"
#include "cli/UserError.h"
#include "cli/files/Interrupts.h"
#include "cli/files/OpenFile.h"

namespace cli {
namespace {

using Clock = std::chrono::steady_clock;

enum class Word : char { out, err, alive, done, userError, effectError };

/// What stands before each text in the pipe.
struct Header {
  Word word;
  uint32_t length;  ///< bytes that follow
};

/// In a process apart, where its words go.
int g_pipe = -1;

void send(int pipe, Word word, const std::string& text) {
  const Header header{word, static_cast<uint32_t>(text.size())};
  std::string bytes(sizeof header, '\0');
  std::memcpy(bytes.data(), &header, sizeof header);
  bytes += text;
  for (std::size_t sent = 0; sent < bytes.size();) {
    const ssize_t count = write(pipe, bytes.data() + sent, bytes.size() - sent);
    if (count < 0 && errno == EINTR) continue;
    // Nobody reads any more: the first process is gone.
    if (count <= 0) _exit(1);
    sent += static_cast<std::size_t>(count);
  }
}

/// A stream's text as words in the pipe.
class PipeBuffer : public std::streambuf {
 public:
  PipeBuffer(int pipe, Word word) : pipe_(pipe), word_(word) {}

 protected:
  std::streamsize xsputn(const char* text, std::streamsize length) override {
    send(pipe_, word_, std::string(text, static_cast<std::size_t>(length)));
    return length;
  }
  int_type overflow(int_type letter) override {
    if (!traits_type::eq_int_type(letter, traits_type::eof())) {
      send(pipe_, word_, std::string(1, traits_type::to_char_type(letter)));
    }
    return traits_type::not_eof(letter);
  }

 private:
  int pipe_;
  Word word_;
};

[[noreturn]] void workApart(int pipe, pid_t parent, const Surroundings& surroundings,
                            const std::function<int(const Surroundings&)>& work) {
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  heedInterrupts();
  if (getppid() != parent) _exit(1);
  PipeBuffer outBuffer(pipe, Word::out);
  PipeBuffer errBuffer(pipe, Word::err);
  std::ostream out(&outBuffer);
  std::ostream err(&errBuffer);
  const Surroundings here{out, err, surroundings.terminal, surroundings.programFolder};
  g_pipe = pipe;
  try {
    send(pipe, Word::done, std::to_string(work(here)));
  } catch (const UserError& error) {
    send(pipe, Word::userError, error.what());
  } catch (const std::bad_alloc&) {
    send(pipe, Word::effectError, "out of memory");
  } catch (const std::exception& error) {
    send(pipe, Word::effectError, error.what());
  }
  // The first process's own end is not for here.
  _exit(0);
}

/// The first process's side.
class Listener {
 public:
  Listener(const Surroundings& surroundings, pid_t process, OpenFile pipe, double seconds)
      : surroundings_(surroundings), process_(process), pipe_(std::move(pipe)), seconds_(seconds) {}
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  ~Listener() {
    if (!reaped_) endChild();
  }

  int listen() {
    while (const std::optional<Header> header = next()) {
      const std::string text = body(header->length);
      switch (header->word) {
        case Word::out:
          surroundings_.out << text;
          break;
        case Word::err:
          surroundings_.err << text << std::flush;
          break;
        case Word::alive:
          break;
        case Word::done:
          awaitEnd();
          return std::stoi(text);
        case Word::userError:
          awaitEnd();
          throw UserError(text);
        case Word::effectError:
          awaitEnd();
          throw EffectError(text);
      }
    }
    throw EffectError(howItEnded());
  }

 private:
  // Nothing at the end of the pipe. Throws when nothing comes for too long.
  std::optional<Header> next() {
    const Clock::time_point until =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds_));
    for (;;) {
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now()).count();
      if (left <= 0) {
        clearBar();
        throw EffectError("the module hangs: no sign of life for " + shownNumber(seconds_) +
                          (seconds_ == 1.0 ? " second" : " seconds"));
      }
      pollfd wanted{pipe_.number(), POLLIN, 0};
      const int ready = poll(&wanted, 1, static_cast<int>(std::min<int64_t>(left, 1000000)));
      if (ready > 0) break;
    }
    Header header{};
    if (!take(&header, sizeof header)) return std::nullopt;
    return header;
  }

  std::string body(uint32_t length) {
    std::string text(length, '\0');
    if (!take(text.data(), length)) throw EffectError(howItEnded());
    return text;
  }

  bool take(void* target, std::size_t length) {
    for (std::size_t taken = 0; taken < length;) {
      const ssize_t count = read(pipe_.number(), static_cast<char*>(target) + taken, length - taken);
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return false;
      taken += static_cast<std::size_t>(count);
    }
    return true;
  }

  /// For a process that ends by itself: after its last word it does nothing but that, and needs no signal.
  int awaitEnd() {
    int status = 0;
    waitpid(process_, &status, 0);
    reaped_ = true;
    return status;
  }

  std::string howItEnded() {
    clearBar();
    const int status = awaitEnd();
    if (WIFEXITED(status)) {
      return "the module ended its process, with exit code " + std::to_string(WEXITSTATUS(status));
    }
    // NOLINTNEXTLINE(concurrency-mt-unsafe): this process has one thread
    return "the module crashed: " + std::string(strsignal(WTERMSIG(status)));
  }

  // What the bar left stands before the message otherwise.
  void clearBar() const {
    if (surroundings_.terminal.present && !surroundings_.terminal.plain) surroundings_.err << "\r\x1b[K";
  }

  // Asks first, so that files in the making go.
  void endChild() {
    kill(process_, SIGTERM);
    for (int32_t tries = 0; tries < 100; ++tries) {
      if (waitpid(process_, nullptr, WNOHANG) != 0) return;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }

  const Surroundings& surroundings_;
  pid_t process_;
  OpenFile pipe_;
  double seconds_;
  bool reaped_ = false;
};

}  // namespace

void giveSignOfLife() {
  // Some effects tell of their progress thousands of times a second.
  static Clock::time_point last;
  if (g_pipe < 0 || Clock::now() - last < std::chrono::milliseconds(100)) return;
  last = Clock::now();
  send(g_pipe, Word::alive, "");
}

int runApart(const Surroundings& surroundings, double seconds, const std::function<int(const Surroundings&)>& work) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) throw UserError("can't make a pipe: " + std::generic_category().message(errno));
  OpenFile reading(ends[0]);
  OpenFile writing(ends[1]);
  surroundings.out.flush();
  surroundings.err.flush();
  const pid_t parent = getpid();
  const pid_t process = fork();
  if (process < 0) throw UserError("can't start a process: " + std::generic_category().message(errno));
  if (process == 0) {
    reading = OpenFile();
    workApart(writing.number(), parent, surroundings, work);
  }
  writing = OpenFile();
  return Listener(surroundings, process, std::move(reading), seconds).listen();
}

}  // namespace cli
