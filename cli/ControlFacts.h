/// What the command line knows of one control: the host's record of it in plain words and numbers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace cli {

enum class ControlKind {
  wholeNumber,
  number,
  angle,
  checkBox,
  color,
  place,
  choice,
  layer,
  groupStart,
  groupEnd,
  other  ///< a kind that can't be set from here: buttons, paths, an effect's own data
};

/// An opaque colour, 0 to 255 each.
struct Color {
  uint8_t red = 0;
  uint8_t green = 0;
  uint8_t blue = 0;
  friend bool operator==(const Color&, const Color&) = default;
};

/// One control as the module declared it.
struct ControlFacts {
  int32_t index = 0;  ///< place in the host's list; 0 is the layer itself and is no control
  int32_t id = 0;     ///< by which projects know it
  std::string name;   ///< unique among controls that hold a value; empty for the end of a group
  ControlKind kind = ControlKind::number;
  double validMin = 0.0;  ///< least value; wholeNumber and number only
  double validMax = 0.0;  ///< greatest value, inclusive
  double sliderMin = 0.0;
  double sliderMax = 0.0;
  double defaultNumber = 0.0;  ///< number, wholeNumber; degrees; 0 or 1; item from 1; layer: -1 itself, 0 none
  Color defaultColor;
  double defaultXPercent = 0.0;    ///< percent of the layer's width
  double defaultYPercent = 0.0;    ///< percent of the layer's height
  int32_t precision = 0;           ///< decimals shown
  bool percent = false;            ///< shown with a percent sign
  std::vector<std::string> items;  ///< of a choice, separator lines included; the first one is number 1
  int32_t declaredItems = 0;       ///< how many items the module says there are, which may differ from items
  int32_t flags = 0;               ///< PF_ParamFlag_*
  int32_t uiFlags = 0;             ///< PF_PUI_*
};

/// The line between groups of items in a list; it has a number but can't be chosen.
bool isSeparator(const std::string& item);

/// "number", "choice" and so on: the word for a kind in tables and messages.
const char* kindName(ControlKind kind);

/// The control of this name: first in the very letters, then without regard to case. Ends of groups are never found.
/// @throws UserError naming the nearest control, when there is none
const ControlFacts& findControl(const std::vector<ControlFacts>& controls, const std::string& name);

}  // namespace cli
