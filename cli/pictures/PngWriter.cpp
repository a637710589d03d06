// PNG by libpng: writing.

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "cli/pictures/PngErrors.h"
#include "cli/pictures/PngFacts.h"
#include "cli/pictures/StoredPicture.h"
#include "cli/pictures/TextEncoding.h"

namespace cli {
namespace {

class PngWriter {
 public:
  explicit PngWriter(const PictureToWrite& picture) : picture_(picture) {
    if (picture.facts != nullptr) {
      for (const TextFact& fact : picture.facts->texts) addNote(fact.key, fact.text);
      if (!picture.facts->xmp.empty()) addNote(pngXmpKey, picture.facts->xmp);
      exif_ = picture.facts->exif;
    }
    png_ = png_create_write_struct(PNG_LIBPNG_VER_STRING, message_, pngJumpOut, pngKeepQuiet);
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
    const bool deep = picture_.type == SampleType::whole16;
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
    if (picture_.facts != nullptr) tell(*picture_.facts);
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

  // Called where errors may jump: what needs memory of its own was put into the object before.
  void tell(const PictureFacts& facts) {
    // A profile that the library finds fault with is left out, and the picture written all the same.
    png_set_benign_errors(png_, 1);
    if (!facts.iccProfile.empty()) {
      png_set_iCCP(png_, info_, "profile", PNG_COMPRESSION_TYPE_BASE, facts.iccProfile.data(),
                   static_cast<png_uint_32>(facts.iccProfile.size()));
    }
    if (facts.png != nullptr && facts.png->srgbIntent) png_set_sRGB(png_, info_, *facts.png->srgbIntent);
    if (facts.png != nullptr && facts.png->gamma) png_set_gAMA_fixed(png_, info_, *facts.png->gamma);
    if (facts.chromaticities) {
      const auto number = [&](std::size_t i) { return static_cast<double>((*facts.chromaticities)[i]); };
      png_set_cHRM(png_, info_, number(6), number(7), number(0), number(1), number(2), number(3), number(4), number(5));
    }
    tellDensity(facts);
    tellNotes();
    if (!exif_.empty()) {
      png_set_eXIf_1(png_, info_, static_cast<png_uint_32>(exif_.size()), exif_.data());
    }
    if (facts.png != nullptr) tellChunks(*facts.png);
  }

  void tellDensity(const PictureFacts& facts) {
    constexpr double inchesToTheMetre = 1.0 / 0.0254;
    const auto whole = [](double number) { return static_cast<png_uint_32>(std::lround(number)); };
    if (facts.density) {
      png_set_pHYs(png_, info_, whole(facts.density->x * inchesToTheMetre), whole(facts.density->y * inchesToTheMetre),
                   PNG_RESOLUTION_METER);
    } else if (facts.pixelAspect != 1.0) {
      constexpr double fine = 10000.0;
      png_set_pHYs(png_, info_, whole(fine), whole(fine * facts.pixelAspect), PNG_RESOLUTION_UNKNOWN);
    }
  }

  /// A note in the encoding that it is written in.
  struct Note {
    std::string key;
    std::string text;
    bool latin1;
  };

  void addNote(const std::string& key, const std::string& text) {
    const auto latin1 = key == pngXmpKey ? std::nullopt : latin1FromUtf8(text);
    notes_.push_back({key, latin1.value_or(text), latin1.has_value()});
  }

  void tellNotes() {
    for (Note& note : notes_) {
      png_text text{};
      text.compression = note.latin1 ? PNG_TEXT_COMPRESSION_NONE : PNG_ITXT_COMPRESSION_NONE;
      text.key = note.key.data();
      text.text = note.text.data();
      text.text_length = note.text.size();
      png_set_text(png_, info_, &text, 1);
    }
  }

  void tellChunks(const PngFacts& facts) {
    // The library writes unknown chunks only when told that they are known to be safe.
    png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_IF_SAFE, nullptr, 0);
    for (const PngFacts::Chunk& chunk : facts.chunks) {
      png_unknown_chunk copy{};
      std::copy(chunk.name.begin(), chunk.name.end(), std::begin(copy.name));
      // The library copies the data and only lacks the const.
      copy.data = const_cast<png_bytep>(chunk.data.data());  // NOLINT
      copy.size = chunk.data.size();
      copy.location = chunk.place;
      png_set_unknown_chunks(png_, info_, &copy, 1);
    }
  }

  const PictureToWrite& picture_;
  std::vector<Note> notes_;
  std::vector<uint8_t> exif_;
  char message_[pngMessageSize] = "";
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  std::vector<uint8_t> file_;
};

}  // namespace

std::vector<uint8_t> encodedPng(const PictureToWrite& picture) {
  return PngWriter(picture).file();
}

}  // namespace cli
