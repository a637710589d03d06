/// A file descriptor that is closed at the end of its scope.
#pragma once

#include <unistd.h>

#include <utility>

namespace cli {

class OpenFile {
 public:
  OpenFile() = default;
  explicit OpenFile(int number) : number_(number) {}
  OpenFile(OpenFile&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  OpenFile& operator=(OpenFile&& other) noexcept {
    OpenFile old(std::exchange(number_, std::exchange(other.number_, -1)));
    return *this;
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() {
    if (valid()) ::close(number_);
  }

  bool valid() const { return number_ >= 0; }
  int number() const { return number_; }

  /// Closes now. False, with errno, when the system only now tells that something could not be written.
  bool close() { return ::close(std::exchange(number_, -1)) == 0; }

 private:
  int number_ = -1;
};

}  // namespace cli
