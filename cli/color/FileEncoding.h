/// What the numbers of a file mean: those of an EXR are light in the scene, those of others are made for a display.
#pragma once

#include <filesystem>

#include "cli/Run.h"
#include "cli/pictures/PictureFacts.h"

namespace cli {

constexpr bool holdsLight(FileKind kind) {
  return kind == FileKind::exr;
}

/// Writes a line for a person when numbers go from one kind of file into the other as they are.
/// @throws UserError for an ending of the output that can't be written
void tellCrossing(const std::filesystem::path& input, FileKind inputKind, const std::filesystem::path& output,
                  const Surroundings& surroundings);

}  // namespace cli
