/// Draws frames with one module and one set of values, one frame at a time.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/Animation.h"
#include "cli/Arguments.h"
#include "cli/EffectSession.h"
#include "cli/FramePictures.h"

namespace cli {

class FrameDrawer {
 public:
  /// Loads the module and reads the values and the pictures of layers.
  /// Both outlive the drawer.
  /// @throws UserError, EffectError
  FrameDrawer(const Arguments& arguments, const FramePictures& pictures);

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
  const Arguments& arguments_;
  const FramePictures& pictures_;
  EffectSession session_;
  Animation animation_;
  std::vector<std::string> warnings_;
  bool smart_ = false;
};

}  // namespace cli
