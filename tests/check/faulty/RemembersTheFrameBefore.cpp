// Lets the size of the frame before it show.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static inline A_long widthBefore = 0;
  static double amountOf(const faulty::Values& values, double, bool) {
    return widthBefore > 30 ? values.amount * 0.5 : values.amount;
  }
  static void afterFrame(PF_InData*, const PF_EffectWorld& output) { widthBefore = output.width; }
};
}  // namespace
PLANT(Fault)
