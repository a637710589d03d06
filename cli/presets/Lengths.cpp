#include "cli/presets/Lengths.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>

#include "cli/ControlValue.h"
#include "cli/UserError.h"

namespace cli {
namespace {

// The host declares no units, so the names tell; '#' stands for the number of an effector. A module without them has no
// lengths.
constexpr std::array<std::string_view, 6> lengths = {"Dot Size", "Dot Distance X", "Dot Distance Y",
                                                     "Size #",   "ABS Size #",     "Offset Size #"};

bool fits(std::string_view pattern, std::string_view name) {
  if (!pattern.ends_with('#')) return pattern == name;
  pattern.remove_suffix(1);
  if (!name.starts_with(pattern)) return false;
  name.remove_prefix(pattern.size());
  return !name.empty() &&
         std::all_of(name.begin(), name.end(), [](char digit) { return digit >= '0' && digit <= '9'; });
}

const ControlFacts* controlNamed(const std::vector<ControlFacts>& controls, const std::string& name) {
  try {
    return &findControl(controls, name);
  } catch (const UserError&) {
    return nullptr;
  }
}

/// Nine digits are far finer than any pixel, and keep 0.1 * 3 from being written as 0.30000000000000004.
double tidied(double length) {
  if (length == 0.0 || !std::isfinite(length)) return length;
  const double step = std::pow(10.0, 8.0 - std::floor(std::log10(std::abs(length))));
  return std::round(length * step) / step;
}

double scaledLength(const ControlFacts& control, double length, double factor) {
  const double scaled = tidied(length * factor);
  if (scaled < control.validMin || scaled > control.validMax) {
    throw UserError("'" + control.name + "' would be " + shownNumber(scaled) + " at this picture's height, and takes " +
                    expectation(control) + "; --scale gives another factor than " + shownNumber(tidied(factor)));
  }
  return scaled;
}

std::string scaledText(const ControlFacts& control, const std::string& text, double factor) {
  if (!isLength(control) && control.kind != ControlKind::place) return text;
  ControlValue value;
  try {
    value = parseControlValue(control, text);
  } catch (const UserError&) {
    return text;
  }
  if (const auto* place = std::get_if<Place>(&value)) {
    if (place->percent) return text;
    return shownValue(control, Place{tidied(place->x * factor), tidied(place->y * factor), false});
  }
  return shownNumber(scaledLength(control, std::get<double>(value), factor));
}

void scaleTrack(const ControlFacts& control, double factor, TrackText& track) {
  for (KeyText& key : track.keys) {
    const std::string before = key.value;
    key.value = scaledText(control, before, factor);
    const bool inPercent = control.kind == ControlKind::place && key.value == before;
    if (!isLength(control) && (control.kind != ControlKind::place || inPercent)) continue;
    key.in.speed *= factor;
    key.out.speed *= factor;
  }
}

}  // namespace

bool isLength(const ControlFacts& control) {
  return control.kind == ControlKind::number &&
         std::any_of(lengths.begin(), lengths.end(),
                     [&](std::string_view pattern) { return fits(pattern, control.name); });
}

Preset scaledPreset(const Preset& preset, double factor, const std::vector<ControlFacts>& controls) {
  Preset scaled = preset;
  if (factor == 1.0) return scaled;
  for (Assignment& value : scaled.controls) {
    const ControlFacts* const control = controlNamed(controls, value.name);
    if (control != nullptr) value.text = scaledText(*control, value.text, factor);
  }
  for (LayerText& layer : scaled.layers) layer.preparation.blurPixels *= factor;
  for (TrackText& track : scaled.animation) {
    const ControlFacts* const control = controlNamed(controls, track.control);
    if (control != nullptr) scaleTrack(*control, factor, track);
  }
  return scaled;
}

void scaleLengths(const std::vector<ControlFacts>& controls, double factor, standin::ParameterValues& values) {
  for (const ControlFacts& control : controls) {
    if (!isLength(control)) continue;
    const double length = values.number(standin::ByIndex{control.index});
    values.setNumber(standin::ByIndex{control.index},
                     std::clamp(tidied(length * factor), control.validMin, control.validMax));
  }
}

}  // namespace cli
