// Still believes that it is set up when it is set up again.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static inline A_long* table = new A_long(1);
  static void atGlobalSetup() { *table = 2; }
  static void atGlobalSetdown() {
    delete table;
    table = nullptr;
  }
};
}  // namespace
PLANT(Fault)
