// What a file tells beside its pixels is told again by the file that is written.

#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfInputFile.h>
#include <ImfOutputFile.h>
#include <ImfStandardAttributes.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

#include "cli/ImageFile.h"
#include "tests/cli/ForeignPicture.h"
#include "tests/cli/PngChunk.h"
#include "tests/support/TemporaryFolder.h"

using cli::FilePicture;
using OIIO::ImageSpec;
using OIIO::TypeDesc;
using standin::Depth;

namespace {

class FileFactsTest : public testing::Test {
 protected:
  static constexpr cli::ReadChoices all = {.overscan = cli::Overscan::keep, .others = cli::OtherChannels::keep};

  /// Reads one file and writes another, as a frame goes on which nothing is drawn.
  void pass(const std::string& from, const std::string& to, const cli::WriteChoices& choices = {}) const {
    const FilePicture picture = cli::readPictureAndFacts(folder_ / from, all);
    cli::writePicture(folder_ / to, picture.image, choices, picture.facts.get());
  }

  /// A profile of RGB numbers: a header and one note, of letters that don't compress, since libpng takes no profile
  /// that lies in fewer than 81 bytes.
  static std::string profile() {
    std::string bytes(300, '\0');
    bytes.replace(0, 4, bigEndian(300));
    bytes.replace(8, 4, bigEndian(0x02100000));
    bytes.replace(12, 12, "mntrRGB XYZ ");
    bytes.replace(36, 4, "acsp");
    bytes.replace(68, 12, bigEndian(0xF6D6) + bigEndian(0x10000) + bigEndian(0xD32D));  // the white of all profiles
    bytes.replace(128, 20, bigEndian(1) + "cprt" + bigEndian(144) + bigEndian(156) + "text");
    uint32_t random = 7;
    for (std::size_t i = 152; i < 299; ++i) {
      random = random * 1664525U + 1013904223U;
      bytes[i] = static_cast<char>('!' + (random >> 16U) % 90U);
    }
    return bytes;
  }

  static std::string profileOf(const ImageSpec& spec) {
    const auto* const found = spec.find_attribute("ICCProfile");
    if (found == nullptr) return "";
    return {static_cast<const char*>(found->data()), static_cast<std::size_t>(found->datasize())};
  }

  static ImageSpec withProfile(ImageSpec spec) {
    const std::string bytes = profile();
    spec.attribute("ICCProfile", TypeDesc(TypeDesc::UINT8, static_cast<int>(bytes.size())), bytes.data());
    return spec;
  }

  vindrel::test::TemporaryFolder folder_;
};

}  // namespace

TEST_F(FileFactsTest, anExrKeepsItsAttributes) {
  ImageSpec spec(2, 1, 4, TypeDesc::HALF);
  spec.attribute("PixelAspectRatio", 2.0F);
  const int rate[2] = {24000, 1001};
  spec.attribute("FramesPerSecond", TypeDesc(TypeDesc::INT, TypeDesc::VEC2, TypeDesc::RATIONAL), rate);
  const float places[8] = {0.713F, 0.293F, 0.165F, 0.83F, 0.128F, 0.044F, 0.32168F, 0.33767F};
  spec.attribute("chromaticities", TypeDesc(TypeDesc::FLOAT, 8), places);
  spec.attribute("camera", "left one");
  spec.attribute("compression", "piz");
  writeForeign<float>(folder_ / "a.exr", spec, {1, 0, 0, 1, 0, 1, 0, 1});
  pass("a.exr", "b.exr");
  const ImageSpec back = foreignSpec(folder_ / "b.exr");
  EXPECT_EQ(back.get_float_attribute("PixelAspectRatio"), 2.0F);
  EXPECT_EQ(back.get_string_attribute("camera"), "left one");
  EXPECT_EQ(back.get_string_attribute("compression"), "piz");
  int rateBack[2] = {};
  ASSERT_NE(back.find_attribute("FramesPerSecond"), nullptr);
  std::memcpy(rateBack, back.find_attribute("FramesPerSecond")->data(), sizeof rateBack);
  EXPECT_EQ(rateBack[0], 24000);
  EXPECT_EQ(rateBack[1], 1001);
  ASSERT_NE(back.find_attribute("chromaticities"), nullptr);
  float placesBack[std::size(places)] = {};
  std::memcpy(placesBack, back.find_attribute("chromaticities")->data(), sizeof placesBack);
  EXPECT_TRUE(std::equal(std::begin(places), std::end(places), std::begin(placesBack)));
}

TEST_F(FileFactsTest, anExrKeepsItsTimecode) {
  Imf::Header header(1, 1);
  Imf::addTimeCode(header, Imf::TimeCode(1, 2, 3, 4, true));
  header.channels().insert("Y", Imf::Channel(Imf::FLOAT));
  float sample = 0.5F;
  Imf::FrameBuffer buffer;
  buffer.insert("Y", Imf::Slice(Imf::FLOAT, reinterpret_cast<char*>(&sample), sizeof sample, sizeof sample));
  {
    Imf::OutputFile file((folder_ / "a.exr").c_str(), header);
    file.setFrameBuffer(buffer);
    file.writePixels(1);
  }
  pass("a.exr", "b.exr");
  const Imf::InputFile back((folder_ / "b.exr").c_str());
  ASSERT_TRUE(Imf::hasTimeCode(back.header()));
  const Imf::TimeCode& time = Imf::timeCode(back.header());
  EXPECT_EQ(time.hours(), 1);
  EXPECT_EQ(time.minutes(), 2);
  EXPECT_EQ(time.seconds(), 3);
  EXPECT_EQ(time.frame(), 4);
  EXPECT_TRUE(time.dropFrame());
}

TEST_F(FileFactsTest, otherChannelsOfAnExrPassThroughAsTheyAreStored) {
  ImageSpec spec(2, 2, 6, TypeDesc::FLOAT);
  spec.channelnames = {"R", "G", "B", "A", "Z", "matte.id"};
  spec.channelformats = {TypeDesc::HALF, TypeDesc::HALF,  TypeDesc::HALF,
                         TypeDesc::HALF, TypeDesc::FLOAT, TypeDesc::UINT};
  spec.alpha_channel = 3;
  const std::vector<float> values = {1, 0, 0, 1, 1.1F, 7, 0, 1, 0, 1, 2.2F,  8,
                                     0, 0, 1, 1, 3.3F, 9, 0, 0, 0, 0, -4.4F, 0};
  writeForeign<float>(folder_ / "a.exr", spec, values);
  pass("a.exr", "b.exr");
  const ImageSpec back = foreignSpec(folder_ / "b.exr");
  ASSERT_EQ(back.nchannels, 6);
  EXPECT_EQ(back.channelformat(back.channelindex("Z")), TypeDesc::FLOAT);
  EXPECT_EQ(back.channelformat(back.channelindex("matte.id")), TypeDesc::UINT);
  EXPECT_EQ(back.channelformat(back.channelindex("R")), TypeDesc::HALF);
  const std::vector<float> before = readForeign<float>(folder_ / "a.exr", foreignSpec(folder_ / "a.exr").format);
  const std::vector<float> after = readForeign<float>(folder_ / "b.exr", back.format);
  EXPECT_EQ(after, before);
  EXPECT_NE(std::find(after.begin(), after.end(), -4.4F), after.end());
}

TEST_F(FileFactsTest, theWindowsOfAnExrStay) {
  ImageSpec spec(5, 4, 4, TypeDesc::HALF);
  spec.x = -1;
  spec.y = 9;
  spec.full_x = 0;
  spec.full_y = 10;
  spec.full_width = 3;
  spec.full_height = 2;
  std::vector<float> values(80, 1.0F);
  values[0] = 0.25F;
  writeForeign<float>(folder_ / "a.exr", spec, values);
  const FilePicture picture = cli::readPictureAndFacts(folder_ / "a.exr", all);
  EXPECT_EQ(picture.image.width(), 5) << "what lies beyond the full image is read, too";
  EXPECT_EQ(picture.image.at<PF_PixelFloat>(0, 0).red, 0.25F);
  EXPECT_EQ(cli::readPicture(folder_ / "a.exr").width(), 3);
  EXPECT_EQ(cli::pictureSize(folder_ / "a.exr", all), (cli::PictureSize{5, 4}));
  pass("a.exr", "b.exr");
  const ImageSpec back = foreignSpec(folder_ / "b.exr");
  EXPECT_EQ(back.x, -1);
  EXPECT_EQ(back.y, 9);
  EXPECT_EQ(back.width, 5);
  EXPECT_EQ(back.height, 4);
  EXPECT_EQ(back.full_x, 0);
  EXPECT_EQ(back.full_y, 10);
  EXPECT_EQ(back.full_width, 3);
  EXPECT_EQ(back.full_height, 2);
  EXPECT_EQ(readForeign<float>(folder_ / "b.exr", TypeDesc::HALF), values);

  pass("a.exr", "b.tif");
  EXPECT_EQ(foreignSpec(folder_ / "b.tif").width, 3) << "other files hold the full image alone";
}

TEST_F(FileFactsTest, theStoredPartOfAnExrGrowsOnlyToWhatIsDrawnBeyondIt) {
  ImageSpec spec(2, 1, 5, TypeDesc::HALF);
  spec.channelnames = {"R", "G", "B", "A", "Z"};
  spec.alpha_channel = 3;
  spec.x = 3;
  spec.y = 2;
  spec.full_width = 8;
  spec.full_height = 6;
  writeForeign<float>(folder_ / "a.exr", spec, {1, 0, 0, 1, 5, 0, 0, 0, 0, 6});
  FilePicture picture = cli::readPictureAndFacts(folder_ / "a.exr", all);
  picture.image.at<PF_PixelFloat>(6, 1) = {1, 1, 1, 1};
  cli::writePicture(folder_ / "b.exr", picture.image, {}, picture.facts.get());
  const ImageSpec back = foreignSpec(folder_ / "b.exr");
  EXPECT_EQ(back.x, 3);
  EXPECT_EQ(back.y, 1);
  EXPECT_EQ(back.width, 4);
  EXPECT_EQ(back.height, 2);
  const std::vector<float> samples = readForeign<float>(folder_ / "b.exr", TypeDesc::HALF);
  ASSERT_EQ(samples.size(), 40U);
  EXPECT_EQ(samples[3 * 5], 1.0F) << "the dot";
  EXPECT_EQ(samples[4 * 5 + 4], 5.0F) << "the other channel stays in its place";
  EXPECT_EQ(samples[5 * 5 + 4], 6.0F);
  EXPECT_EQ(samples[4], 0.0F) << "and is 0 around it";
}

TEST_F(FileFactsTest, pixelsThatNothingIsDrawnOnComeOutToTheLastBit) {
  std::vector<float> values;
  uint32_t random = 1;
  const auto next = [&] {
    random = random * 1664525U + 1013904223U;
    return static_cast<float>(random >> 8U) / 16777216.0F;
  };
  for (int i = 0; i < 1000; ++i) {
    const float alpha = i % 5 == 0 ? 0.0F : i % 5 == 1 ? 1e-30F * next() : next();
    for (int c = 0; c < 3; ++c) values.push_back(100.0F * next() - 20.0F);
    values.push_back(alpha);
  }
  writeForeign<float>(folder_ / "a.exr", ImageSpec(100, 10, 4, TypeDesc::FLOAT), values);
  pass("a.exr", "b.exr");
  const std::vector<float> back = readForeign<float>(folder_ / "b.exr", TypeDesc::FLOAT);
  ASSERT_EQ(back.size(), values.size());
  EXPECT_EQ(std::memcmp(back.data(), values.data(), values.size() * sizeof(float)), 0);
}

TEST_F(FileFactsTest, lightUnderAlphaZeroStaysOnlyWhereNothingWasDrawn) {
  writeForeign<float>(folder_ / "a.exr", ImageSpec(2, 1, 4, TypeDesc::HALF), {3, 2, 1, 0, 3, 2, 1, 0});
  FilePicture picture = cli::readPictureAndFacts(folder_ / "a.exr", all);
  picture.image.at<PF_PixelFloat>(1, 0).green = 0.5F;
  cli::writePicture(folder_ / "b.exr", picture.image, {}, picture.facts.get());
  EXPECT_EQ(readForeign<float>(folder_ / "b.exr", TypeDesc::HALF), (std::vector<float>{3, 2, 1, 0, 0, 0, 0, 0}));
}

TEST_F(FileFactsTest, aPngKeepsItsNotesAndTheChunksThatMayBeCopied) {
  cli::writePicture(folder_ / "plain.png", standin::Image(Depth::k8, 3, 2));
  const std::string plain = folder_.read("plain.png");
  const std::size_t behindHead = 8 + 25;
  const std::string places = bigEndian(31270) + bigEndian(32900) + bigEndian(64000) + bigEndian(33000) +
                             bigEndian(30000) + bigEndian(60000) + bigEndian(15000) + bigEndian(6000);
  const std::string gamma = pngChunk("gAMA", bigEndian(45455));
  const std::string chromaticities = pngChunk("cHRM", places);
  const std::string density = pngChunk("pHYs", bigEndian(3937) + bigEndian(7874) + "\1");
  const std::string text = pngChunk("tEXt", std::string("Author\0Andr\xe9", 12));
  const std::string xmp = pngChunk("iTXt", std::string("XML:com.adobe.xmp\0\0\0\0\0<x/>", 26));
  const std::string mayBeCopied = pngChunk("vpAg", "private");
  const std::string mayNot = pngChunk("vpAG", "private");
  const std::string time = pngChunk("tIME", std::string("\x07\xd0\1\1\0\0\0", 7));
  folder_.write("a.png", plain.substr(0, behindHead) + gamma + chromaticities + density + text + xmp + mayBeCopied +
                             mayNot + time + plain.substr(behindHead));
  pass("a.png", "b.png");
  const std::string back = folder_.read("b.png");
  for (const std::string& chunk : {gamma, chromaticities, density, text, xmp, mayBeCopied}) {
    EXPECT_NE(back.find(chunk), std::string::npos) << chunk.substr(4, 4);
  }
  EXPECT_EQ(back.find(mayNot), std::string::npos);
  EXPECT_EQ(back.find("tIME"), std::string::npos) << "the time of another file";

  pass("a.png", "b.tif");
  const ImageSpec tiff = foreignSpec(folder_ / "b.tif");
  EXPECT_NEAR(tiff.get_float_attribute("XResolution"), 100.0F, 0.01F);
  EXPECT_NEAR(tiff.get_float_attribute("YResolution"), 200.0F, 0.01F);
  EXPECT_EQ(tiff.get_string_attribute("Artist"), "Andr\xc3\xa9");
  pass("a.png", "b.exr");
  EXPECT_EQ(foreignSpec(folder_ / "b.exr").get_float_attribute("PixelAspectRatio"), 2.0F);
}

TEST_F(FileFactsTest, profilesGoFromEachDisplayFormatToEachOther) {
  const ImageSpec spec = withProfile(ImageSpec(8, 8, 3, TypeDesc::UINT8));
  const std::vector<uint8_t> pixels(192, 90);
  for (const char* from : {"a.png", "a.tif", "a.jpg"}) {
    writeForeign<uint8_t>(folder_ / from, spec, pixels);
    ASSERT_EQ(profileOf(foreignSpec(folder_ / from)), profile()) << from;
    for (const char* to : {"b.png", "b.tif", "b.jpg"}) {
      pass(from, to);
      EXPECT_EQ(profileOf(foreignSpec(folder_ / to)), profile()) << from << " to " << to;
    }
  }
}

TEST_F(FileFactsTest, aTiffKeepsItsNotesAndItsResolution) {
  ImageSpec spec(2, 1, 3, TypeDesc::UINT16);
  spec.attribute("PixelAspectRatio", 0.5F);
  spec.attribute("XResolution", 300.0F);
  spec.attribute("YResolution", 150.0F);
  spec.attribute("ResolutionUnit", "in");
  spec.attribute("ImageDescription", "a shot");
  spec.attribute("Copyright", "nobody");
  spec.attribute("Make", "a camera");
  // The library writes the aspect into the resolution: 1 by 0.5.
  writeForeign<uint16_t>(folder_ / "a.tif", spec, {1, 2, 3, 4, 5, 6});
  for (const char* to : {"b.tif", "b.png"}) {
    pass("a.tif", to);
    const ImageSpec back = foreignSpec(folder_ / to);
    EXPECT_EQ(back.get_string_attribute("ImageDescription"), "a shot") << to;
    EXPECT_EQ(back.get_string_attribute("Copyright"), "nobody") << to;
    EXPECT_NEAR(back.get_float_attribute("XResolution") / back.get_float_attribute("YResolution"), 2.0F, 1e-3F) << to;
  }
  EXPECT_EQ(foreignSpec(folder_ / "b.tif").get_string_attribute("Make"), "a camera");
}

TEST_F(FileFactsTest, aTurnedPictureIsUprightInItsNotesToo) {
  ImageSpec spec(16, 8, 3, TypeDesc::UINT8);
  spec.attribute("Orientation", 6);
  spec.attribute("Make", "a camera");
  writeForeign<uint8_t>(folder_ / "a.jpg", spec, std::vector<uint8_t>(384, 90));
  for (const char* to : {"b.jpg", "b.png"}) {
    pass("a.jpg", to);
    const ImageSpec back = foreignSpec(folder_ / to);
    EXPECT_EQ(back.width, 8) << to;
    EXPECT_EQ(back.get_int_attribute("Orientation", 1), 1) << to;
    EXPECT_EQ(back.get_string_attribute("Make"), "a camera") << to;
  }
}
