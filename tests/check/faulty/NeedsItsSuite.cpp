// Uses a suite that the host has not.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static PF_Err withoutSuite() { return PF_Err_NONE; }
};
}  // namespace
PLANT(Fault)
