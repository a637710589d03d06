#include "frei0r/Parameters.h"

#include <frei0r.h>

#include <algorithm>
#include <cmath>

namespace video {
namespace {

using cli::ControlFacts;
using cli::ControlKind;

// An angle travels as a 16.16 number.
constexpr double mostDegrees = 32767.0;

std::optional<int32_t> kindFor(const ControlFacts& control) {
  switch (control.kind) {
    case ControlKind::number:
    case ControlKind::wholeNumber:
    case ControlKind::angle:
    case ControlKind::choice:
      return F0R_PARAM_DOUBLE;
    case ControlKind::checkBox:
      return F0R_PARAM_BOOL;
    case ControlKind::color:
      return F0R_PARAM_COLOR;
    case ControlKind::place:
      return F0R_PARAM_POSITION;
    case ControlKind::layer:
    case ControlKind::groupStart:
    case ControlKind::groupEnd:
    case ControlKind::other:
      break;
  }
  return std::nullopt;
}

/// The numbers of the items that can be chosen, counted from 1.
std::vector<int32_t> itemsOf(const ControlFacts& control) {
  std::vector<int32_t> numbers;
  for (std::size_t i = 0; i < control.items.size(); ++i) {
    if (!cli::isSeparator(control.items[i])) numbers.push_back(static_cast<int32_t>(i + 1));
  }
  return numbers;
}

double rounded(double number, double steps) {
  return std::round(number * steps) / steps;
}

std::string explanationFor(const ControlFacts& control) {
  switch (control.kind) {
    case ControlKind::number:
    case ControlKind::wholeNumber:
      return "0 to 1 is " + cli::shownNumber(control.sliderMin) + " to " + cli::shownNumber(control.sliderMax) +
             (control.percent ? " percent" : "");
    case ControlKind::angle:
      return "0 to 1 is -180 to 180 degrees";
    case ControlKind::choice: {
      std::string list;
      for (const int32_t item : itemsOf(control)) {
        list += (list.empty() ? "" : ", ") + cli::shownNumber(rounded(numberFor(control, item), 1000.0)) + " " +
                control.items[static_cast<std::size_t>(item - 1)];
      }
      return list;
    }
    default:
      return "";
  }
}

double sliderNumber(const ControlFacts& control, double number) {
  constexpr double millionths = 1e6;
  const double value = control.sliderMin + number * (control.sliderMax - control.sliderMin);
  const double steps = control.kind == ControlKind::wholeNumber ? 1.0 : millionths;
  return std::clamp(rounded(value, steps), control.validMin, control.validMax);
}

int32_t itemAt(const ControlFacts& control, double number) {
  const std::vector<int32_t> items = itemsOf(control);
  if (items.empty()) return static_cast<int32_t>(control.defaultNumber);
  const auto last = static_cast<double>(items.size() - 1);
  return items[static_cast<std::size_t>(std::round(std::clamp(number, 0.0, 1.0) * last))];
}

}  // namespace

std::vector<Parameter> parametersOf(const std::vector<ControlFacts>& controls) {
  std::vector<Parameter> parameters = {
      {F0R_PARAM_STRING, nullptr, presetName,
       "A preset's file; a parameter that stands at its default leaves the value to it"}};
  for (const ControlFacts& control : controls) {
    const std::optional<int32_t> kind = kindFor(control);
    if (kind) parameters.push_back({*kind, &control, control.name, explanationFor(control)});
  }
  return parameters;
}

cli::ControlValue valueFrom(const ControlFacts& control, double number) {
  if (std::isnan(number)) return defaultOf(control);
  switch (control.kind) {
    case ControlKind::checkBox:
      return number >= 0.5 ? 1 : 0;
    case ControlKind::choice:
      return itemAt(control, number);
    case ControlKind::angle:
      return std::clamp(rounded(number * 360.0 - 180.0, 1e6), -mostDegrees, mostDegrees);
    case ControlKind::wholeNumber:
      return static_cast<int32_t>(sliderNumber(control, number));
    default:
      return sliderNumber(control, number);
  }
}

cli::Place placeFrom(double x, double y) {
  // A place travels as a 16.16 number of pixels, which must hold it on the largest picture, too.
  constexpr double farthest = 109.0;
  const auto percent = [=](double share) {
    return std::isnan(share) ? 50.0 : std::clamp(rounded(share * 100.0, 1e6), -farthest, farthest);
  };
  return {percent(x), percent(y), true};
}

double numberFor(const ControlFacts& control, const cli::ControlValue& value) {
  const auto* const exact = std::get_if<double>(&value);
  const double number = exact != nullptr ? *exact : std::get<int32_t>(value);
  switch (control.kind) {
    case ControlKind::checkBox:
      return number;
    case ControlKind::choice: {
      const std::vector<int32_t> items = itemsOf(control);
      const auto place = std::find(items.begin(), items.end(), static_cast<int32_t>(number)) - items.begin();
      return items.size() < 2 ? 0.0 : static_cast<double>(place) / static_cast<double>(items.size() - 1);
    }
    case ControlKind::angle:
      return (number + 180.0) / 360.0;
    default:
      return control.sliderMax > control.sliderMin
                 ? (number - control.sliderMin) / (control.sliderMax - control.sliderMin)
                 : 0.0;
  }
}

cli::ControlValue defaultOf(const ControlFacts& control) {
  switch (control.kind) {
    case ControlKind::color:
      return control.defaultColor;
    case ControlKind::place:
      return cli::Place{control.defaultXPercent, control.defaultYPercent, true};
    case ControlKind::number:
    case ControlKind::angle:
      return control.defaultNumber;
    default:
      return static_cast<int32_t>(control.defaultNumber);
  }
}

}  // namespace video
