// Refuses what it has stored itself.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static PF_Err readRecord(const faulty::Record&, size_t, faulty::Record&) { return PF_Err_BAD_CALLBACK_PARAM; }
};
}  // namespace
PLANT(Fault)
