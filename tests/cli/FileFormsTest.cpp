// The forms that files are asked for: types, compressions, with and without alpha.

#include <gtest/gtest.h>

#include <cmath>

#include "cli/ImageFile.h"
#include "cli/UserError.h"
#include "cli/pictures/HalfFloats.h"
#include "cli/pictures/TextEncoding.h"
#include "tests/cli/ForeignPicture.h"
#include "tests/support/TemporaryFolder.h"

using cli::ExrType;
using cli::FilePicture;
using OIIO::ImageSpec;
using OIIO::TypeDesc;
using standin::Depth;
using standin::Image;

namespace {

class FileFormsTest : public testing::Test {
 protected:
  static Image noise(Depth depth) {
    Image image(Depth::k8, 64, 48);
    for (int32_t y = 0; y < 48; ++y) {
      for (int32_t x = 0; x < 64; ++x) {
        image.at<PF_Pixel>(x, y) = {255, static_cast<A_u_char>(x * y), static_cast<A_u_char>(x * 3),
                                    static_cast<A_u_char>(y * 5)};
      }
    }
    return image.converted(depth);
  }

  vindrel::test::TemporaryFolder folder_;
};

}  // namespace

TEST_F(FileFormsTest, halfsStayHalfsUnlessAskedForOtherwise) {
  const std::vector<float> values = {0.5F, 2.0F, -1.0F, 1.0F, 65504.0F, 0.0999755859375F, 6e-8F, 1.0F};
  writeForeign<float>(folder_ / "half.exr", ImageSpec(2, 1, 4, TypeDesc::HALF), values);
  writeForeign<float>(folder_ / "float.exr", ImageSpec(2, 1, 4, TypeDesc::FLOAT), values);
  const auto typeAfter = [&](const std::string& from, ExrType type) {
    const FilePicture picture = cli::readPictureAndFacts(folder_ / from, {});
    cli::writePicture(folder_ / "out.exr", picture.image, {.exrType = type}, picture.facts.get());
    return foreignSpec(folder_ / "out.exr").format;
  };
  EXPECT_EQ(typeAfter("half.exr", ExrType::asInput), TypeDesc::HALF);
  EXPECT_EQ(readForeign<float>(folder_ / "out.exr", TypeDesc::HALF),
            readForeign<float>(folder_ / "half.exr", TypeDesc::HALF));
  EXPECT_EQ(typeAfter("half.exr", ExrType::float32), TypeDesc::FLOAT);
  EXPECT_EQ(typeAfter("float.exr", ExrType::asInput), TypeDesc::FLOAT);
  EXPECT_EQ(typeAfter("float.exr", ExrType::half), TypeDesc::HALF);
}

TEST_F(FileFormsTest, floatsBecomeTheNearestHalves) {
  // 11 digits: from 1 to 2 in steps of 1/1024, ties to the even one; nine numbers, so that the last goes alone.
  const std::vector<float> floats = {
      1.0F,  1.0F + 1.0F / 2048, 1.0F + 3.0F / 2048, 1.0F + 1.1F / 2048, 65519.0F, 65520.0F,
      -2.0F, 0x1p-25F,           0x1.8p-25F};
  std::vector<uint16_t> halves(floats.size());
  cli::toHalves(floats, halves.data());
  EXPECT_EQ(halves, (std::vector<uint16_t>{0x3C00, 0x3C00, 0x3C02, 0x3C01, 0x7BFF, 0x7C00, 0xC000, 0x0000, 0x0001}));
}

TEST_F(FileFormsTest, everyCompressionOfAnExrCanBeAskedFor) {
  for (const std::string& name : cli::exrCompressions()) {
    cli::writePicture(folder_ / "a.exr", noise(Depth::k32), {.exrCompression = name});
    const ImageSpec spec = foreignSpec(folder_ / "a.exr");
    EXPECT_EQ(spec.get_string_attribute("compression"), name);
    const bool loses = name.starts_with("b44") || name.starts_with("dwa") || name == "pxr24";
    if (!loses) {
      EXPECT_TRUE(samePixels(cli::readPicture(folder_ / "a.exr"), noise(Depth::k32))) << name;
    }
  }
}

TEST_F(FileFormsTest, everyCompressionOfATiffCanBeAskedForAndLosesNothing) {
  for (const std::string& name : cli::tiffCompressions()) {
    for (const Depth depth : standin::kAllDepths) {
      cli::writePicture(folder_ / "a.tif", noise(depth), {.tiffCompression = name});
      EXPECT_EQ(foreignSpec(folder_ / "a.tif").get_string_attribute("compression"), name);
      EXPECT_TRUE(samePixels(cli::readPicture(folder_ / "a.tif"), noise(depth))) << name;
    }
  }
}

TEST_F(FileFormsTest, compressionsThatAFormatDoesNotKnowAreRefused) {
  const auto refusal = [&](const char* name, const cli::WriteChoices& choices) {
    try {
      cli::writePicture(folder_ / name, noise(Depth::k32), choices);
    } catch (const cli::UserError& error) {
      return std::string(error.what());
    }
    return std::string("written");
  };
  EXPECT_EQ(refusal("a.exr", {.exrCompression = "best"}),
            "can't write '" + folder_.path("a.exr") + "': EXR knows no compression 'best'");
  EXPECT_EQ(refusal("a.tif", {.tiffCompression = "piz"}),
            "can't write '" + folder_.path("a.tif") + "': TIFF knows no compression 'piz'");
  EXPECT_TRUE(folder_.names().empty());
}

TEST_F(FileFormsTest, withoutAlphaThePictureLiesOverTheMatte) {
  Image image(Depth::k8, 3, 1);
  image.at<PF_Pixel>(0, 0) = {255, 200, 100, 50};
  image.at<PF_Pixel>(1, 0) = {0, 200, 100, 50};
  image.at<PF_Pixel>(2, 0) = {51, 200, 100, 0};  // a fifth
  const cli::WriteChoices choices = {.alpha = false, .matte = {10, 20, 255}};
  cli::writePicture(folder_ / "a.png", image, choices);
  EXPECT_EQ(readForeign<uint8_t>(folder_ / "a.png", TypeDesc::UINT8),
            (std::vector<uint8_t>{200, 100, 50, 10, 20, 255, 48, 36, 204}));
  cli::writePicture(folder_ / "a.tif", image.converted(Depth::k16), choices);
  const std::vector<uint16_t> deep = readForeign<uint16_t>(folder_ / "a.tif", TypeDesc::UINT16);
  ASSERT_EQ(deep.size(), 9U);
  EXPECT_NEAR(deep[6], 48 * 257, 3);
  EXPECT_NEAR(deep[8], 204 * 257, 3);
  cli::writePicture(folder_ / "a.exr", image, choices);
  const std::vector<float> floats = readForeign<float>(folder_ / "a.exr", TypeDesc::FLOAT);
  ASSERT_EQ(floats.size(), 9U);
  EXPECT_NEAR(floats[6], 48.0F / 255.0F, 1e-6F);
  EXPECT_EQ(foreignSpec(folder_ / "a.exr").nchannels, 3);
}

TEST_F(FileFormsTest, aJpegHoldsThePictureOverTheMatteWithTheAskedQuality) {
  Image image(Depth::k8, 16, 16);
  for (int32_t y = 0; y < 16; ++y) {
    for (int32_t x = 0; x < 16; ++x) image.at<PF_Pixel>(x, y) = {static_cast<A_u_char>(x < 8 ? 255 : 0), 200, 60, 20};
  }
  cli::writePicture(folder_ / "a.jpg", image, {.jpegQuality = 95, .matte = {0, 0, 250}});
  const std::vector<uint8_t> back = readForeign<uint8_t>(folder_ / "a.jpg", TypeDesc::UINT8);
  ASSERT_EQ(back.size(), 768U);
  EXPECT_NEAR(back[0], 200, 4);
  EXPECT_NEAR(back[45], 0, 4);
  EXPECT_NEAR(back[47], 250, 4);
  cli::writePicture(folder_ / "good.jpeg", noise(Depth::k8), {.jpegQuality = 100});
  cli::writePicture(folder_ / "small.jpeg", noise(Depth::k8), {.jpegQuality = 20});
  EXPECT_GT(folder_.read("good.jpeg").size(), 2 * folder_.read("small.jpeg").size());
}

TEST_F(FileFormsTest, aJpegTakesEightBitsOnly) {
  const auto refusal = [&](Depth depth) {
    try {
      cli::writePicture(folder_ / "a.jpg", Image(depth, 1, 1));
    } catch (const cli::UserError& error) {
      return std::string(error.what());
    }
    return std::string("accepted");
  };
  const std::string file = "'" + (folder_ / "a.jpg").string() + "'";
  EXPECT_EQ(refusal(Depth::k16), file + " can't hold 16 bits; write .png or .tif, or render with --depth 8");
  EXPECT_EQ(refusal(Depth::k32), file + " can't hold float pixels; write .exr or .tif, or render with --depth 8");
  EXPECT_TRUE(folder_.names().empty());
}

TEST(TextEncodingTest, latinLettersGoToUtf8AndBack) {
  EXPECT_EQ(cli::utf8FromLatin1("a\xe9z"), "a\xc3\xa9z");
  EXPECT_EQ(cli::latin1FromUtf8("a\xc3\xa9z"), "a\xe9z");
  EXPECT_EQ(cli::latin1FromUtf8("\xe2\x82\xac"), std::nullopt) << "the euro sign is not among them";
  EXPECT_EQ(cli::latin1FromUtf8("\xc3"), std::nullopt) << "cut";
}
