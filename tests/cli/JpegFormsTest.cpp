// The many forms of a JPEG, written by its library alone, and what goes into those that are written here.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
// The library wants both before its own.
#include <jpeglib.h>

#include <functional>

#include "cli/ImageFile.h"
#include "cli/UserError.h"
#include "tests/cli/ForeignPicture.h"
#include "tests/cli/ReadPictures.h"
#include "tests/support/TemporaryFolder.h"

using cli::FilePicture;
using standin::Depth;
using standin::Image;

namespace {

class JpegFormsTest : public testing::Test {
 protected:
  std::filesystem::path file() const { return folder_ / "a.jpg"; }

  /// Writes a.jpg: 8 x 8 pixels, each of these channels.
  /// @param before  changes the form before the file begins
  /// @param notes  writes markers behind the file's head
  void write(const std::vector<uint8_t>& pixel, const std::function<void(jpeg_compress_struct&)>& before = {},
             const std::function<void(jpeg_compress_struct&)>& notes = {}) const {
    jpeg_compress_struct jpeg{};
    jpeg_error_mgr errors{};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;  // NOLINT(google-runtime-int): the library's type
    jpeg_mem_dest(&jpeg, &bytes, &size);
    jpeg.image_width = 8;
    jpeg.image_height = 8;
    jpeg.input_components = static_cast<int>(pixel.size());
    jpeg.in_color_space = pixel.size() == 1 ? JCS_GRAYSCALE : pixel.size() == 3 ? JCS_RGB : JCS_CMYK;
    jpeg_set_defaults(&jpeg);
    if (before) before(jpeg);
    jpeg_start_compress(&jpeg, TRUE);
    if (notes) notes(jpeg);
    std::vector<uint8_t> row;
    for (int i = 0; i < 8; ++i) row.insert(row.end(), pixel.begin(), pixel.end());
    for (int y = 0; y < 8; ++y) {
      JSAMPROW rows = row.data();
      jpeg_write_scanlines(&jpeg, &rows, 1);
    }
    jpeg_finish_compress(&jpeg);
    folder_.write("a.jpg", std::string(bytes, bytes + size));
    jpeg_destroy_compress(&jpeg);
    std::free(bytes);  // NOLINT(*-no-malloc): the library's memory
  }

  /// Writes a grey a.jpg with a marker of this number.
  void writeWithMarker(int number, const std::string& data) const {
    write({90}, {}, [&](jpeg_compress_struct& jpeg) {
      jpeg_write_marker(&jpeg, number, reinterpret_cast<const JOCTET*>(data.data()),
                        static_cast<unsigned int>(data.size()));
    });
  }

  std::string refusal() const { return refusalOfIt(file()); }

  FilePicture read() const { return cli::readPictureAndFacts(file(), {}); }

  /// Writes what was read as another file.
  void rewrite(const char* to) const {
    const FilePicture picture = read();
    cli::writePicture(folder_ / to, picture.image, {}, picture.facts.get());
  }

  vindrel::test::TemporaryFolder folder_;
};

/// A camera's notes that say how it was held, in either byte order.
std::string orientationBlock(bool littleFirst, int orientation) {
  const auto number = [&](uint32_t value, int count) {
    std::string bytes;
    for (int i = 0; i < count; ++i) {
      const int place = littleFirst ? i : count - 1 - i;
      bytes += static_cast<char>(value >> (8 * place));
    }
    return bytes;
  };
  return (littleFirst ? "II" : "MM") + number(42, 2) + number(8, 4) + number(2, 2) +
         // The form of its numbers, which is another entry, then the orientation and what fills its 4 bytes.
         number(0x0100, 2) + number(4, 2) + number(1, 4) + number(8, 4) +  //
         number(0x0112, 2) + number(3, 2) + number(1, 4) + number(static_cast<uint32_t>(orientation), 2) +
         number(0, 2) + number(0, 4);
}

const std::string exifHead("Exif\0\0", 6);

}  // namespace

TEST_F(JpegFormsTest, greyIsThreeEqualColors) {
  write({90});
  const PF_Pixel pixel = cli::readPicture(file()).at<PF_Pixel>(4, 4);
  EXPECT_NEAR(pixel.red, 90, 1);
  EXPECT_EQ(pixel.red, pixel.green);
  EXPECT_EQ(pixel.red, pixel.blue);
  EXPECT_EQ(pixel.alpha, 255);
}

TEST_F(JpegFormsTest, printColorsAreRefused) {
  write({10, 20, 30, 40});
  EXPECT_EQ(refusal(), "it is a CMYK picture; grey and RGB, each with or without alpha, can be read");
}

TEST_F(JpegFormsTest, aHeadThatMakesNoSenseIsRefused) {
  write({90});
  const std::string whole = folder_.read("a.jpg");
  const std::size_t frame = whole.find("\xFF\xC0");
  ASSERT_NE(frame, std::string::npos);
  std::string other = whole;
  other[frame + 4] = 99;  // bits of a sample
  folder_.write("a.jpg", other);
  EXPECT_TRUE(refusal().starts_with("can't read it: ")) << refusal();
  other = whole;
  other.replace(frame + 5, 2, std::string(2, '\0'));  // rows
  folder_.write("a.jpg", other);
  EXPECT_TRUE(refusal().starts_with("can't read it: ")) << refusal();
}

TEST_F(JpegFormsTest, slipsOfOtherProgramsThatLoseNothingAreRead) {
  // A newer head than there is.
  write({90}, [](jpeg_compress_struct& jpeg) { jpeg.JFIF_major_version = 3; });
  EXPECT_EQ(refusal(), "accepted");
  // A kind of colours that nobody knows.
  write(
      {90, 90, 90}, [](jpeg_compress_struct& jpeg) { jpeg.write_JFIF_header = FALSE; },
      [](jpeg_compress_struct& jpeg) {
        const JOCTET block[] = {'A', 'd', 'o', 'b', 'e', 0, 100, 0, 0, 0, 0, 9};
        jpeg_write_marker(&jpeg, JPEG_APP0 + 14, block, sizeof block);
      });
  EXPECT_EQ(refusal(), "accepted");
  // Bytes between two parts.
  write({90});
  std::string whole = folder_.read("a.jpg");
  whole.insert(whole.find("\xFF\xDB"), "stray");
  folder_.write("a.jpg", whole);
  EXPECT_EQ(refusal(), "accepted");
  EXPECT_NEAR(cli::readPicture(file()).at<PF_Pixel>(4, 4).red, 90, 1);
}

TEST_F(JpegFormsTest, aPictureTooWideForTheFormatIsRefusedAndNothingIsWritten) {
  const auto to = folder_ / "wide.jpg";
  try {
    cli::writePicture(to, Image(Depth::k8, 65501, 1));
    ADD_FAILURE() << "written";
  } catch (const cli::UserError& error) {
    const std::string text = error.what();
    EXPECT_TRUE(text.starts_with("can't write '" + to.string() + "': ")) << text;
    EXPECT_NE(text.find("65500 pixels"), std::string::npos) << text;
  }
  EXPECT_TRUE(folder_.names().empty());
}

// ---- notes

TEST_F(JpegFormsTest, resolutionsComeOutInInches) {
  struct Case {
    int unit, x, y;
    float inchX, inchY;
  };
  for (const Case& c : {Case{1, 300, 150, 300, 150}, Case{2, 100, 200, 254, 508}}) {
    write({90}, [&](jpeg_compress_struct& jpeg) {
      jpeg.density_unit = static_cast<UINT8>(c.unit);
      jpeg.X_density = static_cast<UINT16>(c.x);
      jpeg.Y_density = static_cast<UINT16>(c.y);
    });
    rewrite("b.jpg");
    const OIIO::ImageSpec back = foreignSpec(folder_ / "b.jpg");
    EXPECT_EQ(back.get_string_attribute("ResolutionUnit"), "in");
    EXPECT_EQ(back.get_float_attribute("XResolution"), c.inchX);
    EXPECT_EQ(back.get_float_attribute("YResolution"), c.inchY);
  }
}

TEST_F(JpegFormsTest, theFormOfThePixelsStaysWhereNoResolutionIsTold) {
  write({90}, [](jpeg_compress_struct& jpeg) {
    jpeg.density_unit = 0;
    jpeg.X_density = 2;
    jpeg.Y_density = 1;
  });
  const FilePicture picture = read();
  EXPECT_EQ(picture.facts->pixelAspect, 0.5) << "twice as many across as down";
  EXPECT_FALSE(picture.facts->density.has_value());
  for (const char* to : {"b.jpg", "b.png", "b.tif", "b.exr"}) {
    rewrite(to);
    EXPECT_NEAR(cli::readPictureAndFacts(folder_ / to, {}).facts->pixelAspect, 0.5, 1e-6) << to;
    EXPECT_FALSE(cli::readPictureAndFacts(folder_ / to, {}).facts->density.has_value()) << to;
  }
}

TEST_F(JpegFormsTest, aResolutionOfNothingIsNone) {
  for (const UINT16 across : {UINT16{0}, UINT16{72}}) {
    write({90}, [&](jpeg_compress_struct& jpeg) {
      jpeg.density_unit = 1;
      jpeg.X_density = across;
      jpeg.Y_density = static_cast<UINT16>(72 - across);
    });
    EXPECT_FALSE(read().facts->density.has_value());
    EXPECT_EQ(read().facts->pixelAspect, 1.0);
  }
  write({90}, [](jpeg_compress_struct& jpeg) { jpeg.write_JFIF_header = FALSE; });
  EXPECT_FALSE(read().facts->density.has_value());
}

TEST_F(JpegFormsTest, aCommentStaysAndGoesToPng) {
  writeWithMarker(JPEG_COM, std::string("left camera\0\0", 13));
  ASSERT_EQ(read().facts->texts.size(), 1U);
  EXPECT_EQ(read().facts->texts[0].text, "left camera");
  rewrite("b.jpg");
  EXPECT_NE(folder_.read("b.jpg").find(std::string("\xFF\xFE\0\x0Dleft camera", 15)), std::string::npos);
  rewrite("b.png");
  EXPECT_EQ(foreignSpec(folder_ / "b.png").get_string_attribute("Comment"), "left camera");
  writeWithMarker(JPEG_COM, std::string(3, '\0'));
  rewrite("c.jpg");
  EXPECT_EQ(folder_.read("c.jpg").find("\xFF\xFE"), std::string::npos) << "a comment of nothing is not written again";
}

TEST_F(JpegFormsTest, theDescriptionOfAnotherFormatBecomesTheComment) {
  OIIO::ImageSpec spec(2, 1, 3, OIIO::TypeDesc::UINT8);
  spec.attribute("ImageDescription", "a shot");
  spec.attribute("Copyright", "nobody");
  writeForeign<uint8_t>(folder_ / "a.tif", spec, {1, 2, 3, 4, 5, 6});
  const FilePicture picture = cli::readPictureAndFacts(folder_ / "a.tif", {});
  cli::writePicture(folder_ / "b.jpg", picture.image, {}, picture.facts.get());
  EXPECT_NE(folder_.read("b.jpg").find(std::string("\xFF\xFE\0\x08"
                                                   "a shot",
                                                   10)),
            std::string::npos);
  EXPECT_EQ(folder_.read("b.jpg").find("nobody"), std::string::npos);
}

TEST_F(JpegFormsTest, xmpStaysUnlessItIsTooLongForAMarker) {
  const std::string head("http://ns.adobe.com/xap/1.0/\0", 29);
  writeWithMarker(JPEG_APP0 + 1, head + "<x/>");
  EXPECT_EQ(read().facts->xmp, "<x/>");
  rewrite("b.jpg");
  EXPECT_NE(folder_.read("b.jpg").find(head + "<x/>"), std::string::npos);

  cli::PictureFacts facts = *read().facts;
  facts.xmp = std::string(65533 - head.size(), 'x');  // just fits
  cli::writePicture(folder_ / "b.jpg", read().image, {}, &facts);
  EXPECT_NE(folder_.read("b.jpg").find(head + "xxx"), std::string::npos);
  facts.xmp += 'x';
  cli::writePicture(folder_ / "b.jpg", read().image, {}, &facts);
  EXPECT_EQ(folder_.read("b.jpg").find(head), std::string::npos);
}

TEST_F(JpegFormsTest, ofSeveralCamerasNotesTheFirstCounts) {
  write({90}, {}, [](jpeg_compress_struct& jpeg) {
    for (const int orientation : {6, 3}) {
      const std::string block = exifHead + orientationBlock(true, orientation);
      jpeg_write_marker(&jpeg, JPEG_APP0 + 1, reinterpret_cast<const JOCTET*>(block.data()),
                        static_cast<unsigned int>(block.size()));
    }
  });
  const std::string upright = orientationBlock(true, 1);
  EXPECT_EQ(read().facts->exif, std::vector<uint8_t>(upright.begin(), upright.end()));
}

TEST_F(JpegFormsTest, aProfileInPiecesThatDoNotFitIsNone) {
  const std::string head("ICC_PROFILE\0", 12);
  writeWithMarker(JPEG_APP0 + 2, head + "\1\2half");  // the first of two
  EXPECT_EQ(refusal(), "accepted");
  EXPECT_TRUE(read().facts->iccProfile.empty());
  writeWithMarker(JPEG_APP0 + 2, head + "\1\1whole");
  EXPECT_EQ(read().facts->iccProfile, (std::vector<uint8_t>{'w', 'h', 'o', 'l', 'e'}));
}

// ---- how the camera was held

namespace {

/// 1 when the picture stays as it is stored: the top left pixel is the bright one.
class CameraNotesTest : public JpegFormsTest {
 protected:
  /// The facts of a picture whose notes are these; `turned` tells whether they were heeded.
  FilePicture with(const std::string& block) const {
    writeWithMarker(JPEG_APP0 + 1, exifHead + block);
    return read();
  }

  static std::string notesOf(const FilePicture& picture) {
    return {picture.facts->exif.begin(), picture.facts->exif.end()};
  }
};

}  // namespace

TEST_F(CameraNotesTest, bothByteOrdersAreHeededAndSayUprightAfterwards) {
  for (const bool littleFirst : {false, true}) {
    // Twice as many pixels to the inch across as down: the other way round once it is turned.
    write(
        {90},
        [](jpeg_compress_struct& jpeg) {
          jpeg.density_unit = 1;
          jpeg.X_density = 144;
          jpeg.Y_density = 72;
        },
        [&](jpeg_compress_struct& jpeg) {
          const std::string block = exifHead + orientationBlock(littleFirst, 8);
          jpeg_write_marker(&jpeg, JPEG_APP0 + 1, reinterpret_cast<const JOCTET*>(block.data()),
                            static_cast<unsigned int>(block.size()));
        });
    const FilePicture picture = read();
    ASSERT_TRUE(picture.facts->density.has_value());
    EXPECT_EQ(picture.facts->density->x, 72.0);
    EXPECT_EQ(picture.facts->density->y, 144.0);
    EXPECT_EQ(picture.facts->pixelAspect, 2.0);
    EXPECT_EQ(notesOf(picture), orientationBlock(littleFirst, 1));
  }
}

TEST_F(CameraNotesTest, orientationsThatDoNotExistAreUpright) {
  for (const int orientation : {0, 9, 1000}) {
    EXPECT_EQ(notesOf(with(orientationBlock(true, orientation))), orientationBlock(true, 1)) << orientation;
    EXPECT_EQ(refusal(), "accepted");
  }
}

TEST_F(CameraNotesTest, notesWithoutAnOrientationStayAsTheyAre) {
  const std::string good = orientationBlock(true, 8);
  const std::size_t entry = 8 + 2 + 12;
  const auto changed = [&](std::size_t place, char byte) {
    std::string block = good;
    block[place] = byte;
    return block;
  };
  for (const std::string& block :
       {changed(0, 'X'), std::string("XX") + good.substr(2), changed(1, 'M'), changed(2, 43), changed(4, 100),
        changed(7, 100), changed(8, 1), changed(entry, 0x13), changed(entry + 2, 4), good.substr(0, entry + 9),
        good.substr(0, 4), good.substr(0, 9)}) {
    EXPECT_EQ(notesOf(with(block)), block);
  }
}
