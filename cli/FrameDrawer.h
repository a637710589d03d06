/// Draws frames with one module and one set of values, one frame at a time.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/Animation.h"
#include "cli/Arguments.h"
#include "cli/EffectSession.h"
#include "host/Image.h"

namespace cli {

class FrameDrawer {
 public:
  /// Loads the module and reads the values and the pictures of layers.
  /// @param arguments  outlives the drawer
  /// @throws UserError, EffectError
  explicit FrameDrawer(const Arguments& arguments);

  /// What a person should know of the values, a line each.
  const std::vector<std::string>& warnings() const { return warnings_; }

  /// The picture as the effect is to get it: at the wanted depth. Safe on any thread.
  /// @throws UserError
  standin::Image read(const std::filesystem::path& file) const;

  /// The frame drawn over the picture, on the whole layer. Not for two threads at once.
  /// @param file    the picture's, for messages
  /// @param number  of the frame; --start is time 0
  /// @param progress  gets done and total while it draws; may be empty
  /// @throws UserError, EffectError
  standin::Image draw(const standin::Image& picture, const std::filesystem::path& file, int32_t number,
                      const std::function<void(int32_t, int32_t)>& progress = {});

  /// Safe on any thread.
  /// @throws UserError
  void write(const std::filesystem::path& file, const standin::Image& picture) const;

 private:
  const Arguments& arguments_;
  EffectSession session_;
  Animation animation_;
  std::vector<std::string> warnings_;
  bool smart_ = false;
};

}  // namespace cli
