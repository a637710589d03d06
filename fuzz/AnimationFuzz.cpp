// Any bytes as a file of keys and as a table of values. Held: each is read, or refused with a message.
#include <cstdint>

#include "cli/Keyframes.h"
#include "cli/UserError.h"
#include "fuzz/FileOfBytes.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const fuzz::FileOfBytes file({data + 1, size - 1});
  try {
    if (data[0] % 2 == 0) {
      (void)cli::readAnimation(file.path());
    } else {
      (void)cli::readValueTable(file.path());
    }
  } catch (const cli::UserError&) {
    // Refused, as most bytes are.
  }
  return 0;
}
