// Numbers as the host's controls hold angles and places.
#pragma once

#include "ae/Scalars.h"

namespace vindrel::test {

/// 16.16, the rest cut off.
constexpr PF_Fixed fixed(double value) {
  return static_cast<PF_Fixed>(value * 65536.0);
}

}  // namespace vindrel::test
