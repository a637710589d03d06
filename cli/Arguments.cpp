#include "cli/Arguments.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "cli/CommandWords.h"
#include "cli/ControlValue.h"
#include "cli/FramePattern.h"
#include "cli/NearestName.h"
#include "cli/UserError.h"

namespace cli {
namespace {

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

/// @param text  what was given, for the complaint; `digits` is what of it must be the number
double numberFrom(const std::string& text, const std::string& digits, const std::string& complaint) {
  double number = 0.0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc() || end != digits.data() + digits.size() || !std::isfinite(number)) {
    throw UserError(complaint + ", not '" + text + "'");
  }
  return number;
}

double numberFrom(const std::string& text, const std::string& complaint) {
  return numberFrom(text, text, complaint);
}

int32_t wholeFrom(const std::string& text, double least, double most, const std::string& complaint) {
  const double number = numberFrom(text, complaint);
  if (number != std::floor(number) || number < least || number > most) {
    throw UserError(complaint + ", not '" + text + "'");
  }
  return static_cast<int32_t>(number);
}

/// "500" and "500M" are megabytes, "8G" is gigabytes; both of 1000s.
uint64_t memoryFrom(const std::string& text) {
  const std::string complaint = "--limit-memory takes megabytes, or gigabytes as in 8G, from 1M to 1000G";
  const char unit = text.empty() ? '0' : text.back();
  const bool giga = unit == 'G' || unit == 'g';
  const bool hasUnit = giga || unit == 'M' || unit == 'm';
  const double number = numberFrom(text, hasUnit ? text.substr(0, text.size() - 1) : text, complaint);
  const double bytes = number * (giga ? 1e9 : 1e6);
  if (bytes < 1e6 || bytes > 1e12) throw UserError(complaint + ", not '" + text + "'");
  return static_cast<uint64_t>(bytes);
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

LogForm logFormFrom(const std::string& text) {
  if (text == "text") return LogForm::text;
  if (text == "json") return LogForm::json;
  throw UserError("--log takes text or json, not '" + text + "'");
}

void takeShot(const CLI::App& command, const Words& words, Arguments& arguments) {
  if (command.count("--frames") > 0) arguments.frames = frameList(words.frames);
  if (command.count("--start") > 0) {
    arguments.start = wholeFrom(words.start, 0, lastFrameNumber, "--start takes a whole number from 0 to 1000000");
  }
  if (command.count("--jobs") > 0) {
    arguments.jobs = wholeFrom(words.jobs, 1, 256, "--jobs takes a whole number from 1 to 256");
  }
  if (command.count("--frame-timeout") > 0) {
    const std::string complaint = "--frame-timeout takes seconds, more than 0";
    arguments.frameTimeout = numberFrom(words.frameTimeout, complaint);
    if (arguments.frameTimeout <= 0.0) throw UserError(complaint + ", not '" + words.frameTimeout + "'");
  }
  if (command.count("--chunk") > 0) {
    const std::string complaint = "--chunk takes a part and their number, as in 2/8";
    const std::size_t slash = words.chunk.find('/');
    if (slash == std::string::npos) throw UserError(complaint + ", not '" + words.chunk + "'");
    arguments.chunks = wholeFrom(words.chunk.substr(slash + 1), 1, lastFrameNumber, complaint);
    arguments.chunk = wholeFrom(words.chunk.substr(0, slash), 1, arguments.chunks, complaint);
  }
  if (command.count("--log") > 0) arguments.log = logFormFrom(words.log);
  arguments.skipExisting = words.skipExisting;
  arguments.checkOnly = words.checkOnly;
  arguments.quiet = words.quiet;
  arguments.animation = words.animation;
  arguments.valueTable = words.valueTable;
}

/// One of several words, in any case.
std::string oneOf(const std::string& option, const std::string& text, const std::vector<std::string>& choices) {
  for (const std::string& choice : choices) {
    if (equalIgnoringCase(choice, text)) return choice;
  }
  throw UserError(option + " takes " + listed(choices) + ", not '" + text + "'" + suggestion(text, choices));
}

std::array<uint8_t, 3> matteFrom(const std::string& text) {
  const auto color = readColor(text);
  if (!color) throw UserError("--matte takes a colour such as #ff7d14, not '" + text + "'");
  return {color->red, color->green, color->blue};
}

void takeFileForms(const CLI::App& command, const Words& words, Arguments& arguments) {
  WriteChoices& choices = arguments.writeChoices;
  if (command.count("--png-level") > 0) {
    choices.pngLevel = wholeFrom(words.pngLevel, 0, 9, "--png-level takes a whole number from 0 to 9");
  }
  if (command.count("--exr-type") > 0) {
    const bool half = oneOf("--exr-type", words.exrType, {"half", "float"}) == "half";
    choices.exrType = half ? ExrType::half : ExrType::float32;
  }
  if (command.count("--exr-compression") > 0) {
    choices.exrCompression = oneOf("--exr-compression", words.exrCompression, exrCompressions());
  }
  if (command.count("--tiff-compression") > 0) {
    choices.tiffCompression = oneOf("--tiff-compression", words.tiffCompression, tiffCompressions());
  }
  if (command.count("--jpeg-quality") > 0) {
    choices.jpegQuality = wholeFrom(words.jpegQuality, 1, 100, "--jpeg-quality takes a whole number from 1 to 100");
  }
  if (command.count("--channels") > 0) {
    choices.alpha = oneOf("--channels", words.channels, {"rgb", "rgba"}) == "rgba";
  }
  if (command.count("--matte") > 0) choices.matte = matteFrom(words.matte);
  if (command.count("--color-space") > 0) {
    if (words.colorSpace.empty()) throw UserError("--color-space takes srgb, linear or a name of the configuration");
    arguments.colorSpace = words.colorSpace;
  }
  if (command.count("--other-channels") > 0) {
    const bool keeps = oneOf("--other-channels", words.otherChannels, {"keep", "drop"}) == "keep";
    arguments.otherChannels = keeps ? OtherChannels::keep : OtherChannels::leave;
  }
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
  takeShot(command, words, arguments);
  if (command.count("--fps") > 0) arguments.frameRate = frameRateFrom(words.framesPerSecond);
  takeFileForms(command, words, arguments);
  if (command.count("--road") > 0) arguments.road = roadFrom(words.road);
}

void takeSheet(const CLI::App& command, const Words& words, Arguments& arguments) {
  if (words.output.empty()) {
    throw UserError("sheet needs a picture to read and one to write: vindrel sheet IN OUT.png --vary \"Dot Size=4,8\"");
  }
  arguments.input = words.input;
  arguments.output = words.output;
  for (const std::string& text : words.varied) arguments.varied.push_back(splitAssignment(text, "--vary"));
  if (arguments.varied.empty()) {
    throw UserError("sheet needs a control and its values: --vary \"Dot Size=4,8,12\"");
  }
  if (command.count("--width") > 0) {
    arguments.cellWidth = wholeFrom(words.cellWidth, 16, 4096, "--width takes a whole number from 16 to 4096");
  }
  if (command.count("--frame") > 0) {
    arguments.frame = wholeFrom(words.frame, 0, 1000000, "--frame takes a whole number from 0 to 1000000");
  }
}

void takeOptions(const Words& words, Arguments& arguments) {
  if (words.save == words.restore) throw UserError("options takes either --save or --restore");
  if (words.restore && (!words.sets.empty() || !words.presets.empty())) {
    throw UserError("options --restore takes no values; they go with --save");
  }
  arguments.optionsAction = words.save ? OptionsAction::save : OptionsAction::restore;
}

void takeCheck(const CLI::App& command, const Words& words, Arguments& arguments) {
  arguments.module = words.checkedModule;
  std::vector<std::string>& taken = arguments.checkWords;
  for (const std::string& name : words.only) taken.insert(taken.end(), {"--only", name});
  const auto value = [&](const char* option, const std::string& text) {
    if (command.count(option) > 0) taken.insert(taken.end(), {option, text});
  };
  value("--seed", words.seed);
  value("--jobs", words.jobs);
  value("--time-factor", words.timeFactor);
  value("--expected", words.expected);
  const auto flag = [&taken](const char* option, bool given) {
    if (given) taken.emplace_back(option);
  };
  flag("--json", words.json);
  flag("--list", words.list);
  flag("--markdown", words.markdown);
}

double scaleFrom(const Words& words) {
  const std::string complaint = "--scale takes a number above 0, up to 1000";
  const double scale = numberFrom(words.scale, complaint);
  if (scale <= 0.0 || scale > 1000.0) throw UserError(complaint + ", not '" + words.scale + "'");
  if (words.presets.empty() && words.recipe.empty())
    throw UserError("--scale goes with --preset; values by --set are taken as they are");
  return scale;
}

void takeScreens(const CLI::App& command, const Words& words, Arguments& arguments) {
  if (words.list) {
    if (!words.input.empty() || command.count("--recipe") > 0) throw UserError("--list takes nothing else");
    return;
  }
  if (words.input.empty() || words.output.empty()) {
    throw UserError("screens needs a picture to read and one to write: vindrel screens IN OUT --recipe NAME");
  }
  if (words.recipe.empty()) throw UserError("screens needs a recipe; 'vindrel screens --list' shows those by name");
  arguments.input = words.input;
  arguments.output = words.output;
  arguments.recipe = words.recipe;
  if (command.count("--depth") > 0) arguments.depth = depthFrom(words.depth);
  if (command.count("--png-level") > 0) {
    arguments.writeChoices.pngLevel = wholeFrom(words.pngLevel, 0, 9, "--png-level takes a whole number from 0 to 9");
  }
}

void takePresets(const CLI::App& command, const Words& words, Arguments& arguments) {
  const bool saves = command.count("--save") > 0;
  if (saves && words.saveName.empty()) throw UserError("--save takes a name or a file that ends in .json");
  const bool hasMore = command.count("--about") + command.count("--height") + command.count("--replace") > 0 ||
                       !words.sets.empty() || !words.presets.empty() || !words.layers.empty();
  if (!saves && hasMore) throw UserError("presets takes values only with --save NAME");
  arguments.saveName = words.saveName;
  arguments.about = words.aboutText;
  arguments.replace = words.replace;
  if (command.count("--height") > 0) {
    arguments.height = wholeFrom(words.height, 1, 30000, "--height takes pixels, a whole number from 1 to 30000");
  }
}

Command commandNamed(const std::string& name) {
  if (name == "render") return Command::render;
  if (name == "sheet") return Command::sheet;
  if (name == "controls") return Command::controls;
  if (name == "about") return Command::about;
  if (name == "check") return Command::check;
  if (name == "presets") return Command::presets;
  if (name == "screens") return Command::screens;
  if (name == "completion") return Command::completion;
  if (name == "man") return Command::man;
  return Command::options;
}

/// CLI11's own complaints are left for values that are missing after an option.
std::string complaintOf(const CLI::ParseError& error) {
  std::string text = error.what();
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

[[noreturn]] void refuseCommand(const std::string& name) {
  throw UserError("no command '" + name + "'" +
                  suggestion(name, commandNames(), "; it must be " + listed(commandNames())));
}

/// `vindrel help` and `vindrel help render` say the same as --help.
std::vector<std::string> withHelpAsOption(const std::vector<std::string>& words) {
  if (words.empty() || words[0] != "help") return words;
  const std::vector<std::string>& names = commandNames();
  if (words.size() > 1 && std::find(names.begin(), names.end(), words[1]) == names.end()) refuseCommand(words[1]);
  std::vector<std::string> asOption(words.begin() + 1, words.end());
  asOption.emplace_back("--help");
  return asOption;
}

/// The words that no option and no place took, without the mark that ends the options.
std::vector<std::string> leftOver(const CLI::App& command) {
  std::vector<std::string> left = command.remaining();
  std::erase(left, "--");
  return left;
}

}  // namespace

Arguments parseArguments(const std::vector<std::string>& wordsOfCaller) {
  const std::vector<std::string> words = withHelpAsOption(wordsOfCaller);
  CLI::App app("Draws halftone dots over pictures with an effect module.", "vindrel");
  Words given;
  declareCommands(app, given);

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
  const std::vector<std::string> extras = leftOver(app);
  if (commands.empty()) {
    if (extras.empty()) {
      throw UserError("no command; it must be " + listed(commandNames()) + " ('vindrel --help' tells more)");
    }
    if (extras[0].starts_with("-")) refuseWord(extras[0], app, "");
    refuseCommand(extras[0]);
  }
  const CLI::App& command = *commands[0];
  if (!extras.empty()) refuseWord(extras[0], app, "");
  // Words that an unknown option drew along come after it.
  if (const auto left = leftOver(command); !left.empty()) refuseWord(left[0], command, command.get_name() + " ");

  arguments.command = commandNamed(command.get_name());
  arguments.module = given.module;
  if (command.get_option_no_throw("--module") != nullptr && command.count("--module") > 0 && given.module.empty()) {
    throw UserError("--module takes a file");
  }
  for (const std::string& preset : given.presets) arguments.presets.emplace_back(preset);
  if (!given.scale.empty()) arguments.scale = scaleFrom(given);
  for (const std::string& text : given.sets) arguments.sets.push_back(splitAssignment(text, "--set"));
  for (const std::string& text : given.layers) {
    arguments.layers.push_back(layerText(splitAssignment(text, "--layer")));
  }
  arguments.json = given.json;
  arguments.writeChoices.stamp = given.stamp;
  arguments.storedDefaults = given.storedDefaults;
  if (given.allowPaths) arguments.pathsOfPreset = PathsOfPreset::anywhere;
  if (!given.limitMemory.empty()) arguments.mostMemory = memoryFrom(given.limitMemory);
  if (command.get_option_no_throw("--describe") != nullptr && command.count("--describe") > 0) {
    if (given.json) throw UserError("--describe takes no --json, which tells about all controls");
    arguments.describe = given.describe;
  }
  if (arguments.command == Command::render) takeRender(command, given, arguments);
  if (arguments.command == Command::sheet) takeSheet(command, given, arguments);
  if (arguments.command == Command::completion) {
    if (given.shell.empty()) throw UserError("completion takes a shell: bash or zsh");
    arguments.shell = given.shell;
  }
  if (arguments.command == Command::options) takeOptions(given, arguments);
  if (arguments.command == Command::check) takeCheck(command, given, arguments);
  if (arguments.command == Command::screens) takeScreens(command, given, arguments);
  if (arguments.command == Command::presets) takePresets(command, given, arguments);
  return arguments;
}

}  // namespace cli
