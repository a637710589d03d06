// Never comes back from a frame at half the resolution.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static void beforeFrame(PF_InData* in, const PF_EffectWorld&, const faulty::Values&, bool) {
    for (volatile bool waiting = in->downsample_x.den == 2; waiting;) {
    }
  }
};
}  // namespace
PLANT(Fault)
