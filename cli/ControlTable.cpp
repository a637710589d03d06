#include "cli/ControlTable.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "ae/Constants.h"
#include "cli/ControlHelp.h"
#include "cli/ControlValue.h"
#include "cli/HostControls.h"

namespace cli {
namespace {

using Json = nlohmann::ordered_json;

std::vector<std::string> flagNames(const ControlFacts& control) {
  struct NamedFlag {
    PF_ParamFlags bit;
    const char* name;
  };
  constexpr NamedFlag namedFlags[] = {
      {PF_ParamFlag_CANNOT_TIME_VARY, "cannot vary"},
      {PF_ParamFlag_CANNOT_INTERP, "stepped"},
      {PF_ParamFlag_START_COLLAPSED, "collapsed"},
      {PF_ParamFlag_SUPERVISE, "supervised"},
      {PF_ParamFlag_USE_VALUE_FOR_OLD_PROJECTS, "value for old projects"},
      {PF_ParamFlag_EXCLUDE_FROM_HAVE_INPUTS_CHANGED, "no input"},
      {PF_ParamFlag_SKIP_REVEAL_WHEN_UNHIDDEN, "no reveal"},
  };
  std::vector<std::string> names;
  for (const NamedFlag& flag : namedFlags) {
    if ((control.flags & flag.bit) != 0) names.emplace_back(flag.name);
  }
  return names;
}

bool isSlider(const ControlFacts& control) {
  return control.kind == ControlKind::number || control.kind == ControlKind::wholeNumber;
}

bool hasValue(const ControlFacts& control) {
  return control.kind != ControlKind::groupStart && control.kind != ControlKind::groupEnd &&
         control.kind != ControlKind::other;
}

bool greyed(const ControlFacts& control) {
  return (control.uiFlags & PF_PUI_DISABLED) != 0;
}

std::string joined(const std::vector<std::string>& names, const char* between) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : between) + name;
  return text;
}

std::string range(double from, double to) {
  return shownNumber(from) + " to " + shownNumber(to);
}

// The degree sign takes two bytes and one column; continuing bytes of UTF-8 don't count.
std::size_t columnsOf(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

using Row = std::vector<std::string>;

Row rowOf(const ControlFacts& control, const standin::ParameterValues* values) {
  Row row = {std::to_string(control.index), std::to_string(control.id), control.name, kindName(control.kind),
             isSlider(control) ? range(control.validMin, control.validMax) : ""};
  if (values == nullptr) row.push_back(isSlider(control) ? range(control.sliderMin, control.sliderMax) : "");
  row.push_back(shownDefault(control));
  if (values != nullptr) {
    row.push_back(hasValue(control) ? shownSetting(control, *values) : "");
    row.emplace_back(greyed(control) ? "greyed" : "");
  }
  return row;
}

/// The items that can be chosen, without the lines between them.
std::vector<std::string> choicesOf(const ControlFacts& control) {
  std::vector<std::string> choices;
  std::copy_if(control.items.begin(), control.items.end(), std::back_inserter(choices),
               [](const std::string& item) { return !isSeparator(item); });
  return choices;
}

constexpr std::size_t mostColumns = 100;

/// The words of the text in lines of at most mostColumns, each behind the margin.
void writeWrapped(std::ostream& out, const std::string& text, const std::string& margin) {
  std::istringstream words(text);
  std::string line;
  for (std::string word; words >> word;) {
    if (!line.empty() && columnsOf(margin) + columnsOf(line) + 1 + columnsOf(word) > mostColumns) {
      out << margin << line << '\n';
      line.clear();
    }
    line += (line.empty() ? "" : " ") + word;
  }
  if (!line.empty()) out << margin << line << '\n';
}

Json defaultOf(const ControlFacts& control) {
  switch (control.kind) {
    case ControlKind::number:
    case ControlKind::angle:
      return control.defaultNumber;
    case ControlKind::wholeNumber:
    case ControlKind::choice:
      return static_cast<int32_t>(control.defaultNumber);
    case ControlKind::checkBox:
      return control.defaultNumber != 0.0;
    default:
      return shownDefault(control);
  }
}

}  // namespace

void writeControlTable(std::ostream& out, const std::vector<ControlFacts>& controls,
                       const standin::ParameterValues* values) {
  Row heading = {"Index", "Id", "Name", "Kind", "Valid"};
  if (values == nullptr) heading.emplace_back("Slider");
  heading.emplace_back("Default");
  if (values != nullptr) heading.insert(heading.end(), {"Value", "State"});
  std::vector<Row> rows = {heading};
  for (const ControlFacts& control : controls) rows.push_back(rowOf(control, values));

  std::vector<std::size_t> widths(heading.size());
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], columnsOf(row[i]));
  }
  for (std::size_t r = 0; r < rows.size(); ++r) {
    const Row& row = rows[r];
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string gap(widths[i] - columnsOf(row[i]), ' ');
      const bool isNumber = i < 2;
      line += (i > 0 ? "  " : "") + (isNumber ? gap + row[i] : row[i] + gap);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
    const std::string underTheName(widths[0] + widths[1] + 4, ' ');
    if (r > 0) writeWrapped(out, joined(choicesOf(controls[r - 1]), " | "), underTheName + "  ");
  }
}

void describeControl(std::ostream& out, const ControlFacts& control) {
  out << control.name << " (" << kindName(control.kind) << ", index " << control.index << ", id " << control.id
      << ")\n";
  const std::string margin = "  ";
  if (const auto help = helpOf(control.name)) {
    writeWrapped(out, help->help, margin);
    writeWrapped(out, help->more, margin);
  }
  if (isSlider(control)) {
    writeWrapped(out,
                 "Valid: " + range(control.validMin, control.validMax) +
                     "; slider: " + range(control.sliderMin, control.sliderMax),
                 margin);
  }
  if (hasValue(control)) writeWrapped(out, "Default: " + shownDefault(control), margin);
  if (control.kind == ControlKind::choice) writeWrapped(out, "Choices: " + joined(choicesOf(control), " | "), margin);
  if (const auto names = flagNames(control); !names.empty()) writeWrapped(out, "Flags: " + joined(names, ", "), margin);
}

void writeControlJson(std::ostream& out, const std::vector<ControlFacts>& controls,
                      const standin::ParameterValues* values) {
  Json all = Json::array();
  for (const ControlFacts& control : controls) {
    Json entry;
    entry["index"] = control.index;
    entry["id"] = control.id;
    entry["name"] = control.name;
    entry["kind"] = kindName(control.kind);
    if (isSlider(control)) {
      entry["valid"] = {control.validMin, control.validMax};
      entry["slider"] = {control.sliderMin, control.sliderMax};
    }
    if (hasValue(control)) entry["default"] = defaultOf(control);
    if (control.kind == ControlKind::number) {
      entry["precision"] = control.precision;
      entry["percent"] = control.percent;
    }
    if (control.kind == ControlKind::choice) {
      entry["choices"] = control.items;
      entry["choiceCount"] = control.declaredItems;
    }
    entry["flags"] = control.flags;
    entry["flagNames"] = flagNames(control);
    entry["uiFlags"] = control.uiFlags;
    if (values != nullptr) {
      if (hasValue(control)) entry["value"] = shownSetting(control, *values);
      entry["greyed"] = greyed(control);
    }
    all.push_back(std::move(entry));
  }
  // Names come from the module and needn't be UTF-8; what isn't is replaced rather than refused.
  out << all.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace cli
