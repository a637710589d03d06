/// What a file tells of its picture beside the pixels, kept so that the file that is written can tell it again.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/Depth.h"

namespace cli {

struct ExrFacts;
struct PngFacts;
struct TiffFacts;

enum class FileKind { png, tiff, exr, jpeg };

/// Pixels to the inch.
struct PixelDensity {
  double x = 0.0;
  double y = 0.0;
};

/// A note under a key of PNG's own: Title, Author, Description, Copyright, Software and others.
struct TextFact {
  std::string key;
  std::string text;  ///< UTF-8
};

/// A rectangle of pixels; its place counts from the top left of the full image.
struct PixelWindow {
  int32_t left = 0;
  int32_t top = 0;
  int32_t width = 0;
  int32_t height = 0;
  bool operator==(const PixelWindow&) const = default;
};

/// A pixel whose stored samples can't be had back from its straight color: red, green, blue and alpha as the file has
/// them, in their place on the full image.
struct StoredPixel {
  int32_t x = 0;
  int32_t y = 0;
  std::array<float, 4> samples{};
};

struct PictureFacts {
  FileKind kind = FileKind::png;
  PixelWindow display;                        ///< the full image; left and top are 0
  PixelWindow data;                           ///< the part that the file stores
  standin::Depth depth = standin::Depth::k8;  ///< of the file's samples
  bool half = false;                          ///< float samples of 16 bits
  double pixelAspect = 1.0;                   ///< width of a pixel : its height
  std::optional<PixelDensity> density;
  std::vector<uint8_t> iccProfile;  ///< of RGB numbers; empty: none
  std::vector<uint8_t> exif;        ///< from its byte order on, for an upright picture; empty: none
  std::string xmp;
  /// Places of red, green, blue and white: x and y of each.
  std::optional<std::array<float, 8>> chromaticities;
  std::vector<TextFact> texts;
  std::vector<StoredPixel> storedPixels;

  // What only a file of the same kind can hold; null in files of other kinds.
  std::shared_ptr<const ExrFacts> exr;
  std::shared_ptr<const PngFacts> png;
  std::shared_ptr<const TiffFacts> tiff;
};

}  // namespace cli
