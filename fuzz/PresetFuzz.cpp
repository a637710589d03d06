// Any bytes as a preset file. Held: it is read, or refused with a message.
#include <cstdint>
#include <cstdlib>

#include "cli/Preset.h"
#include "cli/UserError.h"
#include "fuzz/FileOfBytes.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const fuzz::FileOfBytes file({data, size}, ".json");
  try {
    (void)cli::readPreset(file.path());
  } catch (const cli::UserError&) {
    // Refused, as most bytes are.
  }
  return 0;
}
