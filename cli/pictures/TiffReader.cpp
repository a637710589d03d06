// TIFF by libtiff: reading.

#include <half.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "cli/pictures/StoredPicture.h"
#include "cli/pictures/TiffFacts.h"
#include "cli/pictures/TiffMemory.h"

namespace cli {
namespace {

using standin::Depth;

class TiffReader final : public PictureReader {
 public:
  explicit TiffReader(std::span<const uint8_t> file) {
    memory_.in = file;
    // "m": nothing is mapped, since the file lies in memory already.
    tiff_ = openTiffMemory(memory_, "rm");
    if (!tiff_) throw BrokenPicture(tiffComplaint(memory_));
    takeSize();
    takeSampleType();
    takeChannels();
    layout_.orientation = tiffField<uint16_t>(tiff_.get(), TIFFTAG_ORIENTATION, 1);
    takeFacts();
  }

  void read(std::span<uint8_t> samples) override {
    const int planes = separate_ ? storedChannels_ : 1;
    for (int plane = 0; plane < planes; ++plane) {
      if (TIFFIsTiled(tiff_.get()) != 0) {
        readTiles(plane, samples);
      } else {
        readLines(plane, samples);
      }
    }
  }

 private:
  void takeSize() {
    layout_.width = layout_.fullWidth = tiffField<uint32_t>(tiff_.get(), TIFFTAG_IMAGEWIDTH, 0);
    layout_.height = layout_.fullHeight = tiffField<uint32_t>(tiff_.get(), TIFFTAG_IMAGELENGTH, 0);
    separate_ = tiffField<uint16_t>(tiff_.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == PLANARCONFIG_SEPARATE;
    storedChannels_ = tiffField<uint16_t>(tiff_.get(), TIFFTAG_SAMPLESPERPIXEL, 1);
  }

  void takeSampleType() {
    bits_ = tiffField<uint16_t>(tiff_.get(), TIFFTAG_BITSPERSAMPLE, 1);
    const auto format = tiffField<uint16_t>(tiff_.get(), TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    const bool isFloat = format == SAMPLEFORMAT_IEEEFP;
    const bool whole = format == SAMPLEFORMAT_UINT || format == SAMPLEFORMAT_VOID;
    if (isFloat && (bits_ == 16 || bits_ == 32 || bits_ == 64)) {
      layout_.depth = Depth::k32;
    } else if (whole && bits_ == 16) {
      layout_.depth = Depth::k16;
    } else if (whole && (bits_ == 1 || bits_ == 2 || bits_ == 4 || bits_ == 8)) {
      layout_.depth = Depth::k8;
    } else {
      throw OtherPicture("has pixels of " + std::to_string(bits_) + "-bit " +
                         (isFloat                      ? "float numbers"
                          : format == SAMPLEFORMAT_INT ? "numbers with a sign"
                          : whole                      ? "whole numbers"
                                                       : "complex numbers") +
                         "; 8-bit, 16-bit and float pixels can be read");
    }
  }

  void takeChannels() {
    const auto photometric = tiffField<uint16_t>(tiff_.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    int32_t colors = 1;
    switch (photometric) {
      case PHOTOMETRIC_MINISWHITE:
        inverted_ = true;
        break;
      case PHOTOMETRIC_MINISBLACK:
        break;
      case PHOTOMETRIC_PALETTE:
        takePalette();
        break;
      case PHOTOMETRIC_RGB:
        colors = 3;
        break;
      case PHOTOMETRIC_YCBCR:
        if (tiffField<uint16_t>(tiff_.get(), TIFFTAG_COMPRESSION, COMPRESSION_NONE) != COMPRESSION_JPEG) {
          throw OtherPicture("holds its colours as luminance and chroma, which can be read in a JPEG only");
        }
        TIFFSetField(tiff_.get(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        colors = 3;
        break;
      case PHOTOMETRIC_SEPARATED:
        throw OtherPicture("is a CMYK picture; grey and RGB, each with or without alpha, can be read");
      default:
        throw OtherPicture("holds colours of another kind; grey and RGB, each with or without alpha, can be read");
    }
    if (storedChannels_ < colors) throw BrokenPicture("it has fewer channels than colours");
    if (bits_ < 8 && storedChannels_ != 1) throw OtherPicture("has channels of fewer than 8 bits, which can't be read");

    uint16_t extraCount = 0;
    const uint16_t* extras = nullptr;
    TIFFGetFieldDefaulted(tiff_.get(), TIFFTAG_EXTRASAMPLES, &extraCount, &extras);
    for (int32_t i = 0; i < extraCount && colors + i < storedChannels_ && layout_.alpha < 0; ++i) {
      if (extras[i] == EXTRASAMPLE_UNSPECIFIED) continue;
      layout_.alpha = colors + i;
      layout_.associated = extras[i] == EXTRASAMPLE_ASSOCALPHA;
    }
    // A fourth channel that nothing is said of is colour times alpha with most programs that leave it so.
    if (layout_.alpha < 0 && colors == 3 && storedChannels_ == 4) {
      layout_.alpha = 3;
      layout_.associated = true;
    }
    if (colors == 1 && storedChannels_ > 1 && layout_.alpha < 0) {
      throw OtherPicture("has " + std::to_string(storedChannels_) +
                         " channels that make no colour; grey and RGB, each with or without alpha, can be read");
    }
    layout_.channels = palette_.empty() ? storedChannels_ : 3;
    if (colors == 3 || !palette_.empty()) {
      layout_.green = 1;
      layout_.blue = 2;
    }
  }

  void takePalette() {
    uint16_t* red = nullptr;
    uint16_t* green = nullptr;
    uint16_t* blue = nullptr;
    if (layout_.depth != Depth::k8 || storedChannels_ != 1 ||
        TIFFGetField(tiff_.get(), TIFFTAG_COLORMAP, &red, &green, &blue) == 0) {
      throw BrokenPicture("its list of colours makes no sense");
    }
    for (std::size_t i = 0; i < std::size_t{1} << bits_; ++i) {
      // Some programs wrote 0 to 255 here; of the 16 bits the upper half is what 8 bits show.
      palette_.push_back(
          {static_cast<uint8_t>(red[i] >> 8), static_cast<uint8_t>(green[i] >> 8), static_cast<uint8_t>(blue[i] >> 8)});
    }
  }

  void takeFacts() {
    facts_.kind = FileKind::tiff;
    facts_.half = layout_.depth == Depth::k32 && bits_ == 16;
    TIFF* const tiff = tiff_.get();
    const auto x = static_cast<double>(tiffField<float>(tiff, TIFFTAG_XRESOLUTION, 0));
    const auto y = static_cast<double>(tiffField<float>(tiff, TIFFTAG_YRESOLUTION, 0));
    const auto unit = tiffField<uint16_t>(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    if (x > 0 && y > 0) {
      facts_.pixelAspect = y / x;
      const double inches = unit == RESUNIT_CENTIMETER ? 2.54 : 1.0;
      if (unit != RESUNIT_NONE) facts_.density = PixelDensity{x * inches, y * inches};
    }
    facts_.iccProfile = block(TIFFTAG_ICCPROFILE);
    const std::vector<uint8_t> xmp = block(TIFFTAG_XMLPACKET);
    facts_.xmp.assign(xmp.begin(), xmp.end());
    float* primaries = nullptr;
    float* white = nullptr;
    if (TIFFGetField(tiff, TIFFTAG_PRIMARYCHROMATICITIES, &primaries) != 0 &&
        TIFFGetField(tiff, TIFFTAG_WHITEPOINT, &white) != 0) {
      facts_.chromaticities.emplace();
      std::copy_n(primaries, 6, facts_.chromaticities->begin());
      std::copy_n(white, 2, facts_.chromaticities->begin() + 6);
    }
    for (const TiffNote& note : tiffNotes) {
      if (const std::string text = textOf(note.tag); !text.empty()) facts_.texts.push_back({note.key, text});
    }
    auto own = std::make_shared<TiffFacts>();
    for (const int tag : {TIFFTAG_MAKE, TIFFTAG_MODEL, TIFFTAG_HOSTCOMPUTER, TIFFTAG_PAGENAME, TIFFTAG_DATETIME}) {
      const auto number = static_cast<uint32_t>(tag);
      if (std::string text = textOf(number); !text.empty()) own->texts.emplace_back(number, std::move(text));
    }
    if (std::vector<uint8_t> bytes = block(TIFFTAG_PHOTOSHOP); !bytes.empty()) {
      own->blocks.emplace_back(TIFFTAG_PHOTOSHOP, std::move(bytes));
    }
    facts_.tiff = std::move(own);
  }

  std::string textOf(uint32_t tag) const {
    char* text = nullptr;
    return TIFFGetField(tiff_.get(), tag, &text) != 0 && text != nullptr ? text : "";
  }

  std::vector<uint8_t> block(uint32_t tag) const {
    uint32_t size = 0;
    const uint8_t* bytes = nullptr;
    if (TIFFGetField(tiff_.get(), tag, &size, &bytes) == 0 || bytes == nullptr) return {};
    return {bytes, bytes + size};
  }

  /// A sample of a row as it lies in the file; 8 bits for fewer.
  uint8_t sample8(const uint8_t* row, std::size_t place) const {
    if (bits_ == 8) return row[place];
    const std::size_t perByte = 8U / bits_;
    const std::size_t shift = (perByte - 1 - place % perByte) * bits_;
    return static_cast<uint8_t>(static_cast<unsigned>(row[place / perByte]) >> shift & ((1U << bits_) - 1U));
  }

  float sampleFloat(const uint8_t* row, std::size_t place) const {
    if (bits_ == 16) {
      uint16_t half = 0;
      std::memcpy(&half, row + place * 2, sizeof half);
      return imath_half_to_float(half);
    }
    if (bits_ == 32) {
      float single = 0;
      std::memcpy(&single, row + place * 4, sizeof single);
      return single;
    }
    double wide = 0;
    std::memcpy(&wide, row + place * 8, sizeof wide);
    return static_cast<float>(wide);
  }

  /// Puts `count` pixels of a row of one plane to column x, row y.
  void take(const uint8_t* row, int plane, int64_t x, int64_t y, std::size_t count, std::span<uint8_t> samples) const {
    const auto channels = static_cast<std::size_t>(layout_.channels);
    const std::size_t first = static_cast<std::size_t>(y * layout_.width + x) * channels;
    if (!palette_.empty()) {
      for (std::size_t i = 0; i < count; ++i) {
        std::memcpy(samples.data() + first + i * 3, palette_[sample8(row, i)].data(), 3);
      }
      return;
    }
    const std::size_t from = separate_ ? 1 : channels;
    for (std::size_t i = 0; i < count * from; ++i) {
      const std::size_t to = separate_ ? first + i * channels + static_cast<std::size_t>(plane) : first + i;
      const bool inverts = inverted_ && (separate_ ? plane == 0 : i % channels == 0);
      if (layout_.depth == Depth::k8) {
        const auto scaled = static_cast<uint8_t>(sample8(row, i) * (255U / ((1U << bits_) - 1U)));
        samples[to] = inverts ? static_cast<uint8_t>(255 - scaled) : scaled;
      } else if (layout_.depth == Depth::k16) {
        uint16_t sample = 0;
        std::memcpy(&sample, row + i * 2, sizeof sample);
        if (inverts) sample = static_cast<uint16_t>(65535 - sample);
        std::memcpy(samples.data() + to * 2, &sample, sizeof sample);
      } else {
        const float sample = inverts ? 1.0F - sampleFloat(row, i) : sampleFloat(row, i);
        std::memcpy(samples.data() + to * 4, &sample, sizeof sample);
      }
    }
  }

  void readLines(int plane, std::span<uint8_t> samples) {
    std::vector<uint8_t> row(static_cast<std::size_t>(TIFFScanlineSize64(tiff_.get())));
    for (int64_t y = 0; y < layout_.height; ++y) {
      if (TIFFReadScanline(tiff_.get(), row.data(), static_cast<uint32_t>(y), static_cast<uint16_t>(plane)) != 1) {
        throw BrokenPicture(tiffComplaint(memory_));
      }
      take(row.data(), plane, 0, y, static_cast<std::size_t>(layout_.width), samples);
    }
  }

  void readTiles(int plane, std::span<uint8_t> samples) {
    const int64_t tileWidth = tiffField<uint32_t>(tiff_.get(), TIFFTAG_TILEWIDTH, 0);
    const int64_t tileHeight = tiffField<uint32_t>(tiff_.get(), TIFFTAG_TILELENGTH, 0);
    const auto rowBytes = static_cast<std::size_t>(TIFFTileRowSize64(tiff_.get()));
    if (tileWidth == 0 || tileHeight == 0) throw BrokenPicture("its tiles have no size");
    const uint64_t tileBytes = TIFFTileSize64(tiff_.get());
    // A tile may stand over the edge, but not be many times the picture.
    constexpr uint64_t mostTileBytes = uint64_t{1} << 30;
    if (tileBytes > mostTileBytes) throw BrokenPicture("its tiles are larger than can be read");
    std::vector<uint8_t> tile(static_cast<std::size_t>(tileBytes));
    for (int64_t top = 0; top < layout_.height; top += tileHeight) {
      for (int64_t left = 0; left < layout_.width; left += tileWidth) {
        if (TIFFReadTile(tiff_.get(), tile.data(), static_cast<uint32_t>(left), static_cast<uint32_t>(top), 0,
                         static_cast<uint16_t>(plane)) < 0) {
          throw BrokenPicture(tiffComplaint(memory_));
        }
        const auto columns = static_cast<std::size_t>(std::min(tileWidth, layout_.width - left));
        for (int64_t row = 0; row < std::min(tileHeight, layout_.height - top); ++row) {
          take(tile.data() + static_cast<std::size_t>(row) * rowBytes, plane, left, top + row, columns, samples);
        }
      }
    }
  }

  TiffMemory memory_;
  Tiff tiff_;
  bool separate_ = false;
  bool inverted_ = false;
  int32_t storedChannels_ = 1;
  uint16_t bits_ = 8;
  std::vector<std::array<uint8_t, 3>> palette_;
};

}  // namespace

std::unique_ptr<PictureReader> openTiff(std::span<const uint8_t> file) {
  return std::make_unique<TiffReader>(file);
}

}  // namespace cli
