// TIFF by libtiff, which is given the file in memory.

#include <half.h>
#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>

#include "cli/pictures/StoredPicture.h"

namespace cli {
namespace {

using standin::Depth;

/// What the library reads from or writes into, and its last complaint.
struct Memory {
  std::span<const uint8_t> in;
  std::vector<uint8_t> out;
  bool writing = false;
  uint64_t at = 0;
  std::array<char, 300> complaint{};

  uint64_t size() const { return writing ? out.size() : in.size(); }
};

Memory& memoryOf(thandle_t handle) {
  return *static_cast<Memory*>(handle);
}

tmsize_t readBytes(thandle_t handle, void* to, tmsize_t count) {
  Memory& memory = memoryOf(handle);
  if (memory.at >= memory.size() || count <= 0) return 0;
  const uint64_t got = std::min<uint64_t>(static_cast<uint64_t>(count), memory.size() - memory.at);
  const uint8_t* const from = memory.writing ? memory.out.data() : memory.in.data();
  std::memcpy(to, from + memory.at, got);
  memory.at += got;
  return static_cast<tmsize_t>(got);
}

tmsize_t writeBytes(thandle_t handle, void* from, tmsize_t count) {
  Memory& memory = memoryOf(handle);
  if (!memory.writing || count <= 0) return 0;
  const uint64_t end = memory.at + static_cast<uint64_t>(count);
  try {
    if (memory.out.size() < end) memory.out.resize(end);
  } catch (const std::bad_alloc&) {
    return 0;  // the library takes it for a full disk; no exception may cross it
  }
  std::memcpy(memory.out.data() + memory.at, from, static_cast<std::size_t>(count));
  memory.at = end;
  return count;
}

toff_t seekTo(thandle_t handle, toff_t offset, int from) {
  Memory& memory = memoryOf(handle);
  memory.at = offset + (from == SEEK_CUR ? memory.at : from == SEEK_END ? memory.size() : 0);
  return memory.at;
}

int closeNothing(thandle_t) {
  return 0;
}

toff_t sizeOf(thandle_t handle) {
  return memoryOf(handle).size();
}

int mapNothing(thandle_t, void**, toff_t*) {
  return 0;
}

void unmapNothing(thandle_t, void*, toff_t) {}

// The format is the library's own.
[[gnu::format(printf, 4, 0)]] int keepComplaint(TIFF*, void* to, const char*, const char* format, va_list arguments) {
  auto& complaint = static_cast<Memory*>(to)->complaint;
  std::vsnprintf(complaint.data(), complaint.size(), format, arguments);
  return 1;
}

int ignoreWarning(TIFF*, void*, const char*, const char*, va_list) {
  return 1;
}

struct TiffCloser {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using Tiff = std::unique_ptr<TIFF, TiffCloser>;

Tiff openTiff(Memory& memory, const char* mode) {
  TIFFOpenOptions* const options = TIFFOpenOptionsAlloc();
  if (options == nullptr) throw std::bad_alloc();
  TIFFOpenOptionsSetErrorHandlerExtR(options, keepComplaint, &memory);
  TIFFOpenOptionsSetWarningHandlerExtR(options, ignoreWarning, &memory);
  Tiff tiff(TIFFClientOpenExt("the file", mode, &memory, readBytes, writeBytes, seekTo, closeNothing, sizeOf,
                              mapNothing, unmapNothing, options));
  TIFFOpenOptionsFree(options);
  return tiff;
}

std::string complaintOf(const Memory& memory) {
  std::string text = memory.complaint.data();
  std::replace(text.begin(), text.end(), '\n', ' ');
  while (!text.empty() && (text.back() == ' ' || text.back() == '.')) text.pop_back();
  return text.empty() ? "the file makes no sense" : text;
}

template <class Number>
Number field(TIFF* tiff, uint32_t tag, Number otherwise) {
  Number number = otherwise;
  return TIFFGetFieldDefaulted(tiff, tag, &number) != 0 ? number : otherwise;
}

class TiffReader final : public PictureReader {
 public:
  explicit TiffReader(std::span<const uint8_t> file) {
    memory_.in = file;
    // "m": nothing is mapped, since the file lies in memory already.
    tiff_ = openTiff(memory_, "rm");
    if (!tiff_) throw BrokenPicture(complaintOf(memory_));
    takeSize();
    takeSampleType();
    takeChannels();
    layout_.orientation = field<uint16_t>(tiff_.get(), TIFFTAG_ORIENTATION, 1);
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
    layout_.width = layout_.fullWidth = field<uint32_t>(tiff_.get(), TIFFTAG_IMAGEWIDTH, 0);
    layout_.height = layout_.fullHeight = field<uint32_t>(tiff_.get(), TIFFTAG_IMAGELENGTH, 0);
    if (layout_.width == 0 || layout_.height == 0) throw BrokenPicture("it has no pixels");
    separate_ = field<uint16_t>(tiff_.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == PLANARCONFIG_SEPARATE;
    storedChannels_ = field<uint16_t>(tiff_.get(), TIFFTAG_SAMPLESPERPIXEL, 1);
  }

  void takeSampleType() {
    bits_ = field<uint16_t>(tiff_.get(), TIFFTAG_BITSPERSAMPLE, 1);
    const auto format = field<uint16_t>(tiff_.get(), TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
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
    const auto photometric = field<uint16_t>(tiff_.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
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
        if (field<uint16_t>(tiff_.get(), TIFFTAG_COMPRESSION, COMPRESSION_NONE) != COMPRESSION_JPEG) {
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
        throw BrokenPicture(complaintOf(memory_));
      }
      take(row.data(), plane, 0, y, static_cast<std::size_t>(layout_.width), samples);
    }
  }

  void readTiles(int plane, std::span<uint8_t> samples) {
    const int64_t tileWidth = field<uint32_t>(tiff_.get(), TIFFTAG_TILEWIDTH, 0);
    const int64_t tileHeight = field<uint32_t>(tiff_.get(), TIFFTAG_TILELENGTH, 0);
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
          throw BrokenPicture(complaintOf(memory_));
        }
        const auto columns = static_cast<std::size_t>(std::min(tileWidth, layout_.width - left));
        for (int64_t row = 0; row < std::min(tileHeight, layout_.height - top); ++row) {
          take(tile.data() + static_cast<std::size_t>(row) * rowBytes, plane, left, top + row, columns, samples);
        }
      }
    }
  }

  Memory memory_;
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

std::vector<uint8_t> encodedTiff(const PictureToWrite& picture) {
  Memory memory;
  memory.writing = true;
  {
    const Tiff tiff = openTiff(memory, "w");
    if (!tiff) throw BrokenPicture(complaintOf(memory));
    const bool isFloat = picture.depth == Depth::k32;
    const std::size_t sampleBytes = static_cast<std::size_t>(picture.depth) / 8;
    TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, static_cast<uint32_t>(picture.width));
    TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, static_cast<uint32_t>(picture.height));
    TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, picture.channels);
    TIFFSetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, static_cast<int>(picture.depth));
    TIFFSetField(tiff.get(), TIFFTAG_SAMPLEFORMAT, isFloat ? SAMPLEFORMAT_IEEEFP : SAMPLEFORMAT_UINT);
    TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff.get(), TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(tiff.get(), TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
    TIFFSetField(tiff.get(), TIFFTAG_PREDICTOR, isFloat ? PREDICTOR_FLOATINGPOINT : PREDICTOR_HORIZONTAL);
    TIFFSetField(tiff.get(), TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff.get(), 32));
    if (picture.channels == 4) {
      const uint16_t extra = EXTRASAMPLE_UNASSALPHA;
      TIFFSetField(tiff.get(), TIFFTAG_EXTRASAMPLES, 1, &extra);
    }
    if (picture.madeAt) TIFFSetField(tiff.get(), TIFFTAG_DATETIME, stampText(*picture.madeAt).c_str());
    // The library changes a row on its way out, so it gets a copy.
    const std::size_t rowBytes =
        static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.channels) * sampleBytes;
    std::vector<uint8_t> row(rowBytes);
    for (int32_t y = 0; y < picture.height; ++y) {
      std::memcpy(row.data(), picture.samples.data() + static_cast<std::size_t>(y) * rowBytes, rowBytes);
      if (TIFFWriteScanline(tiff.get(), row.data(), static_cast<uint32_t>(y), 0) != 1) {
        throw BrokenPicture(complaintOf(memory));
      }
    }
    if (TIFFFlush(tiff.get()) != 1) throw BrokenPicture(complaintOf(memory));
  }
  return std::move(memory.out);
}

}  // namespace cli
