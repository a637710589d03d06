// Two parameters have one id.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static constexpr A_long kindId = amountId;
};
}  // namespace
PLANT(Fault)
