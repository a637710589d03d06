#include "cli/ImageFile.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "ae/Constants.h"
#include "cli/UserError.h"
#include "cli/files/FileBytes.h"
#include "cli/pictures/PixelArithmetic.h"
#include "cli/pictures/StoredPicture.h"

namespace cli {
namespace {

namespace fs = std::filesystem;
using standin::Image;

template <std::size_t Count>
bool beginsWith(std::span<const uint8_t> file, const std::array<uint8_t, Count>& magic) {
  return file.size() >= Count && std::equal(magic.begin(), magic.end(), file.begin());
}

/// What the file is by its first bytes, whatever its name says.
std::optional<FileKind> kindOf(std::span<const uint8_t> file) {
  constexpr std::array<uint8_t, 8> png = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
  constexpr std::array<uint8_t, 4> exr = {0x76, 0x2F, 0x31, 0x01};
  constexpr std::array<uint8_t, 3> jpeg = {0xFF, 0xD8, 0xFF};
  constexpr std::array<std::array<uint8_t, 4>, 4> tiff = {
      {{'I', 'I', 42, 0}, {'M', 'M', 0, 42}, {'I', 'I', 43, 0}, {'M', 'M', 0, 43}}};
  if (beginsWith(file, png)) return FileKind::png;
  if (beginsWith(file, exr)) return FileKind::exr;
  if (beginsWith(file, jpeg)) return FileKind::jpeg;
  if (std::any_of(tiff.begin(), tiff.end(), [&](const auto& magic) { return beginsWith(file, magic); })) {
    return FileKind::tiff;
  }
  return std::nullopt;
}

std::unique_ptr<PictureReader> readerFor(std::span<const uint8_t> file, OtherChannels others) {
  const auto kind = kindOf(file);
  if (!kind) throw OtherPicture("is no picture that can be read; PNG, TIFF, EXR and JPEG can");
  switch (*kind) {
    case FileKind::png:
      return openPng(file);
    case FileKind::exr:
      return openExr(file, others);
    case FileKind::jpeg:
      return openJpeg(file);
    case FileKind::tiff:
      break;
  }
  return openTiff(file);
}

std::string megabytes(uint64_t bytes) {
  return std::to_string((bytes + 999'999) / 1'000'000) + " MB";
}

/// The part of the plane that a picture fills: the full image, and with overscan what is stored beyond it.
PixelWindow placeOf(const PictureLayout& layout, Overscan overscan) {
  int64_t left = 0;
  int64_t top = 0;
  int64_t right = layout.fullWidth;
  int64_t bottom = layout.fullHeight;
  if (overscan == Overscan::keep) {
    left = std::min(left, layout.left);
    top = std::min(top, layout.top);
    right = std::max(right, layout.left + layout.width);
    bottom = std::max(bottom, layout.top + layout.height);
  }
  return {static_cast<int32_t>(left), static_cast<int32_t>(top), static_cast<int32_t>(right - left),
          static_cast<int32_t>(bottom - top)};
}

/// What rendering a picture of this layout takes at most: the file's samples, and the host's picture three times over
/// (what is read, what is drawn on, what is written).
uint64_t memoryFor(const PictureLayout& layout, const PixelWindow& place) {
  const uint64_t pixels = static_cast<uint64_t>(place.width) * static_cast<uint64_t>(place.height);
  return layout.bytes() + 2 * layout.otherBytes + 3 * pixels * static_cast<uint64_t>(standin::pixelBytes(layout.depth));
}

void checkSize(const PictureLayout& layout, const fs::path& file, const ReadChoices& choices) {
  constexpr int64_t farthest = 2 * PF_MAX_WORLD_WIDTH;
  if (layout.width < 1 || layout.height < 1 || layout.fullWidth < 1 || layout.fullHeight < 1) {
    throw UserError(quoted(file) + " has no pixels");
  }
  if (layout.fullWidth > PF_MAX_WORLD_WIDTH || layout.fullHeight > PF_MAX_WORLD_HEIGHT) {
    throw UserError(quoted(file) + " is " + std::to_string(layout.fullWidth) + " x " +
                    std::to_string(layout.fullHeight) + " pixels; at most 30000 x 30000 can be rendered");
  }
  const bool near = std::abs(layout.left) <= farthest && std::abs(layout.top) <= farthest && layout.width <= farthest &&
                    layout.height <= farthest;
  const PixelWindow place = near ? placeOf(layout, choices.overscan) : PixelWindow{};
  if (!near || place.width > PF_MAX_WORLD_WIDTH || place.height > PF_MAX_WORLD_HEIGHT) {
    throw UserError(quoted(file) + " stores pixels too far off its image; at most 30000 x 30000 can be rendered");
  }
  const uint64_t need = memoryFor(layout, place);
  if (need > choices.mostMemory) {
    throw UserError(quoted(file) + " is " + std::to_string(layout.fullWidth) + " x " +
                    std::to_string(layout.fullHeight) + " pixels and takes " + megabytes(need) +
                    " of memory; --limit-memory allows " + megabytes(choices.mostMemory));
  }
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
  const auto color = [&](int32_t place) { return fromFile(divides ? straightColor(from[place], alpha) : from[place]); };
  Pixel pixel{};
  pixel.alpha = fromFile(alpha);
  pixel.red = color(layout.red);
  pixel.green = color(layout.green);
  pixel.blue = color(layout.blue);
  return pixel;
}

bool sameBits(float a, float b) {
  return std::bit_cast<uint32_t>(a) == std::bit_cast<uint32_t>(b);
}

/// True when the pixel's colors, multiplied by its alpha again, are what the file has.
bool comesBack(const PF_PixelFloat& pixel, const float* stored, const PictureLayout& layout) {
  return sameBits(pixel.red * pixel.alpha, stored[layout.red]) &&
         sameBits(pixel.green * pixel.alpha, stored[layout.green]) &&
         sameBits(pixel.blue * pixel.alpha, stored[layout.blue]);
}

/// The picture on its place, clear where nothing is stored.
/// @param storedPixels  gets those that can't be had back, when the file's colors are multiplied by alpha
template <class Pixel>
Image placed(const PictureLayout& layout, std::span<const uint8_t> samples, const PixelWindow& place,
             std::vector<StoredPixel>& storedPixels) {
  using Channel = typename standin::PixelFacts<Pixel>::Channel;
  Image image(standin::PixelFacts<Pixel>::depth, place.width, place.height);
  image.originX = place.left;
  image.originY = place.top;
  const int64_t firstX = std::max<int64_t>(0, place.left - layout.left);
  const int64_t endX = std::min<int64_t>(layout.width, place.left + place.width - layout.left);
  const bool divides = layout.associated && layout.alpha >= 0;
  for (int64_t y = 0; y < layout.height; ++y) {
    const int64_t toY = y + layout.top - place.top;
    if (toY < 0 || toY >= place.height) continue;
    const auto* from = reinterpret_cast<const Channel*>(samples.data()) + (y * layout.width + firstX) * layout.channels;
    auto* to = image.row<Pixel>(static_cast<int32_t>(toY)) + layout.left - place.left + firstX;
    for (int64_t x = firstX; x < endX; ++x, ++to, from += layout.channels) {
      *to = unpacked<Pixel>(from, layout);
      if constexpr (std::is_same_v<Channel, float>) {
        if (divides && !comesBack(*to, from, layout)) {
          storedPixels.push_back({static_cast<int32_t>(x + layout.left),
                                  static_cast<int32_t>(y + layout.top),
                                  {from[layout.red], from[layout.green], from[layout.blue], from[layout.alpha]}});
        }
      }
    }
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
auto withReader(const fs::path& file, const ReadChoices& choices, const Work& work) {
  const std::vector<uint8_t> bytes = readFile(file, "picture", choices.mostMemory);
  try {
    const std::unique_ptr<PictureReader> reader = readerFor(bytes, choices.others);
    checkSize(reader->layout(), file, choices);
    return work(*reader);
  } catch (const OtherPicture& other) {
    throw UserError(quoted(file) + " " + other.what());
  } catch (const BrokenPicture& broken) {
    throw UserError("can't read " + quoted(file) + ": " + broken.what());
  }
}

PixelWindow storedPart(const PictureLayout& layout) {
  return {static_cast<int32_t>(layout.left), static_cast<int32_t>(layout.top), static_cast<int32_t>(layout.width),
          static_cast<int32_t>(layout.height)};
}

}  // namespace

PictureSize pictureSize(const fs::path& file, const ReadChoices& choices) {
  return withReader(file, choices, [&](PictureReader& reader) {
    const PixelWindow place = placeOf(reader.layout(), choices.overscan);
    const bool turned = swapsSides(reader.layout().orientation);
    return turned ? PictureSize{place.height, place.width} : PictureSize{place.width, place.height};
  });
}

FilePicture readPictureAndFacts(const fs::path& file, const ReadChoices& choices) {
  return withReader(file, choices, [&](PictureReader& reader) {
    const PictureLayout& layout = reader.layout();
    std::vector<uint8_t> samples(static_cast<std::size_t>(layout.bytes()));
    reader.read(samples);
    auto facts = std::make_shared<PictureFacts>(reader.facts());
    const PixelWindow place = placeOf(layout, choices.overscan);
    FilePicture picture;
    picture.image =
        upright(standin::withPixelOf(
                    layout.depth,
                    [&](auto pixel) { return placed<decltype(pixel)>(layout, samples, place, facts->storedPixels); }),
                layout.orientation);
    facts->display = {0, 0, static_cast<int32_t>(layout.fullWidth), static_cast<int32_t>(layout.fullHeight)};
    facts->data = storedPart(layout);
    facts->depth = layout.depth;
    if (swapsSides(layout.orientation)) {
      std::swap(facts->display.width, facts->display.height);
      facts->data = facts->display;
      facts->pixelAspect = 1.0 / facts->pixelAspect;
      if (facts->density) std::swap(facts->density->x, facts->density->y);
    }
    picture.facts = std::move(facts);
    return picture;
  });
}

LayerReader plainLayers(uint64_t mostMemory) {
  return [mostMemory](const fs::path& file) { return readPicture(file, mostMemory); };
}

std::optional<FileKind> storedKind(const fs::path& file) {
  std::error_code ignored;
  if (!fs::is_regular_file(file, ignored)) return std::nullopt;  // a pipe could never end
  std::ifstream stream(file, std::ios::binary);
  std::array<char, 8> first{};
  stream.read(first.data(), first.size());
  return kindOf({reinterpret_cast<const uint8_t*>(first.data()), static_cast<std::size_t>(stream.gcount())});
}

Image readPicture(const fs::path& file, uint64_t mostMemory) {
  return readPictureAndFacts(file, {.mostMemory = mostMemory, .others = OtherChannels::leave}).image;
}

}  // namespace cli
