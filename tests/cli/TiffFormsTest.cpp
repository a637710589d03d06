// The many forms of a TIFF, written by its library alone.

#include <gtest/gtest.h>
#include <tiffio.h>

#include <cstring>
#include <functional>

#include "cli/ImageFile.h"
#include "tests/cli/ReadPictures.h"
#include "tests/support/TemporaryFolder.h"

using standin::Image;

namespace {

using Bytes = std::vector<uint8_t>;

template <class Sample>
Bytes bytesOf(const std::vector<Sample>& samples) {
  Bytes bytes(samples.size() * sizeof(Sample));
  std::memcpy(bytes.data(), samples.data(), bytes.size());
  return bytes;
}

/// What is told of the pixels; `more` sets fields that few files have.
struct Form {
  uint32_t width = 1;
  uint32_t height = 1;
  uint16_t channels = 1;
  uint16_t bits = 8;
  uint16_t format = SAMPLEFORMAT_UINT;
  uint16_t photometric = PHOTOMETRIC_MINISBLACK;
  std::vector<uint16_t> extras = {};  ///< what the channels behind the colours are
  bool planes = false;                ///< each channel by itself
  std::function<void(TIFF*)> more = {};
  const char* mode = "w";
};

class TiffFormsTest : public testing::Test {
 protected:
  std::filesystem::path file() const { return folder_ / "a.tif"; }

  /// Writes a.tif.
  /// @param pieces  the samples of all rows, or of each tile; those of all planes one after the other
  void write(const Form& form, const std::vector<Bytes>& pieces) const {
    TIFF* const tiff = TIFFOpen(file().c_str(), form.mode);
    ASSERT_NE(tiff, nullptr);
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, form.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, form.height);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, form.channels);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, form.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, form.format);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, form.photometric);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, form.planes ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
    if (!form.extras.empty()) {
      TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, static_cast<int>(form.extras.size()), form.extras.data());
    }
    if (form.more) form.more(tiff);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      Bytes piece = pieces[i];  // the library may change it
      const auto number = static_cast<uint32_t>(i);
      const auto size = static_cast<tmsize_t>(piece.size());
      const tmsize_t written = TIFFIsTiled(tiff) != 0 ? TIFFWriteEncodedTile(tiff, number, piece.data(), size)
                                                      : TIFFWriteEncodedStrip(tiff, number, piece.data(), size);
      EXPECT_EQ(written, size);
    }
    TIFFClose(tiff);
  }

  Image read() const { return cli::readPicture(file()); }

  std::string refusal() const { return refusalOfIt(file()); }

  vindrel::test::TemporaryFolder folder_;
};

constexpr uint16_t none = EXTRASAMPLE_UNSPECIFIED;
constexpr uint16_t associated = EXTRASAMPLE_ASSOCALPHA;
constexpr uint16_t straight = EXTRASAMPLE_UNASSALPHA;

std::vector<int> reds(const Image& image) {
  std::vector<int> all;
  all.reserve(static_cast<std::size_t>(image.width()));
  for (int32_t x = 0; x < image.width(); ++x) all.push_back(image.at<PF_Pixel>(x, 0).red);
  return all;
}

}  // namespace

TEST_F(TiffFormsTest, greyOfFewBitsIsSpreadOverEight) {
  write({.width = 3, .bits = 1}, {{0b10100000}});
  EXPECT_EQ(reds(read()), (std::vector<int>{255, 0, 255}));
  write({.width = 5, .bits = 2}, {{0b00011011, 0b01000000}});
  EXPECT_EQ(reds(read()), (std::vector<int>{0, 85, 170, 255, 85}));
  write({.width = 3, .bits = 4}, {{0x0F, 0x80}});
  EXPECT_EQ(reds(read()), (std::vector<int>{0, 255, 136}));  // 8 * 17
}

TEST_F(TiffFormsTest, whereZeroIsWhiteGreyIsTurnedRoundAndAlphaIsNot) {
  write({.width = 2, .bits = 4, .photometric = PHOTOMETRIC_MINISWHITE}, {{0x0C}});
  EXPECT_EQ(reds(read()), (std::vector<int>{255, 51}));  // 15 - 12 = 3, times 17

  write({.channels = 2, .photometric = PHOTOMETRIC_MINISWHITE, .extras = {straight}}, {{55, 100}});
  expectPixel(read().at<PF_Pixel>(0, 0), 200, 200, 200, 100);
  write({.width = 2, .channels = 2, .photometric = PHOTOMETRIC_MINISWHITE, .extras = {straight}, .planes = true},
        {{55, 255}, {100, 50}});
  expectPixel(read().at<PF_Pixel>(0, 0), 200, 200, 200, 100);
  expectPixel(read().at<PF_Pixel>(1, 0), 0, 0, 0, 50);

  write({.width = 2, .bits = 16, .photometric = PHOTOMETRIC_MINISWHITE}, {bytesOf<uint16_t>({0, 65535})});
  EXPECT_EQ(read().at<PF_Pixel16>(0, 0).green, 32768);
  EXPECT_EQ(read().at<PF_Pixel16>(1, 0).green, 0);

  write({.bits = 32, .format = SAMPLEFORMAT_IEEEFP, .photometric = PHOTOMETRIC_MINISWHITE}, {bytesOf<float>({0.25F})});
  EXPECT_EQ(read().at<PF_PixelFloat>(0, 0).blue, 0.75F);
}

TEST_F(TiffFormsTest, aListOfColorsIsLookedUp) {
  std::vector<uint16_t> red(256);
  std::vector<uint16_t> green(256);
  std::vector<uint16_t> blue(256);
  red[1] = 0xFFFF;
  green[1] = 0x80FF;
  blue[3] = 0x1234;
  const auto map = [&](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_COLORMAP, red.data(), green.data(), blue.data()); };
  write({.width = 3, .photometric = PHOTOMETRIC_PALETTE, .more = map}, {{1, 3, 0}});
  Image image = read();
  expectPixel(image.at<PF_Pixel>(0, 0), 255, 128, 0);
  expectPixel(image.at<PF_Pixel>(1, 0), 0, 0, 0x12);
  expectPixel(image.at<PF_Pixel>(2, 0), 0, 0, 0);
  write({.width = 2, .bits = 2, .photometric = PHOTOMETRIC_PALETTE, .more = map}, {{0b01110000}});
  image = read();
  expectPixel(image.at<PF_Pixel>(0, 0), 255, 128, 0);
  expectPixel(image.at<PF_Pixel>(1, 0), 0, 0, 0x12);
}

TEST_F(TiffFormsTest, aListOfColorsForMoreThanAByteOrForMoreChannelsIsRefused) {
  std::vector<uint16_t> list(65536);
  const auto map = [&](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_COLORMAP, list.data(), list.data(), list.data()); };
  const std::string message = "can't read it: its list of colours makes no sense";
  write({.bits = 16, .photometric = PHOTOMETRIC_PALETTE, .more = map}, {{0, 0}});
  EXPECT_EQ(refusal(), message);
  write({.channels = 2, .photometric = PHOTOMETRIC_PALETTE, .extras = {straight}, .more = map}, {{0, 0}});
  EXPECT_EQ(refusal(), message);
}

TEST_F(TiffFormsTest, channelsMayLieInPlanesAtEveryDepth) {
  write({.width = 2, .channels = 3, .photometric = PHOTOMETRIC_RGB, .planes = true}, {{1, 2}, {3, 4}, {5, 6}});
  expectPixel(read().at<PF_Pixel>(0, 0), 1, 3, 5);
  expectPixel(read().at<PF_Pixel>(1, 0), 2, 4, 6);
  write({.channels = 3, .bits = 16, .photometric = PHOTOMETRIC_RGB, .planes = true},
        {bytesOf<uint16_t>({65535}), bytesOf<uint16_t>({0}), bytesOf<uint16_t>({2})});
  EXPECT_EQ(read().at<PF_Pixel16>(0, 0).red, 32768);
  EXPECT_EQ(read().at<PF_Pixel16>(0, 0).blue, 1);
  write({.channels = 3, .bits = 32, .format = SAMPLEFORMAT_IEEEFP, .photometric = PHOTOMETRIC_RGB, .planes = true},
        {bytesOf<float>({0.5F}), bytesOf<float>({7.0F}), bytesOf<float>({-1.0F})});
  EXPECT_EQ(read().at<PF_PixelFloat>(0, 0).green, 7.0F);
  EXPECT_EQ(read().at<PF_PixelFloat>(0, 0).blue, -1.0F);
}

TEST_F(TiffFormsTest, tilesArePutTogetherAndCutAtTheEdge) {
  // 20 x 18 pixels in four tiles of 16 x 16, each pixel's channels its column, its row and 9.
  const auto tiled = [](TIFF* tiff) {
    TIFFSetField(tiff, TIFFTAG_TILEWIDTH, 16);
    TIFFSetField(tiff, TIFFTAG_TILELENGTH, 16);
  };
  const auto tile = [](int number, const std::vector<int>& channels) {
    Bytes bytes;
    for (int i = 0; i < 256; ++i) {
      const int place[3] = {number % 2 * 16 + i % 16, number / 2 * 16 + i / 16, 9};
      for (const int channel : channels) bytes.push_back(static_cast<uint8_t>(place[channel]));
    }
    return bytes;
  };
  std::vector<Bytes> together;
  together.reserve(4);
  for (int i = 0; i < 4; ++i) together.push_back(tile(i, {0, 1, 2}));
  std::vector<Bytes> apart;
  for (int channel = 0; channel < 3; ++channel) {
    for (int i = 0; i < 4; ++i) apart.push_back(tile(i, {channel}));
  }
  for (const bool planes : {false, true}) {
    write({.width = 20, .height = 18, .channels = 3, .photometric = PHOTOMETRIC_RGB, .planes = planes, .more = tiled},
          planes ? apart : together);
    const Image image = read();
    ASSERT_EQ(image.width(), 20);
    ASSERT_EQ(image.height(), 18);
    for (int32_t y = 0; y < 18; ++y) {
      for (int32_t x = 0; x < 20; ++x) expectPixel(image.at<PF_Pixel>(x, y), x, y, 9);
    }
  }
}

TEST_F(TiffFormsTest, floatsOfSixteenAndSixtyFourBitsAreRead) {
  write({.width = 2, .bits = 16, .format = SAMPLEFORMAT_IEEEFP}, {bytesOf<uint16_t>({0x3800, 0xC000})});
  EXPECT_EQ(read().at<PF_PixelFloat>(0, 0).red, 0.5F);
  EXPECT_EQ(read().at<PF_PixelFloat>(1, 0).red, -2.0F);
  write({.width = 2, .bits = 64, .format = SAMPLEFORMAT_IEEEFP}, {bytesOf<double>({0.1, 1e3})});
  EXPECT_EQ(read().at<PF_PixelFloat>(0, 0).red, 0.1F);
  EXPECT_EQ(read().at<PF_PixelFloat>(1, 0).red, 1e3F);
}

TEST_F(TiffFormsTest, samplesThatSayNothingOfTheirKindAreWholeNumbers) {
  write({.format = SAMPLEFORMAT_VOID}, {{77}});
  expectPixel(read().at<PF_Pixel>(0, 0), 77, 77, 77);
}

TEST_F(TiffFormsTest, alphaIsTheFirstChannelThatSaysSo) {
  write({.channels = 5, .photometric = PHOTOMETRIC_RGB, .extras = {none, straight}}, {{10, 20, 30, 40, 50}});
  expectPixel(read().at<PF_Pixel>(0, 0), 10, 20, 30, 50);
  write({.channels = 5, .photometric = PHOTOMETRIC_RGB, .extras = {straight, associated}}, {{10, 20, 30, 40, 50}});
  expectPixel(read().at<PF_Pixel>(0, 0), 10, 20, 30, 40);
}

TEST_F(TiffFormsTest, aFourthChannelThatNothingIsSaidOfIsAlphaThatTheColorsHold) {
  write({.channels = 4, .photometric = PHOTOMETRIC_RGB, .extras = {none}}, {{50, 100, 10, 100}});
  expectPixel(read().at<PF_Pixel>(0, 0), 128, 255, 26, 100);  // 127.5, 255 and 25.5
  write({.channels = 5, .photometric = PHOTOMETRIC_RGB, .extras = {none, none}}, {{50, 100, 10, 100, 7}});
  expectPixel(read().at<PF_Pixel>(0, 0), 50, 100, 10);
}

TEST_F(TiffFormsTest, colorTimesAlphaIsMadeStraightInWholeNumbers) {
  write({.width = 2, .channels = 4, .photometric = PHOTOMETRIC_RGB, .extras = {associated}},
        {{50, 100, 200, 100, 7, 8, 9, 0}});
  expectPixel(read().at<PF_Pixel>(0, 0), 128, 255, 255, 100);
  expectPixel(read().at<PF_Pixel>(1, 0), 7, 8, 9, 0);
  write({.width = 2, .channels = 4, .bits = 16, .photometric = PHOTOMETRIC_RGB, .extras = {associated}},
        {bytesOf<uint16_t>({16384, 32768, 40000, 32768, 2, 0, 65535, 0})});
  const PF_Pixel16 half = read().at<PF_Pixel16>(0, 0);
  EXPECT_EQ(half.alpha, 16384);
  EXPECT_EQ(half.red, 16384);  // half of its alpha
  EXPECT_EQ(half.green, 32768);
  EXPECT_EQ(half.blue, 32768) << "brighter than its alpha allows";
  const PF_Pixel16 clear = read().at<PF_Pixel16>(1, 0);
  EXPECT_EQ(clear.alpha, 0);
  EXPECT_EQ(clear.red, 1);
  EXPECT_EQ(clear.blue, 32768);
}

TEST_F(TiffFormsTest, bothByteOrdersAndBothSizesOfPlacesAreRead) {
  for (const char* mode : {"wl", "wb", "wl8", "wb8"}) {
    write({.bits = 16, .mode = mode}, {bytesOf<uint16_t>({512})});
    EXPECT_EQ(read().at<PF_Pixel16>(0, 0).red, 256) << mode;
  }
}

TEST_F(TiffFormsTest, luminanceAndChromaAreReadFromJpegDataOnly) {
  const auto jpeg = [](TIFF* tiff) {
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_JPEG);
    TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 16);
  };
  Bytes pixels;
  for (int i = 0; i < 256; ++i) pixels.insert(pixels.end(), {200, 100, 50});
  write({.width = 16, .height = 16, .channels = 3, .photometric = PHOTOMETRIC_YCBCR, .more = jpeg}, {pixels});
  const PF_Pixel pixel = read().at<PF_Pixel>(7, 7);
  EXPECT_NEAR(pixel.red, 200, 4);
  EXPECT_NEAR(pixel.green, 100, 4);
  EXPECT_NEAR(pixel.blue, 50, 4);
  write({.width = 2, .height = 2, .channels = 3, .photometric = PHOTOMETRIC_YCBCR}, {Bytes(6)});
  EXPECT_EQ(refusal(), "it holds its colours as luminance and chroma, which can be read in a JPEG only");
}

TEST_F(TiffFormsTest, pixelsThatCannotBeReadAreNamed) {
  const std::string rest = "; 8-bit, 16-bit and float pixels can be read";
  struct Case {
    uint16_t bits, format;
    const char* text;
  };
  for (const Case& c :
       {Case{16, SAMPLEFORMAT_INT, "16-bit numbers with a sign"}, Case{32, SAMPLEFORMAT_UINT, "32-bit whole numbers"},
        Case{12, SAMPLEFORMAT_UINT, "12-bit whole numbers"}, Case{24, SAMPLEFORMAT_IEEEFP, "24-bit float numbers"},
        Case{64, SAMPLEFORMAT_COMPLEXIEEEFP, "64-bit complex numbers"}}) {
    write({.bits = c.bits, .format = c.format}, {Bytes(8)});
    EXPECT_EQ(refusal(), "it has pixels of " + std::string(c.text) + rest);
  }
}

TEST_F(TiffFormsTest, channelsThatMakeNoPictureAreNamed) {
  const std::string rest = "; grey and RGB, each with or without alpha, can be read";
  write({.channels = 3, .photometric = PHOTOMETRIC_CIELAB}, {Bytes(3)});
  EXPECT_EQ(refusal(), "it holds colours of another kind" + rest);
  write({.channels = 2, .extras = {none}}, {Bytes(2)});
  EXPECT_EQ(refusal(), "it has 2 channels that make no colour" + rest);
  write({.width = 2, .channels = 3, .bits = 4, .photometric = PHOTOMETRIC_RGB}, {Bytes(3)});
  EXPECT_EQ(refusal(), "it has channels of fewer than 8 bits, which can't be read");
  write({.channels = 2, .photometric = PHOTOMETRIC_RGB}, {Bytes(2)});
  EXPECT_EQ(refusal(), "can't read it: it has fewer channels than colours");
}

TEST_F(TiffFormsTest, tilesThatAreManyTimesThePictureAreRefused) {
  const auto huge = [](TIFF* tiff) {
    TIFFSetField(tiff, TIFFTAG_TILEWIDTH, 65536);
    TIFFSetField(tiff, TIFFTAG_TILELENGTH, 32768);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    char nothing = 0;
    TIFFWriteRawTile(tiff, 0, &nothing, 1);
  };
  write({.more = huge}, {});
  EXPECT_EQ(refusal(), "can't read it: its tiles are larger than can be read");
}

TEST_F(TiffFormsTest, piecesThatMakeNoSenseAreRefused) {
  for (const bool tiles : {false, true}) {
    const auto broken = [&](TIFF* tiff) {
      TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
      char text[] = "no deflated data";
      if (tiles) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, 16);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, 16);
        TIFFWriteRawTile(tiff, 0, text, sizeof text);
      } else {
        TIFFWriteRawStrip(tiff, 0, text, sizeof text);
      }
    };
    write({.width = 16, .height = 16, .more = broken}, {});
    const std::string text = refusal();
    EXPECT_TRUE(text.starts_with("can't read it: ")) << text;
    EXPECT_EQ(text.find('\n'), std::string::npos);
  }
}

TEST_F(TiffFormsTest, aPictureWithoutPixelsIsRefused) {
  write({.width = 7, .height = 3}, {Bytes(21)});
  // The directory's entry of the height: tag 257, one number of 16 bits.
  std::string bytes = folder_.read("a.tif");
  const std::size_t entry = bytes.find(std::string("\x01\x01\x03\x00\x01\x00\x00\x00\x03\x00", 10));
  ASSERT_NE(entry, std::string::npos);
  bytes[entry + 8] = 0;
  folder_.write("a.tif", bytes);
  EXPECT_TRUE(refusal().starts_with("can't read it: ")) << refusal();
}

TEST_F(TiffFormsTest, theLibrarysWarningsAreNoErrorsAndAreNotShown) {
  // A tag that nobody knows: the library warns of it and reads on.
  write({}, {{77}});
  std::string bytes = folder_.read("a.tif");
  const std::size_t entry = bytes.find(std::string("\x15\x01\x03\x00\x01\x00\x00\x00", 8));  // samples to a pixel
  ASSERT_NE(entry, std::string::npos);
  bytes[entry] = 0x14;  // a second 0x114 behind the others
  folder_.write("a.tif", bytes);
  testing::internal::CaptureStderr();
  expectPixel(read().at<PF_Pixel>(0, 0), 77, 77, 77);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// ---- what a TIFF tells beside its pixels

namespace {

class TiffFactsTest : public TiffFormsTest {
 protected:
  /// One grey pixel with these fields, read and written as b.tif; opened to look at its fields.
  std::unique_ptr<TIFF, void (*)(TIFF*)> rewritten(const std::function<void(TIFF*)>& fields) const {
    write({.more = fields}, {{77}});
    const cli::FilePicture picture = cli::readPictureAndFacts(file(), {});
    cli::writePicture(folder_ / "b.tif", picture.image, {}, picture.facts.get());
    return {TIFFOpen((folder_ / "b.tif").c_str(), "r"), TIFFClose};
  }

  static void setResolution(TIFF* tiff, double x, double y, int unit) {
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, x);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, y);
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, unit);
  }

  static void expectResolution(TIFF* tiff, float x, float y, int unit) {
    float number = 0;
    EXPECT_EQ(TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &number), 1);
    EXPECT_NEAR(number, x, 1e-3F);
    EXPECT_EQ(TIFFGetField(tiff, TIFFTAG_YRESOLUTION, &number), 1);
    EXPECT_NEAR(number, y, 1e-3F);
    uint16_t kept = 0;
    EXPECT_EQ(TIFFGetField(tiff, TIFFTAG_RESOLUTIONUNIT, &kept), 1);
    EXPECT_EQ(kept, unit);
  }
};

}  // namespace

TEST_F(TiffFactsTest, resolutionsComeOutInInches) {
  expectResolution(rewritten([](TIFF* tiff) { setResolution(tiff, 100, 50, RESUNIT_CENTIMETER); }).get(), 254, 127,
                   RESUNIT_INCH);
  expectResolution(rewritten([](TIFF* tiff) { setResolution(tiff, 100, 50, RESUNIT_INCH); }).get(), 100, 50,
                   RESUNIT_INCH);
}

TEST_F(TiffFactsTest, aResolutionWithoutAUnitIsTheFormOfThePixels) {
  expectResolution(rewritten([](TIFF* tiff) { setResolution(tiff, 4, 2, RESUNIT_NONE); }).get(), 1, 0.5F, RESUNIT_NONE);
  float number = 0;
  EXPECT_EQ(TIFFGetField(rewritten([](TIFF* tiff) { setResolution(tiff, 3, 3, RESUNIT_NONE); }).get(),
                         TIFFTAG_XRESOLUTION, &number),
            0)
      << "square pixels need no word";
  EXPECT_EQ(TIFFGetField(rewritten([](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 3.0); }).get(),
                         TIFFTAG_XRESOLUTION, &number),
            0)
      << "the half of a resolution is none";
}

TEST_F(TiffFactsTest, theColorsOfTheScreenAndAnotherProgramsBlockStay) {
  const float primaries[6] = {0.64F, 0.33F, 0.3F, 0.6F, 0.15F, 0.06F};
  const float white[2] = {0.3127F, 0.329F};
  const auto tiff = rewritten([&](TIFF* from) {
    TIFFSetField(from, TIFFTAG_PRIMARYCHROMATICITIES, primaries);
    TIFFSetField(from, TIFFTAG_WHITEPOINT, white);
    TIFFSetField(from, TIFFTAG_PHOTOSHOP, 4, "8BIM");
  });
  const float* places = nullptr;
  ASSERT_EQ(TIFFGetField(tiff.get(), TIFFTAG_PRIMARYCHROMATICITIES, &places), 1);
  for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(places[i], primaries[i], 1e-5F);
  ASSERT_EQ(TIFFGetField(tiff.get(), TIFFTAG_WHITEPOINT, &places), 1);
  for (std::size_t i = 0; i < 2; ++i) EXPECT_NEAR(places[i], white[i], 1e-5F);
  uint32_t size = 0;
  const char* block = nullptr;
  ASSERT_EQ(TIFFGetField(tiff.get(), TIFFTAG_PHOTOSHOP, &size, &block), 1);
  EXPECT_EQ(std::string(block, size), "8BIM");
}

TEST_F(TiffFactsTest, theColorsOfAScreenWithoutItsWhiteAreNotKept) {
  const float primaries[6] = {0.64F, 0.33F, 0.3F, 0.6F, 0.15F, 0.06F};
  const auto tiff = rewritten([&](TIFF* from) { TIFFSetField(from, TIFFTAG_PRIMARYCHROMATICITIES, primaries); });
  const float* places = nullptr;
  EXPECT_EQ(TIFFGetField(tiff.get(), TIFFTAG_PRIMARYCHROMATICITIES, &places), 0);
}
