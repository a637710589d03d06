// Reads a table at the place of a popup, whatever that is.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static A_long kindIn(A_long stored) {
    static const A_long table[] = {1, 1, 2, 3, 1};
    return table[static_cast<std::ptrdiff_t>(stored)];
  }
};
}  // namespace
PLANT(Fault)
