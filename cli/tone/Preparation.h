/// How the picture of a layer control is prepared on its way to the effect. LayerText.h tells how people write it.
#pragma once

namespace cli {

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

}  // namespace cli
