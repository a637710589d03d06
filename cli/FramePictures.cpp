#include "cli/FramePictures.h"

#include <algorithm>

namespace cli {

namespace fs = std::filesystem;
using standin::Depth;
using standin::Image;

FramePictures::FramePictures(const Arguments& arguments) : arguments_(arguments) {
  if (arguments.colorSpace.empty()) return;
  const std::array<std::string, 2> files = {displaySpace, sceneSpace};
  for (std::size_t i = 0; i < files.size(); ++i) {
    toWork_[i] = colorConversion(files[i], arguments.colorSpace, arguments.programFolder);
    fromWork_[i] = colorConversion(arguments.colorSpace, files[i], arguments.programFolder);
  }
}

ReadChoices FramePictures::choices() const {
  ReadChoices choices;
  choices.mostMemory = arguments_.mostMemory;
  // A preview shows the full image.
  const bool preview = arguments_.downsample != 1;
  choices.overscan = preview ? Overscan::cut : Overscan::keep;
  const bool kept = !preview && writtenKind(arguments_.output) == FileKind::exr;
  choices.others = kept ? arguments_.otherChannels : OtherChannels::leave;
  return choices;
}

void FramePictures::convert(const ColorConversion* conversion, Image& image) const {
  if (conversion == nullptr) return;
  if (image.depth() != Depth::k32) image = image.converted(Depth::k32);
  for (int32_t y = 0; y < image.height(); ++y) conversion->apply(image.row<PF_PixelFloat>(y), image.width());
}

FilePicture FramePictures::read(const fs::path& file) const {
  FilePicture picture = readPictureAndFacts(file, choices());
  convert(toWork(picture.facts->kind), picture.image);
  const Depth depth = arguments_.depth.value_or(picture.image.depth());
  if (picture.image.depth() != depth) picture.image = picture.image.converted(depth);
  return picture;
}

LayerReader FramePictures::layerReader() const {
  return [this](const fs::path& file) {
    const ReadChoices layer = {.mostMemory = arguments_.mostMemory, .others = OtherChannels::leave};
    FilePicture picture = readPictureAndFacts(file, layer);
    convert(toWork(picture.facts->kind), picture.image);
    return std::move(picture.image);
  };
}

Depth FramePictures::fileDepth(const fs::path& file, const FilePicture& picture) const {
  const FileKind kind = writtenKind(file);
  if (toWork(picture.facts->kind) == nullptr && fromWork(kind) == nullptr) return picture.image.depth();
  return std::min(arguments_.depth.value_or(picture.facts->depth), mostDepthOf(file));
}

void FramePictures::write(const fs::path& file, const FilePicture& picture) const {
  const FileKind kind = writtenKind(file);
  const Depth depth = fileDepth(file, picture);
  const ColorConversion* const conversion = fromWork(kind);
  if (conversion == nullptr && depth == picture.image.depth()) {
    writePicture(file, picture.image, arguments_.writeChoices, picture.facts.get());
    return;
  }
  Image image = picture.image;
  convert(conversion, image);
  // An EXR is float in any case, and light in 8 bits would have lost its shadows on the way.
  if (image.depth() != depth && kind != FileKind::exr) image = image.converted(depth);
  PictureFacts facts = *picture.facts;
  if (!arguments_.colorSpace.empty() && holdsLight(facts.kind) != holdsLight(kind)) {
    // What told of the old numbers isn't true of the new ones.
    facts.iccProfile.clear();
    facts.chromaticities.reset();
    facts.png.reset();
  }
  writePicture(file, image, arguments_.writeChoices, &facts);
}

}  // namespace cli
