#include "cli/ProgressBar.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <utility>

namespace cli {
namespace {

constexpr double longWork = 2.0;  // seconds, after which the time left is told
constexpr double pause = 0.1;     // seconds between two drawings
constexpr std::size_t widestBar = 40;
constexpr std::size_t narrowestBar = 8;

/// "0:07 left", "1:02:03 left"; empty while nothing can be said.
std::string timeLeft(double share, double elapsed) {
  if (elapsed < longWork || share <= 0.0) return {};
  const double seconds = std::round(std::min(elapsed * (1.0 - share) / share, 359999.0));
  const auto whole = static_cast<int32_t>(seconds);
  char text[32];
  if (whole >= 3600) {
    std::snprintf(text, sizeof text, "%d:%02d:%02d left", whole / 3600, whole / 60 % 60, whole % 60);
  } else {
    std::snprintf(text, sizeof text, "%d:%02d left", whole / 60, whole % 60);
  }
  return text;
}

std::string percent(double share) {
  return std::to_string(static_cast<int32_t>(share * 100.0)) + "%";
}

}  // namespace

double steadySeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

ProgressBar::ProgressBar(std::ostream& out, Terminal terminal, Seconds clock)
    : out_(out), terminal_(std::move(terminal)), clock_(std::move(clock)), begin_(clock_()) {}

ProgressBar::~ProgressBar() {
  clear();
}

void ProgressBar::clear() {
  // Back to the first column and wipe to the end of the line.
  if (!shown_.empty()) out_ << "\r\x1b[K" << std::flush;
  shown_.clear();
}

std::string ProgressBar::line(const std::string& what, double share, double elapsed) const {
  // The last column stays free: some terminals begin a new line after it.
  const int32_t columns = terminal_.columns ? terminal_.columns() : 80;
  const auto room = static_cast<std::size_t>(std::max(columns - 1, 0));
  const std::string number = " " + percent(share);
  std::string left = timeLeft(share, elapsed);
  if (!left.empty()) left.insert(0, "  ");
  const std::size_t brackets = 3;
  std::size_t texts = what.size() + number.size() + left.size();
  if (texts > room) {
    left.clear();
    texts = what.size() + number.size();
  }
  if (texts > room) return what.substr(0, room);
  if (texts + brackets + narrowestBar > room) return what + number + left;
  const std::size_t width = std::min(room - texts - brackets, widestBar);
  const auto filled = static_cast<std::size_t>(share * static_cast<double>(width));
  const char* const begin = terminal_.color ? "\x1b[32m" : "";
  const char* const end = terminal_.color ? "\x1b[0m" : "";
  return what + " [" + begin + std::string(filled, '#') + end + std::string(width - filled, '.') + "]" + number + left;
}

void ProgressBar::show(const std::string& what, double share) {
  if (!terminal_.present) return;
  share = share > 0.0 ? std::min(share, 1.0) : 0.0;  // what is no number is 0, too
  const double now = clock_();
  if (terminal_.plain) {
    const auto tenth = static_cast<int>(share * 10.0);
    if (tenth == lastTenth_ || now - begin_ < longWork) return;
    lastTenth_ = tenth;
    const std::string left = timeLeft(share, now - begin_);
    out_ << what << ' ' << percent(share) << (left.empty() ? "" : "  ") << left << std::endl;
    return;
  }
  if (!shown_.empty() && now - lastDrawn_ < pause) return;
  const std::string text = line(what, share, now - begin_);
  if (text == shown_) return;
  out_ << '\r' << text << "\x1b[K" << std::flush;
  shown_ = text;
  lastDrawn_ = now;
}

}  // namespace cli
