#include <filesystem>
#include <system_error>

#include "cli/ApartProcess.h"
#include "cli/Commands.h"
#include "cli/FrameDrawer.h"
#include "cli/FramePictures.h"
#include "cli/ImageFile.h"
#include "cli/ProgressBar.h"
#include "cli/Shot.h"
#include "cli/UserError.h"
#include "cli/color/FileEncoding.h"

namespace cli {
namespace {

void renderStill(const Arguments& arguments, const Surroundings& surroundings) {
  ProgressBar bar(surroundings.err, arguments.quiet ? Terminal() : surroundings.terminal);
  bar.show("Reading", 0.0);
  const FramePictures pictures(arguments);
  const FilePicture picture = pictures.read(arguments.input);
  checkWritable(arguments.output, pictures.fileDepth(arguments.output, picture));
  FrameDrawer drawer(arguments, pictures, picture.image.height());
  bar.clear();
  if (arguments.colorSpace.empty()) {
    tellCrossing(arguments.input, picture.facts->kind, arguments.output, surroundings);
  }
  for (const std::string& line : drawer.warnings()) surroundings.err << "vindrel: warning: " << line << '\n';
  giveSignOfLife();
  const FilePicture drawn =
      drawer.draw(picture, arguments.input, arguments.frame + arguments.start, [&bar](int32_t done, int32_t total) {
        bar.show("Drawing", total > 0 ? static_cast<double>(done) / total : 0.0);
        giveSignOfLife();
      });
  bar.show("Writing", 1.0);
  pictures.write(arguments.output, drawn);
}

/// The module that was built with this program, whatever path leads to it.
bool isOurs(const Arguments& arguments, const Surroundings& surroundings) {
  std::error_code ignored;
  return std::filesystem::equivalent(arguments.module, surroundings.programFolder / "Vindrel.so", ignored);
}

}  // namespace

int render(const Arguments& arguments, const Surroundings& surroundings) {
  const bool shot = isShot(arguments);
  if (arguments.checkOnly && !shot) throw UserError("--check takes numbered files, such as out.####.png");
  const auto work = [&](const Surroundings& where) {
    if (shot) return renderShot(arguments, where);
    renderStill(arguments, where);
    return exitDone;
  };
  if (isOurs(arguments, surroundings)) return work(surroundings);
  // Frames in workers have a foreman who tries each of them twice before he tells of it.
  const bool foreman = shot && arguments.jobs > 1;
  const double patience = foreman ? 2 * arguments.frameTimeout + 10 : arguments.frameTimeout;
  try {
    return runApart(surroundings, patience, work);
  } catch (const EffectError&) {
    // A process that crashed may have been writing.
    if (shot && !arguments.checkOnly) removeLeftoversOfShot(arguments);
    throw;
  }
}

}  // namespace cli
