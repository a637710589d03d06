// Takes the length in its stored data for granted.
#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static PF_Err readRecord(const faulty::Record& from, size_t, faulty::Record& to) {
    to = freshRecord();
    // Far lengths leave the process, and that at once.
    for (A_long i = 0; i < from.length; ++i) sum = sum + (&from.words[0])[static_cast<std::ptrdiff_t>(i) * 4096];
    return PF_Err_NONE;
  }
  static inline volatile A_long sum = 0;
};
}  // namespace
PLANT(Fault)
