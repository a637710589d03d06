#include "cli/tone/ToneCurve.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace cli {
namespace {

// The covered share goes with the square of the size; between 51 steps a straight line misses it by less than 0.0005.
// They are five levels of 8 bits each, so that a map of that depth holds them as they are.
constexpr int32_t steps = 51;

}  // namespace

ToneCurve::ToneCurve(const std::function<double(double)>& coverage) {
  coverage_.reserve(steps + 1);
  for (int32_t i = 0; i <= steps; ++i) coverage_.push_back(coverage(static_cast<double>(i) / steps));
  printsDark_ = coverage_.back() < coverage_.front();
  if (printsDark_) std::reverse(coverage_.begin(), coverage_.end());
  for (std::size_t i = 1; i < coverage_.size(); ++i) coverage_[i] = std::max(coverage_[i], coverage_[i - 1]);
}

double ToneCurve::weightFor(double tone) const {
  const double wanted = least() + (most() - least()) * tone;
  double place = 0.0;
  if (wanted >= most()) {
    // Of all weights that give the most or the least the outermost, so that bare ground and full ink stay so whatever
    // the map's rounding does.
    place = steps;
  } else if (wanted > least()) {
    const auto above = std::upper_bound(coverage_.begin(), coverage_.end(), wanted);
    const double below = *(above - 1);
    place = static_cast<double>(above - 1 - coverage_.begin()) + (wanted - below) / (*above - below);
  }
  const double weight = place / steps;
  return printsDark_ ? 1.0 - weight : weight;
}

}  // namespace cli
