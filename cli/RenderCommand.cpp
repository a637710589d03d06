#include "cli/Commands.h"
#include "cli/FrameDrawer.h"
#include "cli/ImageFile.h"
#include "cli/ProgressBar.h"
#include "cli/Shot.h"

namespace cli {
namespace {

void renderStill(const Arguments& arguments, const Surroundings& surroundings) {
  const standin::Image original = readPicture(arguments.input, arguments.mostMemory);
  checkWritable(arguments.output, arguments.depth.value_or(original.depth()));
  FrameDrawer drawer(arguments);
  for (const std::string& line : drawer.warnings()) surroundings.err << "vindrel: warning: " << line << '\n';
  const standin::Image picture =
      arguments.depth.value_or(original.depth()) == original.depth() ? original : original.converted(*arguments.depth);
  standin::Image drawn;
  {
    ProgressBar bar(surroundings.err, surroundings.errIsTerminal, "Drawing");
    drawn = drawer.draw(picture, arguments.input, arguments.frame + arguments.start,
                        [&bar](int32_t done, int32_t total) { bar.show(done, total); });
  }
  drawer.write(arguments.output, drawn);
}

}  // namespace

int render(const Arguments& arguments, const Surroundings& surroundings) {
  if (isShot(arguments)) return renderShot(arguments, surroundings);
  renderStill(arguments, surroundings);
  return exitDone;
}

}  // namespace cli
