#include "effect/share/util/PendingErrors.h"

#include <algorithm>

namespace AEUtil {

PendingErrors* pendingErrors = nullptr;

void PendingErrors::reserve() {
  errors_.reserve(reservedCount);
}

void PendingErrors::push(PF_Err error) noexcept {
  if (errors_.size() == errors_.capacity()) {
    // A failing allocation pushes here, and growing allocates: the push from inside ends at this flag.
    if (growing_) {
      return;
    }
    growing_ = true;
    try {
      errors_.reserve(std::max(reservedCount, 2 * errors_.capacity()));
    } catch (...) {
      growing_ = false;
      return;
    }
    growing_ = false;
  }
  errors_.push_back(error);
}

}  // namespace AEUtil
