// Leaves the last row of the output as it was.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static A_long lastRow(const PF_EffectWorld& output) { return output.height > 1 ? output.height - 1 : output.height; }
};
}  // namespace
PLANT(Fault)
