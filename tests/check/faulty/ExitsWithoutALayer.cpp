// Ends the process when a layer is missing.
#include <cstdlib>

#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static void beforeFrame(PF_InData*, const PF_EffectWorld&, const faulty::Values&, bool hasMask) {
    if (!hasMask) std::exit(3);
  }
};
}  // namespace
PLANT(Fault)
