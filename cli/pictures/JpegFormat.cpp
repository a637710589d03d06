// JPEG by libjpeg, read only. Errors of the library jump over its frames, as those of libpng do.

#include <cstddef>
#include <cstdio>
// The library wants both before its own.
#include <jpeglib.h>
// The numbers of the library's warnings.
#include <jerror.h>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstring>

#include "cli/pictures/Exif.h"
#include "cli/pictures/StoredPicture.h"

namespace cli {
namespace {

struct ErrorManager {
  jpeg_error_mgr library;  // first, so that the library's pointer is ours
  jmp_buf back;
};

[[noreturn]] void jumpOut(j_common_ptr jpeg) {
  std::longjmp(reinterpret_cast<ErrorManager*>(jpeg->err)->back, 1);
}

/// A whole file gives none of the warnings but these, which are slips of other programs and lose nothing.
bool isHarmless(int warning) {
  return warning == JWRN_EXTRANEOUS_DATA || warning == JWRN_ADOBE_XFORM || warning == JWRN_JFIF_MAJOR;
}

void takeMessage(j_common_ptr jpeg, int level) {
  // Below 0 are warnings: data that is missing or makes no sense. The library would fill in grey.
  if (level < 0 && !isHarmless(jpeg->err->msg_code)) jumpOut(jpeg);
}

void printNothing(j_common_ptr) {}

class JpegReader final : public PictureReader {
 public:
  explicit JpegReader(std::span<const uint8_t> file) : file_(file) {
    jpeg_.err = jpeg_std_error(&errors_.library);
    errors_.library.error_exit = jumpOut;
    errors_.library.emit_message = takeMessage;
    errors_.library.output_message = printNothing;
    if (!readHeader()) refuse();
    if (jpeg_.num_components == 4) {
      jpeg_destroy_decompress(&jpeg_);
      throw OtherPicture("is a CMYK picture; grey and RGB, each with or without alpha, can be read");
    }
    layout_.width = layout_.fullWidth = jpeg_.image_width;
    layout_.height = layout_.fullHeight = jpeg_.image_height;
    layout_.channels = jpeg_.num_components == 1 ? 1 : 3;
    layout_.green = layout_.channels == 3 ? 1 : 0;
    layout_.blue = layout_.channels == 3 ? 2 : 0;
    layout_.orientation = orientation();
  }
  JpegReader(const JpegReader&) = delete;
  JpegReader& operator=(const JpegReader&) = delete;
  ~JpegReader() override { jpeg_destroy_decompress(&jpeg_); }

  void read(std::span<uint8_t> samples) override {
    const auto rowBytes = static_cast<std::size_t>(layout_.width) * static_cast<std::size_t>(layout_.channels);
    if (!readRows(samples.data(), rowBytes)) throw BrokenPicture(message());
  }

 private:
  std::string message() {
    std::array<char, JMSG_LENGTH_MAX> text{};
    errors_.library.format_message(reinterpret_cast<j_common_ptr>(&jpeg_), text.data());
    return text.data();
  }

  [[noreturn]] void refuse() {
    const std::string reason = message();
    jpeg_destroy_decompress(&jpeg_);
    throw BrokenPicture(reason);
  }

  bool readHeader() {
    if (setjmp(errors_.back) != 0) return false;
    jpeg_create_decompress(&jpeg_);
    jpeg_mem_src(&jpeg_, file_.data(), file_.size());
    jpeg_save_markers(&jpeg_, JPEG_APP0 + 1, 0xFFFF);
    jpeg_read_header(&jpeg_, TRUE);
    return true;
  }

  int32_t orientation() const {
    constexpr std::array<uint8_t, 6> head = {'E', 'x', 'i', 'f', 0, 0};
    for (const jpeg_marker_struct* marker = jpeg_.marker_list; marker != nullptr; marker = marker->next) {
      const std::span<const uint8_t> data(marker->data, marker->data_length);
      if (data.size() > head.size() && std::equal(head.begin(), head.end(), data.begin())) {
        return exifOrientation(data.subspan(head.size()));
      }
    }
    return 1;
  }

  bool readRows(uint8_t* samples, std::size_t rowBytes) {
    if (setjmp(errors_.back) != 0) return false;
    jpeg_.out_color_space = jpeg_.num_components == 1 ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_start_decompress(&jpeg_);
    while (jpeg_.output_scanline < jpeg_.output_height) {
      JSAMPROW row = samples + jpeg_.output_scanline * rowBytes;
      jpeg_read_scanlines(&jpeg_, &row, 1);
    }
    jpeg_finish_decompress(&jpeg_);
    return true;
  }

  std::span<const uint8_t> file_;
  ErrorManager errors_{};
  jpeg_decompress_struct jpeg_{};
};

}  // namespace

std::unique_ptr<PictureReader> openJpeg(std::span<const uint8_t> file) {
  return std::make_unique<JpegReader>(file);
}

}  // namespace cli
