#include "cli/CommandTable.h"
#include "cli/ControlHelp.h"
#include "cli/ControlValue.h"

namespace cli {
namespace {

/// Text as roff shows it letter by letter: backslashes, dashes that can be copied, and no line that begins as a
/// request.
std::string escaped(const std::string& text) {
  std::string safe;
  for (const char letter : text) {
    if (letter == '\\') {
      safe += "\\e";
    } else if (letter == '-') {
      safe += "\\-";
    } else if (static_cast<unsigned char>(letter) == 0xC2) {
      continue;  // of the degree sign, the one letter beyond ASCII
    } else if (static_cast<unsigned char>(letter) == 0xB0) {
      safe += "\\(de";
    } else {
      safe += letter;
    }
  }
  return safe.starts_with('.') || safe.starts_with('\'') ? "\\&" + safe : safe;
}

/// The argument of a request.
std::string quoted(const std::string& text) {
  std::string safe = "\"";
  for (const char letter : escaped(text)) safe += letter == '"' ? std::string("\\(dq") : std::string(1, letter);
  return safe + "\"";
}

std::string entry(const std::string& title, const std::string& text) {
  return ".TP\n.B " + quoted(title) + "\n" + escaped(text) + "\n";
}

std::string commandText(const CommandFacts& command) {
  std::string title = "vindrel " + command.name;
  for (const OptionFacts& place : command.places) title += " " + (place.choices.empty() ? place.name : place.shown);
  std::string text = ".SS " + quoted(title + " [OPTIONS]") + "\n" + escaped(command.help) + ".\n";
  for (const OptionFacts& place : command.places) text += entry(place.name, place.help + ".");
  for (const OptionFacts& option : command.options) {
    text += entry(option.name + (option.shown.empty() ? "" : " " + option.shown), option.help + ".");
  }
  return text;
}

std::string controlText(const ControlFacts& control) {
  if (control.kind == ControlKind::groupEnd) return "";
  const std::optional<ControlHelp> help = helpOf(control.name);
  if (control.kind == ControlKind::groupStart) {
    return ".SS " + quoted(control.name) + "\n" + (help ? escaped(help->help) + "\n" : "");
  }
  const std::string start = shownDefault(control);
  std::string text =
      entry(control.name, "Takes " + expectation(control) + (start.empty() ? "" : "; " + start + " at first") + ".");
  if (help) text += ".br\n" + escaped(help->help) + "\n";
  return text;
}

}  // namespace

std::string manPage(const std::vector<ControlFacts>& controls) {
  std::string page = ".TH VINDREL 1 \"\" \"vindrel " VINDREL_VERSION
                     "\"\n"
                     ".SH NAME\nvindrel \\- draw halftone dots over pictures\n"
                     ".SH SYNOPSIS\n";
  const std::vector<CommandFacts> table = commandTable();
  for (const CommandFacts& command : table) {
    page += ".B vindrel " + command.name + "\n";
    for (const OptionFacts& place : command.places)
      page += ".I " + escaped(place.choices.empty() ? place.name : place.shown) + "\n";
    page += "[\\fIOPTIONS\\fR]\n.br\n";
  }
  page +=
      ".SH DESCRIPTION\nLoads the effect module as a host does, gives it a picture and values, and writes what it "
      "draws.\n"
      "Numbered files are rendered as a shot. The output appears whole or not at all.\n"
      ".SH COMMANDS\n";
  for (const CommandFacts& command : table) page += commandText(command);
  page += ".SH CONTROLS\nNames for \\fB\\-\\-set\\fR, and for \\fB\\-\\-layer\\fR where a picture is taken.\n";
  for (const ControlFacts& control : controls) page += controlText(control);
  page +=
      ".SH EXIT STATUS\n" + entry("0", "Done.") +
      entry("1", "The effect failed, or a frame of a shot; a line on the error stream tells which.") +
      entry("2", "What was asked can't be done.") + entry("128+n", "It was told to stop by signal n.") +
      ".SH ENVIRONMENT\n" + entry("NO_COLOR", "Takes the colour away from the progress on a terminal.") +
      entry("TERM", "With \"dumb\" the progress is plain lines.") +
      ".SH EXAMPLES\n.nf\nvindrel render in.png out.png \\-\\-set \"Dot Shape=Star\" \\-\\-set \"Dot Color=#ff7d14\"\n"
      "vindrel render 'in.####.exr' 'out.####.png' \\-\\-jobs 4 \\-\\-skip\\-existing\nvindrel controls \\-\\-describe "
      "\"Dot Size\"\n.fi\n";
  return page;
}

}  // namespace cli
