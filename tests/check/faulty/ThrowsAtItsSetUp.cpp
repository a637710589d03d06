// Lets an exception out of its set-up.
#include <stdexcept>

#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static void atGlobalSetup() { throw std::runtime_error("no licence"); }
};
}  // namespace
PLANT(Fault)
