// Takes a minute for a frame that is not tiny.
#include <chrono>
#include <thread>

#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static void beforeFrame(PF_InData*, const PF_EffectWorld& output, const faulty::Values&, bool) {
    if (output.width > 100) std::this_thread::sleep_for(std::chrono::minutes(1));
  }
};
}  // namespace
PLANT(Fault)
