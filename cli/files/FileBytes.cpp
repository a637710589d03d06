#include "cli/files/FileBytes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "cli/NearestName.h"
#include "cli/UserError.h"
#include "cli/files/OpenFile.h"

namespace cli {

namespace fs = std::filesystem;

std::string quoted(const fs::path& file) {
  return "'" + file.string() + "'";
}

std::vector<std::string> namesBeside(const fs::path& file) {
  std::vector<std::string> names;
  std::error_code ignored;
  const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
  for (const auto& entry : fs::directory_iterator(folder, ignored)) {
    if (entry.is_regular_file(ignored)) names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<uint8_t> readFile(const fs::path& file, const std::string& what, uint64_t most) {
  // Without O_NONBLOCK a pipe that nobody writes to would hold up the opening itself.
  const OpenFile open(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!open.valid()) {
    const int reason = errno;
    if (reason == ENOENT || reason == ENOTDIR) {
      const std::string noun = what == "picture" ? "file" : what;
      throw UserError("no " + noun + " " + quoted(file) + suggestion(file.filename().string(), namesBeside(file)));
    }
    if (reason == EACCES) throw UserError("no permission to read " + quoted(file));
    throw UserError("can't read " + quoted(file) + ": " + std::generic_category().message(reason));
  }
  struct stat facts {};
  if (fstat(open.number(), &facts) != 0) throw UserError("can't read " + quoted(file));
  if (S_ISDIR(facts.st_mode)) throw UserError(quoted(file) + " is a folder, not a " + what);
  if (!S_ISREG(facts.st_mode)) throw UserError(quoted(file) + " is no plain file; a " + what + " must be one");
  const auto size = static_cast<uint64_t>(facts.st_size);
  if (size > most) {
    throw UserError(quoted(file) + " has " + std::to_string(size) + " bytes; a " + what + " may have at most " +
                    std::to_string(most));
  }

  std::vector<uint8_t> bytes(static_cast<std::size_t>(size));
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t count = ::read(open.number(), bytes.data() + done, bytes.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw UserError("can't read " + quoted(file) + ": " + std::generic_category().message(errno));
    if (count == 0) break;  // somebody has cut it meanwhile; its reader finds out
    done += static_cast<std::size_t>(count);
  }
  bytes.resize(done);
  return bytes;
}

}  // namespace cli
