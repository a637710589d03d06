// Draws otherwise by the smart road.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static double amountOf(const faulty::Values& values, double, bool smart) {
    return smart ? values.amount * 0.9 : values.amount;
  }
};
}  // namespace
PLANT(Fault)
