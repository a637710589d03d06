// A slider's default is beyond its range.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static constexpr PF_FpShort amountDefault = 120;
};
}  // namespace
PLANT(Fault)
