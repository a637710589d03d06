// JPEG by libjpeg: writing.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "cli/pictures/JpegErrors.h"
#include "cli/pictures/StoredPicture.h"

namespace cli {
namespace {

class JpegWriter {
 public:
  explicit JpegWriter(const PictureToWrite& picture) : picture_(picture) {
    jpeg_.err = jpeg_std_error(&errors_.library);
    errors_.library.error_exit = jpegJumpOut;
    errors_.library.output_message = jpegPrintNothing;
    if (picture.facts != nullptr) prepare(*picture.facts);
    if (picture.madeAt) stamp_ = "Made " + stampText(*picture.madeAt);
  }
  JpegWriter(const JpegWriter&) = delete;
  JpegWriter& operator=(const JpegWriter&) = delete;
  ~JpegWriter() {
    jpeg_destroy_compress(&jpeg_);
    std::free(bytes_);  // NOLINT(*-no-malloc): the library's memory
  }

  std::vector<uint8_t> file() {
    if (!write()) throw BrokenPicture(jpegMessage(reinterpret_cast<j_common_ptr>(&jpeg_)));
    return {bytes_, bytes_ + size_};
  }

 private:
  static constexpr std::size_t mostInMarker = 65533;

  // Markers with their heads, before anything may jump. What doesn't fit into one is left out.
  void prepare(const PictureFacts& facts) {
    if (!facts.exif.empty()) {
      exif_.assign(jpegExifHead.begin(), jpegExifHead.end());
      exif_.insert(exif_.end(), facts.exif.begin(), facts.exif.end());
    }
    if (!facts.xmp.empty()) {
      xmp_.assign(std::begin(jpegXmpHead), std::end(jpegXmpHead));
      xmp_.insert(xmp_.end(), facts.xmp.begin(), facts.xmp.end());
    }
    for (const TextFact& fact : facts.texts) {
      if (fact.key == "Comment" || fact.key == "Description") comment_ = fact.text;
    }
  }

  void tellDensity(const PictureFacts& facts) {
    const auto whole = [](double number) { return static_cast<UINT16>(std::clamp(std::lround(number), 1L, 65535L)); };
    if (facts.density) {
      jpeg_.density_unit = 1;
      jpeg_.X_density = whole(facts.density->x);
      jpeg_.Y_density = whole(facts.density->y);
    } else if (facts.pixelAspect != 1.0) {
      constexpr double fine = 1000.0;
      jpeg_.density_unit = 0;
      jpeg_.X_density = whole(fine);
      jpeg_.Y_density = whole(fine * facts.pixelAspect);
    }
  }

  void marker(int number, const uint8_t* data, std::size_t size) {
    if (size > 0 && size <= mostInMarker) jpeg_write_marker(&jpeg_, number, data, static_cast<unsigned int>(size));
  }

  bool write() {
    if (setjmp(errors_.back) != 0) return false;
    jpeg_create_compress(&jpeg_);
    jpeg_mem_dest(&jpeg_, &bytes_, &size_);
    jpeg_.image_width = static_cast<JDIMENSION>(picture_.width);
    jpeg_.image_height = static_cast<JDIMENSION>(picture_.height);
    jpeg_.input_components = 3;
    jpeg_.in_color_space = JCS_RGB;
    jpeg_set_defaults(&jpeg_);
    jpeg_set_quality(&jpeg_, picture_.jpegQuality, TRUE);
    // Dots have hard, coloured edges: colour is stored for each pixel.
    jpeg_.comp_info[0].h_samp_factor = 1;
    jpeg_.comp_info[0].v_samp_factor = 1;
    jpeg_.optimize_coding = TRUE;
    if (picture_.facts != nullptr) tellDensity(*picture_.facts);
    jpeg_start_compress(&jpeg_, TRUE);
    marker(JPEG_APP0 + 1, exif_.data(), exif_.size());
    marker(JPEG_APP0 + 1, xmp_.data(), xmp_.size());
    marker(JPEG_COM, reinterpret_cast<const uint8_t*>(comment_.data()), comment_.size());
    marker(JPEG_COM, reinterpret_cast<const uint8_t*>(stamp_.data()), stamp_.size());
    if (picture_.facts != nullptr && !picture_.facts->iccProfile.empty()) {
      jpeg_write_icc_profile(&jpeg_, picture_.facts->iccProfile.data(),
                             static_cast<unsigned int>(picture_.facts->iccProfile.size()));
    }
    const std::size_t rowBytes = static_cast<std::size_t>(picture_.width) * 3;
    while (jpeg_.next_scanline < jpeg_.image_height) {
      // The library only reads the row.
      auto* row = const_cast<JSAMPROW>(picture_.samples.data() + jpeg_.next_scanline * rowBytes);  // NOLINT
      jpeg_write_scanlines(&jpeg_, &row, 1);
    }
    jpeg_finish_compress(&jpeg_);
    return true;
  }

  const PictureToWrite& picture_;
  JpegErrorManager errors_{};
  jpeg_compress_struct jpeg_{};
  unsigned char* bytes_ = nullptr;
  unsigned long size_ = 0;  // NOLINT(google-runtime-int): the library's type
  std::vector<uint8_t> exif_;
  std::vector<uint8_t> xmp_;
  std::string comment_;
  std::string stamp_;
};

}  // namespace

std::vector<uint8_t> encodedJpeg(const PictureToWrite& picture) {
  return JpegWriter(picture).file();
}

}  // namespace cli
