// The many forms of a PNG, made by hand.

#include <gtest/gtest.h>

#include "cli/ImageFile.h"
#include "cli/UserError.h"
#include "tests/cli/PngChunk.h"
#include "tests/cli/ReadPictures.h"
#include "tests/support/TemporaryFolder.h"

using cli::FilePicture;
using standin::Depth;
using standin::Image;

namespace {

class PngFormsTest : public testing::Test {
 protected:
  /// Writes a.png: rows that begin with their filter, 0 for none.
  /// @param kind  0 grey, 2 RGB, 3 a list of colours, 4 grey with alpha, 6 RGB with alpha
  void write(uint32_t width, uint32_t height, int bits, int kind, const std::string& rows,
             const std::string& chunks = "") const {
    const std::string head =
        bigEndian(width) + bigEndian(height) + static_cast<char>(bits) + static_cast<char>(kind) + std::string(3, '\0');
    uLongf size = compressBound(static_cast<uLong>(rows.size()));
    std::string data(size, '\0');
    ASSERT_EQ(compress(reinterpret_cast<Bytef*>(data.data()), &size, reinterpret_cast<const Bytef*>(rows.data()),
                       static_cast<uLong>(rows.size())),
              Z_OK);
    data.resize(size);
    folder_.write(
        "a.png", "\x89PNG\r\n\x1a\n" + pngChunk("IHDR", head) + chunks + pngChunk("IDAT", data) + pngChunk("IEND", ""));
  }

  /// One grey pixel of 77 with more chunks.
  FilePicture withChunks(const std::string& chunks) const {
    write(1, 1, 8, 0, std::string("\0M", 2), chunks);
    return cli::readPictureAndFacts(folder_ / "a.png", {});
  }

  Image read() const { return cli::readPicture(folder_ / "a.png"); }

  std::string refusal() const { return refusalOfIt(folder_ / "a.png"); }

  vindrel::test::TemporaryFolder folder_;
};

}  // namespace

TEST_F(PngFormsTest, greyOfFewBitsIsSpreadOverEight) {
  write(3, 1, 1, 0, std::string("\0\xA0", 2));
  expectPixel(read().at<PF_Pixel>(0, 0), 255, 255, 255);
  expectPixel(read().at<PF_Pixel>(1, 0), 0, 0, 0);
  write(2, 1, 4, 0, std::string("\0\x83", 2));
  expectPixel(read().at<PF_Pixel>(0, 0), 136, 136, 136);  // 8 * 17
  expectPixel(read().at<PF_Pixel>(1, 0), 51, 51, 51);
}

TEST_F(PngFormsTest, aListOfColorsIsLookedUpWithItsAlphas) {
  const std::string list = pngChunk("PLTE", "\1\2\3\x64\x65\x66");
  write(2, 1, 8, 3, std::string("\0\1\0", 3), list);
  expectPixel(read().at<PF_Pixel>(0, 0), 0x64, 0x65, 0x66);
  expectPixel(read().at<PF_Pixel>(1, 0), 1, 2, 3);
  write(2, 1, 8, 3, std::string("\0\1\0", 3), list + pngChunk("tRNS", std::string("\x80\0", 2)));
  expectPixel(read().at<PF_Pixel>(0, 0), 0x64, 0x65, 0x66, 0);
  expectPixel(read().at<PF_Pixel>(1, 0), 1, 2, 3, 128);
}

TEST_F(PngFormsTest, theClearColorIsClear) {
  write(2, 1, 8, 0, std::string("\0\x4D\x4E", 3), pngChunk("tRNS", std::string("\0\x4D", 2)));
  expectPixel(read().at<PF_Pixel>(0, 0), 77, 77, 77, 0);
  expectPixel(read().at<PF_Pixel>(1, 0), 78, 78, 78);
}

TEST_F(PngFormsTest, aHeadThatMakesNoSenseIsRefused) {
  write(1, 1, 3, 0, std::string(2, '\0'));
  EXPECT_TRUE(refusal().starts_with("can't read it: ")) << refusal();
  write(0, 1, 8, 0, std::string(2, '\0'));
  EXPECT_TRUE(refusal().starts_with("can't read it: ")) << refusal();
  write(1, 1, 8, 0, std::string(2, '\0'));
  folder_.write("a.png", folder_.read("a.png").substr(0, 20));
  EXPECT_EQ(refusal(), "can't read it: the file is cut");
}

TEST_F(PngFormsTest, resolutionsAreTakenByTheirUnit) {
  const auto density = [&](uint32_t x, uint32_t y, char unit) {
    return withChunks(pngChunk("pHYs", bigEndian(x) + bigEndian(y) + unit)).facts;
  };
  auto facts = density(10000, 5000, 1);
  ASSERT_TRUE(facts->density.has_value());
  EXPECT_NEAR(facts->density->x, 254.0, 1e-9);
  EXPECT_EQ(facts->pixelAspect, 0.5);
  facts = density(2, 3, 0);
  EXPECT_FALSE(facts->density.has_value()) << "no unit";
  EXPECT_EQ(facts->pixelAspect, 1.5);
  for (const auto& [x, y] : {std::pair{0U, 5U}, std::pair{5U, 0U}}) {
    facts = density(x, y, 1);
    EXPECT_FALSE(facts->density.has_value());
    EXPECT_EQ(facts->pixelAspect, 1.0);
  }
}

TEST_F(PngFormsTest, theFormOfThePixelsGoesOnWithoutAUnit) {
  const FilePicture picture = withChunks(pngChunk("pHYs", bigEndian(2) + bigEndian(3) + std::string(1, '\0')));
  cli::writePicture(folder_ / "b.png", picture.image, {}, picture.facts.get());
  EXPECT_NE(folder_.read("b.png").find(pngChunk("pHYs", bigEndian(10000) + bigEndian(15000) + std::string(1, '\0'))),
            std::string::npos);
}

TEST_F(PngFormsTest, theIntentOfSrgbStays) {
  const std::string chunk = pngChunk("sRGB", "\1");
  const FilePicture picture = withChunks(chunk);
  cli::writePicture(folder_ / "b.png", picture.image, {}, picture.facts.get());
  EXPECT_NE(folder_.read("b.png").find(chunk), std::string::npos);
  cli::writePicture(folder_ / "c.png", withChunks("").image, {}, withChunks("").facts.get());
  EXPECT_EQ(folder_.read("c.png").find("sRGB"), std::string::npos);
}

TEST_F(PngFormsTest, aCamerasNotesTurnThePictureAndSayUprightAfterwards) {
  // Turned to the right: 2 x 1 pixels become 1 x 2, the left one on top.
  const std::string before("MM\0\x2A\0\0\0\x8\0\1\1\x12\0\3\0\0\0\1\0\6\0\0\0\0\0\0", 26);
  std::string after = before;
  after[19] = 1;
  write(2, 1, 8, 0, std::string("\0\x11\x22", 3), pngChunk("eXIf", before));
  const FilePicture picture = cli::readPictureAndFacts(folder_ / "a.png", {});
  ASSERT_EQ(picture.image.width(), 1);
  ASSERT_EQ(picture.image.height(), 2);
  EXPECT_EQ(picture.image.at<PF_Pixel>(0, 0).red, 0x11);
  EXPECT_EQ(picture.image.at<PF_Pixel>(0, 1).red, 0x22);
  cli::writePicture(folder_ / "b.png", picture.image, {}, picture.facts.get());
  EXPECT_NE(folder_.read("b.png").find(pngChunk("eXIf", after)), std::string::npos);
}

TEST_F(PngFormsTest, aProfileThatTheLibraryRefusesIsLeftOutAndThePictureWritten) {
  FilePicture picture = withChunks("");
  cli::PictureFacts facts = *picture.facts;
  facts.iccProfile = std::vector<uint8_t>(200, 'x');
  testing::internal::CaptureStderr();
  cli::writePicture(folder_ / "b.png", picture.image, {}, &facts);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(folder_.read("b.png").find("iCCP"), std::string::npos);
  EXPECT_TRUE(samePixels(cli::readPicture(folder_ / "b.png"), picture.image));
}

TEST_F(PngFormsTest, aNoteThatLatinLettersCannotHoldIsWrittenInUtf8) {
  FilePicture picture = withChunks("");
  cli::PictureFacts facts = *picture.facts;
  facts.texts = {{"Author", "\xe2\x82\xac"}};
  cli::writePicture(folder_ / "b.png", picture.image, {}, &facts);
  EXPECT_NE(folder_.read("b.png").find(pngChunk("iTXt", std::string("Author\0\0\0\0\0\xe2\x82\xac", 14))),
            std::string::npos);
  const FilePicture back = cli::readPictureAndFacts(folder_ / "b.png", {});
  ASSERT_EQ(back.facts->texts.size(), 1U);
  EXPECT_EQ(back.facts->texts[0].text, "\xe2\x82\xac");
}

TEST_F(PngFormsTest, aPictureTooLargeForTheFormatIsRefusedAndNothingIsWritten) {
  // The library takes a million columns.
  EXPECT_THROW(cli::writePicture(folder_ / "wide.png", Image(Depth::k8, 1000001, 1)), cli::UserError);
  EXPECT_TRUE(folder_.names().empty());
}
