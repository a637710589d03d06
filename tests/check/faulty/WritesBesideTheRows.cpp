// Writes one pixel more than a row has.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static A_long lastColumn(const PF_EffectWorld& output) { return output.width + 1; }
};
}  // namespace
PLANT(Fault)
