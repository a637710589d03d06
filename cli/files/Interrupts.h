/// What happens when the program is told to stop: files in the making go, and the program ends by that very signal, so
/// that its caller sees which one it was (a shell shows 128 + its number).
#pragma once

#include <csignal>
#include <string>

namespace cli {

/// From now on SIGINT, SIGTERM, SIGHUP and SIGPIPE remove the files that are in the making. A signal that is ignored
/// stays ignored, as under nohup. Writing beyond a file-size limit becomes an error of the write instead of a death.
void heedInterrupts();

/// Lets no such signal in while it lives; one that comes meanwhile strikes at its end. For moments in which something
/// lies about that the program alone knows of.
class HeldInterrupts {
 public:
  HeldInterrupts();
  HeldInterrupts(const HeldInterrupts&) = delete;
  HeldInterrupts& operator=(const HeldInterrupts&) = delete;
  ~HeldInterrupts();

  /// As at its end; nothing the second time.
  void letGo();

 private:
  bool holding_ = true;
  sigset_t before_;
};

/// Names a file to be removed when a signal ends the program, while it lives.
class RemovedOnInterrupt {
 public:
  /// To be made before the file is. From then on no signal ends the program until made() is told, so that there is no
  /// moment in which the file would be forgotten; once a signal has come, it never returns.
  explicit RemovedOnInterrupt(const std::string& path);
  RemovedOnInterrupt(const RemovedOnInterrupt&) = delete;
  RemovedOnInterrupt& operator=(const RemovedOnInterrupt&) = delete;
  ~RemovedOnInterrupt();

  /// The file is there, or could not be made.
  void made();

 private:
  int slot_ = -1;
  bool making_ = true;
  HeldInterrupts held_;
};

}  // namespace cli
