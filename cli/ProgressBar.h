/// A line on the terminal that fills up while a frame is drawn.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

namespace cli {

/// Draws on one line and wipes it at the end, so that only what matters stays on the screen. Draws nothing when the
/// stream is no terminal, and again only when the shown percentage has changed.
class ProgressBar {
 public:
  /// @param out      outlives the bar
  /// @param visible  whether out is a terminal
  ProgressBar(std::ostream& out, bool visible, std::string label);
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar();

  /// `done` of `total`; anything outside 0 to total is shown as its nearer end, a total of 0 or less as nothing done.
  void show(int32_t done, int32_t total);

  /// Wipes the line now.
  void clear();

 private:
  std::ostream& out_;
  bool visible_;
  std::string label_;
  int32_t shownPercent_ = -1;
};

}  // namespace cli
