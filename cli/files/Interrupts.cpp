#include "cli/files/Interrupts.h"

#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstring>
#include <ctime>

namespace cli {
namespace {

// A handler may neither lock nor allocate, so the names lie in fixed places. A frame is written by one thread at a time
// and few threads write; without a free place the file would merely be left behind on an interrupt.
constexpr int slotCount = 64;
constexpr std::size_t pathSize = 4096;

enum SlotState : int { slotFree, slotBeingFilled, slotFilled };

struct Slot {
  std::atomic<int> state{slotFree};
  char path[pathSize];
};
Slot slots[slotCount];
std::atomic<bool> ending{false};

void removeAll() {
  for (const Slot& slot : slots) {
    if (slot.state.load(std::memory_order_acquire) == slotFilled) unlink(slot.path);
  }
}

void removeAndDie(int signal) {
  ending.store(true);
  removeAll();
  // Another thread may have been about to make its file; none begins a new one, and this one gets the time.
  constexpr timespec moment{0, 2'000'000};
  nanosleep(&moment, nullptr);
  removeAll();
  // The action is the system's own again (SA_RESETHAND) and the signal isn't held back (SA_NODEFER).
  raise(signal);
}

}  // namespace

void heedInterrupts() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
    struct sigaction before {};
    if (sigaction(signal, nullptr, &before) != 0 || before.sa_handler == SIG_IGN) continue;
    struct sigaction action {};
    action.sa_handler = removeAndDie;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
    sigfillset(&action.sa_mask);
    sigdelset(&action.sa_mask, signal);
    sigaction(signal, &action, nullptr);
  }
  std::signal(SIGXFSZ, SIG_IGN);
}

RemovedOnInterrupt::RemovedOnInterrupt(const std::string& path) {
  while (ending.load()) pause();
  if (path.size() >= pathSize) return;
  for (int i = 0; i < slotCount; ++i) {
    int expected = slotFree;
    if (!slots[i].state.compare_exchange_strong(expected, slotBeingFilled)) continue;
    std::memcpy(slots[i].path, path.c_str(), path.size() + 1);
    slots[i].state.store(slotFilled, std::memory_order_release);
    slot_ = i;
    return;
  }
}

RemovedOnInterrupt::~RemovedOnInterrupt() {
  if (slot_ >= 0) slots[slot_].state.store(slotFree, std::memory_order_release);
}

}  // namespace cli
