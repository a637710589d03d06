#include "cli/FramePictures.h"

namespace cli {

ReadChoices FramePictures::choices() const {
  ReadChoices choices;
  choices.mostMemory = arguments_.mostMemory;
  // A preview shows the full image.
  const bool preview = arguments_.downsample != 1;
  choices.overscan = preview ? Overscan::cut : Overscan::keep;
  choices.others = preview || !isExr(arguments_.output) ? OtherChannels::leave : arguments_.otherChannels;
  return choices;
}

FilePicture FramePictures::read(const std::filesystem::path& file) const {
  FilePicture picture = readPictureAndFacts(file, choices());
  const standin::Depth depth = arguments_.depth.value_or(picture.image.depth());
  if (picture.image.depth() != depth) picture.image = picture.image.converted(depth);
  return picture;
}

void FramePictures::write(const std::filesystem::path& file, const FilePicture& picture) const {
  writePicture(file, picture.image, arguments_.writeChoices, picture.facts.get());
}

}  // namespace cli
