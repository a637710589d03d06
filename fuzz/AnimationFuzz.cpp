// Any bytes as a file of keys and as a table of values. Held: each is read, or refused with a message.
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>

#include "cli/Keyframes.h"
#include "cli/UserError.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  static const std::filesystem::path file =
      std::filesystem::temp_directory_path() / ("animation_fuzz." + std::to_string(getpid()));
  {
    std::ofstream out(file, std::ios::binary);
    out.write(reinterpret_cast<const char*>(data + 1), static_cast<std::streamsize>(size - 1));
  }
  try {
    if (data[0] % 2 == 0) {
      (void)cli::readAnimation(file);
    } else {
      (void)cli::readValueTable(file);
    }
  } catch (const cli::UserError&) {
    // Refused, as most bytes are.
  }
  std::filesystem::remove(file);
  return 0;
}
