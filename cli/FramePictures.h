/// The pictures of frames, from files to what the effect gets and back.
#pragma once

#include <filesystem>

#include "cli/Arguments.h"
#include "cli/ImageFile.h"

namespace cli {

class FramePictures {
 public:
  /// @param arguments  outlives this
  explicit FramePictures(const Arguments& arguments) : arguments_(arguments) {}

  /// The picture as the effect is to get it: at the wanted depth, with what of it lies beyond the full image. Safe on
  /// any thread.
  /// @throws UserError
  FilePicture read(const std::filesystem::path& file) const;

  /// The size that read() gives the picture, from the file's header.
  /// @throws UserError
  PictureSize sizeOf(const std::filesystem::path& file) const { return pictureSize(file, choices()); }

  /// Safe on any thread.
  /// @throws UserError
  void write(const std::filesystem::path& file, const FilePicture& picture) const;

 private:
  ReadChoices choices() const;

  const Arguments& arguments_;
};

}  // namespace cli
