/// What a layer control is given: a picture, and how it is prepared on the way to the effect.
///
///     source                                   the picture that is rendered, as it is
///     source:blur=pitch,tone=area              averaged over a dot's cell, and so that covered area follows tone
///     map.png:fit=cover,blur=12
#pragma once

#include <string>
#include <vector>

namespace cli {

/// "Dot Size" = "14": a name and what it is given, neither checked yet.
struct Assignment {
  std::string name;
  std::string text;
};

struct Preparation {
  enum class Fit {
    none,     ///< at its own size
    stretch,  ///< at the size of the picture that is rendered, sides by themselves
    cover     ///< at that size, sides kept in proportion, what stands over cut off evenly
  };
  enum class Blur { none, pitch, pixels };
  enum class Tone {
    none,  ///< the layer's own brightness
    area,  ///< covered area follows the tone as it is coded, as printers reckon it
    light  ///< covered area follows the light, so that the picture keeps its brightness on a screen seen from afar
  };
  Fit fit = Fit::none;
  Blur blur = Blur::none;
  double blurPixels = 0.0;  ///< of Blur::pixels: the side of the square to average over, pixels of the rendered picture
  Tone tone = Tone::none;

  bool any() const { return fit != Fit::none || blur != Blur::none || tone != Tone::none; }
  friend bool operator==(const Preparation&, const Preparation&) = default;
};

struct LayerText {
  std::string name;
  std::string picture;  ///< "source", "none" or a file
  Preparation preparation;
};

/// The keys that a preparation may have.
const std::vector<std::string>& preparationKeys();

/// Sets one key, as in "blur" and "pitch".
/// @throws UserError for an unknown key or value, naming the nearest
void prepare(const std::string& key, const std::string& value, Preparation& preparation);

/// What stands behind the keys, for the keys that don't say none: {"blur", "pitch"}.
std::vector<Assignment> preparationTexts(const Preparation& preparation);

/// Splits what --layer gives a layer at the last ':' that has keys behind it. The whole is a picture if there is a file
/// of that name.
/// @throws UserError for a wrong preparation
LayerText layerText(const Assignment& assignment);

}  // namespace cli
