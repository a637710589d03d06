/// A line on the terminal that tells how far a piece of work has come.
#pragma once

#include <functional>
#include <ostream>
#include <string>

#include "cli/Terminal.h"

namespace cli {

/// Seconds from any moment on.
using Seconds = std::function<double()>;
double steadySeconds();

/// Draws on one line, no wider than the terminal, at most ten times a second, and wipes it at the end, so that only
/// what matters stays on the screen. From the third second on it tells the time that is left. On a plain terminal it
/// writes a line for each tenth of the work, from the third second on. Where there is no terminal it writes nothing.
class ProgressBar {
 public:
  /// @param out  outlives the bar
  ProgressBar(std::ostream& out, Terminal terminal, Seconds clock = steadySeconds);
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar();

  /// @param what   is being done: "Drawing", "3 of 200 frames"
  /// @param share  of the whole work that is done, 0 to 1; anything else is shown as the nearer end
  void show(const std::string& what, double share);

  /// Wipes the line now; the next show() draws it anew.
  void clear();

 private:
  std::string line(const std::string& what, double share, double elapsed) const;

  std::ostream& out_;
  Terminal terminal_;
  Seconds clock_;
  double begin_;
  double lastDrawn_ = -1.0;
  int lastTenth_ = 0;
  std::string shown_;
};

}  // namespace cli
