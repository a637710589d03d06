// Global operator new and delete that run out of memory when a test says so. Linked into a program of its own.
#pragma once

namespace vindrel::test {

enum class Memory {
  plentiful,
  throwsFrom,    ///< the numbered allocation and all behind it
  throwsOnceAt,  ///< the numbered allocation alone
  givesNull      ///< each one, as before the host has lent its memory
};

/// From now on; allocations are counted from 1.
void setMemory(Memory mode, int number = 0);

}  // namespace vindrel::test
