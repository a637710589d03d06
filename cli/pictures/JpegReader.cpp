// JPEG by libjpeg: reading.

#include "cli/pictures/JpegErrors.h"
// The numbers of the library's warnings.
#include <jerror.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "cli/pictures/Exif.h"
#include "cli/pictures/StoredPicture.h"

namespace cli {
namespace {

/// A whole file gives none of the warnings but these, which are slips of other programs and lose nothing.
bool isHarmless(int warning) {
  return warning == JWRN_EXTRANEOUS_DATA || warning == JWRN_ADOBE_XFORM || warning == JWRN_JFIF_MAJOR;
}

void takeMessage(j_common_ptr jpeg, int level) {
  // Below 0 are warnings: data that is missing or makes no sense. The library would fill in grey.
  if (level < 0 && !isHarmless(jpeg->err->msg_code)) jpegJumpOut(jpeg);
}

class JpegReader final : public PictureReader {
 public:
  explicit JpegReader(std::span<const uint8_t> file) : file_(file) {
    jpeg_.err = jpeg_std_error(&errors_.library);
    errors_.library.error_exit = jpegJumpOut;
    errors_.library.emit_message = takeMessage;
    errors_.library.output_message = jpegPrintNothing;
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
    takeFacts();
  }
  JpegReader(const JpegReader&) = delete;
  JpegReader& operator=(const JpegReader&) = delete;
  ~JpegReader() override { jpeg_destroy_decompress(&jpeg_); }

  void read(std::span<uint8_t> samples) override {
    const auto rowBytes = static_cast<std::size_t>(layout_.width) * static_cast<std::size_t>(layout_.channels);
    if (!readRows(samples.data(), rowBytes)) throw BrokenPicture(message());
  }

 private:
  std::string message() { return jpegMessage(reinterpret_cast<j_common_ptr>(&jpeg_)); }

  [[noreturn]] void refuse() {
    const std::string reason = message();
    jpeg_destroy_decompress(&jpeg_);
    throw BrokenPicture(reason);
  }

  bool readHeader() {
    if (setjmp(errors_.back) != 0) return false;
    jpeg_create_decompress(&jpeg_);
    jpeg_mem_src(&jpeg_, file_.data(), file_.size());
    for (const int marker : {JPEG_APP0 + 1, JPEG_APP0 + 2, JPEG_COM}) jpeg_save_markers(&jpeg_, marker, 0xFFFF);
    jpeg_read_header(&jpeg_, TRUE);
    return true;
  }

  /// Calls take with the data of each marker of this number that begins with the head, without the head.
  template <class Take>
  void eachMarker(int number, std::span<const uint8_t> head, const Take& take) const {
    for (const jpeg_marker_struct* marker = jpeg_.marker_list; marker != nullptr; marker = marker->next) {
      const std::span<const uint8_t> data(marker->data, marker->data_length);
      if (marker->marker == number && data.size() > head.size() && std::equal(head.begin(), head.end(), data.begin())) {
        take(data.subspan(head.size()));
      }
    }
  }

  void takeFacts() {
    facts_.kind = FileKind::jpeg;
    eachMarker(JPEG_APP0 + 1, jpegExifHead, [&](std::span<const uint8_t> block) {
      if (!facts_.exif.empty()) return;
      facts_.exif.assign(block.begin(), block.end());
      layout_.orientation = exifOrientation(block);
      makeExifUpright(facts_.exif);
    });
    const std::span xmpHead(reinterpret_cast<const uint8_t*>(jpegXmpHead), sizeof jpegXmpHead);
    eachMarker(JPEG_APP0 + 1, xmpHead,
               [&](std::span<const uint8_t> text) { facts_.xmp.assign(text.begin(), text.end()); });
    eachMarker(JPEG_COM, {}, [&](std::span<const uint8_t> text) {
      std::string note(text.begin(), text.end());
      while (!note.empty() && note.back() == 0) note.pop_back();
      facts_.texts.push_back({"Comment", std::move(note)});
    });
    if (jpeg_.saw_JFIF_marker != 0 && jpeg_.X_density > 0 && jpeg_.Y_density > 0) {
      facts_.pixelAspect = static_cast<double>(jpeg_.Y_density) / jpeg_.X_density;
      const double inches = jpeg_.density_unit == 2 ? 2.54 : 1.0;
      if (jpeg_.density_unit != 0) facts_.density = PixelDensity{jpeg_.X_density * inches, jpeg_.Y_density * inches};
    }
    if (readProfile()) facts_.iccProfile.assign(profile_, profile_ + profileSize_);
    std::free(profile_);  // NOLINT(*-no-malloc): the library hands out such memory
    profile_ = nullptr;
  }

  /// A profile in pieces that don't fit together is none.
  bool readProfile() {
    if (setjmp(errors_.back) != 0) return false;
    return jpeg_read_icc_profile(&jpeg_, &profile_, &profileSize_) != 0;
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
  JpegErrorManager errors_{};
  jpeg_decompress_struct jpeg_{};
  JOCTET* profile_ = nullptr;
  unsigned int profileSize_ = 0;
};

}  // namespace

std::unique_ptr<PictureReader> openJpeg(std::span<const uint8_t> file) {
  return std::make_unique<JpegReader>(file);
}

}  // namespace cli
