// PNG by libpng: reading.

#include <algorithm>
#include <bit>
#include <cstring>

#include "cli/pictures/Exif.h"
#include "cli/pictures/PngErrors.h"
#include "cli/pictures/PngFacts.h"
#include "cli/pictures/StoredPicture.h"
#include "cli/pictures/TextEncoding.h"

namespace cli {
namespace {

using standin::Depth;

class PngReader final : public PictureReader {
 public:
  explicit PngReader(std::span<const uint8_t> file) : rest_(file) {
    facts_.kind = FileKind::png;
    facts_.png = own_;
    png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, message_, pngJumpOut, pngKeepQuiet);
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
    // Notes may stand behind the pixels.
    takeColors();
    takeDensity();
    takeNotes();
    takeUnknownChunks();
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
    png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_IF_SAFE, nullptr, 0);
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
    png_read_end(png_, info_);
    return true;
  }

  void takeColors() {
    png_charp name = nullptr;
    int compression = 0;
    png_bytep profile = nullptr;
    png_uint_32 size = 0;
    if (png_get_iCCP(png_, info_, &name, &compression, &profile, &size) != 0) {
      facts_.iccProfile.assign(profile, profile + size);
    }
    std::array<double, 8> places{};
    if (png_get_cHRM(png_, info_, &places[6], &places[7], &places[0], &places[1], &places[2], &places[3], &places[4],
                     &places[5]) != 0) {
      facts_.chromaticities.emplace();
      std::transform(places.begin(), places.end(), facts_.chromaticities->begin(),
                     [](double place) { return static_cast<float>(place); });
    }
    png_fixed_point gamma = 0;
    if (png_get_gAMA_fixed(png_, info_, &gamma) != 0) own_->gamma = gamma;
    int intent = 0;
    if (png_get_sRGB(png_, info_, &intent) != 0) own_->srgbIntent = intent;
  }

  void takeDensity() {
    png_uint_32 x = 0;
    png_uint_32 y = 0;
    int unit = 0;
    if (png_get_pHYs(png_, info_, &x, &y, &unit) == 0 || x == 0 || y == 0) return;
    facts_.pixelAspect = static_cast<double>(y) / x;
    constexpr double metresToTheInch = 0.0254;
    if (unit == PNG_RESOLUTION_METER) {
      facts_.density = PixelDensity{x * metresToTheInch, y * metresToTheInch};
    }
  }

  void takeNotes() {
    png_textp texts = nullptr;
    int count = 0;
    png_get_text(png_, info_, &texts, &count);
    for (const png_text& text : std::span(texts, static_cast<std::size_t>(std::max(count, 0)))) {
      if (std::strcmp(text.key, pngXmpKey) == 0) {
        facts_.xmp = text.text;
      } else {
        facts_.texts.push_back({text.key, text.compression > 0 ? text.text : utf8FromLatin1(text.text)});
      }
    }
    png_uint_32 exifSize = 0;
    png_bytep exif = nullptr;
    if (png_get_eXIf_1(png_, info_, &exifSize, &exif) != 0) {
      facts_.exif.assign(exif, exif + exifSize);
      makeExifUpright(facts_.exif);
    }
  }

  void takeUnknownChunks() {
    png_unknown_chunkp chunks = nullptr;
    const int count = png_get_unknown_chunks(png_, info_, &chunks);
    for (const png_unknown_chunk& chunk : std::span(chunks, static_cast<std::size_t>(std::max(count, 0)))) {
      PngFacts::Chunk& copy = own_->chunks.emplace_back();
      std::copy(std::begin(chunk.name), std::end(chunk.name), copy.name.begin());
      copy.data.assign(chunk.data, chunk.data + chunk.size);
      copy.place = chunk.location;
    }
  }

  std::span<const uint8_t> rest_;
  std::shared_ptr<PngFacts> own_ = std::make_shared<PngFacts>();
  char message_[pngMessageSize] = "";
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  std::vector<png_bytep> rows_;
};

}  // namespace

std::unique_ptr<PictureReader> openPng(std::span<const uint8_t> file) {
  return std::make_unique<PngReader>(file);
}

}  // namespace cli
