#include "cli/tone/LayerText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <system_error>

#include "cli/ControlValue.h"
#include "cli/NearestName.h"
#include "cli/UserError.h"

namespace cli {
namespace {

constexpr double mostBlur = 10000.0;  // pixels

template <class Kind>
struct Named {
  const char* name;
  Kind kind;
};
constexpr Named<Preparation::Fit> fits[] = {{"stretch", Preparation::Fit::stretch}, {"cover", Preparation::Fit::cover}};
constexpr Named<Preparation::Tone> tones[] = {{"area", Preparation::Tone::area}, {"light", Preparation::Tone::light}};

template <class Kind, std::size_t count>
Kind kindNamed(const Named<Kind> (&all)[count], const std::string& key, const std::string& value) {
  std::vector<std::string> names;
  for (const Named<Kind>& one : all) {
    if (value == one.name) return one.kind;
    names.emplace_back(one.name);
  }
  throw UserError("'" + key + "' takes " + listed(names) + ", not '" + value + "'" + suggestion(value, names));
}

template <class Kind, std::size_t count>
void addText(const Named<Kind> (&all)[count], Kind kind, const char* key, std::vector<Assignment>& texts) {
  for (const Named<Kind>& one : all) {
    if (one.kind == kind) texts.push_back({key, one.name});
  }
}

void setBlur(const std::string& value, Preparation& preparation) {
  if (value == "pitch") {
    preparation.blur = Preparation::Blur::pitch;
    return;
  }
  double pixels = 0.0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), pixels);
  const bool isNumber = error == std::errc() && end == value.data() + value.size();
  if (!isNumber || !(pixels > 0.0) || pixels > mostBlur) {
    throw UserError("'blur' takes pitch, or pixels above 0 up to 10000, not '" + value + "'" +
                    suggestion(value, {"pitch"}));
  }
  preparation.blur = Preparation::Blur::pixels;
  preparation.blurPixels = pixels;
}

/// "blur=": letters and an equals sign at the start.
bool beginsWithKey(const std::string& text) {
  const std::size_t equals = text.find('=');
  return equals != std::string::npos && equals > 0 &&
         std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(equals),
                     [](char letter) { return letter >= 'a' && letter <= 'z'; });
}

}  // namespace

const std::vector<std::string>& preparationKeys() {
  static const std::vector<std::string> keys = {"fit", "blur", "tone"};
  return keys;
}

void prepare(const std::string& key, const std::string& value, Preparation& preparation) {
  if (key == "fit") {
    preparation.fit = kindNamed(fits, key, value);
  } else if (key == "blur") {
    setBlur(value, preparation);
  } else if (key == "tone") {
    preparation.tone = kindNamed(tones, key, value);
  } else {
    throw UserError("a layer can't be prepared by '" + key + "'" +
                    suggestion(key, preparationKeys(), "; it takes " + listed(preparationKeys())));
  }
}

std::vector<Assignment> preparationTexts(const Preparation& preparation) {
  std::vector<Assignment> texts;
  addText(fits, preparation.fit, "fit", texts);
  if (preparation.blur == Preparation::Blur::pitch) texts.push_back({"blur", "pitch"});
  if (preparation.blur == Preparation::Blur::pixels) texts.push_back({"blur", shownNumber(preparation.blurPixels)});
  addText(tones, preparation.tone, "tone", texts);
  return texts;
}

LayerText layerText(const Assignment& assignment) {
  LayerText layer{assignment.name, assignment.text, {}};
  const std::size_t colon = assignment.text.rfind(':');
  std::error_code ignored;
  if (colon == std::string::npos || !beginsWithKey(assignment.text.substr(colon + 1)) ||
      std::filesystem::exists(assignment.text, ignored)) {
    return layer;
  }
  layer.picture.resize(colon);
  std::string rest = assignment.text.substr(colon + 1);
  try {
    while (true) {
      const std::size_t comma = std::min(rest.find(','), rest.size());
      const std::string part = rest.substr(0, comma);
      const std::size_t equals = part.find('=');
      if (equals == std::string::npos) throw UserError("'" + part + "' is no key with a value, as in blur=pitch");
      prepare(part.substr(0, equals), part.substr(equals + 1), layer.preparation);
      if (comma == rest.size()) break;
      rest.erase(0, comma + 1);
    }
  } catch (const UserError& error) {
    throw UserError("'" + assignment.name + "': " + error.what());
  }
  return layer;
}

}  // namespace cli
