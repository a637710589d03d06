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
std::atomic<int> making{0};  ///< files that have a name here and may not be there yet

constexpr int heeded[] = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};

void removeAll() {
  for (const Slot& slot : slots) {
    if (slot.state.load(std::memory_order_acquire) == slotFilled) unlink(slot.path);
  }
}

void removeAndDie(int signal) {
  // From here on no thread begins to make a file. Those that are about to are waited for: they let no signal in, so
  // that this one isn't among them. An opening that hangs, as on a lost network, is given a second.
  ending.store(true);
  constexpr timespec moment{0, 1'000'000};
  for (int i = 0; i < 1000 && making.load() > 0; ++i) nanosleep(&moment, nullptr);
  removeAll();
  // The action is the system's own again (SA_RESETHAND) and the signal isn't held back (SA_NODEFER).
  raise(signal);
}

}  // namespace

void heedInterrupts() {
  for (const int signal : heeded) {
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

HeldInterrupts::HeldInterrupts() {
  sigset_t held;
  sigemptyset(&held);
  for (const int signal : heeded) sigaddset(&held, signal);
  pthread_sigmask(SIG_BLOCK, &held, &before_);
}

HeldInterrupts::~HeldInterrupts() {
  letGo();
}

void HeldInterrupts::letGo() {
  if (!holding_) return;
  holding_ = false;
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

RemovedOnInterrupt::RemovedOnInterrupt(const std::string& path) {
  // Counted first: either the signal's thread sees this one, or this one sees that the program ends.
  making.fetch_add(1);
  if (ending.load()) {
    making.fetch_sub(1);
    while (true) pause();
  }
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

void RemovedOnInterrupt::made() {
  if (!making_) return;
  making_ = false;
  making.fetch_sub(1);
  held_.letGo();
}

RemovedOnInterrupt::~RemovedOnInterrupt() {
  made();
  if (slot_ >= 0) slots[slot_].state.store(slotFree, std::memory_order_release);
}

}  // namespace cli
