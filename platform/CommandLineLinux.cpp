// The single arguments of the process, joined with blanks.
#include <cstddef>
#include <cstdio>

#include "platform/CommandLine.h"

namespace platform {

const char* GetCommandLineA() {
  // As long as a line can be on Windows, so that a reader meets no longer one here.
  static char line[32768];
  line[0] = '\0';
  std::FILE* const file = std::fopen("/proc/self/cmdline", "rb");
  if (!file) return line;
  size_t length = std::fread(line, 1, sizeof line - 1, file);
  std::fclose(file);
  // Every argument ends with a zero, the last one too: that one ends the line.
  if (length > 0 && line[length - 1] == '\0') --length;
  for (size_t i = 0; i < length; ++i) {
    if (line[i] == '\0') line[i] = ' ';
  }
  line[length] = '\0';
  return line;
}

}  // namespace platform
