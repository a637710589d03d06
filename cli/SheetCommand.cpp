#include <algorithm>

#include "cli/Commands.h"
#include "cli/FrameDrawer.h"
#include "cli/ProgressBar.h"
#include "cli/Sheet.h"
#include "host/ShrinkPicture.h"

namespace cli {

void drawSheet(const Arguments& arguments, const Surroundings& surroundings) {
  const FramePictures pictures(arguments);
  const FilePicture original = pictures.read(arguments.input);
  checkWritable(arguments.output, standin::Depth::k8);
  const std::vector<std::vector<Assignment>> variants = variantsOf(arguments.varied);
  const int32_t factor = std::max(1, (original.image.width() + arguments.cellWidth - 1) / arguments.cellWidth);

  std::vector<standin::Image> drawn;
  std::vector<std::vector<std::string>> labels;
  {
    ProgressBar bar(surroundings.err, surroundings.terminal);
    for (const std::vector<Assignment>& variant : variants) {
      Arguments its = arguments;
      its.sets.insert(its.sets.end(), variant.begin(), variant.end());
      FrameDrawer drawer(its, pictures, original.image.height());
      const FilePicture picture = drawer.draw(original, arguments.input, arguments.frame + arguments.start);
      // Drawn at full size, as the picture will be, and made smaller afterwards.
      drawn.push_back(standin::shrunk(picture.image, factor).converted(standin::Depth::k8));
      std::vector<std::string>& lines = labels.emplace_back();
      for (const Assignment& value : variant) lines.push_back(value.name + ": " + value.text);
      bar.show(std::to_string(drawn.size()) + " of " + std::to_string(variants.size()) + " pictures",
               static_cast<double>(drawn.size()) / static_cast<double>(variants.size()));
    }
  }
  const std::size_t columns = columnsFor(variants, drawn.front().width(), drawn.front().height());
  WriteChoices choices = arguments.writeChoices;
  choices.alpha = false;
  writePicture(arguments.output, sheetOf(drawn, labels, columns), choices);
}

}  // namespace cli
