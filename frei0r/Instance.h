/// One filter on one track: its values, and its frames.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "cli/ControlValue.h"
#include "cli/FrameRate.h"
#include "cli/tone/PrepareLayers.h"
#include "frei0r/Effect.h"
#include "host/ParameterValues.h"

namespace video {

class Instance {
 public:
  /// @param width, height  of every frame, pixels, 1 to 30000
  Instance(std::shared_ptr<Effect> effect, int32_t width, int32_t height);

  /// The values of the file go under the parameters that don't stand at their defaults. An empty name takes them away.
  /// A file that can't be used is told on the error stream once, and counts as none.
  void setPreset(const std::string& file);
  const std::string& preset() const { return preset_; }

  /// A parameter's value; its default leaves the value to the preset.
  void set(const cli::ControlFacts& control, const cli::ControlValue& value);
  /// What set() was given last, else the default.
  cli::ControlValue value(const cli::ControlFacts& control) const;

  /// Draws a frame: rows without gaps, four bytes a pixel in the order red, green, blue, alpha, colour straight. When
  /// the effect fails, that is told on the error stream, and the frame goes through as it came.
  /// @param seconds  the frame's time; far below 0, or no number, for a frame that follows the one before
  /// @param in, out  width * height pixels each; may be the same
  void draw(double seconds, const uint8_t* in, uint8_t* out);

 private:
  int32_t frameAt(double seconds) const;
  standin::FrameRequest requestFor(int32_t frame, const uint8_t* in) const;

  std::shared_ptr<Effect> effect_;
  int32_t width_;
  int32_t height_;
  cli::FrameRate frameRate_;
  std::string preset_;
  standin::ParameterValues base_;                     ///< defaults and preset
  std::map<int32_t, cli::Preparation> preparations_;  ///< of the preset's layers, by the control's index
  cli::LayerPreparer preparer_;                       ///< to be used while the effect is locked
  std::map<int32_t, cli::ControlValue> given_;        ///< by the control's index, what isn't its default
  int32_t lastFrame_ = -1;
  std::string lastComplaint_;
};

}  // namespace video
