// Answers 0 whatever a host call says.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static PF_Err toldError(PF_Err) { return PF_Err_NONE; }
};
}  // namespace
PLANT(Fault)
