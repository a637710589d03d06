#include "cli/files/SettingsFile.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "cli/UserError.h"
#include "cli/files/FileBytes.h"

namespace cli {

namespace fs = std::filesystem;

fs::path settingsFileOf(const fs::path& module) {
  return fs::path(module).replace_extension("ini");
}

void checkSettingsFile(const fs::path& settings) {
  std::error_code ignored;
  const fs::file_status status = fs::status(settings, ignored);
  if (!fs::exists(status)) return;
  if (!fs::is_regular_file(status)) {
    throw UserError(quoted(settings) + " is no plain file; the module's settings must be one");
  }
  const uint64_t size = fs::file_size(settings, ignored);
  if (!ignored && size > mostSettings) {
    throw UserError(quoted(settings) + " has " + std::to_string(size) +
                    " bytes; a module's settings may have at most " + std::to_string(mostSettings));
  }
}

SettingsLock::SettingsLock(const fs::path& settings, Way way)
    : folder_(::open(settings.has_parent_path() ? settings.parent_path().c_str() : ".",
                     O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  while (folder_.valid() && flock(folder_.number(), way == Way::write ? LOCK_EX : LOCK_SH) != 0 && errno == EINTR) {
  }
}

}  // namespace cli
