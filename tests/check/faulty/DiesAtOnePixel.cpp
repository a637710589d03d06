// Writes through a null pointer at a frame of a single column.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static void beforeFrame(PF_InData*, const PF_EffectWorld& output, const faulty::Values&, bool) {
    static volatile A_long* volatile nowhere = nullptr;
    if (output.width == 1) *nowhere = 1;
  }
};
}  // namespace
PLANT(Fault)
