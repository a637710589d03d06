// Renders golden scenes through the module's own entry, driven by the stand-in host.
#pragma once

#include <filesystem>
#include <string>

#include "host/Image.h"
#include "tests/golden/Scene.h"

namespace golden {

enum class Road { classic, smart };

/// "panel 3 (Mask = None)": the panel that a pixel of the scene's picture lies in. "no panel" where there is none, as
/// behind the last one.
/// @param sheet  a picture that the scene gave, for its size
std::string panelAt(const Scene& scene, const standin::Image& sheet, int32_t x, int32_t y);

class SceneRunner {
 public:
  /// @param inputs  the folder of the pictures that scenes name
  SceneRunner(std::string modulePath, std::filesystem::path inputs);

  /// All panels of a scene as one picture, row by row; behind a panel that is smaller than the largest one it is
  /// transparent black. Throws std::runtime_error, naming scene and panel, when the module can't be loaded, the effect
  /// reports an error, a control or a value is wrong, or the host's books are not clean but for what the effect is
  /// known to keep.
  standin::Image render(const Scene& scene, standin::Depth depth, Road road) const;

 private:
  std::string modulePath_;
  std::filesystem::path inputs_;
};

}  // namespace golden
