// Any bytes as a preset file. Held: it is read, or refused with a message.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "cli/Preset.h"
#include "cli/UserError.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::filesystem::path file =
      std::filesystem::temp_directory_path() / ("preset_fuzz." + std::to_string(getpid()) + ".json");
  {
    std::ofstream out(file, std::ios::binary);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  }
  try {
    (void)cli::readPreset(file);
  } catch (const cli::UserError&) {
    // Refused, as most bytes are.
  }
  std::filesystem::remove(file);
  return 0;
}
