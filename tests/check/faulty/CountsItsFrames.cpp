// Lets each frame be a little brighter than the last.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static inline double frames = 0;
  static double amountOf(const faulty::Values& values, double, bool) { return values.amount - 0.7 * frames; }
  static void afterFrame(PF_InData*, const PF_EffectWorld&) { frames = frames < 50 ? frames + 1 : 0; }
};
}  // namespace
PLANT(Fault)
