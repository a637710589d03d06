#include "cli/color/FileEncoding.h"

#include "cli/ImageFile.h"
#include "cli/files/FileBytes.h"

namespace cli {

void tellCrossing(const std::filesystem::path& input, FileKind inputKind, const std::filesystem::path& output,
                  const Surroundings& surroundings) {
  const FileKind outputKind = writtenKind(output);
  if (holdsLight(inputKind) == holdsLight(outputKind)) return;
  const auto words = [](FileKind kind) { return holdsLight(kind) ? "scene-linear" : "display-encoded"; };
  surroundings.err << "vindrel: notice: the " << words(inputKind) << " numbers of " << quoted(input) << " go into the "
                   << words(outputKind) << " file " << quoted(output) << " as they are; --color-space converts them\n";
}

}  // namespace cli
