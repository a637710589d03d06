// Renders golden pictures anew and writes them over the accepted ones: the only way in which they come to be. Look at
// every picture before it is committed.
#include <OpenImageIO/imageio.h>

#include <iostream>

#include "tests/golden/GoldenPicture.h"
#include "tests/golden/SceneRunner.h"

namespace {

using standin::Depth;
using standin::Image;

/// Red, green, blue, alpha as files have them.
template <class Pixel, class Channel, class Convert>
std::vector<Channel> fileChannels(const Image& image, Convert convert) {
  std::vector<Channel> channels;
  for (int32_t y = 0; y < image.height(); ++y) {
    for (int32_t x = 0; x < image.width(); ++x) {
      const Pixel& pixel = image.at<Pixel>(x, y);
      for (const auto channel : {pixel.red, pixel.green, pixel.blue, pixel.alpha}) {
        channels.push_back(convert(channel));
      }
    }
  }
  return channels;
}

void write(const std::filesystem::path& file, const Image& image, const OIIO::TypeDesc& type, const void* channels) {
  const auto output = OIIO::ImageOutput::create(file.string());
  OIIO::ImageSpec layout(image.width(), image.height(), 4, type);
  layout.attribute("oiio:UnassociatedAlpha", 1);
  layout.attribute("compression", "zip");
  if (!output || !output->open(file.string(), layout) || !output->write_image(type, channels) || !output->close()) {
    throw std::runtime_error(file.string() + ": " + (output ? output->geterror() : OIIO::geterror()));
  }
}

void accept(const std::filesystem::path& file, const Image& image) {
  switch (image.depth()) {
    case Depth::k8:
      return write(file, image, OIIO::TypeDesc::UINT8,
                   fileChannels<PF_Pixel, uint8_t>(image, [](uint8_t channel) { return channel; }).data());
    case Depth::k16:
      return write(file, image, OIIO::TypeDesc::UINT16,
                   fileChannels<PF_Pixel16, uint16_t>(image, golden::spread16).data());
    case Depth::k32:
      return write(file, image, OIIO::TypeDesc::FLOAT,
                   fileChannels<PF_PixelFloat, float>(image, [](float channel) { return channel; }).data());
  }
}

}  // namespace

int main(int count, char** arguments) try {
  const std::filesystem::path scenes = VINDREL_GOLDEN_DIR "/scenes";
  const golden::SceneRunner runner(VINDREL_MODULE_PATH, VINDREL_GOLDEN_DIR "/inputs");
  const std::vector<std::string> wanted(arguments + 1, arguments + count);
  for (const golden::Scene& scene : golden::readScenes(scenes)) {
    if (!wanted.empty() && std::find(wanted.begin(), wanted.end(), scene.name) == wanted.end()) {
      continue;
    }
    for (const Depth depth : standin::kAllDepths) {
      accept(scenes / scene.name / golden::fileName(depth), runner.render(scene, depth, golden::Road::classic));
    }
    std::cout << scene.name << std::endl;
  }
  return 0;
} catch (const std::exception& error) {
  std::cerr << "accept_golden: " << error.what() << std::endl;
  return 1;
}
