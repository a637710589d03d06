// Keeps what it needs in the midst of a frame where other threads put theirs.
#include <atomic>
#include <chrono>
#include <thread>

#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static constexpr PF_OutFlags2 flags2 = Honest::flags2 | PF_OutFlag2_SUPPORTS_THREADED_RENDERING;
  static inline std::atomic<double> shared = 0;
  static void beforeFrame(PF_InData*, const PF_EffectWorld& output, const faulty::Values& values, bool) {
    shared = values.amount * output.width / 100;
    // Time enough for another thread on any system: some round a shorter sleep down to none.
    std::this_thread::sleep_for(std::chrono::milliseconds(4));
  }
  static double amountOf(const faulty::Values&, double, bool) { return shared; }
};
}  // namespace
PLANT(Fault)
