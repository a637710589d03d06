#include "host/program/HostProgram.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <sstream>
#include <stdexcept>

#include "check/CheckCommand.h"
#include "check/ChildProcess.h"
#include "host/LoadedModule.h"
#include "host/StandInHost.h"
#include "host/program/RawFrame.h"

namespace standin {

namespace {

constexpr const char* kHelp =
    "vindrel-host load MODULE                   loads a module, sets it up and down, and tells what it says of itself\n"
    "vindrel-host list MODULE                   lists its controls: index, kind, name\n"
    "vindrel-host render MODULE IN OUT [WORDS]  renders the raw frame IN to OUT\n"
    "  --road classic|smart                     which way the frame goes; smart where the module offers it\n"
    "  --time FRAME                             the frame's number, 0 without\n"
    "  --set NAME=VALUE                         a control, by its name or by # and its index: a number, the number of\n"
    "                                           an item, 0 or 1, degrees, #rrggbb, or X,Y in pixels\n"
    "vindrel-host check MODULE [WORDS]          tries what every module promises, each promise in a process of its "
    "own\n"
    "vindrel-host check --list [--markdown]     lists the promises, as text or as a page\n"
    "  --only NAME                              one promise; may be repeated\n"
    "  --seed N                                 of random frames and values, 1 without\n"
    "  --json                                   the results for programs\n"
    "  --expected FILE                          what the module is known to do; without it MODULE's own name with\n"
    "                                           the ending .expected, where there is such a file; none for none\n"
    "  --jobs N, --time-factor F                processes at once; stretches the time limits\n";

/// What the user got wrong, as opposed to what went wrong.
struct WrongWords : std::runtime_error {
  using std::runtime_error::runtime_error;
};

double numberIn(const std::string& text) {
  std::istringstream words(text);
  words.imbue(std::locale::classic());
  double number = 0;
  if (!(words >> number) || !(words >> std::ws).eof() || !std::isfinite(number)) {
    throw WrongWords("\"" + text + "\" is no number");
  }
  return number;
}

int32_t wholeNumberIn(const std::string& text) {
  const double number = numberIn(text);
  if (number != std::floor(number) || std::fabs(number) > std::numeric_limits<int32_t>::max()) {
    throw WrongWords("\"" + text + "\" is no whole number");
  }
  return static_cast<int32_t>(number);
}

PF_Pixel colorIn(const std::string& text) {
  unsigned red = 0;
  unsigned green = 0;
  unsigned blue = 0;
  if (text.size() != 7 || text.find_first_not_of("0123456789abcdefABCDEF", 1) != std::string::npos ||
      std::sscanf(text.c_str(), "#%2x%2x%2x", &red, &green, &blue) != 3) {
    throw WrongWords("\"" + text + "\" is no colour of the form #rrggbb");
  }
  return {255, static_cast<A_u_char>(red), static_cast<A_u_char>(green), static_cast<A_u_char>(blue)};
}

void setControl(StandInHost& host, ParameterValues& values, const std::string& word) {
  const size_t sign = word.find('=');
  if (sign == std::string::npos) throw WrongWords("--set takes NAME=VALUE, not \"" + word + "\"");
  const std::string name = word.substr(0, sign);
  const std::string text = word.substr(sign + 1);
  const ControlKey key = name.starts_with('#') ? ControlKey(ByIndex{wholeNumberIn(name.substr(1))}) : ControlKey(name);
  const Control* control = host.control(key);
  if (control == nullptr) throw WrongWords("the module has no control " + key.text());
  const ControlKey index = ByIndex{control->index};
  switch (control->type) {
    case PF_Param_POPUP:
      return values.setPopup(index, wholeNumberIn(text));
    case PF_Param_CHECKBOX:
      return values.setCheckbox(index, wholeNumberIn(text) != 0);
    case PF_Param_ANGLE:
      return values.setAngle(index, numberIn(text));
    case PF_Param_COLOR:
      return values.setColor(index, colorIn(text));
    case PF_Param_POINT: {
      const size_t comma = text.find(',');
      if (comma == std::string::npos) throw WrongWords("\"" + text + "\" is no place X,Y");
      return values.setPoint(index, numberIn(text.substr(0, comma)), numberIn(text.substr(comma + 1)));
    }
    case PF_Param_ARBITRARY_DATA:
      if (!host.setArbitraryText(index, text)) throw WrongWords("the module does not take \"" + text + "\"");
      return;
    case PF_Param_SLIDER:
      return values.setNumber(index, wholeNumberIn(text));
    case PF_Param_FIX_SLIDER:
    case PF_Param_FLOAT_SLIDER:
      return values.setNumber(index, numberIn(text));
    default:
      throw WrongWords("the control " + key.text() + " is of the kind " + kindName(control->type) +
                       ", which takes no value here");
  }
}

void mustBeFine(PF_Err error, const char* what) {
  if (error != PF_Err_NONE) throw std::runtime_error(std::string(what) + " ended with " + std::to_string(error));
}

// What the books hold against the module, one line each.
void tellBooks(StandInHost& host, std::ostream& err) {
  for (const std::string& line : host.books().report()) err << "books: " << line << '\n';
}

void load(const std::string& path, std::ostream& out, std::ostream& err) {
  const LoadedModule module(path);
  StandInHost host(module);
  mustBeFine(host.start(), "the set-up");
  if (module.pipl() && !module.pipl()->name.empty()) out << "name: " << module.pipl()->name << '\n';
  out << "entry: " << module.entryName() << '\n'
      << "version: " << host.effectVersion() << '\n'
      << "out flags: " << host.outFlags() << '\n'
      << "out flags 2: " << host.outFlags2() << '\n'
      << "controls: " << host.controls().size() << '\n'
      << "roads: " << (host.smartRoadOffered() ? "classic, smart" : "classic") << '\n';
  mustBeFine(host.finish(), "the set-down");
  tellBooks(host, err);
}

void list(const std::string& path, std::ostream& out) {
  const LoadedModule module(path);
  StandInHost host(module);
  mustBeFine(host.start(), "the set-up");
  for (const Control& control : host.controls()) {
    out << control.index << '\t' << kindName(control.type) << '\t' << control.name;
    for (size_t i = 0; i < control.choices.size(); ++i) out << (i == 0 ? "\t" : "|") << control.choices[i];
    out << '\n';
  }
  mustBeFine(host.finish(), "the set-down");
}

void render(const std::vector<std::string>& words, std::ostream& err) {
  const LoadedModule module(words[1]);
  FrameRequest frame;
  frame.input = readRawFrame(words[2]);
  StandInHost host(module);
  mustBeFine(host.start(), "the set-up");
  ParameterValues values = host.defaults();
  bool smart = host.smartRoadOffered();
  for (size_t i = 4; i < words.size(); i += 2) {
    if (i + 1 == words.size()) throw WrongWords(words[i] + " wants a word behind it");
    const std::string& word = words[i + 1];
    if (words[i] == "--road" && (word == "classic" || word == "smart")) {
      smart = word == "smart";
    } else if (words[i] == "--time") {
      frame.currentTime = wholeNumberIn(word);
    } else if (words[i] == "--set") {
      setControl(host, values, word);
    } else {
      throw WrongWords("render does not know \"" + words[i] + " " + word + "\"");
    }
  }
  if (smart && !host.smartRoadOffered()) throw WrongWords("the module does not offer the smart road");
  const RenderResult result = smart ? host.renderSmart(frame, values) : host.renderClassic(frame, values);
  mustBeFine(result.error, "the frame");
  if (!result.rendered) throw std::runtime_error("the module drew nothing");
  mustBeFine(host.finish(), "the set-down");
  tellBooks(host, err);
  writeRawFrame(words[3], result.output);
}

}  // namespace

int runHostProgram(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
  const std::string command = arguments.empty() ? "help" : arguments[0];
  try {
    if (command == "help" || command == "--help") {
      out << kHelp;
    } else if (command == "load" && arguments.size() == 2) {
      load(arguments[1], out, err);
    } else if (command == "list" && arguments.size() == 2) {
      list(arguments[1], out);
    } else if (command == "render" && arguments.size() >= 4) {
      render(arguments, err);
    } else if (command == "check") {
      const check::CheckWords words = check::readCheckWords({arguments.begin() + 1, arguments.end()});
      return check::runCheck(words, check::ownProgram(), "vindrel-host check", out);
    } else {
      throw WrongWords("no such command, or not its words; \"vindrel-host help\" tells them");
    }
  } catch (const WrongWords& wrong) {
    err << "vindrel-host: " << wrong.what() << '\n';
    return 2;
  } catch (const check::BadInput& wrong) {
    err << "vindrel-host: " << wrong.what() << '\n';
    return 2;
  } catch (const std::exception& failure) {
    err << "vindrel-host: " << failure.what() << '\n';
    return 1;
  }
  return 0;
}

}  // namespace standin
