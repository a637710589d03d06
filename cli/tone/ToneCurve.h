/// How much of the ground dots cover by the weight of their map, and back.
#pragma once

#include <functional>
#include <vector>

namespace cli {

class ToneCurve {
 public:
  /// Asks for the covered share of the ground, 0 to 1, at weights from 0 to 1. It should only rise or only fall; where
  /// it doesn't, it is taken to stand still.
  explicit ToneCurve(const std::function<double(double weight)>& coverage);

  /// True when dots cover less where the weight is larger: such dots print what is dark, the others what is light.
  bool printsDark() const { return printsDark_; }

  double least() const { return coverage_.front(); }  ///< covered share at the least
  double most() const { return coverage_.back(); }    ///< covered share at the most

  /// The weight at which the dots cover so much of what they can: 0 gives the least, 1 the most, and what lies between
  /// goes evenly with the covered share, so that for dots that vanish and that close it is the covered share itself.
  double weightFor(double tone) const;

 private:
  bool printsDark_ = false;
  std::vector<double> coverage_;  ///< rising, at even steps of the weight, or of 1 - weight when it prints what is dark
};

}  // namespace cli
