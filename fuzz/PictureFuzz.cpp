// Any bytes as a picture file. Held: it is read, or refused with a message, and never takes more than the memory that
// the caller allows.
#include <cstdint>

#include "cli/ImageFile.h"
#include "cli/UserError.h"
#include "fuzz/FileOfBytes.h"
#include "fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr uint64_t mostMemory = 2'000'000;
  const fuzz::FileOfBytes file({data, size});
  try {
    const standin::Image picture = cli::readPicture(file.path(), mostMemory);
    const auto bytes = static_cast<uint64_t>(picture.rowBytes()) * static_cast<uint64_t>(picture.height());
    fuzz::require(bytes <= mostMemory, "a picture within the limit");
    fuzz::require(picture.guardsIntact(), "nothing is written beside the picture");
  } catch (const cli::UserError&) {
    // Refused, as most bytes are.
  }
  return 0;
}
