// Global operators new and delete that count, for a test program that asks who frees what. The program links the source
// beside this header and gets them in place of the library's.
#pragma once

#include <cstddef>

namespace vindrel::test {

/// Blocks handed out and not given back.
extern int blocksHeld;
/// Blocks that were ever made.
extern int blocksMade;
/// The size of the largest block that was made since a test set this to 0, bytes.
extern size_t largestBlock;

/// Allocations that still succeed; the next one after them throws std::bad_alloc. Below 0: memory never ends.
extern int allocationsUntilFailure;

}  // namespace vindrel::test
