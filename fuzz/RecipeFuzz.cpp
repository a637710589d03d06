// Any bytes as a recipe file. Held: it is refused with a message, or it is a recipe by which every colour gives an
// amount of each ink from 0 to 1.
#include <cmath>
#include <cstdint>

#include "cli/UserError.h"
#include "cli/screens/Separation.h"
#include "fuzz/FileOfBytes.h"
#include "fuzz/Require.h"

namespace {

void requireShare(double share, const char* what) {
  // Taking the black away from an ink may round to the last bit below 0 or above 1.
  fuzz::require(share >= -1e-12 && share <= 1.0 + 1e-12, what);
}

void requireInks(const cli::Recipe& recipe) {
  fuzz::require(!recipe.passes.empty(), "a recipe without passes was read");
  fuzz::require(!recipe.height || (*recipe.height >= 1 && *recipe.height <= 30000),
                "a height beyond its range was read");
  for (const cli::Pass& pass : recipe.passes) {
    fuzz::require(!pass.preset.empty(), "a pass without a preset was read");
    fuzz::require(std::isfinite(pass.angle.value_or(0.0)), "an angle that is no number was read");
    fuzz::require(std::abs(pass.shiftX) <= 1000.0 && std::abs(pass.shiftY) <= 1000.0,
                  "a shift beyond its range was read");
    for (const double red : {0.0, 0.2, 1.0}) {
      for (const double green : {0.0, 0.7, 1.0}) {
        for (const double blue : {0.0, 0.4, 1.0}) {
          const double amount = cli::inkAmount(pass.channel, red, green, blue, recipe.black);
          requireShare(amount, "an amount of ink isn't between 0 and 1");
          requireShare(cli::leveled(amount, pass.levels), "a printed amount of ink isn't between 0 and 1");
        }
      }
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const fuzz::FileOfBytes file({data, size}, ".json");
  try {
    requireInks(cli::readRecipe(file.path()));
  } catch (const cli::UserError&) {
    // Refused, as most bytes are.
  }
  return 0;
}
