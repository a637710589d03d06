// Leaves the handle of each frame behind.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static bool disposesHandle() { return false; }
};
}  // namespace
PLANT(Fault)
