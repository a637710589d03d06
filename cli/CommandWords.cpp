#include "cli/CommandWords.h"

namespace cli {
namespace {

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
  app.add_option("--preset", words.presets,
                 "A look by its name ('vindrel presets' lists them) or from a file; may be repeated, each over the one "
                 "before, and --set and --layer over all")
      ->type_name("NAME|FILE.json")
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app.add_option("--scale", words.scale,
                 "Multiply the presets' lengths by this; 1 leaves them (default: by the picture's height)")
      ->type_name("F");
}

void addLayers(CLI::App& app, Words& words) {
  app.add_option(
         "--layer", words.layers,
         "A picture for a layer control; may be repeated. 'source' is the picture itself, 'none' is no picture; "
         "':blur=pitch,tone=area' behind it prepares it on the way")
      ->type_name("\"NAME=FILE\"")
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void addShot(CLI::App& app, Words& words) {
  app.add_option("--animate", words.animation, "Keys of controls over time from a file; they go over the preset's")
      ->type_name("FILE.json");
  app.add_option("--values", words.valueTable, "Values of controls a frame from a table; they go over the keys")
      ->type_name("FILE.csv");
  app.add_option("--frames", words.frames,
                 "Frames of numbered files, as in 1-200, 1-200x2 or 1,5,9-12 (default: all that IN finds)")
      ->type_name("LIST");
  app.add_option("--start", words.start, "The number of the file that stands at time 0 (default: 0)")->type_name("N");
  app.add_option("--jobs", words.jobs, "Processes that draw frames (default: 1)")->type_name("N");
  app.add_option("--frame-timeout", words.frameTimeout,
                 "With --jobs, or a module of another maker: seconds after which a frame's process is taken for hung "
                 "(default: 600)")
      ->type_name("SECONDS");
  app.add_option("--chunk", words.chunk, "Only the K-th of N parts of the frames")->type_name("K/N");
  app.add_flag("--skip-existing", words.skipExisting, "Leave out frames whose files stand there whole");
  app.add_flag("--check", words.checkOnly, "Draw nothing; name the frames whose files don't stand there whole");
  app.add_option("--log", words.log, "A line a frame on the output: text or json")->type_name("text|json");
}

void addFileForms(CLI::App& app, Words& words) {
  app.add_option("--png-level", words.pngLevel, "Compression of PNG files, 0 to 9 for the smallest (default: 1)")
      ->type_name("N");
  app.add_option("--exr-type", words.exrType,
                 "half or float samples in EXR files (default: as IN has them, else float)")
      ->type_name("half|float");
  app.add_option("--exr-compression", words.exrCompression,
                 "none, rle, zips, zip, piz, pxr24, b44, b44a, dwaa or dwab (default: that of IN, else zip)")
      ->type_name("NAME");
  app.add_option("--tiff-compression", words.tiffCompression, "none, zip, lzw or packbits (default: zip)")
      ->type_name("NAME");
  app.add_option("--jpeg-quality", words.jpegQuality, "1 to 100 for JPEG files (default: 90)")->type_name("N");
  app.add_option("--channels", words.channels, "rgba, or rgb to lay the picture over --matte (default: rgba)")
      ->type_name("rgba|rgb");
  app.add_option("--matte", words.matte, "The colour behind a picture without alpha, as #ff7d14 (default: #000000)")
      ->type_name("COLOUR");
  app.add_option("--color-space,--colour-space", words.colorSpace,
                 "The space that the effect works in: srgb, linear, or a name of the configuration in OCIO. EXR is "
                 "linear, other files are srgb (default: the numbers in the files, as they are)")
      ->type_name("NAME");
  app.add_option("--other-channels", words.otherChannels, "keep or drop further channels of an EXR (default: keep)")
      ->type_name("keep|drop");
}

/// A file that is told by its place in the line. A second one is refused, where a repeated option means the last.
void addFile(CLI::App& app, const std::string& name, std::string& file, const std::string& help) {
  app.add_option(name, file, help)->type_name("")->multi_option_policy(CLI::MultiOptionPolicy::Throw);
}

void addCheck(CLI::App& check, Words& words) {
  addFile(check, "MODULE", words.checkedModule, "The effect module (default: the one built with this program)");
  check.add_option("--only", words.only, "A promise by its name; may be repeated (default: all)")
      ->type_name("NAME")
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  check.add_option("--seed", words.seed, "Of random frames and values (default: 1)")->type_name("N");
  check.add_option("--jobs", words.jobs, "Processes at once (default: one for each processor)")->type_name("N");
  check.add_option("--time-factor", words.timeFactor, "Stretches all time limits (default: 1)")->type_name("F");
  check
      .add_option("--expected", words.expected,
                  "What the module is known to do, or none (default: MODULE's name with the ending .expected, where "
                  "there is such a file)")
      ->type_name("FILE");
  check.add_flag("--json", words.json, "The results as JSON");
  check.add_flag("--list", words.list, "List the promises");
  check.add_flag("--markdown", words.markdown, "With --list: as a page");
}

void addLimits(CLI::App& app, Words& words) {
  app.add_option("--limit-memory", words.limitMemory,
                 "Refuse pictures that take more: megabytes, or gigabytes as in 8G (default: 4500)")
      ->type_name("SIZE");
  app.add_flag("--allow-paths", words.allowPaths, "Let a preset name pictures outside its own folder");
}

void addSheet(CLI::App& app, Words& words) {
  CLI::App* sheet = app.add_subcommand("sheet", "Draw variants side by side, each with a label");
  addFile(*sheet, "IN", words.input, "The picture to read");
  addFile(*sheet, "OUT", words.output, "The picture to write, of 8 bits");
  sheet
      ->add_option("--vary", words.varied,
                   "A control and its values, as in \"Dot Size=4,8,12\"; may be repeated, for all combinations. Values "
                   "with commas are parted by semicolons")
      ->type_name("\"NAME=VALUES\"")
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  sheet->add_option("--width", words.cellWidth, "The most pixels that each picture is wide (default: 400)")
      ->type_name("N");
  addValues(*sheet, words);
  addLayers(*sheet, words);
  sheet->add_option("--frame", words.frame, "The frame to draw, from 0 (default: 0)")->type_name("N");
  addLimits(*sheet, words);
  addModule(*sheet, words);
}

}  // namespace

const std::vector<std::string>& commandNames() {
  static const std::vector<std::string> names = {"render", "sheet",   "screens", "presets",    "controls",
                                                 "about",  "options", "check",   "completion", "man"};
  return names;
}

void declareCommands(CLI::App& app, Words& words) {
  app.set_version_flag("--version", "vindrel " VINDREL_VERSION);
  app.require_subcommand(0, 1);
  app.allow_extras();
  // A later word takes back an earlier one, so that a script can put its own before what its caller gives.
  app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);

  CLI::App* render = app.add_subcommand("render", "Draw dots over a picture");
  addFile(*render, "IN", words.input, "The picture to read, or numbered ones: in.####.exr, in.%04d.exr");
  addFile(*render, "OUT", words.output, "The picture to write: .png, .tif, .tiff, .exr, .jpg or .jpeg");
  addValues(*render, words);
  addLayers(*render, words);
  render->footer(
      "Example:\n  vindrel render in.png out.png --set \"Dot Shape=Star\" --set \"Dot Color=#ff7d14\"\n"
      "'vindrel controls' lists all names and values.");
  render->add_option("--depth", words.depth, "Bits of a channel: 8, 16 or 32 for float (default: the input's own)")
      ->type_name("8|16|32");
  render->add_option("--frame", words.frame, "The frame to draw of a single picture, from 0 (default: 0)")
      ->type_name("N");
  addShot(*render, words);
  render->add_option("--fps", words.framesPerSecond, "Frames a second, also as in 24000/1001 (default: 24)")
      ->type_name("F");
  render->add_option("--downsample", words.downsample, "1, 2 or 4: draw at 1/1, 1/2 or 1/4 of the size (default: 1)")
      ->type_name("1|2|4");
  render->add_option("--road", words.road, "classic or smart (default: smart if the module can)")
      ->type_name("classic|smart");
  render->add_flag("--quiet", words.quiet, "Show no progress");
  addFileForms(*render, words);
  render->add_flag("--stamp", words.stamp,
                   "Put the time of day into OUT; without it, the same picture is the same file");
  render->add_flag("--stored-defaults", words.storedDefaults,
                   "Start from the values that 'vindrel options --save' stored (default: from the built-in ones)");
  addLimits(*render, words);
  addModule(*render, words);

  addSheet(app, words);
  CLI::App* screens = app.add_subcommand("screens", "Print a picture in several inks, each with its own screen");
  addFile(*screens, "IN", words.input, "The picture to read");
  addFile(*screens, "OUT", words.output, "The picture to write: .png, .tif, .tiff or .exr");
  screens->add_option("--recipe", words.recipe, "The inks, by the recipe's name (--list shows them) or from a file")
      ->type_name("NAME|FILE.json");
  screens->add_flag("--list", words.list, "List the recipes that can be named");
  screens->add_option("--scale", words.scale, "Multiply all lengths by this (default: by the picture's height)")
      ->type_name("F");
  screens->add_option("--depth", words.depth, "Bits of a channel: 8, 16 or 32 for float (default: the input's own)")
      ->type_name("BITS");
  screens->add_option("--png-level", words.pngLevel, "Compression of PNG files, 0 to 9 for the smallest (default: 1)")
      ->type_name("N");
  screens->add_flag("--stamp", words.stamp,
                    "Put the time of day into OUT; without it, the same picture is the same file");
  addLimits(*screens, words);
  addModule(*screens, words);

  CLI::App* presets = app.add_subcommand("presets", "List the looks that --preset knows by name, or save one");
  presets
      ->add_option("--save", words.saveName,
                   "Save the given presets, values and pictures as one: under a name, or as a file")
      ->type_name("NAME|FILE.json");
  presets->add_option("--about", words.aboutText, "A line on what it looks like")->type_name("TEXT");
  presets
      ->add_option("--height", words.height,
                   "The height of the pictures that the lengths are for (default: the presets' own)")
      ->type_name("PIXELS");
  presets->add_flag("--replace", words.replace, "Save over a preset that is there");
  addValues(*presets, words);
  addLayers(*presets, words);
  addLimits(*presets, words);
  addModule(*presets, words);

  CLI::App* controls = app.add_subcommand("controls", "List the module's controls");
  controls->add_flag("--json", words.json, "As JSON");
  controls->add_option("--describe", words.describe, "All about one control: what it does, its range and its choices")
      ->type_name("NAME");
  addValues(*controls, words);
  addLayers(*controls, words);
  addLimits(*controls, words);
  addModule(*controls, words);

  CLI::App* about = app.add_subcommand("about", "Show the module's own words on itself");
  addModule(*about, words);

  CLI::App* options = app.add_subcommand("options", "Answer the module's options dialog");
  options->add_flag("--save", words.save, "Save values as those of new instances: the given ones, and the rest as is");
  options->add_flag("--restore", words.restore, "Forget saved values");
  addValues(*options, words);
  addLimits(*options, words);
  addModule(*options, words);

  addCheck(*app.add_subcommand("check", "Try what every effect module promises, each promise in a process of its own"),
           words);

  CLI::App* completion = app.add_subcommand("completion", "Print a script that completes words in a shell");
  completion->add_option("SHELL", words.shell, "The shell")->type_name("bash|zsh");
  addModule(*completion, words);

  CLI::App* man = app.add_subcommand("man", "Print the manual page, in roff");
  addModule(*man, words);

  for (CLI::App* command : app.get_subcommands({})) {
    command->allow_extras();
    command->fallthrough(false);
  }
}

}  // namespace cli
