// Draws otherwise at 16 bits.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static double amountOf(const faulty::Values& values, double full, bool) {
    return full == 32768 ? values.amount * 0.9 : values.amount;
  }
};
}  // namespace
PLANT(Fault)
