// Never releases a suite.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static bool releasesSuite() { return false; }
};
}  // namespace
PLANT(Fault)
