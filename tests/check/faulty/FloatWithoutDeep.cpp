// Says that it is aware of float and not of deep colour.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static constexpr PF_OutFlags flags = PF_OutFlag_NONE;
};
}  // namespace
PLANT(Fault)
