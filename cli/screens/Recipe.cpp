#include "cli/screens/Recipe.h"

#include <cmath>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>

#include "cli/ControlValue.h"
#include "cli/JsonFile.h"
#include "cli/NearestName.h"
#include "cli/UserError.h"

namespace cli {
namespace {

using nlohmann::json;

/// What is done with each key of an object.
using Keys = std::map<std::string, std::function<void(const json&)>>;

void readObject(const json& object, const std::string& what, const Keys& keys) {
  if (!object.is_object()) throw UserError(what + " takes names with values in braces");
  std::vector<std::string> names;
  names.reserve(keys.size());
  for (const auto& [name, take] : keys) names.push_back(name);
  for (const auto& [key, value] : object.items()) {
    const auto found = keys.find(key);
    if (found == keys.end()) {
      throw UserError(what + " has no '" + key + "'" + suggestion(key, names, "; it may have " + listed(names, "and")));
    }
    found->second(value);
  }
}

double numberFrom(const json& value, const std::string& name, double least, double most) {
  if (!value.is_number() || !(value.get<double>() >= least) || !(value.get<double>() <= most)) {
    throw UserError("'" + name + "' takes a number from " + shownNumber(least) + " to " + shownNumber(most));
  }
  return value.get<double>();
}

std::string textFrom(const json& value, const std::string& name) {
  if (!value.is_string()) throw UserError("'" + name + "' takes a text");
  return value.get<std::string>();
}

Color colorFrom(const json& value, const std::string& name) {
  ControlFacts color;
  color.name = name;
  color.kind = ControlKind::color;
  return std::get<Color>(parseControlValue(color, value.is_string() ? value.get<std::string>() : value.dump()));
}

template <class Kind>
Kind kindFrom(const json& value, const std::string& name, const std::vector<std::pair<std::string, Kind>>& kinds) {
  const std::string text = textFrom(value, name);
  std::vector<std::string> names;
  for (const auto& [kindName, kind] : kinds) {
    if (text == kindName) return kind;
    names.push_back(kindName);
  }
  throw UserError("'" + name + "' takes " + listed(names) + ", not '" + text + "'" + suggestion(text, names));
}

Channel channelFrom(const json& value) {
  return kindFrom<Channel>(value, "channel",
                           {{"cyan", Channel::cyan},
                            {"magenta", Channel::magenta},
                            {"yellow", Channel::yellow},
                            {"black", Channel::black},
                            {"dark", Channel::dark},
                            {"light", Channel::light}});
}

BlackGeneration blackFrom(const json& value) {
  BlackGeneration black;
  readObject(value, "'black'",
             {{"start", [&](const json& part) { black.start = numberFrom(part, "start", 0.0, 0.99); }},
              {"strength", [&](const json& part) { black.strength = numberFrom(part, "strength", 0.0, 1.0); }}});
  return black;
}

Pass passFrom(const json& value) {
  Pass pass;
  bool hasChannel = false;
  bool hasInk = false;
  const auto takeShift = [&](const json& part) {
    if (!part.is_array() || part.size() != 2) throw UserError("'shift' takes two numbers in brackets, right and down");
    pass.shiftX = numberFrom(part[0], "shift", -1000.0, 1000.0);
    pass.shiftY = numberFrom(part[1], "shift", -1000.0, 1000.0);
  };
  const auto takeSets = [&](const json& part) {
    if (!part.is_object()) throw UserError("'set' takes names with values in braces");
    for (const auto& [name, text] : part.items()) pass.sets.push_back({name, valueText(text, name, "")});
  };
  readObject(
      value, "a pass",
      {{"channel",
        [&](const json& part) {
          pass.channel = channelFrom(part);
          hasChannel = true;
        }},
       {"preset", [&](const json& part) { pass.preset = textFrom(part, "preset"); }},
       {"angle", [&](const json& part) { pass.angle = numberFrom(part, "angle", -360.0, 360.0); }},
       {"ink",
        [&](const json& part) {
          pass.ink = colorFrom(part, "ink");
          hasInk = true;
        }},
       {"lay",
        [&](const json& part) {
          pass.lay = kindFrom<Pass::Lay>(part, "lay", {{"multiply", Pass::Lay::multiply}, {"over", Pass::Lay::over}});
        }},
       {"from", [&](const json& part) { pass.levels.from = numberFrom(part, "from", 0.0, 1.0); }},
       {"to", [&](const json& part) { pass.levels.to = numberFrom(part, "to", 0.0, 1.0); }},
       {"gamma", [&](const json& part) { pass.levels.gamma = numberFrom(part, "gamma", 0.1, 10.0); }},
       {"shift", takeShift},
       {"set", takeSets}});
  if (!hasChannel || !hasInk || pass.preset.empty()) throw UserError("a pass takes a channel, a preset and an ink");
  if (pass.levels.to <= pass.levels.from) throw UserError("'to' must lie above 'from'");
  return pass;
}

}  // namespace

Recipe readRecipe(const std::filesystem::path& file) {
  const json whole = readJson(file, "recipe");
  Recipe recipe;
  try {
    readObject(whole, "a recipe",
               {{"about", [&](const json& part) { recipe.about = textFrom(part, "about"); }},
                {"height",
                 [&](const json& part) {
                   const double height = numberFrom(part, "height", 1.0, 30000.0);
                   if (height != std::floor(height)) throw UserError("'height' takes whole pixels");
                   recipe.height = static_cast<int32_t>(height);
                 }},
                {"paper", [&](const json& part) { recipe.paper = colorFrom(part, "paper"); }},
                {"black", [&](const json& part) { recipe.black = blackFrom(part); }},
                {"passes", [&](const json& part) {
                   if (!part.is_array()) throw UserError("'passes' takes passes in brackets");
                   for (const json& pass : part) {
                     try {
                       recipe.passes.push_back(passFrom(pass));
                     } catch (const UserError& error) {
                       throw UserError("pass " + std::to_string(recipe.passes.size() + 1) + ": " + error.what());
                     }
                   }
                 }}});
    if (recipe.passes.empty()) throw UserError("it has no passes");
  } catch (const UserError& error) {
    throw UserError("recipe '" + file.string() + "': " + error.what());
  }
  return recipe;
}

}  // namespace cli
