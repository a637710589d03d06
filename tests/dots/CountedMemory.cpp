#include "tests/dots/CountedMemory.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace vindrel::test {

int blocksHeld = 0;
int blocksMade = 0;
size_t largestBlock = 0;
int allocationsUntilFailure = -1;

}  // namespace vindrel::test

// A source of its own: where the compiler sees these beside their use, it takes the pair of malloc and free for a
// mix-up.
void* operator new(size_t size) {
  using namespace vindrel::test;
  if (allocationsUntilFailure == 0) throw std::bad_alloc();
  if (allocationsUntilFailure > 0) --allocationsUntilFailure;
  void* block = std::malloc(size == 0 ? 1 : size);
  if (!block) throw std::bad_alloc();
  ++blocksHeld;
  ++blocksMade;
  if (size > largestBlock) largestBlock = size;
  return block;
}

void operator delete(void* block) noexcept {
  if (block) --vindrel::test::blocksHeld;
  std::free(block);
}

void operator delete(void* block, size_t) noexcept {
  operator delete(block);
}
