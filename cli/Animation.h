/// The value that each control has at each frame.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "cli/ControlFacts.h"
#include "cli/ControlValue.h"
#include "cli/FramePattern.h"
#include "cli/FrameRate.h"
#include "cli/ImageFile.h"
#include "cli/Keyframes.h"
#include "host/ParameterValues.h"

namespace cli {

/// Reads an angle that may begin with whole turns, "2x+45", as well as one in degrees.
/// @throws UserError
ControlValue parseKeyValue(const ControlFacts& control, const std::string& text);

class Animation {
 public:
  /// @param base  the values of all that doesn't move
  Animation(std::vector<ControlFacts> controls, standin::ParameterValues base, FrameRate rate, int32_t start);

  /// Adds keys; a control that has some already loses those.
  /// @param where  before each complaint
  /// @throws UserError for an unknown control, one that can't move, a value that doesn't fit, keys out of order
  void add(const std::vector<TrackText>& tracks, const std::string& where);

  /// From now on the control has one value for all frames: its keys and its files go.
  void hold(int32_t index, standin::ParameterValues::Value value);

  /// The layer control shows the file of each frame.
  void follow(int32_t index, FramePattern files, LayerReader read);

  /// The values of all that doesn't move.
  const standin::ParameterValues& base() const { return base_; }

  /// True when the values are not the same at all frames.
  bool moves() const { return !tracks_.empty() || !files_.empty(); }

  /// All values at a frame as files are numbered; parts of frames count.
  /// @throws UserError for a layer's file that isn't there
  standin::ParameterValues at(double frame) const;

  /// One value at a host's time.
  standin::ParameterValues::Value at(int32_t index, int64_t time, uint32_t timeScale) const;

 private:
  struct Key {
    double frame = 0.0;
    ControlValue value;
    Ease in;
    Ease out;
  };
  struct Files {
    FramePattern pattern;
    LayerReader read;
    // The picture that was shown last: frames come in order, and most are asked for more than once.
    mutable int32_t lastNumber = -1;
    mutable standin::LayerValue last;
  };

  ControlValue valueOf(const ControlFacts& control, const std::vector<Key>& keys, double frame) const;
  standin::LayerValue pictureOf(const Files& files, double frame) const;

  std::vector<ControlFacts> controls_;
  standin::ParameterValues base_;
  FrameRate rate_;
  int32_t start_;
  std::map<int32_t, std::vector<Key>> tracks_;  ///< by index
  std::map<int32_t, Files> files_;              ///< by index
};

}  // namespace cli
