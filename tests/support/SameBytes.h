// Two plain values held against each other byte by byte.
#pragma once

#include <array>
#include <bit>
#include <cstddef>

namespace vindrel::test {

/// A float that is not a number equals itself here, and 0.0 differs from -0.0. Padding counts, too.
template <class Value>
bool sameBytes(const Value& left, const Value& right) {
  using Bytes = std::array<std::byte, sizeof(Value)>;
  return std::bit_cast<Bytes>(left) == std::bit_cast<Bytes>(right);
}

}  // namespace vindrel::test
