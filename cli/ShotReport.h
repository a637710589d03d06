/// Tells what becomes of the frames of a shot: lines, a bar, and at the end which ones don't stand.
#pragma once

#include <mutex>
#include <vector>

#include "cli/Arguments.h"
#include "cli/ProgressBar.h"
#include "cli/Run.h"
#include "cli/Shot.h"

namespace cli {

class ShotReport {
 public:
  /// All three outlive the report.
  ShotReport(const std::vector<ShotFrame>& frames, const Arguments& arguments, const Surroundings& surroundings);

  /// Takes a frame's result; for any thread, each frame once.
  void take(const FrameResult& result);

  /// A frame has come a step further; for any thread.
  void pass(FrameStep step);

  /// Writes the summary if a frame failed, and gives the exit code.
  int finish();

 private:
  void showProgress();

  const std::vector<ShotFrame>& frames_;
  LogForm form_;
  bool checkOnly_;
  const Surroundings& surroundings_;
  std::mutex mutex_;
  ProgressBar bar_;
  std::size_t read_ = 0;
  std::size_t drawn_ = 0;
  std::size_t taken_ = 0;
  std::vector<FrameResult> failed_;
};

/// The largest memory that this process has had, bytes.
uint64_t peakMemory();

}  // namespace cli
