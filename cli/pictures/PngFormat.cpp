// PNG by libpng. The library reports errors by a jump over its own frames, so what must outlive a jump lies in the
// object, and functions that are jumped out of hold nothing that wants to be destroyed.

#include <png.h>

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstring>

#include "cli/pictures/Exif.h"
#include "cli/pictures/StoredPicture.h"

namespace cli {
namespace {

using standin::Depth;

constexpr std::size_t messageSize = 200;

[[noreturn]] void jumpOut(png_structp png, png_const_charp text) {
  auto* const message = static_cast<char*>(png_get_error_ptr(png));
  std::snprintf(message, messageSize, "%s", text);
  png_longjmp(png, 1);
}

void keepQuiet(png_structp, png_const_charp) {}

class PngReader final : public PictureReader {
 public:
  explicit PngReader(std::span<const uint8_t> file) : rest_(file) {
    png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, message_, jumpOut, keepQuiet);
    info_ = png_ == nullptr ? nullptr : png_create_info_struct(png_);
    if (info_ == nullptr) {
      png_destroy_read_struct(&png_, nullptr, nullptr);
      throw std::bad_alloc();
    }
    if (!readHeader()) {
      png_destroy_read_struct(&png_, &info_, nullptr);
      throw BrokenPicture(message_);
    }
    // Deflate makes nothing shorter than a 1032nd of it: a header that promises more lies, and is refused unread.
    constexpr uint64_t mostGrowth = 1040;
    if (layout_.bytes() / mostGrowth > file.size()) {
      png_destroy_read_struct(&png_, &info_, nullptr);
      throw BrokenPicture("the file is too short for the size that it tells");
    }
  }
  PngReader(const PngReader&) = delete;
  PngReader& operator=(const PngReader&) = delete;
  ~PngReader() override { png_destroy_read_struct(&png_, &info_, nullptr); }

  void read(std::span<uint8_t> samples) override {
    rows_.resize(static_cast<std::size_t>(layout_.height));
    const std::size_t rowBytes = png_get_rowbytes(png_, info_);
    if (rowBytes * rows_.size() != samples.size())
      throw BrokenPicture("its rows have another length than its header says");
    for (std::size_t y = 0; y < rows_.size(); ++y) rows_[y] = samples.data() + y * rowBytes;
    if (!readRows()) throw BrokenPicture(message_);
  }

 private:
  static void give(png_structp png, png_bytep to, std::size_t count) {
    auto& rest = *static_cast<std::span<const uint8_t>*>(png_get_io_ptr(png));
    if (count > rest.size()) png_error(png, "the file is cut");
    std::memcpy(to, rest.data(), count);
    rest = rest.subspan(count);
  }

  bool readHeader() {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    png_set_read_fn(png_, &rest_, give);
    // Sizes are held to our own limits, with our own words.
    png_set_user_limits(png_, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_read_info(png_, info_);
    png_set_expand(png_);  // palettes, fewer than 8 bits, and a clear colour
    png_set_interlace_handling(png_);
    if constexpr (std::endian::native == std::endian::little) png_set_swap(png_);
    png_read_update_info(png_, info_);

    layout_.width = layout_.fullWidth = png_get_image_width(png_, info_);
    layout_.height = layout_.fullHeight = png_get_image_height(png_, info_);
    layout_.depth = png_get_bit_depth(png_, info_) == 16 ? Depth::k16 : Depth::k8;
    layout_.channels = png_get_channels(png_, info_);
    const int32_t colors = layout_.channels >= 3 ? 3 : 1;
    layout_.green = colors == 3 ? 1 : 0;
    layout_.blue = colors == 3 ? 2 : 0;
    layout_.alpha = layout_.channels > colors ? colors : -1;
    png_uint_32 exifSize = 0;
    png_bytep exif = nullptr;
    if (png_get_eXIf_1(png_, info_, &exifSize, &exif) != 0) layout_.orientation = exifOrientation({exif, exifSize});
    return true;
  }

  bool readRows() {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    png_read_image(png_, rows_.data());
    png_read_end(png_, nullptr);
    return true;
  }

  std::span<const uint8_t> rest_;
  char message_[messageSize] = "";
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  std::vector<png_bytep> rows_;
};

class PngWriter {
 public:
  explicit PngWriter(const PictureToWrite& picture) : picture_(picture) {
    png_ = png_create_write_struct(PNG_LIBPNG_VER_STRING, message_, jumpOut, keepQuiet);
    info_ = png_ == nullptr ? nullptr : png_create_info_struct(png_);
    if (info_ == nullptr) {
      png_destroy_write_struct(&png_, nullptr);
      throw std::bad_alloc();
    }
  }
  PngWriter(const PngWriter&) = delete;
  PngWriter& operator=(const PngWriter&) = delete;
  ~PngWriter() { png_destroy_write_struct(&png_, &info_); }

  std::vector<uint8_t> file() {
    if (!write()) throw BrokenPicture(message_);
    return std::move(file_);
  }

 private:
  static void take(png_structp png, png_bytep from, std::size_t count) {
    auto& file = *static_cast<std::vector<uint8_t>*>(png_get_io_ptr(png));
    try {
      file.insert(file.end(), from, from + count);
      return;
    } catch (const std::bad_alloc&) {
      // No exception may cross the library; the jump is left to the lines below, outside the handler.
    }
    png_error(png, "out of memory");
  }

  bool write() {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    png_set_write_fn(png_, &file_, take, nullptr);
    const bool deep = picture_.depth == Depth::k16;
    png_set_IHDR(png_, info_, static_cast<png_uint_32>(picture_.width), static_cast<png_uint_32>(picture_.height),
                 deep ? 16 : 8, picture_.channels == 4 ? PNG_COLOR_TYPE_RGBA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png_, picture_.pngLevel);
    // Trying all filters on each row costs as much as the compression and gains a fiftieth of the size.
    png_set_filter(png_, PNG_FILTER_TYPE_BASE, picture_.pngLevel > 1 ? PNG_ALL_FILTERS : PNG_FILTER_PAETH);
    if (picture_.madeAt) {
      png_time time{};
      png_convert_from_time_t(&time, *picture_.madeAt);
      png_set_tIME(png_, info_, &time);
    }
    png_write_info(png_, info_);
    if (deep && std::endian::native == std::endian::little) png_set_swap(png_);
    const std::size_t rowBytes =
        static_cast<std::size_t>(picture_.width) * static_cast<std::size_t>(picture_.channels) * (deep ? 2 : 1);
    for (int32_t y = 0; y < picture_.height; ++y) {
      png_write_row(png_, picture_.samples.data() + static_cast<std::size_t>(y) * rowBytes);
    }
    png_write_end(png_, info_);
    return true;
  }

  const PictureToWrite& picture_;
  char message_[messageSize] = "";
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  std::vector<uint8_t> file_;
};

}  // namespace

std::unique_ptr<PictureReader> openPng(std::span<const uint8_t> file) {
  return std::make_unique<PngReader>(file);
}

std::vector<uint8_t> encodedPng(const PictureToWrite& picture) {
  return PngWriter(picture).file();
}

}  // namespace cli
