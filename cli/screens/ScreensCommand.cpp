#include <algorithm>
#include <cmath>
#include <iomanip>
#include <system_error>

#include "cli/Commands.h"
#include "cli/ControlValue.h"
#include "cli/FrameDrawer.h"
#include "cli/FramePictures.h"
#include "cli/ImageFile.h"
#include "cli/ProgressBar.h"
#include "cli/UserError.h"
#include "cli/presets/LookFiles.h"
#include "cli/screens/Recipe.h"
#include "cli/screens/Separation.h"

namespace cli {
namespace {

namespace fs = std::filesystem;
using standin::Image;

void listRecipes(const Surroundings& surroundings) {
  const std::vector<fs::path> files = allLooks(surroundings, recipeFiles);
  std::size_t width = 0;
  for (const fs::path& file : files) width = std::max(width, file.stem().string().size());
  for (const fs::path& file : files) {
    try {
      const Recipe recipe = readRecipe(file);
      surroundings.out << std::left << std::setw(static_cast<int>(width + 2)) << file.stem().string() << recipe.about
                       << '\n';
    } catch (const UserError& error) {
      surroundings.err << "vindrel: warning: " << error.what() << '\n';
    }
  }
}

/// A preset beside the recipe goes before one that is found by its name. No other place: a recipe from elsewhere shall
/// not read what lies about on this machine.
fs::path presetOf(const Pass& pass, const fs::path& recipe, const Surroundings& surroundings) {
  if (isPathOfLook(pass.preset)) throw UserError("'preset' takes a name, not '" + pass.preset + "'");
  fs::path beside = recipe.parent_path() / (pass.preset + ".json");
  std::error_code ignored;
  return fs::exists(beside, ignored) ? beside : findLook(pass.preset, surroundings, presetFiles);
}

std::string shownColor(const Color& color) {
  ControlFacts facts;
  facts.kind = ControlKind::color;
  return shownValue(facts, color);
}

/// What `render` would be given for this pass.
Arguments wordsOf(const Pass& pass, const fs::path& recipe, const Arguments& arguments,
                  const Surroundings& surroundings) {
  Arguments words = arguments;
  words.presets = {presetOf(pass, recipe, surroundings)};
  words.sets = {{"Clear Background", "on"}, {"Dot Color", shownColor(pass.ink)}};
  if (pass.angle) words.sets.push_back({"Global Rotation", shownNumber(*pass.angle)});
  words.sets.insert(words.sets.end(), pass.sets.begin(), pass.sets.end());
  return words;
}

Image emptySheet(const Color& paper, int32_t width, int32_t height) {
  Image sheet(standin::Depth::k32, width, height);
  const auto unit = [](uint8_t channel) { return static_cast<float>(channel) / 255.0F; };
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      sheet.at<PF_PixelFloat>(x, y) = {1.0F, unit(paper.red), unit(paper.green), unit(paper.blue)};
    }
  }
  return sheet;
}

double factorOfShifts(const Recipe& recipe, const Arguments& arguments, int32_t height) {
  if (arguments.scale) return *arguments.scale;
  return recipe.height ? static_cast<double>(height) / *recipe.height : 1.0;
}

void printSheet(const Arguments& arguments, const Surroundings& surroundings) {
  const fs::path file = findLook(arguments.recipe, surroundings, recipeFiles);
  const Recipe recipe = readRecipe(file);
  const FramePictures pictures(arguments);
  const FilePicture original = pictures.read(arguments.input);
  const standin::Depth depth = original.image.depth();
  checkWritable(arguments.output, depth);

  const Plane picture = premultiplied(original.image);
  const double factor = factorOfShifts(recipe, arguments, picture.height);
  Image sheet = emptySheet(recipe.paper, picture.width, picture.height);
  ProgressBar bar(surroundings.err, surroundings.terminal);
  for (std::size_t i = 0; i < recipe.passes.size(); ++i) {
    const Pass& pass = recipe.passes[i];
    try {
      const Arguments words = wordsOf(pass, file, arguments, surroundings);
      FrameDrawer drawer(words, pictures, picture.height);
      const FilePicture screen{separated(picture, pass, recipe.black).converted(depth), original.facts};
      const auto passes = static_cast<double>(recipe.passes.size());
      const std::string what = "pass " + std::to_string(i + 1) + " of " + std::to_string(recipe.passes.size());
      const FilePicture dots = drawer.draw(screen, arguments.input, 0, [&](int32_t done, int32_t total) {
        bar.show(what, (static_cast<double>(i) + (total > 0 ? static_cast<double>(done) / total : 0.0)) / passes);
      });
      layInk(dots.image, pass.lay, static_cast<int32_t>(std::lround(pass.shiftX * factor)),
             static_cast<int32_t>(std::lround(pass.shiftY * factor)), sheet);
    } catch (const UserError& error) {
      throw UserError("recipe '" + file.string() + "', pass " + std::to_string(i + 1) + ": " + error.what());
    }
  }
  FilePicture print{sheet.converted(depth), original.facts};
  print.image.originX = original.image.originX;
  print.image.originY = original.image.originY;
  pictures.write(arguments.output, print);
}

}  // namespace

void printScreens(const Arguments& arguments, const Surroundings& surroundings) {
  if (arguments.recipe.empty()) {
    listRecipes(surroundings);
  } else {
    printSheet(arguments, surroundings);
  }
}

}  // namespace cli
