/// Turns the numbers of one color space into those of another.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "host/Image.h"

namespace cli {

/// Straight colors of float pixels; alpha stays.
class ColorConversion {
 public:
  ColorConversion() = default;
  ColorConversion(const ColorConversion&) = delete;
  ColorConversion& operator=(const ColorConversion&) = delete;
  virtual ~ColorConversion() = default;

  /// Converts pixels in place. For several threads at once.
  virtual void apply(PF_PixelFloat* pixels, int32_t count) const = 0;
};

/// What stands for the space of display-encoded files and of scene-linear ones, where no other name was given.
inline constexpr char displaySpace[] = "srgb";
inline constexpr char sceneSpace[] = "linear";

/// The conversion between two spaces; null when they are one. Without a configuration there are srgb and linear, which
/// differ by the curve alone. With one, which the environment names in OCIO, any name of it; srgb is then its role
/// color_picking and linear its role scene_linear.
/// @param programFolder  where the program part lies that reads configurations
/// @throws UserError naming the space or the configuration
std::unique_ptr<ColorConversion> colorConversion(const std::string& from, const std::string& to,
                                                 const std::filesystem::path& programFolder);

}  // namespace cli
