/// Draws frames with one module and one set of values, one frame at a time.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/Animation.h"
#include "cli/Arguments.h"
#include "cli/EffectSession.h"
#include "cli/FramePictures.h"
#include "cli/presets/PresetStack.h"
#include "cli/tone/PrepareLayers.h"

namespace cli {

class FrameDrawer {
 public:
  /// Loads the module and reads the values and the pictures of layers.
  /// Both outlive the drawer.
  /// @param height  of the first picture, pixels at full size; only saves work, since the presets' lengths go along
  /// with
  ///                each picture
  /// @throws UserError, EffectError
  FrameDrawer(const Arguments& arguments, const FramePictures& pictures, std::optional<int32_t> height = {});

  /// What a person should know of the values, a line each.
  const std::vector<std::string>& warnings() const { return warnings_; }

  /// For any thread.
  const FramePictures& pictures() const { return pictures_; }

  /// The frame drawn over the picture, on the whole of it. Not for two threads at once.
  /// @param file    the picture's, for messages
  /// @param number  of the frame; --start is time 0
  /// @param progress  gets done and total while it draws; may be empty
  /// @throws UserError, EffectError
  FilePicture draw(const FilePicture& picture, const std::filesystem::path& file, int32_t number,
                   const std::function<void(int32_t, int32_t)>& progress = {});

 private:
  void goAlongWith(int32_t height);

  const Arguments& arguments_;
  const FramePictures& pictures_;
  EffectSession session_;
  PresetStack presets_;
  std::optional<int32_t> height_;  ///< of the pictures that the animation's lengths are for; none: the presets' own
  PresetStack scaled_;             ///< the presets for these pictures
  Animation animation_;
  std::map<int32_t, Preparation> preparations_;  ///< of layers, by index
  LayerPreparer preparer_;
  std::vector<std::string> warnings_;
  bool smart_ = false;
};

}  // namespace cli
