/// The words that each command takes, as texts: what they mean is Arguments' work.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

namespace cli {

/// Texts of the options, so that every complaint about them has the same form.
struct Words {
  std::string input;
  std::string output;
  std::vector<std::string> sets;
  std::vector<std::string> layers;
  std::vector<std::string> presets;
  std::string scale;
  std::vector<std::string> varied;
  std::string cellWidth;
  std::string module;
  std::string depth;
  std::string frame;
  std::string framesPerSecond;
  std::string downsample;
  std::string road;
  std::string describe;
  std::string limitMemory;
  std::string frames;
  std::string start;
  std::string jobs;
  std::string frameTimeout;
  std::string chunk;
  std::string animation;
  std::string valueTable;
  std::string pngLevel;
  std::string exrType;
  std::string exrCompression;
  std::string tiffCompression;
  std::string jpegQuality;
  std::string channels;
  std::string matte;
  std::string otherChannels;
  std::string colorSpace;
  std::string log;
  std::string checkedModule;
  std::vector<std::string> only;
  std::string seed;
  std::string timeFactor;
  std::string expected;
  bool list = false;
  bool markdown = false;
  std::string saveName;
  std::string recipe;
  std::string aboutText;
  std::string height;
  bool replace = false;
  std::string shell;
  bool skipExisting = false;
  bool checkOnly = false;
  bool quiet = false;
  bool stamp = false;
  bool storedDefaults = false;
  bool allowPaths = false;
  bool json = false;
  bool save = false;
  bool restore = false;
};

/// In the order of the help.
const std::vector<std::string>& commandNames();

/// Declares the commands with their options; parsing fills the words, which must outlive the app.
void declareCommands(CLI::App& app, Words& words);

}  // namespace cli
