#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <ctime>
#include <optional>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

#include "cli/ImageFile.h"
#include "cli/NearestName.h"
#include "cli/UserError.h"
#include "cli/files/FileBytes.h"
#include "cli/files/PutFile.h"
#include "cli/pictures/HalfFloats.h"
#include "cli/pictures/PixelArithmetic.h"
#include "cli/pictures/StoredPicture.h"

namespace cli {
namespace {

namespace fs = std::filesystem;
using standin::Depth;
using standin::Image;

struct WrittenKind {
  FileKind kind;
  std::vector<uint8_t> (*encoded)(const PictureToWrite& picture);
  Depth leastDepth;
  Depth mostDepth;
  bool alpha;  ///< it can hold one
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
  if (ending == ".png") return {FileKind::png, encodedPng, Depth::k8, Depth::k16, true};
  if (ending == ".tif" || ending == ".tiff") return {FileKind::tiff, encodedTiff, Depth::k8, Depth::k32, true};
  if (ending == ".exr") return {FileKind::exr, encodedExr, Depth::k32, Depth::k32, true};
  if (ending == ".jpg" || ending == ".jpeg") return {FileKind::jpeg, encodedJpeg, Depth::k8, Depth::k8, false};
  const std::string must = "; it must be .png, .tif, .tiff, .exr, .jpg or .jpeg";
  if (ending.empty()) throw UserError(quoted(file) + " has no ending" + must);
  throw UserError("can't write pictures ending in '" + file.extension().string() + "'" +
                  suggestion(ending, {".png", ".tif", ".tiff", ".exr", ".jpg", ".jpeg"}, must));
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

/// A straight color laid over the matte's, by its alpha; in the host's numbers.
template <class Channel>
Channel over(Channel color, Channel alpha, Channel matte, Channel full) {
  if constexpr (std::is_same_v<Channel, float>) {
    return color * alpha + matte * (full - alpha);
  } else {
    const uint32_t sum = uint32_t{color} * alpha + uint32_t{matte} * (uint32_t{full} - std::min(alpha, full));
    return static_cast<Channel>((sum + full / 2U) / full);
  }
}

template <class Pixel>
auto matteOf(const WriteChoices& choices) {
  using Facts = standin::PixelFacts<Pixel>;
  std::array<typename Facts::Channel, 3> matte{};
  for (std::size_t i = 0; i < 3; ++i) {
    if constexpr (Facts::depth == Depth::k32) {
      matte[i] = static_cast<float>(choices.matte[i]) / 255.0F;
    } else {
      matte[i] = static_cast<typename Facts::Channel>((choices.matte[i] * uint32_t{Facts::full} + 127U) / 255U);
    }
  }
  return matte;
}

/// How the samples of a file are made of the host's pixels.
struct Packing {
  PixelWindow part;  ///< columns and rows of the image
  bool alpha;        ///< else the colors lie over the matte
  bool associated;   ///< colors are multiplied by alpha
  SampleType type;
};

/// A row's samples side by side, as files hold them.
template <class Pixel, class Channel>
void packRow(std::span<const Pixel> row, const Packing& packing, const std::array<Channel, 3>& matte, Channel* to) {
  constexpr Channel full = standin::PixelFacts<Pixel>::full;
  for (const Pixel& pixel : row) {
    const std::array<Channel, 3> colors = {pixel.red, pixel.green, pixel.blue};
    if (!packing.alpha) {
      for (std::size_t i = 0; i < 3; ++i) *to++ = toFile(over(colors[i], pixel.alpha, matte[i], full));
      continue;
    }
    for (Channel color : colors) {
      if constexpr (std::is_same_v<Channel, float>) {
        if (packing.associated) color *= pixel.alpha;
      }
      *to++ = toFile(color);
    }
    *to++ = toFile(pixel.alpha);
  }
}

bool sameBits(const PF_PixelFloat& a, const PF_PixelFloat& b) {
  using Words = std::array<uint32_t, 4>;
  return std::bit_cast<Words>(a) == std::bit_cast<Words>(b);
}

/// Where the effect left a pixel as it was, its samples go back as the file had them. Needs float samples with alpha.
void putBackStored(const Image& image, const PixelWindow& part, std::span<const StoredPixel> stored, float* samples) {
  for (const StoredPixel& pixel : stored) {
    const int32_t x = pixel.x - image.originX;
    const int32_t y = pixel.y - image.originY;
    if (x < part.left || y < part.top || x >= part.left + part.width || y >= part.top + part.height) continue;
    const auto& [red, green, blue, alpha] = pixel.samples;
    const PF_PixelFloat before = {alpha, straightColor(red, alpha), straightColor(green, alpha),
                                  straightColor(blue, alpha)};
    if (!sameBits(image.at<PF_PixelFloat>(x, y), before)) continue;
    const auto place = static_cast<std::size_t>(y - part.top) * static_cast<std::size_t>(part.width) +
                       static_cast<std::size_t>(x - part.left);
    std::copy(pixel.samples.begin(), pixel.samples.end(), samples + 4 * place);
  }
}

template <class Pixel>
std::vector<uint8_t> packed(const Image& image, const Packing& packing, const WriteChoices& choices,
                            const PictureFacts* facts) {
  using Channel = typename standin::PixelFacts<Pixel>::Channel;
  const auto width = static_cast<std::size_t>(packing.part.width);
  const auto height = static_cast<std::size_t>(packing.part.height);
  const std::size_t channels = packing.alpha ? 4 : 3;
  std::vector<uint8_t> samples(width * height * channels * sizeof(Channel));
  auto* const first = reinterpret_cast<Channel*>(samples.data());
  const std::array<Channel, 3> matte = matteOf<Pixel>(choices);
  for (std::size_t y = 0; y < height; ++y) {
    const Pixel* const row = image.row<Pixel>(packing.part.top + static_cast<int32_t>(y)) + packing.part.left;
    packRow<Pixel, Channel>({row, width}, packing, matte, first + y * width * channels);
  }
  if constexpr (std::is_same_v<Channel, float>) {
    if (packing.alpha && packing.associated && facts != nullptr) {
      putBackStored(image, packing.part, facts->storedPixels, first);
    }
    if (packing.type == SampleType::half) {
      std::vector<uint8_t> halves(samples.size() / 2);
      toHalves({first, width * height * channels}, reinterpret_cast<uint16_t*>(halves.data()));
      return halves;
    }
  }
  return samples;
}

SampleType sampleTypeFor(FileKind kind, Depth depth, const WriteChoices& choices, const PictureFacts* facts) {
  if (depth == Depth::k8) return SampleType::whole8;
  if (depth == Depth::k16) return SampleType::whole16;
  if (kind != FileKind::exr) return SampleType::float32;
  const bool half =
      choices.exrType == ExrType::half || (choices.exrType == ExrType::asInput && facts != nullptr && facts->half);
  return half ? SampleType::half : SampleType::float32;
}

/// The smallest window that holds `least` and every row and column of the picture in which something is drawn.
PixelWindow grownToDrawn(const PictureToWrite& picture, const PixelWindow& least) {
  const std::size_t pixelBytes = static_cast<std::size_t>(picture.channels) * sampleBytes(picture.type);
  const auto isDrawn = [&](int32_t x, int32_t y) {
    const std::size_t pixel = static_cast<std::size_t>(y - picture.top) * static_cast<std::size_t>(picture.width) +
                              static_cast<std::size_t>(x - picture.left);
    const uint8_t* const samples = picture.samples.data() + pixel * pixelBytes;
    return std::any_of(samples, samples + pixelBytes, [](uint8_t byte) { return byte != 0; });
  };
  int32_t left = least.left;
  int32_t top = least.top;
  int32_t right = least.left + least.width;
  int32_t bottom = least.top + least.height;
  for (int32_t y = picture.top; y < picture.top + picture.height; ++y) {
    const bool outside = y < top || y >= bottom;
    for (int32_t x = picture.left; x < picture.left + picture.width; ++x) {
      if (!outside && x == left) x = right;
      if (x >= picture.left + picture.width) break;
      if (!isDrawn(x, y)) continue;
      left = std::min(left, x);
      right = std::max(right, x + 1);
      top = std::min(top, y);
      bottom = std::max(bottom, y + 1);
    }
  }
  return {left, top, right - left, bottom - top};
}

/// The windows of an EXR: those of the picture it was made from, and more only where something was drawn beyond.
void takeWindows(const Image& image, const PictureFacts* facts, PictureToWrite& toWrite) {
  toWrite.left = image.originX;
  toWrite.top = image.originY;
  const PixelWindow whole = {image.originX, image.originY, image.width(), image.height()};
  toWrite.display = facts == nullptr ? whole : facts->display;
  const PixelWindow& data = facts == nullptr ? whole : facts->data;
  const bool inside = data.left >= whole.left && data.top >= whole.top &&
                      data.left + data.width <= whole.left + whole.width &&
                      data.top + data.height <= whole.top + whole.height;
  toWrite.data = inside ? grownToDrawn(toWrite, data) : whole;
}

/// Columns and rows of the image that go into a file of this kind: only an EXR holds more than the full image.
PixelWindow partFor(FileKind kind, const Image& image, const PictureFacts* facts) {
  if (kind == FileKind::exr || facts == nullptr) return {0, 0, image.width(), image.height()};
  const int32_t left = std::clamp(-image.originX, 0, image.width());
  const int32_t top = std::clamp(-image.originY, 0, image.height());
  return {left, top, std::min(facts->display.width, image.width() - left),
          std::min(facts->display.height, image.height() - top)};
}

}  // namespace

FileKind writtenKind(const fs::path& file) {
  return kindOf(file).kind;
}

Depth mostDepthOf(const fs::path& file) {
  return kindOf(file).mostDepth;
}

void checkWritable(const fs::path& file, Depth depth) {
  const WrittenKind kind = kindOf(file);
  if (depth > kind.mostDepth && depth == Depth::k32) {
    throw UserError(quoted(file) + " can't hold float pixels; write .exr or .tif, or render with --depth " +
                    (kind.mostDepth == Depth::k16 ? "16" : "8"));
  }
  if (depth > kind.mostDepth) {
    throw UserError(quoted(file) + " can't hold 16 bits; write .png or .tif, or render with --depth 8");
  }
  checkPlace(file);
}

void writePicture(const fs::path& file, const Image& picture, const WriteChoices& choices, const PictureFacts* facts) {
  checkWritable(file, picture.depth());
  const WrittenKind kind = kindOf(file);
  const bool mustBeFloat = picture.depth() < kind.leastDepth;
  const Image asFloat = mustBeFloat ? picture.converted(Depth::k32) : Image();
  const Image& written = mustBeFloat ? asFloat : picture;

  Packing packing{};
  packing.part = partFor(kind.kind, written, facts);
  packing.alpha = kind.alpha && choices.alpha;
  packing.associated = kind.kind == FileKind::exr;
  packing.type = sampleTypeFor(kind.kind, written.depth(), choices, facts);
  const std::vector<uint8_t> samples = standin::withPixelOf(
      written.depth(), [&](auto pixel) { return packed<decltype(pixel)>(written, packing, choices, facts); });
  PictureToWrite toWrite;
  toWrite.width = packing.part.width;
  toWrite.height = packing.part.height;
  toWrite.channels = packing.alpha ? 4 : 3;
  toWrite.type = packing.type;
  toWrite.samples = samples;
  if (kind.kind == FileKind::exr) takeWindows(written, facts, toWrite);
  toWrite.facts = facts;
  if (choices.stamp) toWrite.madeAt = std::time(nullptr);
  toWrite.pngLevel = choices.pngLevel;
  toWrite.jpegQuality = choices.jpegQuality;
  toWrite.tiffCompression = choices.tiffCompression;
  if (!choices.exrCompression.empty()) {
    toWrite.exrCompression = choices.exrCompression;
  } else if (facts != nullptr && facts->exr != nullptr) {
    toWrite.exrCompression = compressionOf(*facts->exr);
  }
  try {
    putFile(file, kind.encoded(toWrite));
  } catch (const BrokenPicture& broken) {
    throw UserError("can't write " + quoted(file) + ": " + broken.what());
  }
}

}  // namespace cli
