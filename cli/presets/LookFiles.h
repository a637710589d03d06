/// Finds presets and other files of looks by their names.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cli/Run.h"

namespace cli {

/// A kind of files that are found by name.
struct LookKind {
  const char* one;     ///< "preset", for messages
  const char* folder;  ///< "presets"
};
inline constexpr LookKind presetFiles{"preset", "presets"};
inline constexpr LookKind recipeFiles{"recipe", "recipes"};

/// Where files of a kind are looked for by name, the strongest first, whether they exist or not: the user's own folder,
/// the one beside the program, and share/vindrel beside the program's.
std::vector<std::filesystem::path> lookFolders(const Surroundings& surroundings, const LookKind& kind);

/// True for what can only be meant as a file's path: it has a '/' or ends in ".json".
bool isPathOfLook(const std::string& given);

/// The file that is meant: a path as it is, a name as NAME.json in the first folder that has it.
/// @throws UserError naming the nearest name
std::filesystem::path findLook(const std::string& given, const Surroundings& surroundings, const LookKind& kind);

/// The files of a kind that can be named, by name; of two with one name the stronger.
std::vector<std::filesystem::path> allLooks(const Surroundings& surroundings, const LookKind& kind);

}  // namespace cli
