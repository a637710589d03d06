/// Values for all controls of any module, from a seed, and a host's patience with what they ask for.
#pragma once

#include <chrono>

#include "check/Life.h"

namespace check {

/// How far values go.
enum class Reach {
  kUsual,  ///< defaults, and what the tracks of the sliders reach
  kLegal,  ///< now and then anything that can be typed, and the ends of it
  kBeyond  ///< now and then beyond that, as old projects and expressions have it; every number is finite
};

/// A value for each control. Layers are missing, the layer itself, or pictures of the frame's depth and of others.
standin::ParameterValues randomValues(const standin::StandInHost& host, Chance& chance, Reach reach);

/// A frame of at most 40 x 30 pixels at any time.
standin::FrameRequest randomFrame(Chance& chance, standin::Depth depth);

/// "Amount = 3, Kind = 2": what differs from the defaults, for the words by which a finding is told.
std::string valuesText(const standin::ParameterValues& values);

/// While it lives, the host ends frames that take longer: values at their ends may ask for hours of work.
class Patience {
 public:
  Patience(standin::StandInHost& host, double seconds);
  ~Patience();
  Patience(const Patience&) = delete;
  Patience& operator=(const Patience&) = delete;
  void startAgain();
  bool ranOut() const { return ranOut_; }  ///< the frame since the last start was told to end

 private:
  PF_Err answer();
  standin::StandInHost& host_;
  std::chrono::duration<double> length_;
  std::chrono::steady_clock::time_point start_;
  bool ranOut_ = false;
};

}  // namespace check
