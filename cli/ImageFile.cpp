#include "cli/ImageFile.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "ae/Constants.h"
#include "cli/NearestName.h"
#include "cli/UserError.h"
#include "cli/files/FileBytes.h"
#include "cli/files/PutFile.h"
#include "cli/pictures/StoredPicture.h"

namespace cli {
namespace {

namespace fs = std::filesystem;
using standin::Depth;
using standin::Image;

// ---- reading

template <std::size_t Count>
bool beginsWith(std::span<const uint8_t> file, const std::array<uint8_t, Count>& magic) {
  return file.size() >= Count && std::equal(magic.begin(), magic.end(), file.begin());
}

/// The reader for what the file is by its first bytes, whatever its name says; null for none.
std::unique_ptr<PictureReader> readerFor(std::span<const uint8_t> file) {
  constexpr std::array<uint8_t, 8> png = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
  constexpr std::array<uint8_t, 4> exr = {0x76, 0x2F, 0x31, 0x01};
  constexpr std::array<uint8_t, 3> jpeg = {0xFF, 0xD8, 0xFF};
  constexpr std::array<std::array<uint8_t, 4>, 4> tiff = {
      {{'I', 'I', 42, 0}, {'M', 'M', 0, 42}, {'I', 'I', 43, 0}, {'M', 'M', 0, 43}}};
  if (beginsWith(file, png)) return openPng(file);
  if (beginsWith(file, exr)) return openExr(file);
  if (beginsWith(file, jpeg)) return openJpeg(file);
  if (std::any_of(tiff.begin(), tiff.end(), [&](const auto& magic) { return beginsWith(file, magic); })) {
    return openTiff(file);
  }
  return nullptr;
}

std::string megabytes(uint64_t bytes) {
  return std::to_string((bytes + 999'999) / 1'000'000) + " MB";
}

/// What rendering a picture of this layout takes at most: the file's samples, and the host's picture three times over
/// (what is read, what is drawn on, what is written).
uint64_t memoryFor(const PictureLayout& layout) {
  const uint64_t pixels = static_cast<uint64_t>(std::max<int64_t>(layout.fullWidth, 1)) *
                          static_cast<uint64_t>(std::max<int64_t>(layout.fullHeight, 1));
  return layout.bytes() + 3 * pixels * static_cast<uint64_t>(standin::pixelBytes(layout.depth));
}

void checkSize(const PictureLayout& layout, const fs::path& file, uint64_t mostMemory) {
  if (layout.width < 1 || layout.height < 1 || layout.fullWidth < 1 || layout.fullHeight < 1) {
    throw UserError(quoted(file) + " has no pixels");
  }
  if (layout.fullWidth > PF_MAX_WORLD_WIDTH || layout.fullHeight > PF_MAX_WORLD_HEIGHT ||
      layout.width > 2 * PF_MAX_WORLD_WIDTH || layout.height > 2 * PF_MAX_WORLD_HEIGHT) {
    throw UserError(quoted(file) + " is " + std::to_string(layout.fullWidth) + " x " +
                    std::to_string(layout.fullHeight) + " pixels; at most 30000 x 30000 can be rendered");
  }
  const uint64_t need = memoryFor(layout);
  if (need > mostMemory) {
    throw UserError(quoted(file) + " is " + std::to_string(layout.fullWidth) + " x " +
                    std::to_string(layout.fullHeight) + " pixels and takes " + megabytes(need) +
                    " of memory; --limit-memory allows " + megabytes(mostMemory));
  }
}

uint8_t straight(uint8_t channel, uint8_t alpha) {
  if (alpha == 0) return channel;
  return static_cast<uint8_t>(std::min(255, (channel * 255 + alpha / 2) / alpha));
}

uint16_t straight(uint16_t channel, uint16_t alpha) {
  if (alpha == 0) return channel;
  const uint64_t whole = (static_cast<uint64_t>(channel) * 65535u + alpha / 2u) / alpha;
  return static_cast<uint16_t>(std::min<uint64_t>(65535u, whole));
}

float straight(float channel, float alpha) {
  return alpha > 0.0F ? channel / alpha : channel;
}

uint8_t fromFile(uint8_t channel) {
  return channel;
}
uint16_t fromFile(uint16_t channel) {
  return fromFile16(channel);
}
float fromFile(float channel) {
  return channel;
}

/// One pixel of the file as the host has it.
template <class Pixel, class Channel>
Pixel unpacked(const Channel* from, const PictureLayout& layout) {
  constexpr Channel fileFull = std::is_same_v<Channel, float> ? Channel{1} : std::numeric_limits<Channel>::max();
  const Channel alpha = layout.alpha >= 0 ? from[layout.alpha] : fileFull;
  const bool divides = layout.associated && layout.alpha >= 0;
  const auto color = [&](int32_t place) { return fromFile(divides ? straight(from[place], alpha) : from[place]); };
  Pixel pixel{};
  pixel.alpha = fromFile(alpha);
  pixel.red = color(layout.red);
  pixel.green = color(layout.green);
  pixel.blue = color(layout.blue);
  return pixel;
}

template <class Pixel>
Image onFullImage(const PictureLayout& layout, std::span<const uint8_t> samples) {
  using Channel = typename standin::PixelFacts<Pixel>::Channel;
  Image image(standin::PixelFacts<Pixel>::depth, static_cast<int32_t>(layout.fullWidth),
              static_cast<int32_t>(layout.fullHeight));
  const int64_t firstX = std::max<int64_t>(0, -layout.left);
  const int64_t endX = std::min(layout.width, layout.fullWidth - layout.left);
  for (int64_t y = 0; y < layout.height; ++y) {
    const int64_t toY = y + layout.top;
    if (toY < 0 || toY >= layout.fullHeight) continue;
    const auto* from = reinterpret_cast<const Channel*>(samples.data()) + (y * layout.width + firstX) * layout.channels;
    auto* to = image.row<Pixel>(static_cast<int32_t>(toY)) + layout.left + firstX;
    for (int64_t x = firstX; x < endX; ++x, ++to, from += layout.channels) *to = unpacked<Pixel>(from, layout);
  }
  return image;
}

bool swapsSides(int orientation) {
  return orientation > 4 && orientation <= 8;
}

/// Turns a picture as the camera was held. `orientation` is 1 to 8; above 4, rows and columns change places.
Image upright(Image image, int orientation) {
  if (orientation <= 1 || orientation > 8) return image;
  const bool turned = swapsSides(orientation);
  const bool fromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
  const bool fromBottom = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
  Image result(image.depth(), turned ? image.height() : image.width(), turned ? image.width() : image.height());
  standin::withPixelOf(image.depth(), [&](auto pixel) {
    using Pixel = decltype(pixel);
    for (int32_t y = 0; y < result.height(); ++y) {
      for (int32_t x = 0; x < result.width(); ++x) {
        const int32_t column = turned ? y : x;
        const int32_t row = turned ? x : y;
        result.at<Pixel>(x, y) = image.at<Pixel>(fromRight ? image.width() - 1 - column : column,
                                                 fromBottom ? image.height() - 1 - row : row);
      }
    }
  });
  return result;
}

/// Does the work with the file's reader, whose header has been found to be one that can be rendered.
template <class Work>
auto withReader(const fs::path& file, uint64_t mostMemory, const Work& work) {
  const std::vector<uint8_t> bytes = readFile(file, "picture", mostMemory);
  try {
    const std::unique_ptr<PictureReader> reader = readerFor(bytes);
    if (!reader) throw OtherPicture("is no picture that can be read; PNG, TIFF, EXR and JPEG can");
    checkSize(reader->layout(), file, mostMemory);
    return work(*reader);
  } catch (const OtherPicture& other) {
    throw UserError(quoted(file) + " " + other.what());
  } catch (const BrokenPicture& broken) {
    throw UserError("can't read " + quoted(file) + ": " + broken.what());
  }
}

// ---- writing

struct WrittenKind {
  std::vector<uint8_t> (*encoded)(const PictureToWrite& picture);
  bool wholeNumbers;  ///< 8 and 16 bits
  bool floats;
  bool associated;  ///< colour times alpha
};

std::string lowerEnding(const fs::path& file) {
  std::string ending = file.extension().string();
  for (char& letter : ending) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return ending;
}

WrittenKind kindOf(const fs::path& file) {
  const std::string ending = lowerEnding(file);
  if (ending == ".png") return {encodedPng, true, false, false};
  if (ending == ".tif" || ending == ".tiff") return {encodedTiff, true, true, false};
  if (ending == ".exr") return {encodedExr, false, true, true};
  if (ending.empty()) throw UserError(quoted(file) + " has no ending; it must be .png, .tif, .tiff or .exr");
  throw UserError("can't write pictures ending in '" + file.extension().string() + "'" +
                  suggestion(ending, {".png", ".tif", ".tiff", ".exr"}, "; it must be .png, .tif, .tiff or .exr"));
}

uint8_t toFile(uint8_t channel) {
  return channel;
}
uint16_t toFile(uint16_t channel) {
  return toFile16(channel);
}
float toFile(float channel) {
  return channel;
}

/// Red, green, blue and alpha side by side, as files hold them.
template <class Pixel>
std::vector<uint8_t> packed(const Image& image, bool associate) {
  using Channel = typename standin::PixelFacts<Pixel>::Channel;
  std::vector<uint8_t> samples(static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height()) * 4 *
                               sizeof(Channel));
  auto* to = reinterpret_cast<Channel*>(samples.data());
  for (int32_t y = 0; y < image.height(); ++y) {
    const Pixel* pixel = image.row<Pixel>(y);
    for (const Pixel* const end = pixel + image.width(); pixel != end; ++pixel) {
      for (Channel color : {pixel->red, pixel->green, pixel->blue}) {
        if constexpr (std::is_same_v<Channel, float>) {
          if (associate) color *= pixel->alpha;
        }
        *to++ = toFile(color);
      }
      *to++ = toFile(pixel->alpha);
    }
  }
  return samples;
}

}  // namespace

PictureSize pictureSize(const fs::path& file, uint64_t mostMemory) {
  return withReader(file, mostMemory, [](PictureReader& reader) {
    const PictureLayout& layout = reader.layout();
    const auto width = static_cast<int32_t>(layout.fullWidth);
    const auto height = static_cast<int32_t>(layout.fullHeight);
    return swapsSides(layout.orientation) ? PictureSize{height, width} : PictureSize{width, height};
  });
}

Image readPicture(const fs::path& file, uint64_t mostMemory) {
  return withReader(file, mostMemory, [](PictureReader& reader) {
    const PictureLayout& layout = reader.layout();
    std::vector<uint8_t> samples(static_cast<std::size_t>(layout.bytes()));
    reader.read(samples);
    return upright(
        standin::withPixelOf(layout.depth, [&](auto pixel) { return onFullImage<decltype(pixel)>(layout, samples); }),
        layout.orientation);
  });
}

void checkWritable(const fs::path& file, Depth depth) {
  const WrittenKind kind = kindOf(file);
  if (depth == Depth::k32 && !kind.floats) {
    throw UserError(quoted(file) + " can't hold float pixels; write .exr or .tif, or render with --depth 16");
  }
  checkPlace(file);
}

void writePicture(const fs::path& file, const Image& picture, const WriteChoices& choices) {
  checkWritable(file, picture.depth());
  const WrittenKind kind = kindOf(file);
  const bool mustBeFloat = !kind.wholeNumbers && picture.depth() != Depth::k32;
  const Image asFloat = mustBeFloat ? picture.converted(Depth::k32) : Image();
  const Image& written = mustBeFloat ? asFloat : picture;

  const std::vector<uint8_t> samples = standin::withPixelOf(
      written.depth(), [&](auto pixel) { return packed<decltype(pixel)>(written, kind.associated); });
  PictureToWrite toWrite;
  toWrite.width = written.width();
  toWrite.height = written.height();
  toWrite.depth = written.depth();
  toWrite.samples = samples;
  if (choices.stamp) toWrite.madeAt = std::time(nullptr);
  toWrite.pngLevel = choices.pngLevel;
  try {
    putFile(file, kind.encoded(toWrite));
  } catch (const BrokenPicture& broken) {
    throw UserError("can't write " + quoted(file) + ": " + broken.what());
  }
}

}  // namespace cli
