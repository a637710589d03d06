/// The words after `vindrel`, sorted out but not yet checked against files or the module.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/FrameRate.h"
#include "cli/ImageFile.h"
#include "cli/Preset.h"
#include "host/Depth.h"

namespace cli {

enum class Command { render, sheet, screens, presets, controls, about, options, check, completion, man, showText };
enum class Road { asModuleSays, classic, smart };
enum class LogForm { none, text, json };
enum class OptionsAction { save, restore };

// There is one of it in a program, and its fields stand with what they belong to.
struct Arguments {  // NOLINT(clang-analyzer-optin.performance.Padding)
  Command command = Command::showText;
  std::string text;  ///< showText: help or version, ready to print

  std::filesystem::path module;                ///< empty: the one that was built with this program
  std::vector<std::filesystem::path> presets;  ///< files, or names until they are found; the first lies lowest
  std::optional<double> scale;                 ///< of the presets' lengths; none: by the picture's height
  std::string animation;                       ///< a file of keys; empty: none
  std::string valueTable;                      ///< a file of values by frame; empty: none
  std::vector<Assignment> sets;
  std::vector<LayerText> layers;
  std::vector<Assignment> varied;  ///< of `sheet`: a control and all its values
  int32_t cellWidth = 400;         ///< of `sheet`: the most pixels that a picture is wide

  std::filesystem::path input;
  std::filesystem::path output;
  std::optional<standin::Depth> depth;  ///< none: the input's own
  int32_t frame = 0;                    ///< from 0
  FrameRate frameRate;
  std::vector<int32_t> frames;  ///< of a shot, ascending; empty: those that the input's pattern finds
  int32_t start = 0;            ///< the number of the file that stands at time 0
  int32_t jobs = 1;             ///< processes that draw
  double frameTimeout = 600.0;  ///< seconds after which a process that draws a frame is taken for hung
  int32_t chunk = 1;            ///< this part of
  int32_t chunks = 1;           ///< so many
  bool skipExisting = false;
  bool checkOnly = false;  ///< nothing is drawn; frames that don't stand whole are told
  bool quiet = false;      ///< no progress is shown
  LogForm log = LogForm::none;
  int32_t downsample = 1;         ///< 1, 2 or 4
  std::optional<int32_t> height;  ///< of the pictures that the preset to save is for
  Road road = Road::asModuleSays;

  WriteChoices writeChoices;
  std::string colorSpace;                             ///< that the effect works in; empty: whatever the files hold
  std::filesystem::path programFolder;                ///< with the program's parts
  OtherChannels otherChannels = OtherChannels::keep;  ///< of an EXR in an EXR
  bool storedDefaults = false;
  PathsOfPreset pathsOfPreset = PathsOfPreset::besideIt;
  uint64_t mostMemory = usualMemoryLimit;  ///< bytes

  bool json = false;
  std::optional<std::string> describe;  ///< of `controls`: the control to tell about
  std::string shell;                    ///< of `completion`
  OptionsAction optionsAction = OptionsAction::save;
  std::vector<std::string> checkWords;  ///< of `check`, as its own reader takes them; the module stands in module
  std::string recipe;                   ///< of `screens`: a name or a file; empty: list them
  std::string saveName;                 ///< of `presets`: a name or a file; empty: list them
  std::string about;                    ///< of the preset to save
  bool replace = false;                 ///< an existing preset may be saved over
};

/// Reads the words, the program's own name not among them.
/// @throws UserError for an unknown command or option (naming the nearest), a missing or wrong value
Arguments parseArguments(const std::vector<std::string>& words);

}  // namespace cli
