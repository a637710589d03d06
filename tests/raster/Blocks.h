// Books of the test program's own global allocator: how many blocks there are, and when it has none to give.
#pragma once

#include <cstdint>

namespace vindrel::blocks {

/// Blocks handed out and not given back.
int64_t live();

/// Blocks ever handed out.
int64_t made();

enum class Refusal { throws, answersNull };

/// The next `count` blocks are given, all after them refused, until the object goes.
class Limit {
 public:
  explicit Limit(int64_t count, Refusal refusal = Refusal::throws);
  Limit(const Limit&) = delete;
  Limit& operator=(const Limit&) = delete;
  ~Limit();
};

}  // namespace vindrel::blocks
