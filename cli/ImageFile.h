/// Pictures from and to files.
///
/// Read: PNG, TIFF, EXR and JPEG, told by their first bytes, as grey, grey with alpha, RGB or RGBA, of 8 bits, 16 bits
/// or float (half included). Written: PNG and TIFF at 8 and 16 bits, JPEG at 8, TIFF and EXR as float. PNG and TIFF
/// hold straight color as the host does, so that a picture comes back to the last bit; EXR holds color multiplied by
/// alpha. The same picture gives the same bytes.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "cli/pictures/StoredPicture.h"
#include "host/Image.h"

namespace cli {

/// 65535-scaled channel of a file to the host's 0 to 32768, rounded to the nearest. Two file values share most host
/// values; every host value survives toFile16 and back.
constexpr uint16_t fromFile16(uint16_t channel) {
  return static_cast<uint16_t>((static_cast<uint32_t>(channel) * 32768u + 32767u) / 65535u);
}

/// The host's 0 to 32768 to a 65535-scaled channel of a file, rounded to the nearest. Values above full scale are full.
constexpr uint16_t toFile16(uint16_t channel) {
  return channel >= 32768u ? uint16_t{65535}
                           : static_cast<uint16_t>((static_cast<uint32_t>(channel) * 65535u + 16384u) / 32768u);
}

/// Enough for a picture of 8192 x 8192 float pixels.
inline constexpr uint64_t usualMemoryLimit = 4'500'000'000;

/// What of a picture that reaches beyond its full image is read.
enum class Overscan { cut, keep };

struct ReadChoices {
  /// Bytes that rendering the picture may take, reckoned from the file's header; beyond it the file is refused before
  /// the memory is taken.
  uint64_t mostMemory = usualMemoryLimit;
  Overscan overscan = Overscan::cut;
  OtherChannels others = OtherChannels::keep;
};

struct FilePicture {
  standin::Image image;                       ///< its origin is its place on the full image
  std::shared_ptr<const PictureFacts> facts;  ///< what the file tells beside; never null
};

/// Reads a picture at the file's own depth. A crop stands in its place on the full image, clear around it, and the
/// orientation that a camera noted is applied. Pixels without alpha are opaque.
/// @throws UserError naming the file: missing, no plain file, cut or otherwise unreadable, more or other channels than
///         RGBA, a pixel type between the depths, larger than the host's 30000 pixels or than mostMemory
FilePicture readPictureAndFacts(const std::filesystem::path& file, const ReadChoices& choices);

/// The same without what it tells beside.
standin::Image readPicture(const std::filesystem::path& file, uint64_t mostMemory = usualMemoryLimit);

/// Reads the picture of a layer. For any thread.
using LayerReader = std::function<standin::Image(const std::filesystem::path&)>;

/// Layers as their files have them.
LayerReader plainLayers(uint64_t mostMemory = usualMemoryLimit);

struct PictureSize {
  int32_t width = 0;
  int32_t height = 0;
  bool operator==(const PictureSize&) const = default;
};

/// The size that the picture has when it is read with these choices, from the file's header.
/// @throws UserError as readPicture does, but for what only the pixels show
PictureSize pictureSize(const std::filesystem::path& file, const ReadChoices& choices);

/// Checks, before any work is done, that a picture of this depth can be written to the file: its ending, its folder,
/// what stands in its place.
/// @throws UserError naming the file and what would be right
void checkWritable(const std::filesystem::path& file, standin::Depth depth);

/// What a file to be written is by its ending, and the most bits that it can hold.
/// @throws UserError for another ending
FileKind writtenKind(const std::filesystem::path& file);
standin::Depth mostDepthOf(const std::filesystem::path& file);

/// What a file to be read is by its first bytes; nothing when it can't be read as a picture at all.
std::optional<FileKind> storedKind(const std::filesystem::path& file);

enum class ExrType { asInput, half, float32 };

/// How a file is written.
struct WriteChoices {
  bool stamp = false;                   ///< the time of day goes in; without it, the same picture is the same file
  int32_t pngLevel = 1;                 ///< 0 to 9: more makes smaller files and takes longer
  int32_t jpegQuality = 90;             ///< 1 to 100
  ExrType exrType = ExrType::asInput;   ///< of a picture that was no float: float
  std::string exrCompression = {};      ///< one of exrCompressions(); empty: the input's own, zip without one
  std::string tiffCompression = "zip";  ///< one of tiffCompressions()
  bool alpha = true;                    ///< else, and in a JPEG, the colors lie over the matte
  std::array<uint8_t, 3> matte{};       ///< red, green, blue; full is 255
};

/// Writes the picture, whole or not at all (files/PutFile.h tells how).
/// @param facts  what is told again of the file that it was made from; null: nothing
/// @throws UserError naming the file
void writePicture(const std::filesystem::path& file, const standin::Image& picture, const WriteChoices& choices = {},
                  const PictureFacts* facts = nullptr);

}  // namespace cli
