#include "cli/Commands.h"
#include "cli/FrameDrawer.h"
#include "cli/FramePictures.h"
#include "cli/ImageFile.h"
#include "cli/ProgressBar.h"
#include "cli/Shot.h"
#include "cli/UserError.h"

namespace cli {
namespace {

void renderStill(const Arguments& arguments, const Surroundings& surroundings) {
  const FramePictures pictures(arguments);
  const FilePicture picture = pictures.read(arguments.input);
  checkWritable(arguments.output, picture.image.depth());
  FrameDrawer drawer(arguments, pictures);
  for (const std::string& line : drawer.warnings()) surroundings.err << "vindrel: warning: " << line << '\n';
  FilePicture drawn;
  {
    ProgressBar bar(surroundings.err, surroundings.errIsTerminal, "Drawing");
    drawn = drawer.draw(picture, arguments.input, arguments.frame + arguments.start,
                        [&bar](int32_t done, int32_t total) { bar.show(done, total); });
  }
  pictures.write(arguments.output, drawn);
}

}  // namespace

int render(const Arguments& arguments, const Surroundings& surroundings) {
  if (isShot(arguments)) return renderShot(arguments, surroundings);
  if (arguments.checkOnly) throw UserError("--check takes numbered files, such as out.####.png");
  renderStill(arguments, surroundings);
  return exitDone;
}

}  // namespace cli
