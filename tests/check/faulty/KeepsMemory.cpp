// Keeps a megabyte of its own heap for each frame.
#include <cstdlib>

#include "Base.h"

namespace {
struct Fault : faulty::Honest {
  static void afterFrame(PF_InData*, const PF_EffectWorld&) {
    auto* block = static_cast<char*>(std::malloc(1 << 20));
    std::memset(block, 1, 1 << 20);
    kept = block;
  }
  static inline char* volatile kept = nullptr;
};
}  // namespace
PLANT(Fault)
