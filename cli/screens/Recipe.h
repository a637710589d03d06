/// A print of several inks: which ink takes what of the picture, by which preset and at which angle.
///
///     { "about": "Four process inks on newspaper.", "height": 1080, "paper": "#f4efe2",
///       "black": { "start": 0.3, "strength": 0.8 },
///       "passes": [ { "channel": "cyan", "preset": "newsprint", "angle": 15, "ink": "#009fd9" } ] }
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/ControlFacts.h"
#include "cli/tone/LayerText.h"

namespace cli {

/// What an ink takes of the picture. Separation.h has the formulas.
enum class Channel { cyan, magenta, yellow, black, dark, light };

/// How much of the grey in a color goes to the black ink.
struct BlackGeneration {
  double start = 0.0;     ///< 0 to less than 1: the grey from which on black is printed
  double strength = 1.0;  ///< 0 for no black to 1 for all of it
};

/// The part of a channel that an ink prints: nothing at `from`, all at `to`.
struct InkLevels {
  double from = 0.0;
  double to = 1.0;
  double gamma = 1.0;  ///< above 1 prints less of what lies between
};

struct Pass {
  enum class Lay {
    multiply,  ///< as a transparent ink: what lies below shows through
    over       ///< as paint that hides what lies below
  };
  Channel channel = Channel::dark;
  std::string preset;           ///< by name
  std::optional<double> angle;  ///< degrees of "Global Rotation"; none: the preset's own
  Color ink;
  Lay lay = Lay::multiply;
  InkLevels levels;
  double shiftX = 0.0, shiftY = 0.0;  ///< pixels at the recipe's height: a sheet that has slipped
  std::vector<Assignment> sets;       ///< values over the preset's
};

struct Recipe {
  std::string about;
  std::optional<int32_t> height;  ///< of the picture for which the shifts were chosen; none: they don't go along
  Color paper{255, 255, 255};
  BlackGeneration black;
  std::vector<Pass> passes;  ///< in the order of printing
};

/// @throws UserError naming the file and the place in it
Recipe readRecipe(const std::filesystem::path& file);

}  // namespace cli
