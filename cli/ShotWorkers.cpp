#include "cli/ShotWorkers.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <deque>
#include <optional>
#include <thread>
#include <utility>

#include "cli/ControlValue.h"
#include "cli/ShotPipeline.h"
#include "cli/UserError.h"
#include "cli/files/Interrupts.h"
#include "cli/files/OpenFile.h"

namespace cli {
namespace {

using Clock = std::chrono::steady_clock;

/// What a worker answers, whole in one packet.
struct Answer {
  uint64_t index = 0;
  int32_t kind = 0;
  double seconds = 0.0;
  uint64_t peakMemory = 0;
  std::array<char, 1000> message{};
};

Answer packed(const FrameResult& result) {
  Answer answer;
  answer.index = result.index;
  answer.kind = static_cast<int32_t>(result.kind);
  answer.seconds = result.seconds;
  answer.peakMemory = result.peakMemory;
  std::snprintf(answer.message.data(), answer.message.size(), "%s", result.message.c_str());
  return answer;
}

FrameResult unpacked(const Answer& answer) {
  FrameResult result;
  result.index = answer.index;
  result.kind = static_cast<FrameResult::Kind>(answer.kind);
  result.seconds = answer.seconds;
  result.peakMemory = answer.peakMemory;
  result.message = answer.message.data();
  return result;
}

/// The life of a worker: indices come in, answers go out, until the other end is closed.
[[noreturn]] void work(const OpenFile& channel, const std::vector<ShotFrame>& frames, const Arguments& arguments,
                       FrameDrawer& drawer, const std::optional<PictureSize>& size, pid_t parent) {
  // When the first process is killed, nobody waits for the frames any more.
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  heedInterrupts();
  if (getppid() != parent) _exit(1);
  uint64_t index = 0;
  while (recv(channel.number(), &index, sizeof index, 0) == static_cast<ssize_t>(sizeof index)) {
    const Answer answer = packed(renderFrame(frames, index, arguments, drawer, size));
    if (send(channel.number(), &answer, sizeof answer, MSG_NOSIGNAL) != static_cast<ssize_t>(sizeof answer)) break;
  }
  // The module is the first process's as well; its end is not for here.
  _exit(0);
}

struct Worker {
  pid_t process = 0;
  OpenFile channel;
  std::optional<std::size_t> frame;  ///< that it has in hand
  Clock::time_point until;
};

class Foreman {
 public:
  Foreman(const std::vector<ShotFrame>& frames, const Arguments& arguments, FrameDrawer& drawer,
          const std::function<void(const FrameResult&)>& take)
      : frames_(frames),
        arguments_(arguments),
        drawer_(drawer),
        take_(take),
        size_(sizeOfShot(frames, drawer.pictures())),
        tries_(frames.size()) {
    for (std::size_t i = 0; i < frames.size(); ++i) waiting_.push_back(i);
  }
  Foreman(const Foreman&) = delete;
  Foreman& operator=(const Foreman&) = delete;
  ~Foreman() {
    for (Worker& worker : workers_) end(worker);
  }

  void run() {
    const std::size_t count = std::min(static_cast<std::size_t>(arguments_.jobs), frames_.size());
    for (std::size_t i = 0; i < count; ++i) start();
    while (!waiting_.empty() || std::any_of(workers_.begin(), workers_.end(), busy)) {
      for (Worker& worker : workers_) giveWork(worker);
      waitForNews();
    }
  }

 private:
  static bool busy(const Worker& worker) { return worker.frame.has_value(); }

  void start() {
    int ends[2] = {};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) throw UserError("can't start a process");
    OpenFile ours(ends[0]);
    const OpenFile theirs(ends[1]);
    const pid_t parent = getpid();
    std::fflush(nullptr);
    const pid_t process = fork();
    if (process < 0) throw UserError("can't start a process: " + std::string(std::strerror(errno)));
    if (process == 0) {
      ours = OpenFile();
      // The other workers' channels must not be held open from here.
      for (Worker& worker : workers_) worker.channel = OpenFile();
      work(theirs, frames_, arguments_, drawer_, size_, parent);
    }
    workers_.push_back({process, std::move(ours), std::nullopt, {}});
  }

  void giveWork(Worker& worker) {
    if (worker.frame || waiting_.empty() || !worker.channel.valid()) return;
    const uint64_t index = waiting_.front();
    // A worker that died in idleness is found by its closed channel.
    if (send(worker.channel.number(), &index, sizeof index, MSG_NOSIGNAL) != static_cast<ssize_t>(sizeof index)) return;
    waiting_.pop_front();
    worker.frame = index;
    worker.until = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                      std::chrono::duration<double>(std::min(arguments_.frameTimeout, 1e6)));
  }

  void waitForNews() {
    std::vector<pollfd> channels;
    channels.reserve(workers_.size());
    for (const Worker& worker : workers_) channels.push_back({worker.channel.number(), POLLIN, 0});
    constexpr int turnMilliseconds = 100;  // after which those that hang are looked for
    if (poll(channels.data(), channels.size(), turnMilliseconds) < 0 && errno != EINTR) {
      throw UserError("can't wait for the workers");
    }
    for (std::size_t i = workers_.size(); i-- > 0;) {
      if ((channels[i].revents & (POLLIN | POLLHUP | POLLERR)) != 0) {
        listen(i);
      } else if (workers_[i].frame && Clock::now() > workers_[i].until) {
        lose(i, "took longer than " + shownNumber(arguments_.frameTimeout) + " s");
      }
    }
  }

  void listen(std::size_t i) {
    Answer answer;
    const ssize_t size = recv(workers_[i].channel.number(), &answer, sizeof answer, MSG_DONTWAIT);
    if (size == static_cast<ssize_t>(sizeof answer) && workers_[i].frame == answer.index) {
      workers_[i].frame.reset();
      take_(unpacked(answer));
    } else if (size >= 0 || (errno != EAGAIN && errno != EINTR)) {
      lose(i, "ended its process");
    }
  }

  /// A worker is no more, or no longer wanted; its frame gets another try, and a new worker comes.
  void lose(std::size_t i, const std::string& reason) {
    const std::optional<std::size_t> frame = workers_[i].frame;
    end(workers_[i]);
    workers_.erase(workers_.begin() + static_cast<std::ptrdiff_t>(i));
    if (frame && ++tries_[*frame] < mostTries) {
      waiting_.push_front(*frame);
    } else if (frame) {
      FrameResult result;
      result.index = *frame;
      result.message = reason + ", twice";
      take_(result);
    }
    if (!waiting_.empty()) start();
  }

  static void end(Worker& worker) {
    if (worker.process <= 0) return;
    const bool idle = !worker.frame;
    worker.channel = OpenFile();
    // An idle worker ends by itself. A busy one may clean up after a polite signal; then it is killed.
    if (!idle) kill(worker.process, SIGTERM);
    constexpr int politeTurns = 200;
    for (int turn = 0; turn < politeTurns; ++turn) {
      if (waitpid(worker.process, nullptr, WNOHANG) != 0) {
        worker.process = 0;
        return;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    kill(worker.process, SIGKILL);
    waitpid(worker.process, nullptr, 0);
    worker.process = 0;
  }

  static constexpr int32_t mostTries = 2;
  const std::vector<ShotFrame>& frames_;
  const Arguments& arguments_;
  FrameDrawer& drawer_;
  const std::function<void(const FrameResult&)>& take_;
  std::optional<PictureSize> size_;
  std::deque<std::size_t> waiting_;
  std::vector<int32_t> tries_;
  std::vector<Worker> workers_;
};

}  // namespace

void runWorkers(const std::vector<ShotFrame>& frames, const Arguments& arguments, FrameDrawer& drawer,
                const std::function<void(const FrameResult&)>& take) {
  Foreman(frames, arguments, drawer, take).run();
}

}  // namespace cli
