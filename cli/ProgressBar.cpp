#include "cli/ProgressBar.h"

#include <algorithm>
#include <utility>

namespace cli {
namespace {
constexpr int32_t barColumns = 40;
}

ProgressBar::ProgressBar(std::ostream& out, bool visible, std::string label)
    : out_(out), visible_(visible), label_(std::move(label)) {}

ProgressBar::~ProgressBar() {
  clear();
}

void ProgressBar::clear() {
  // Back to the first column and wipe to the end of the line.
  if (shownPercent_ >= 0) out_ << "\r\x1b[K" << std::flush;
  shownPercent_ = -1;
}

void ProgressBar::show(int32_t done, int32_t total) {
  if (!visible_) return;
  const int64_t part = total > 0 ? int64_t{100} * std::clamp(done, 0, total) / total : 0;
  const auto percent = static_cast<int32_t>(part);
  if (percent == shownPercent_) return;
  shownPercent_ = percent;
  const auto filled = static_cast<std::size_t>(percent * barColumns / 100);
  out_ << '\r' << label_ << " [" << std::string(filled, '#') << std::string(barColumns - filled, '.') << "] " << percent
       << '%' << std::flush;
}

}  // namespace cli
