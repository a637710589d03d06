/// A picture as a file holds it, before it becomes the host's or after it was the host's.
#pragma once

#include <cstdint>
#include <ctime>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "cli/pictures/PictureFacts.h"
#include "host/Depth.h"

namespace cli {

/// What a file's header says.
struct PictureLayout {
  int64_t width = 0;  ///< stored columns and rows
  int64_t height = 0;
  int64_t left = 0;  ///< place of the first stored pixel on the full image
  int64_t top = 0;
  int64_t fullWidth = 0;  ///< the full image, of which the stored part may be a crop
  int64_t fullHeight = 0;
  int32_t channels = 0;  ///< samples of a pixel, side by side
  int32_t red = 0;       ///< which of them; grey is all three
  int32_t green = 0;
  int32_t blue = 0;
  int32_t alpha = -1;  ///< -1: none
  standin::Depth depth = standin::Depth::k8;
  bool associated = false;  ///< colour is multiplied by alpha
  int32_t orientation = 1;  ///< 1 to 8, as cameras note it
  uint64_t otherBytes = 0;  ///< that channels beside those of the picture take

  /// Bytes of all samples: 1, 2 or 4 each.
  uint64_t bytes() const {
    return static_cast<uint64_t>(width) * static_cast<uint64_t>(height) * static_cast<uint64_t>(channels) *
           (static_cast<uint64_t>(depth) / 8);
  }
};

/// One file being read: the header at once, the samples when asked for, so that a header may be refused before memory
/// is taken.
class PictureReader {
 public:
  PictureReader() = default;
  PictureReader(const PictureReader&) = delete;
  PictureReader& operator=(const PictureReader&) = delete;
  virtual ~PictureReader() = default;

  const PictureLayout& layout() const { return layout_; }

  /// What the header tells beside; of an EXR the other channels, too, once read() was called. The windows and the
  /// stored pixels are left to whoever places the picture.
  const PictureFacts& facts() const { return facts_; }

  /// All samples, row after row without gaps: uint8_t, uint16_t (0 to 65535) or float in the machine's byte order.
  /// @param samples  layout().bytes() bytes, aligned for float
  /// @throws BrokenPicture
  virtual void read(std::span<uint8_t> samples) = 0;

 protected:
  PictureLayout layout_;
  PictureFacts facts_;
};

/// A file that says it is of this format but can't be read to its end.
class BrokenPicture : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A whole file of a kind that isn't for us; what() goes on where "'file' " stops.
class OtherPicture : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Whether the channels of an EXR that make no picture are read as well, for a file that is to hold them again.
enum class OtherChannels { leave, keep };

// The readers. The bytes must outlive them. All throw BrokenPicture and OtherPicture.
std::unique_ptr<PictureReader> openPng(std::span<const uint8_t> file);
std::unique_ptr<PictureReader> openTiff(std::span<const uint8_t> file);
std::unique_ptr<PictureReader> openExr(std::span<const uint8_t> file, OtherChannels others);
std::unique_ptr<PictureReader> openJpeg(std::span<const uint8_t> file);

enum class SampleType { whole8, whole16, half, float32 };

constexpr std::size_t sampleBytes(SampleType type) {
  return type == SampleType::whole8 ? 1 : type == SampleType::float32 ? 4 : 2;
}

/// What is to be written: straight or multiplied samples of three channels or, with alpha, four.
struct PictureToWrite {
  int32_t width = 0;
  int32_t height = 0;
  int32_t channels = 4;  ///< 3: red, green, blue; 4: and alpha
  SampleType type = SampleType::whole8;
  std::span<const uint8_t> samples;  ///< row after row without gaps; whole16 is 0 to 65535
  PixelWindow display;               ///< EXR only: the full image
  PixelWindow data;                  ///< EXR only: the part of the samples that is stored
  int32_t left = 0;                  ///< EXR only: place of the first sample on the full image
  int32_t top = 0;

  const PictureFacts* facts = nullptr;  ///< of the picture it was made from; null: nothing is known
  std::optional<std::time_t> madeAt;    ///< goes into the file; none: the same samples are the same file
  int32_t pngLevel = 1;                 ///< 0 to 9
  int32_t jpegQuality = 90;             ///< 1 to 100
  std::string exrCompression = "zip";   ///< one of exrCompressions()
  std::string tiffCompression = "zip";  ///< one of tiffCompressions()
};

/// The names of the ways to compress, in the order to list them.
const std::vector<std::string>& exrCompressions();
const std::vector<std::string>& tiffCompressions();

/// The name of the compression that the EXR was stored with.
std::string compressionOf(const ExrFacts& facts);

/// "2026:03:09 08:05:00" in universal time, as picture files write it.
std::string stampText(std::time_t time);

// The writers. All throw BrokenPicture when their library fails, and give the whole file.
std::vector<uint8_t> encodedPng(const PictureToWrite& picture);   ///< whole numbers only
std::vector<uint8_t> encodedTiff(const PictureToWrite& picture);  ///< no halves
std::vector<uint8_t> encodedExr(const PictureToWrite& picture);   ///< halves and floats only
std::vector<uint8_t> encodedJpeg(const PictureToWrite& picture);  ///< three channels of 8 bits only

}  // namespace cli
