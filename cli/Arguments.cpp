#include "cli/Arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>

#include "cli/NearestName.h"
#include "cli/UserError.h"

namespace cli {
namespace {

// Texts of the options; what they mean is checked here, so that every message has the same form.
struct Words {
  std::string input;
  std::string output;
  std::vector<std::string> sets;
  std::vector<std::string> layers;
  std::string preset;
  std::string module;
  std::string depth;
  std::string frame;
  std::string framesPerSecond;
  std::string downsample;
  std::string road;
  std::string describe;
  bool json = false;
  bool save = false;
  bool restore = false;
};

const std::vector<std::string> commandNames = {"render", "controls", "about", "options"};

void addModule(CLI::App& app, Words& words) {
  app.add_option("--module", words.module, "The effect module (default: the one built with this program)")
      ->type_name("FILE");
}

void addValues(CLI::App& app, Words& words) {
  app.add_option("--set", words.sets,
                 "A control's value; may be repeated. Angles in degrees, colours as #ff7d14, items of lists by name or "
                 "number, places as 50%,50% or 300,200, check boxes on or off")
      ->type_name("\"NAME=VALUE\"")
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app.add_option("--preset", words.preset, "Values of controls from a file; --set and --layer go over it")
      ->type_name("FILE.json");
}

void addLayers(CLI::App& app, Words& words) {
  app.add_option("--layer", words.layers,
                 "A picture for a layer control; may be repeated. 'source' is the picture itself, 'none' is no picture")
      ->type_name("\"NAME=FILE\"")
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void describe(CLI::App& app, Words& words) {
  app.set_version_flag("--version", "vindrel " VINDREL_VERSION);
  app.require_subcommand(0, 1);
  app.allow_extras();

  CLI::App* render = app.add_subcommand("render", "Draw dots over a picture");
  render->add_option("IN", words.input, "The picture to read")->type_name("");
  render->add_option("OUT", words.output, "The picture to write: .png, .tif, .tiff or .exr")->type_name("");
  addValues(*render, words);
  addLayers(*render, words);
  render->footer(
      "Example:\n  vindrel render in.png out.png --set \"Dot Shape=Star\" --set \"Dot Color=#ff7d14\"\n"
      "'vindrel controls' lists all names and values.");
  render->add_option("--depth", words.depth, "Bits of a channel: 8, 16 or 32 for float (default: the input's own)")
      ->type_name("BITS");
  render->add_option("--frame", words.frame, "The frame to draw, from 0 (default: 0)")->type_name("N");
  render->add_option("--fps", words.framesPerSecond, "Frames a second (default: 24)")->type_name("F");
  render->add_option("--downsample", words.downsample, "1, 2 or 4: draw at 1/1, 1/2 or 1/4 of the size (default: 1)")
      ->type_name("N");
  render->add_option("--road", words.road, "classic or smart (default: smart if the module can)")->type_name("ROAD");
  addModule(*render, words);

  CLI::App* controls = app.add_subcommand("controls", "List the module's controls");
  controls->add_flag("--json", words.json, "As JSON");
  controls->add_option("--describe", words.describe, "All about one control: what it does, its range and its choices")
      ->type_name("NAME");
  addValues(*controls, words);
  addLayers(*controls, words);
  addModule(*controls, words);

  CLI::App* about = app.add_subcommand("about", "Show the module's own words on itself");
  addModule(*about, words);

  CLI::App* options = app.add_subcommand("options", "Answer the module's options dialog");
  options->add_flag("--save", words.save, "Save values as those of new instances: the given ones, and the rest as is");
  options->add_flag("--restore", words.restore, "Forget saved values");
  addValues(*options, words);
  addModule(*options, words);

  for (CLI::App* command : app.get_subcommands({})) {
    command->allow_extras();
    command->fallthrough(false);
  }
}

std::vector<std::string> optionNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back(name);
  }
  return names;
}

/// @param commandName  with a blank behind it, or empty for the words before any command
[[noreturn]] void refuseWord(const std::string& word, const CLI::App& app, const std::string& commandName) {
  if (word.starts_with("-")) {
    const std::string name = word.substr(0, word.find('='));
    // Compared without their dashes, which all options share.
    const std::string nearest =
        nearestName(name.substr(std::min(name.find_first_not_of('-'), name.size())), optionNames(app));
    throw UserError(
        "no option '" + name + "'" +
        (nearest.empty() ? "; 'vindrel " + commandName + "--help' lists them" : "; did you mean '--" + nearest + "'?"));
  }
  throw UserError("'" + word + "' is one word too many" +
                  (app.get_name() == "render" ? "; render takes one picture to read and one to write" : ""));
}

double numberFrom(const std::string& text, const std::string& complaint) {
  double number = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) {
    throw UserError(complaint + ", not '" + text + "'");
  }
  return number;
}

int32_t wholeFrom(const std::string& text, double least, double most, const std::string& complaint) {
  const double number = numberFrom(text, complaint);
  if (number != std::floor(number) || number < least || number > most) {
    throw UserError(complaint + ", not '" + text + "'");
  }
  return static_cast<int32_t>(number);
}

Road roadFrom(const std::string& text) {
  if (equalIgnoringCase(text, "classic")) return Road::classic;
  if (equalIgnoringCase(text, "smart")) return Road::smart;
  throw UserError("--road takes classic or smart, not '" + text + "'" + suggestion(text, {"classic", "smart"}));
}

standin::Depth depthFrom(const std::string& text) {
  if (text == "8") return standin::Depth::k8;
  if (text == "16") return standin::Depth::k16;
  if (text == "32") return standin::Depth::k32;
  throw UserError("--depth takes 8, 16 or 32, not '" + text + "'");
}

void takeRender(const CLI::App& command, const Words& words, Arguments& arguments) {
  if (words.input.empty()) {
    throw UserError("render needs a picture to read and one to write: vindrel render IN OUT");
  }
  if (words.output.empty()) {
    throw UserError("render needs a picture to write: vindrel render " + words.input + " OUT");
  }
  arguments.input = words.input;
  arguments.output = words.output;
  if (command.count("--depth") > 0) arguments.depth = depthFrom(words.depth);
  if (command.count("--downsample") > 0) {
    const std::string complaint = "--downsample takes 1, 2 or 4";
    arguments.downsample = wholeFrom(words.downsample, 1, 4, complaint);
    if (arguments.downsample == 3) throw UserError(complaint + ", not '3'");
  }
  if (command.count("--frame") > 0) {
    arguments.frame = wholeFrom(words.frame, 0, 1000000, "--frame takes a whole number from 0 to 1000000");
  }
  if (command.count("--fps") > 0) {
    const std::string complaint = "--fps takes a number from 1 to 999";
    arguments.framesPerSecond = numberFrom(words.framesPerSecond, complaint);
    if (arguments.framesPerSecond < 1.0 || arguments.framesPerSecond > 999.0) {
      throw UserError(complaint + ", not '" + words.framesPerSecond + "'");
    }
  }
  if (command.count("--road") > 0) arguments.road = roadFrom(words.road);
}

void takeOptions(const Words& words, Arguments& arguments) {
  if (words.save == words.restore) throw UserError("options takes either --save or --restore");
  if (words.restore && (!words.sets.empty() || !words.preset.empty())) {
    throw UserError("options --restore takes no values; they go with --save");
  }
  arguments.optionsAction = words.save ? OptionsAction::save : OptionsAction::restore;
}

Command commandNamed(const std::string& name) {
  if (name == "render") return Command::render;
  if (name == "controls") return Command::controls;
  if (name == "about") return Command::about;
  return Command::options;
}

/// CLI11's own complaints are left for values that are missing after an option.
std::string complaintOf(const CLI::ParseError& error) {
  std::string text = error.what();
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

}  // namespace

Arguments parseArguments(const std::vector<std::string>& words) {
  CLI::App app("Draws halftone dots over pictures with an effect module.", "vindrel");
  Words given;
  describe(app, given);

  Arguments arguments;
  try {
    // CLI11 takes the words from the back.
    app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
  } catch (const CLI::CallForHelp&) {
    arguments.text = app.help();
    return arguments;
  } catch (const CLI::CallForVersion&) {
    arguments.text = std::string(app.version()) + "\n";
    return arguments;
  } catch (const CLI::ParseError& error) {
    throw UserError(complaintOf(error));
  }

  const std::vector<CLI::App*> commands = app.get_subcommands();
  const std::vector<std::string> extras = app.remaining();
  if (commands.empty()) {
    if (extras.empty()) {
      throw UserError("no command; it must be " + listed(commandNames) + " ('vindrel --help' tells more)");
    }
    if (extras[0].starts_with("-")) refuseWord(extras[0], app, "");
    throw UserError("no command '" + extras[0] + "'" +
                    suggestion(extras[0], commandNames, "; it must be " + listed(commandNames)));
  }
  const CLI::App& command = *commands[0];
  if (!extras.empty()) refuseWord(extras[0], app, "");
  // Words that an unknown option drew along come after it.
  if (const auto left = command.remaining(); !left.empty()) refuseWord(left[0], command, command.get_name() + " ");

  arguments.command = commandNamed(command.get_name());
  arguments.module = given.module;
  if (command.get_option_no_throw("--module") != nullptr && command.count("--module") > 0 && given.module.empty()) {
    throw UserError("--module takes a file");
  }
  if (command.get_option_no_throw("--preset") != nullptr && command.count("--preset") > 0) {
    arguments.preset = given.preset;
  }
  for (const std::string& text : given.sets) arguments.sets.push_back(splitAssignment(text, "--set"));
  for (const std::string& text : given.layers) arguments.layers.push_back(splitAssignment(text, "--layer"));
  arguments.json = given.json;
  if (command.get_option_no_throw("--describe") != nullptr && command.count("--describe") > 0) {
    if (given.json) throw UserError("--describe takes no --json, which tells about all controls");
    arguments.describe = given.describe;
  }
  if (arguments.command == Command::render) takeRender(command, given, arguments);
  if (arguments.command == Command::options) takeOptions(given, arguments);
  return arguments;
}

}  // namespace cli
