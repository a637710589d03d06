#include "tests/raster/Blocks.h"

#include <cstdlib>
#include <new>

namespace {

int64_t liveBlocks = 0;
int64_t madeBlocks = 0;
int64_t blocksLeft = INT64_MAX;
vindrel::blocks::Refusal howToRefuse = vindrel::blocks::Refusal::throws;

// Told apart from the operator that answers with it, which may not answer null in so many words.
void* noBlock() {
  return nullptr;
}

}  // namespace

void* operator new(std::size_t size) {
  if (blocksLeft <= 0) {
    // As the module's own allocator does before the host has lent its memory; the build says so to the compiler.
    if (howToRefuse == vindrel::blocks::Refusal::answersNull) return noBlock();
    throw std::bad_alloc();
  }
  if (blocksLeft != INT64_MAX) --blocksLeft;
  void* const block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  ++liveBlocks;
  ++madeBlocks;
  return block;
}

void operator delete(void* block) noexcept {
  if (block == nullptr) return;
  --liveBlocks;
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
  operator delete(block);
}

namespace vindrel::blocks {

int64_t live() {
  return liveBlocks;
}
int64_t made() {
  return madeBlocks;
}

Limit::Limit(int64_t count, Refusal refusal) {
  howToRefuse = refusal;
  blocksLeft = count;
}

Limit::~Limit() {
  blocksLeft = INT64_MAX;
}

}  // namespace vindrel::blocks
