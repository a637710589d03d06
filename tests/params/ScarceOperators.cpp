#include "tests/params/ScarceOperators.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace vindrel::test {
namespace {

Memory memory = Memory::plentiful;
int allocations = 0;  // since memory was last set
int failing = 0;

void* allocate(std::size_t size) {
  ++allocations;
  if (memory == Memory::givesNull) return nullptr;
  if (memory == Memory::throwsFrom && allocations >= failing) throw std::bad_alloc();
  if (memory == Memory::throwsOnceAt && allocations == failing) throw std::bad_alloc();
  void* const block = std::malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace

void setMemory(Memory mode, int number) {
  memory = mode;
  allocations = 0;
  failing = number;
}

}  // namespace vindrel::test

void* operator new(std::size_t size) {
  return vindrel::test::allocate(size);
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t /*size*/) noexcept {
  std::free(block);
}
