// Any bytes as the settings file beside the module: read in every way that the effect reads it, and written to.
//
// Held: texts fit their buffers and end, and a value that was written is the one that is read.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/ProfileFile.h"

namespace {

constexpr const char* section = "Version=1.5";

/// A file of this process's own, gone with it.
class TemporaryFile {
 public:
  TemporaryFile() {
    const int file = mkstemp(path_);
    if (file < 0) std::abort();
    close(file);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { std::remove(path_); }

  const char* path() const { return path_; }

  void fill(const uint8_t* data, size_t size) const {
    std::FILE* const file = std::fopen(path_, "wb");
    if (file == nullptr || std::fwrite(data, 1, size, file) != size || std::fclose(file) != 0) std::abort();
  }

 private:
  char path_[32] = "/tmp/settings_fuzz.XXXXXX";
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const TemporaryFile file;
  file.fill(data, size);
  for (const char* key : {"Dot Size", "Dot Shape", "x", ""}) {
    (void)platform::GetPrivateProfileIntA(section, key, 7, file.path());
    for (const uint32_t room : {1U, 2U, 30U, 256U}) {
      char text[256];
      std::memset(text, 'x', sizeof(text));
      const uint32_t length = platform::GetPrivateProfileStringA(section, key, "none", text, room, file.path());
      // A zero byte of the file may stand within the text, so that it ends early; never late.
      if (length >= room || text[length] != '\0' || std::strlen(text) > length) std::abort();
    }
  }
  if (!platform::WritePrivateProfileStringA(section, "Dot Size", "12.5", file.path())) std::abort();
  char text[32];
  (void)platform::GetPrivateProfileStringA(section, "Dot Size", "", text, sizeof(text), file.path());
  if (std::strcmp(text, "12.5") != 0) std::abort();
  return 0;
}
