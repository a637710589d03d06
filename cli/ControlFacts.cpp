#include "cli/ControlFacts.h"

#include "cli/NearestName.h"
#include "cli/UserError.h"

namespace cli {

bool isSeparator(const std::string& item) {
  return item == "(-";
}

const char* kindName(ControlKind kind) {
  switch (kind) {
    case ControlKind::wholeNumber:
      return "whole number";
    case ControlKind::number:
      return "number";
    case ControlKind::angle:
      return "angle";
    case ControlKind::checkBox:
      return "check box";
    case ControlKind::color:
      return "colour";
    case ControlKind::place:
      return "place";
    case ControlKind::choice:
      return "choice";
    case ControlKind::layer:
      return "layer";
    case ControlKind::groupStart:
      return "group";
    case ControlKind::groupEnd:
      return "end of group";
    case ControlKind::other:
      break;
  }
  return "other";
}

const ControlFacts& findControl(const std::vector<ControlFacts>& controls, const std::string& name) {
  const ControlFacts* almost = nullptr;
  std::vector<std::string> names;
  for (const ControlFacts& control : controls) {
    if (control.kind == ControlKind::groupEnd) continue;
    if (control.name == name) return control;
    if (almost == nullptr && equalIgnoringCase(control.name, name)) almost = &control;
    if (control.kind != ControlKind::groupStart && control.kind != ControlKind::other) names.push_back(control.name);
  }
  if (almost != nullptr) return *almost;
  throw UserError("no control '" + name + "'" + suggestion(name, names, "; 'vindrel controls' lists them all"));
}

}  // namespace cli
