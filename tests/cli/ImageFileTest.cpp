#include "cli/ImageFile.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "cli/UserError.h"
#include "tests/cli/ForeignPicture.h"
#include "tests/cli/PngChunk.h"
#include "tests/cli/ReadPictures.h"
#include "tests/support/TemporaryFolder.h"

using OIIO::ImageInput;
using OIIO::ImageSpec;
using OIIO::TypeDesc;
using standin::Depth;
using standin::Image;

namespace {

class ImageFileTest : public testing::Test {
 protected:
  vindrel::test::TemporaryFolder folder_;

  /// Every pair of an alpha and a colour that 8 bits have.
  static Image everyPair8() {
    Image image(Depth::k8, 256, 256);
    for (int32_t y = 0; y < 256; ++y) {
      for (int32_t x = 0; x < 256; ++x) {
        const auto color = static_cast<A_u_char>(x);
        image.at<PF_Pixel>(x, y) = {static_cast<A_u_char>(y), color, static_cast<A_u_char>(255 - x), 77};
      }
    }
    return image;
  }

  /// Every channel value that the host's 16 bits have, 0 to 32768, each under four alphas.
  static Image everyValue16() {
    Image image(Depth::k16, 32769, 4);
    const A_u_short alphas[4] = {0, 1, 12345, 32768};
    for (int32_t y = 0; y < 4; ++y) {
      for (int32_t x = 0; x <= 32768; ++x) {
        const auto color = static_cast<A_u_short>(x);
        image.at<PF_Pixel16>(x, y) = {alphas[y], color, static_cast<A_u_short>(32768 - x), 5};
      }
    }
    return image;
  }

  static Image someFloats(bool clearPixel) {
    Image image(Depth::k32, 3, 1);
    // Alphas are powers of two, so that multiplying and dividing by them is exact.
    image.at<PF_PixelFloat>(0, 0) = {1.0F, -0.5F, 7.25F, 0.1F};
    image.at<PF_PixelFloat>(1, 0) = {0.5F, 0.25F, 1.0F / 3.0F, 1000.0F};
    image.at<PF_PixelFloat>(2, 0) = {0.0F, clearPixel ? 0.75F : 0.0F, 0.0F, 0.0F};
    return image;
  }

  void expectRoundTrip(const Image& image, const std::string& name) {
    cli::writePicture(folder_ / name, image);
    const Image back = cli::readPicture(folder_ / name);
    EXPECT_EQ(back.depth(), image.depth());
    EXPECT_TRUE(samePixels(back, image)) << name;
    EXPECT_EQ(folder_.names(), std::vector<std::string>{name}) << "a file was left beside it";
    std::filesystem::remove(folder_ / name);
  }
};

}  // namespace

TEST_F(ImageFileTest, eightBitsComeBackToTheLastBitUnderEveryAlpha) {
  expectRoundTrip(everyPair8(), "a.png");
  expectRoundTrip(everyPair8(), "a.tif");
  expectRoundTrip(everyPair8(), "a.TIFF");
}

TEST_F(ImageFileTest, sixteenBitsComeBackToTheLastBit) {
  // At most 30000 columns can be read, so the values are laid out in a square.
  const Image line = everyValue16();
  Image square(Depth::k16, 4 * 182, 181);
  for (int32_t i = 0; i <= 32768; ++i) {
    for (int32_t row = 0; row < 4; ++row) {
      square.at<PF_Pixel16>(4 * (i % 182) + row, i / 182) = line.at<PF_Pixel16>(i, row);
    }
  }
  expectRoundTrip(square, "a.png");
  expectRoundTrip(square, "a.tif");
}

TEST_F(ImageFileTest, floatsComeBackToTheLastBit) {
  expectRoundTrip(someFloats(true), "a.tif");
  expectRoundTrip(someFloats(false), "a.exr");
}

TEST_F(ImageFileTest, sixteenBitValuesAreScaledToTheNearest) {
  EXPECT_EQ(cli::fromFile16(0), 0);
  EXPECT_EQ(cli::fromFile16(65535), 32768);
  EXPECT_EQ(cli::fromFile16(32768), 16384);  // 16384.25
  EXPECT_EQ(cli::fromFile16(32767), 16384);  // 16383.75
  EXPECT_EQ(cli::fromFile16(1), 1);          // 0.5000076
  EXPECT_EQ(cli::toFile16(32768), 65535);
  EXPECT_EQ(cli::toFile16(1), 2);          // 1.99997
  EXPECT_EQ(cli::toFile16(16384), 32768);  // 32767.5
  EXPECT_EQ(cli::toFile16(40000), 65535);
}

TEST_F(ImageFileTest, pngHoldsStraightColor) {
  Image image(Depth::k8, 1, 1);
  image.at<PF_Pixel>(0, 0) = {128, 200, 100, 50};
  cli::writePicture(folder_ / "a.png", image);
  EXPECT_EQ(readForeign<uint8_t>(folder_ / "a.png", TypeDesc::UINT8), (std::vector<uint8_t>{200, 100, 50, 128}));
}

TEST_F(ImageFileTest, exrHoldsColorTimesAlpha) {
  cli::writePicture(folder_ / "a.exr", someFloats(true));
  EXPECT_EQ(readForeign<float>(folder_ / "a.exr", TypeDesc::FLOAT),
            (std::vector<float>{-0.5F, 7.25F, 0.1F, 1.0F, 0.125F, 0.5F / 3.0F, 500.0F, 0.5F, 0, 0, 0, 0}));
}

TEST_F(ImageFileTest, anExrOfFewerBitsIsWrittenAsFloat) {
  Image image(Depth::k8, 1, 1);
  image.at<PF_Pixel>(0, 0) = {255, 51, 0, 255};
  cli::writePicture(folder_ / "a.exr", image);
  EXPECT_EQ(readForeign<float>(folder_ / "a.exr", TypeDesc::FLOAT), (std::vector<float>{0.2F, 0, 1, 1}));
}

TEST_F(ImageFileTest, greyBecomesThreeEqualColors) {
  writeForeign<uint8_t>(folder_ / "g.png", ImageSpec(2, 1, 1, TypeDesc::UINT8), {7, 200});
  const Image grey = cli::readPicture(folder_ / "g.png");
  EXPECT_EQ(grey.at<PF_Pixel>(1, 0).alpha, 255);
  EXPECT_EQ(grey.at<PF_Pixel>(1, 0).red, 200);
  EXPECT_EQ(grey.at<PF_Pixel>(1, 0).green, 200);
  EXPECT_EQ(grey.at<PF_Pixel>(1, 0).blue, 200);

  ImageSpec withAlpha(1, 1, 2, TypeDesc::UINT16);
  withAlpha.channelnames = {"Y", "A"};
  withAlpha.alpha_channel = 1;
  withAlpha.attribute("oiio:UnassociatedAlpha", 1);
  writeForeign<uint16_t>(folder_ / "ga.png", withAlpha, {65535, 32768});
  const Image greyAlpha = cli::readPicture(folder_ / "ga.png");
  EXPECT_EQ(greyAlpha.depth(), Depth::k16);
  EXPECT_EQ(greyAlpha.at<PF_Pixel16>(0, 0).alpha, 16384);
  EXPECT_EQ(greyAlpha.at<PF_Pixel16>(0, 0).blue, 32768);
}

TEST_F(ImageFileTest, picturesWithoutAlphaAreOpaque) {
  writeForeign<uint16_t>(folder_ / "rgb.tif", ImageSpec(1, 1, 3, TypeDesc::UINT16), {65535, 0, 2});
  const PF_Pixel16 pixel = cli::readPicture(folder_ / "rgb.tif").at<PF_Pixel16>(0, 0);
  EXPECT_EQ(pixel.alpha, 32768);
  EXPECT_EQ(pixel.red, 32768);
  EXPECT_EQ(pixel.blue, 1);
}

TEST_F(ImageFileTest, halfFloatsAreReadAsFloats) {
  writeForeign<float>(folder_ / "h.exr", ImageSpec(1, 1, 3, TypeDesc::HALF), {0.5F, 2.0F, -1.0F});
  const Image image = cli::readPicture(folder_ / "h.exr");
  EXPECT_EQ(image.depth(), Depth::k32);
  EXPECT_EQ(image.at<PF_PixelFloat>(0, 0).green, 2.0F);
  EXPECT_EQ(image.at<PF_PixelFloat>(0, 0).alpha, 1.0F);
}

TEST_F(ImageFileTest, colorTimesAlphaIsMadeStraight) {
  writeForeign<float>(folder_ / "a.exr", ImageSpec(2, 1, 4, TypeDesc::FLOAT), {0.25F, 0.5F, 0, 0.5F, 3.0F, 0, 0, 0});
  const Image image = cli::readPicture(folder_ / "a.exr");
  EXPECT_EQ(image.at<PF_PixelFloat>(0, 0).red, 0.5F);
  EXPECT_EQ(image.at<PF_PixelFloat>(0, 0).green, 1.0F);
  // Light without cover has no straight form; it keeps its colour and stays clear.
  EXPECT_EQ(image.at<PF_PixelFloat>(1, 0).red, 3.0F);

  // Without the attribute the library writes colour times alpha.
  writeForeign<uint8_t>(folder_ / "a.tif", ImageSpec(1, 1, 4, TypeDesc::UINT8), {50, 100, 10, 100});
  const PF_Pixel pixel = cli::readPicture(folder_ / "a.tif").at<PF_Pixel>(0, 0);
  EXPECT_EQ(pixel.red, 128);  // 50 * 255 / 100 = 127.5
  EXPECT_EQ(pixel.green, 255);
  EXPECT_EQ(pixel.blue, 26);  // 25.5
}

TEST_F(ImageFileTest, aCropStandsInItsPlaceOnTheFullImage) {
  ImageSpec layout(1, 1, 4, TypeDesc::FLOAT);
  layout.x = 2;
  layout.y = 1;
  layout.full_width = 4;
  layout.full_height = 3;
  writeForeign<float>(folder_ / "crop.exr", layout, {1, 0, 0, 1});
  const Image image = cli::readPicture(folder_ / "crop.exr");
  EXPECT_EQ(image.width(), 4);
  EXPECT_EQ(image.height(), 3);
  EXPECT_EQ(image.at<PF_PixelFloat>(2, 1).red, 1.0F);
  EXPECT_EQ(image.at<PF_PixelFloat>(0, 0).alpha, 0.0F);
}

TEST_F(ImageFileTest, theOrientationOfACameraIsApplied) {
  // Stored 2 x 1 as A B. Where each lands: orientation, width, height of the result, place of A.
  struct Case {
    int orientation, width, height, x, y;
  };
  for (const Case& c : {Case{1, 2, 1, 0, 0}, Case{2, 2, 1, 1, 0}, Case{3, 2, 1, 1, 0}, Case{4, 2, 1, 0, 0},
                        Case{5, 1, 2, 0, 0}, Case{6, 1, 2, 0, 0}, Case{7, 1, 2, 0, 1}, Case{8, 1, 2, 0, 1}}) {
    ImageSpec layout(2, 1, 3, TypeDesc::UINT8);
    layout.attribute("Orientation", c.orientation);
    writeForeign<uint8_t>(folder_ / "o.tif", layout, {200, 0, 0, 10, 0, 0});
    const Image image = cli::readPicture(folder_ / "o.tif");
    ASSERT_EQ(image.width(), c.width) << c.orientation;
    ASSERT_EQ(image.height(), c.height) << c.orientation;
    EXPECT_EQ(image.at<PF_Pixel>(c.x, c.y).red, 200) << c.orientation;
    EXPECT_EQ(cli::pictureSize(folder_ / "o.tif", {}), (cli::PictureSize{c.width, c.height})) << c.orientation;
  }
}

TEST_F(ImageFileTest, theOrientationTurnsColumnsTheRightWay) {
  // Stored 1 x 2 as A over B: upside down, upright turned to the right (A to the right), to the left (A to the left).
  struct Case {
    int orientation, x, y;
  };
  for (const Case& c : {Case{3, 0, 1}, Case{4, 0, 1}, Case{5, 0, 0}, Case{6, 1, 0}, Case{7, 1, 0}, Case{8, 0, 0}}) {
    ImageSpec layout(1, 2, 3, TypeDesc::UINT8);
    layout.attribute("Orientation", c.orientation);
    writeForeign<uint8_t>(folder_ / "o.tif", layout, {200, 0, 0, 10, 0, 0});
    EXPECT_EQ(cli::readPicture(folder_ / "o.tif").at<PF_Pixel>(c.x, c.y).red, 200) << c.orientation;
  }
}

TEST_F(ImageFileTest, jpegCanBeRead) {
  writeForeign<uint8_t>(folder_ / "a.jpg", ImageSpec(8, 8, 3, TypeDesc::UINT8), std::vector<uint8_t>(192, 128));
  const Image image = cli::readPicture(folder_ / "a.jpg");
  EXPECT_EQ(image.depth(), Depth::k8);
  EXPECT_NEAR(image.at<PF_Pixel>(3, 3).green, 128, 2);
}

TEST_F(ImageFileTest, printColorsAreRefused) {
  ImageSpec layout(1, 1, 4, TypeDesc::UINT8);
  layout.attribute("tiff:ColorSpace", "CMYK");
  layout.channelnames = {"C", "M", "Y", "K"};
  layout.alpha_channel = -1;
  writeForeign<uint8_t>(folder_ / "c.tif", layout, {1, 2, 3, 4});
  EXPECT_EQ(refusalToRead(folder_ / "c.tif"),
            "'" + (folder_ / "c.tif").string() +
                "' is a CMYK picture; grey and RGB, each with or without alpha, can be read");
}

TEST_F(ImageFileTest, channelsThatMakeNoColorAreRefusedByName) {
  ImageSpec layout(1, 1, 2, TypeDesc::FLOAT);
  layout.channelnames = {"U", "V"};
  layout.alpha_channel = -1;
  writeForeign<float>(folder_ / "uv.exr", layout, {1, 2});
  EXPECT_EQ(refusalToRead(folder_ / "uv.exr"),
            "'" + (folder_ / "uv.exr").string() +
                "' has the channels U, V; grey and RGB, each with or without alpha, can be read");
}

TEST_F(ImageFileTest, pixelsOfOtherTypesAreRefused) {
  writeForeign<uint32_t>(folder_ / "u.tif", ImageSpec(1, 1, 3, TypeDesc::UINT32), {1, 2, 3});
  EXPECT_EQ(refusalToRead(folder_ / "u.tif"), "'" + (folder_ / "u.tif").string() +
                                                  "' has pixels of 32-bit whole numbers; 8-bit, 16-bit and float "
                                                  "pixels can be read");
}

TEST_F(ImageFileTest, picturesTooLargeForTheHostAreRefused) {
  writeForeign<uint8_t>(folder_ / "wide.png", ImageSpec(30001, 1, 1, TypeDesc::UINT8), std::vector<uint8_t>(30001));
  EXPECT_EQ(refusalToRead(folder_ / "wide.png"),
            "'" + (folder_ / "wide.png").string() + "' is 30001 x 1 pixels; at most 30000 x 30000 can be rendered");
}

TEST_F(ImageFileTest, aCutOffFileIsRefusedInOneLine) {
  cli::writePicture(folder_ / "a.png", everyPair8());
  const std::string whole = folder_.read("a.png");
  folder_.write("cut.png", whole.substr(0, whole.size() / 2));
  testing::internal::CaptureStderr();
  const std::string text = refusalToRead(folder_ / "cut.png");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "the library spoke for itself";
  EXPECT_TRUE(text.starts_with("can't read '" + (folder_ / "cut.png").string() + "': ")) << text;
  EXPECT_EQ(text.find('\n'), std::string::npos);
}

TEST_F(ImageFileTest, whatStoodThereStaysWhenWritingFails) {
  folder_.write("a.png", "precious");
  Image wide(Depth::k32, 1, 1);
  EXPECT_THROW(cli::writePicture(folder_ / "a.png", wide), cli::UserError);
  EXPECT_EQ(folder_.read("a.png"), "precious");
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"a.png"});
}

TEST_F(ImageFileTest, whatStoodThereIsReplacedByAWholePicture) {
  folder_.write("a.png", "precious");
  cli::writePicture(folder_ / "a.png", everyPair8());
  EXPECT_TRUE(samePixels(cli::readPicture(folder_ / "a.png"), everyPair8()));
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"a.png"});
}

TEST_F(ImageFileTest, aCutJpegIsRefusedWhereverItWasCut) {
  std::vector<uint8_t> noise(64 * 64 * 3);
  for (std::size_t i = 0; i < noise.size(); ++i) noise[i] = static_cast<uint8_t>(i * i / 7);
  writeForeign<uint8_t>(folder_ / "a.jpg", ImageSpec(64, 64, 3, TypeDesc::UINT8), noise);
  const std::string whole = folder_.read("a.jpg");
  EXPECT_EQ(refusalToRead(folder_ / "a.jpg"), "accepted");
  for (std::size_t percent = 10; percent < 100; ++percent) {
    folder_.write("cut.jpg", whole.substr(0, whole.size() * percent / 100));
    EXPECT_TRUE(refusalToRead(folder_ / "cut.jpg").starts_with("can't read '")) << percent << " percent";
  }
}

TEST_F(ImageFileTest, cutFilesOfEveryFormatAreRefused) {
  cli::writePicture(folder_ / "a.png", everyPair8());
  cli::writePicture(folder_ / "a.tif", everyPair8());
  cli::writePicture(folder_ / "a.exr", everyPair8());
  for (const char* name : {"a.png", "a.tif", "a.exr"}) {
    const std::string whole = folder_.read(name);
    for (std::size_t percent = 5; percent < 100; percent += 5) {
      folder_.write("cut", whole.substr(0, whole.size() * percent / 100));
      EXPECT_TRUE(refusalToRead(folder_ / "cut").starts_with("can't read '")) << name << ", " << percent << " percent";
    }
  }
}

TEST_F(ImageFileTest, picturesOfOtherFormatsAreRefusedWhateverTheirName) {
  for (const char* ending : {".gif", ".bmp", ".tga", ".dpx", ".hdr", ".ppm", ".sgi"}) {
    const auto file = folder_ / ("a" + std::string(ending));
    writeForeign<uint8_t>(file, ImageSpec(4, 4, 3, TypeDesc::UINT8), std::vector<uint8_t>(48, 100));
    std::filesystem::copy_file(file, folder_ / "b.png", std::filesystem::copy_options::overwrite_existing);
    for (const auto& name : {file, folder_ / "b.png"}) {
      EXPECT_EQ(refusalToRead(name),
                "'" + name.string() + "' is no picture that can be read; PNG, TIFF, EXR and JPEG can")
          << ending;
    }
  }
  // The head of a layered picture with four channels of 8 bits, whose reader ended the process.
  const auto psd = folder_.write("c.png", std::string("8BPS\0\1\0\0\0\0\0\0\0\4\0\0\0\1\0\0\0\1\0\10\0\3", 26));
  EXPECT_EQ(refusalToRead(psd), "'" + psd.string() + "' is no picture that can be read; PNG, TIFF, EXR and JPEG can");
  const auto empty = folder_.write("d.png", "");
  EXPECT_EQ(refusalToRead(empty),
            "'" + empty.string() + "' is no picture that can be read; PNG, TIFF, EXR and JPEG can");
}

TEST_F(ImageFileTest, aFileIsReadAsWhatItIsAndNotAsItsNameSays) {
  cli::writePicture(folder_ / "a.tif", everyPair8());
  std::filesystem::rename(folder_ / "a.tif", folder_ / "a.png");
  EXPECT_TRUE(samePixels(cli::readPicture(folder_ / "a.png"), everyPair8()));
}

namespace {

/// The head of a grey PNG and `dataBytes` of something that calls itself its pixels.
std::string pngThatClaims(uint32_t width, uint32_t height, std::size_t dataBytes) {
  return "\x89PNG\r\n\x1a\n" + pngChunk("IHDR", bigEndian(width) + bigEndian(height) + std::string("\x8\0\0\0\0", 5)) +
         pngChunk("IDAT", std::string(dataBytes, 'x')) + pngChunk("IEND", "");
}

}  // namespace

TEST_F(ImageFileTest, aPictureThatTakesTooMuchMemoryIsRefusedByItsHeader) {
  // 900 million grey pixels: 1 byte each in the file, and 3 times 4 in the host.
  const auto file = folder_.write("bomb.png", pngThatClaims(30000, 30000, 1000000));
  EXPECT_EQ(refusalToRead(file), "'" + file.string() +
                                     "' is 30000 x 30000 pixels and takes 11700 MB of memory; --limit-memory allows "
                                     "4500 MB");
}

// The library takes the room for both before it reads them: some gigabytes for a file of a few hundred bytes.
TEST_F(ImageFileTest, anExrThatPromisesMoreThanItsBytesIsRefusedByItsHeader) {
  cli::writePicture(folder_ / "whole.exr", everyPair8());
  const std::string whole = folder_.read("whole.exr");
  const auto withNumber = [&](const std::string& after, std::size_t skipped, uint32_t number) {
    std::string file = whole;
    const std::size_t at = file.find(after);
    EXPECT_NE(at, std::string::npos);
    std::memcpy(file.data() + at + after.size() + skipped, &number, sizeof number);
    folder_.write("other.exr", file);
    return refusalToRead(folder_ / "other.exr");
  };
  const std::string cut = "can't read '" + (folder_ / "other.exr").string() + "': the file is cut";
  const std::string attribute("compression\0compression\0", 24);
  EXPECT_EQ(withNumber(attribute, 0, 0x7FFFFFFF), cut);
  EXPECT_EQ(withNumber(attribute, 0, 0xFFFFFFFF), cut);
  const std::string window("dataWindow\0box2i\0", 17);
  EXPECT_EQ(withNumber(window, 4 + 12, 0x3FFFFFFE), cut) << "a billion rows";
  // The library would take memory for some of its rows before it is asked how long they are.
  EXPECT_EQ(withNumber(window, 4 + 8, 0x3FFFFFFE), "can't read '" + (folder_ / "other.exr").string() +
                                                       "': its rows of 1073741823 pixels are too long to be rendered");
}

TEST_F(ImageFileTest, aPngThatIsTooShortForItsSizeIsRefusedByItsHeader) {
  const auto file = folder_.write("bomb.png", pngThatClaims(30000, 30000, 250));
  EXPECT_EQ(refusalToRead(file),
            "can't read '" + file.string() + "': the file is too short for the size that it tells");
}

TEST_F(ImageFileTest, theSamePictureIsTheSameFileAtAnotherTime) {
  const std::vector<std::string> endings = {".png", ".tif", ".exr", ".jpg"};
  for (const std::string& ending : endings) cli::writePicture(folder_ / ("a" + ending), everyPair8());
  // Files that hold a time hold it to the second.
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  for (const std::string& ending : endings) {
    cli::writePicture(folder_ / ("b" + ending), everyPair8());
    EXPECT_EQ(folder_.read("a" + ending), folder_.read("b" + ending)) << ending;
  }
}

TEST_F(ImageFileTest, theTimeOfDayIsPutInWhenAskedFor) {
  for (const char* name : {"a.png", "a.tif", "a.exr"}) {
    cli::writePicture(folder_ / name, everyPair8(), {.stamp = true});
    const auto input = ImageInput::open((folder_ / name).string());
    ASSERT_TRUE(input);
    const std::string time = input->spec().get_string_attribute("DateTime");
    EXPECT_EQ(time.size(), 19U) << name;
    EXPECT_TRUE(time.starts_with("20")) << name << " " << time;
  }
  // A JPEG has no field for it: a comment tells it.
  cli::writePicture(folder_ / "a.jpg", everyPair8(), {.stamp = true});
  const std::string bytes = folder_.read("a.jpg");
  const std::size_t comment = bytes.find(std::string("\xFF\xFE\0\x1AMade 20", 11));
  ASSERT_NE(comment, std::string::npos);
  EXPECT_EQ(bytes.substr(comment + 13, 1), ":") << "a year of four digits, then the month";
}

TEST_F(ImageFileTest, theCompressionOfAPngChangesItsSizeAndNoPixel) {
  for (const int32_t level : {0, 1, 9}) {
    cli::writePicture(folder_ / (std::to_string(level) + ".png"), everyPair8(), {.pngLevel = level});
    EXPECT_TRUE(samePixels(cli::readPicture(folder_ / (std::to_string(level) + ".png")), everyPair8())) << level;
  }
  EXPECT_GT(folder_.read("0.png").size(), folder_.read("1.png").size());
  EXPECT_GT(folder_.read("1.png").size(), folder_.read("9.png").size());
}
