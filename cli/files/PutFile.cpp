#include "cli/files/PutFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <random>
#include <string>
#include <system_error>

#include "cli/UserError.h"
#include "cli/files/FileBytes.h"
#include "cli/files/Interrupts.h"
#include "cli/files/OpenFile.h"

namespace cli {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& file, const std::string& reason) {
  throw UserError("can't write " + quoted(file) + ": " + reason);
}

[[noreturn]] void failBySystem(const fs::path& file) {
  fail(file, std::generic_category().message(errno));
}

fs::path folderOf(const fs::path& file) {
  return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

/// Where the file really lies when the name is a link, also one that leads to nothing yet.
fs::path behindLinks(const fs::path& file) {
  fs::path place = file;
  std::error_code error;
  for (int links = 0; fs::is_symlink(fs::symlink_status(place, error)); ++links) {
    if (links == 40) fail(file, "its links lead in a circle");
    const fs::path target = fs::read_symlink(place, error);
    if (error) fail(file, error.message());
    place = target.is_absolute() ? target : place.parent_path() / target;
  }
  return place;
}

/// 13 letters and digits: 67 bits, which no two machines draw alike.
std::string randomName() {
  constexpr char letters[] = "0123456789abcdefghijklmnopqrstuvwxyz";
  std::random_device device;
  std::uniform_int_distribution<std::size_t> any(0, sizeof letters - 2);
  std::string name = ".vindrel-";
  for (int i = 0; i < 13; ++i) name += letters[any(device)];
  return name + ".part";
}

bool isNameInTheMaking(const std::string& name) {
  return name.size() == 27 && name.starts_with(".vindrel-") && name.ends_with(".part");
}

void writeAll(const OpenFile& open, std::span<const uint8_t> content, const fs::path& file) {
  while (!content.empty()) {
    const ssize_t count = ::write(open.number(), content.data(), content.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) failBySystem(file);
    content = content.subspan(static_cast<std::size_t>(count));
  }
}

/// What lies in the file now is what was meant.
void readBack(const OpenFile& open, std::span<const uint8_t> content, const fs::path& file) {
  struct stat facts {};
  if (fstat(open.number(), &facts) != 0) failBySystem(file);
  if (static_cast<uint64_t>(facts.st_size) != content.size()) fail(file, "the file came out cut");
  std::array<uint8_t, 65536> part;  // NOLINT(*-member-init): filled by every read
  std::size_t at = 0;
  while (at < content.size()) {
    const std::size_t wanted = std::min(part.size(), content.size() - at);
    const ssize_t count = ::pread(open.number(), part.data(), wanted, static_cast<off_t>(at));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) failBySystem(file);
    const auto got = static_cast<std::size_t>(count);
    if (got == 0 || std::memcmp(part.data(), content.data() + at, got) != 0) {
      fail(file, "the file came out other than it was written");
    }
    at += got;
  }
}

/// The new content under its passing name; removed again unless it was put in place.
class FileInTheMaking {
 public:
  FileInTheMaking(const fs::path& place, const fs::path& file, mode_t mode)
      : file_(file), path_((folderOf(place) / randomName()).string()), guard_(path_) {
    // O_EXCL follows no link and takes over no file.
    open_ = OpenFile(::open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    const int reason = errno;
    guard_.made();
    errno = reason;
    if (!open_.valid()) failBySystem(file);
    // Some file systems know no locks; there a leftover stays until somebody deletes it.
    static_cast<void>(flock(open_.number(), LOCK_EX | LOCK_NB));
  }
  FileInTheMaking(const FileInTheMaking&) = delete;
  FileInTheMaking& operator=(const FileInTheMaking&) = delete;
  ~FileInTheMaking() {
    if (!placed_) unlink(path_.c_str());
  }

  const OpenFile& open() const { return open_; }

  bool isGone() const {
    struct stat facts {};
    return fstat(open_.number(), &facts) == 0 && facts.st_nlink == 0;
  }

  void putInPlace(const fs::path& place) {
    // Over a network the system may tell only at a close that something was not written. Closing a second number of the
    // same file asks it, and the lock stays until the file is in its place.
    if (!OpenFile(::dup(open_.number())).close()) failBySystem(file_);
    if (std::rename(path_.c_str(), place.c_str()) != 0) failBySystem(file_);
    placed_ = true;
  }

 private:
  const fs::path& file_;
  std::string path_;
  RemovedOnInterrupt guard_;
  OpenFile open_;
  bool placed_ = false;
};

void replace(const fs::path& file, std::span<const uint8_t> content) {
  const fs::path place = behindLinks(file);
  struct stat before {};
  const bool replaces = ::stat(place.c_str(), &before) == 0;
  constexpr mode_t usual = 0666;  // less what the umask takes
  std::optional<FileInTheMaking> attempt;
  attempt.emplace(place, file, usual);
  // Between its making and its locking somebody may have taken it for a leftover.
  while (attempt->isGone()) attempt.emplace(place, file, usual);
  FileInTheMaking& making = *attempt;
  if (replaces) {
    // Another owner can be given by root alone, and a group only by its members; the mode comes last, since a change of
    // owner takes away bits of it.
    static_cast<void>(::fchown(making.open().number(), before.st_uid, before.st_gid) == 0);
    if (::fchmod(making.open().number(), before.st_mode & 07777U) != 0) failBySystem(file);
  }
  writeAll(making.open(), content, file);
  readBack(making.open(), content, file);
  making.putInPlace(place);
}

void writeInto(const fs::path& file, std::span<const uint8_t> content) {
  OpenFile open(::open(file.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
  if (!open.valid()) failBySystem(file);
  writeAll(open, content, file);
  if (!open.close()) failBySystem(file);
}

}  // namespace

void checkPlace(const fs::path& file) {
  const fs::path place = behindLinks(file);
  std::error_code error;
  const fs::file_status status = fs::status(place, error);
  if (fs::is_directory(status)) fail(file, "it is a folder");
  if (fs::exists(status) && access(place.c_str(), W_OK) != 0) fail(file, "it is write-protected");
  if (fs::exists(status) && !fs::is_regular_file(status)) return;
  const fs::path folder = folderOf(place);
  const fs::file_status folderStatus = fs::status(folder, error);
  if (!fs::exists(folderStatus)) fail(file, "no folder " + quoted(folder));
  if (!fs::is_directory(folderStatus)) fail(file, quoted(folder) + " is no folder");
  if (access(folder.c_str(), W_OK) != 0) fail(file, "no permission to write in " + quoted(folder));
}

void removeLeftovers(const fs::path& folder) {
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator(folder.empty() ? fs::path(".") : folder, ignored)) {
    if (!isNameInTheMaking(entry.path().filename().string())) continue;
    const OpenFile open(::open(entry.path().c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (open.valid() && flock(open.number(), LOCK_EX | LOCK_NB) == 0) unlink(entry.path().c_str());
  }
}

void putFile(const fs::path& file, std::span<const uint8_t> content) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    writeInto(file, content);
  } else {
    replace(file, content);
  }
}

}  // namespace cli
