// A popup tells more items than it names.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static constexpr A_short kindsTold = 4;
};
}  // namespace
PLANT(Fault)
