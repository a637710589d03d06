/// What happens when the program is told to stop: files in the making go, and the program ends by that very signal, so
/// that its caller sees which one it was (a shell shows 128 + its number).
#pragma once

#include <string>

namespace cli {

/// From now on SIGINT, SIGTERM, SIGHUP and SIGPIPE remove the files that are in the making. A signal that is ignored
/// stays ignored, as under nohup. Writing beyond a file-size limit becomes an error of the write instead of a death.
void heedInterrupts();

/// Names a file to be removed when a signal ends the program, while it lives.
class RemovedOnInterrupt {
 public:
  /// To be made before the file is, so that there is no moment in which it would be forgotten.
  explicit RemovedOnInterrupt(const std::string& path);
  RemovedOnInterrupt(const RemovedOnInterrupt&) = delete;
  RemovedOnInterrupt& operator=(const RemovedOnInterrupt&) = delete;
  ~RemovedOnInterrupt();

 private:
  int slot_ = -1;
};

}  // namespace cli
