/// The pictures of frames, from files to what the effect gets and back, in the color space that it is to work in.
#pragma once

#include <array>
#include <filesystem>
#include <memory>

#include "cli/Arguments.h"
#include "cli/ImageFile.h"
#include "cli/color/ColorConversion.h"
#include "cli/color/FileEncoding.h"

namespace cli {

class FramePictures {
 public:
  /// @param arguments  outlives this
  /// @throws UserError for a color space that there isn't
  explicit FramePictures(const Arguments& arguments);

  /// The picture as the effect is to get it: at the wanted depth, with what of it lies beyond the full image. A picture
  /// whose colors are converted is float where no depth is wanted. Safe on any thread.
  /// @throws UserError
  FilePicture read(const std::filesystem::path& file) const;

  /// Reads pictures of layers into the same space; to be used while this lives.
  LayerReader layerReader() const;

  /// The size that read() gives the picture, from the file's header.
  /// @throws UserError
  PictureSize sizeOf(const std::filesystem::path& file) const { return pictureSize(file, choices()); }

  /// Bits that the file gets. Without a conversion those of the picture; with one as many as its input had, as far as
  /// the file can hold them.
  standin::Depth fileDepth(const std::filesystem::path& file, const FilePicture& picture) const;

  /// Safe on any thread.
  /// @throws UserError
  void write(const std::filesystem::path& file, const FilePicture& picture) const;

 private:
  ReadChoices choices() const;
  void convert(const ColorConversion* conversion, standin::Image& image) const;
  const ColorConversion* toWork(FileKind kind) const { return toWork_[holdsLight(kind) ? 1 : 0].get(); }
  const ColorConversion* fromWork(FileKind kind) const { return fromWork_[holdsLight(kind) ? 1 : 0].get(); }

  const Arguments& arguments_;
  // For display-encoded files and for scene-linear ones; null where nothing is to be converted.
  std::array<std::unique_ptr<ColorConversion>, 2> toWork_;
  std::array<std::unique_ptr<ColorConversion>, 2> fromWork_;
};

}  // namespace cli
