#include "cli/ControlValue.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>

#include "ae/Constants.h"
#include "cli/NearestName.h"
#include "cli/UserError.h"

namespace cli {
namespace {

// Angles and places travel as 16.16 numbers; nothing at or beyond this fits.
constexpr double fixedLimit = 32768.0;
constexpr double percentLimit = 100.0 * fixedLimit / PF_MAX_WORLD_WIDTH;

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool dropEnding(std::string_view& text, std::string_view ending) {
  if (!text.ends_with(ending)) return false;
  text = trimmed(text.substr(0, text.size() - ending.size()));
  return true;
}

/// A finite decimal number that takes up the whole text.
std::optional<double> readNumber(std::string_view text) {
  text = trimmed(text);
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  double number = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) return std::nullopt;
  return number;
}

std::optional<int32_t> readHexDigit(char letter) {
  if (letter >= '0' && letter <= '9') return letter - '0';
  if (letter >= 'a' && letter <= 'f') return letter - 'a' + 10;
  if (letter >= 'A' && letter <= 'F') return letter - 'A' + 10;
  return std::nullopt;
}

std::optional<Place> readPlace(std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) return std::nullopt;
  std::string_view left = trimmed(text.substr(0, comma));
  std::string_view right = trimmed(text.substr(comma + 1));
  const bool percentLeft = dropEnding(left, "%");
  const bool percentRight = dropEnding(right, "%");
  const auto x = readNumber(left);
  const auto y = readNumber(right);
  if (!x || !y || percentLeft != percentRight) return std::nullopt;
  // A percentage is held to what the largest layer turns into a place that can still be told.
  const double limit = percentLeft ? percentLimit : fixedLimit;
  if (std::abs(*x) >= limit || std::abs(*y) >= limit) return std::nullopt;
  return Place{*x, *y, percentLeft};
}

std::optional<int32_t> readSwitch(std::string_view text) {
  text = trimmed(text);
  for (const char* yes : {"on", "true", "yes", "1"}) {
    if (equalIgnoringCase(text, yes)) return 1;
  }
  for (const char* no : {"off", "false", "no", "0"}) {
    if (equalIgnoringCase(text, no)) return 0;
  }
  return std::nullopt;
}

std::vector<std::string> choosableItems(const ControlFacts& control) {
  std::vector<std::string> items;
  for (const std::string& item : control.items) {
    if (!isSeparator(item)) items.push_back(item);
  }
  return items;
}

int32_t readChoice(const ControlFacts& control, std::string_view text) {
  text = trimmed(text);
  for (std::size_t i = 0; i < control.items.size(); ++i) {
    if (!isSeparator(control.items[i]) && equalIgnoringCase(control.items[i], text)) return static_cast<int32_t>(i + 1);
  }
  const std::vector<std::string> items = choosableItems(control);
  const std::string list = "; it has " + listed(items);
  const std::string shown(text);
  if (const auto number = readNumber(text)) {
    if (*number != std::floor(*number) || *number < 1.0 || *number > static_cast<double>(control.items.size())) {
      throw UserError("'" + control.name + "' has no item number " + shown + list);
    }
    const auto place = static_cast<std::size_t>(*number);
    if (isSeparator(control.items[place - 1])) {
      throw UserError("item " + shown + " of '" + control.name + "' is a separator line" + list);
    }
    return static_cast<int32_t>(place);
  }
  throw UserError("'" + control.name + "' has no item '" + shown + "'" + suggestion(text, items, list));
}

[[noreturn]] void refuse(const ControlFacts& control, const std::string& text) {
  throw UserError("'" + control.name + "' takes " + expectation(control) + ", not '" + text + "'");
}

double readInRange(const ControlFacts& control, std::string_view digits, const std::string& text) {
  const auto number = readNumber(digits);
  if (!number || *number < control.validMin || *number > control.validMax) refuse(control, text);
  return *number;
}

}  // namespace

std::optional<Color> readColor(std::string_view text) {
  text = trimmed(text);
  if (!text.starts_with('#') || (text.size() != 7 && text.size() != 4)) return std::nullopt;
  const bool isShort = text.size() == 4;
  uint8_t channels[3] = {};
  for (std::size_t i = 0; i < 3; ++i) {
    const auto high = readHexDigit(text[isShort ? 1 + i : 1 + 2 * i]);
    const auto low = readHexDigit(text[isShort ? 1 + i : 2 + 2 * i]);
    if (!high || !low) return std::nullopt;
    channels[i] = static_cast<uint8_t>(*high * 16 + *low);
  }
  return Color{channels[0], channels[1], channels[2]};
}

ControlValue parseControlValue(const ControlFacts& control, const std::string& text) {
  std::string_view rest = trimmed(text);
  switch (control.kind) {
    case ControlKind::number: {
      if (control.percent) dropEnding(rest, "%");
      return readInRange(control, rest, text);
    }
    case ControlKind::wholeNumber: {
      const double number = readInRange(control, rest, text);
      if (number != std::floor(number)) refuse(control, text);
      return static_cast<int32_t>(number);
    }
    case ControlKind::angle: {
      if (!dropEnding(rest, "°")) dropEnding(rest, "deg");
      const auto degrees = readNumber(rest);
      if (!degrees || std::abs(*degrees) >= fixedLimit) refuse(control, text);
      return *degrees;
    }
    case ControlKind::checkBox: {
      const auto on = readSwitch(text);
      if (!on) refuse(control, text);
      return *on;
    }
    case ControlKind::color: {
      const auto color = readColor(text);
      if (!color) refuse(control, text);
      return *color;
    }
    case ControlKind::place: {
      const auto place = readPlace(text);
      if (!place) refuse(control, text);
      return *place;
    }
    case ControlKind::choice:
      return readChoice(control, text);
    case ControlKind::layer:
      throw UserError("'" + control.name + "' is a layer; give it a picture by --layer \"" + control.name + "=FILE\"");
    case ControlKind::groupStart:
    case ControlKind::groupEnd:
    case ControlKind::other:
      break;
  }
  throw UserError("'" + control.name + "' is a " + (control.kind == ControlKind::other ? "control" : "group") +
                  " that takes no value");
}

std::string expectation(const ControlFacts& control) {
  const std::string range = " from " + shownNumber(control.validMin) + " to " + shownNumber(control.validMax);
  switch (control.kind) {
    case ControlKind::wholeNumber:
      return "a whole number" + range;
    case ControlKind::number:
      return (control.percent ? "percent" : "a number") + range;
    case ControlKind::angle:
      return "an angle in degrees, between -32768 and 32768";
    case ControlKind::checkBox:
      return "on or off";
    case ControlKind::color:
      return "a colour such as #ff7d14";
    case ControlKind::place:
      return "a place such as 50%,50% or 300,200";
    case ControlKind::choice:
      return "one of " + listed(choosableItems(control));
    case ControlKind::layer:
      return "a picture";
    case ControlKind::groupStart:
    case ControlKind::groupEnd:
    case ControlKind::other:
      break;
  }
  return "no value";
}

std::string shownNumber(double number) {
  char digits[400];  // the longest fixed form of a double has 309 digits before the point
  const auto [end, error] =
      std::to_chars(digits, digits + sizeof digits, number == 0.0 ? 0.0 : number, std::chars_format::fixed);
  return error == std::errc() ? std::string(digits, end) : std::string("?");
}

std::string shownValue(const ControlFacts& control, const ControlValue& value) {
  if (const auto* number = std::get_if<double>(&value)) {
    const char* unit = control.kind == ControlKind::angle ? "°" : control.percent ? "%" : "";
    return shownNumber(*number) + unit;
  }
  if (const auto* color = std::get_if<Color>(&value)) {
    constexpr char hex[] = "0123456789abcdef";
    std::string text = "#";
    for (const uint8_t channel : {color->red, color->green, color->blue}) {
      text += hex[channel >> 4];
      text += hex[channel & 15];
    }
    return text;
  }
  if (const auto* place = std::get_if<Place>(&value)) {
    const char* unit = place->percent ? "%" : "";
    return shownNumber(place->x) + unit + ", " + shownNumber(place->y) + unit;
  }
  const int32_t whole = std::get<int32_t>(value);
  if (control.kind == ControlKind::checkBox) return whole != 0 ? "on" : "off";
  if (control.kind == ControlKind::choice && whole >= 1 && whole <= static_cast<int32_t>(control.items.size())) {
    return control.items[static_cast<std::size_t>(whole - 1)];
  }
  return std::to_string(whole);
}

std::string shownDefault(const ControlFacts& control) {
  switch (control.kind) {
    case ControlKind::number:
    case ControlKind::angle:
      return shownValue(control, control.defaultNumber);
    case ControlKind::wholeNumber:
    case ControlKind::checkBox:
    case ControlKind::choice:
      return shownValue(control, static_cast<int32_t>(control.defaultNumber));
    case ControlKind::color:
      return shownValue(control, control.defaultColor);
    case ControlKind::place:
      return shownValue(control, Place{control.defaultXPercent, control.defaultYPercent, true});
    case ControlKind::layer:
      return control.defaultNumber < 0.0 ? "source" : "none";
    case ControlKind::groupStart:
    case ControlKind::groupEnd:
    case ControlKind::other:
      break;
  }
  return {};
}

}  // namespace cli
