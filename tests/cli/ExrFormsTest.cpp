// The many forms of an EXR, written by its library alone.

#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfInputFile.h>
#include <ImfOutputFile.h>
#include <ImfStandardAttributes.h>
#include <ImfStringAttribute.h>
#include <ImfTiledOutputFile.h>
#include <gtest/gtest.h>

#include <cstring>

#include "cli/ImageFile.h"
#include "cli/UserError.h"
#include "tests/cli/ForeignPicture.h"
#include "tests/cli/ReadPictures.h"
#include "tests/support/TemporaryFolder.h"

using OIIO::ImageSpec;
using OIIO::TypeDesc;
using standin::Image;

namespace {

/// A channel all of whose samples are one number.
struct Channel {
  const char* name;
  float value;
  Imf::PixelType type = Imf::FLOAT;
  int sampling = 1;
};

class ExrFormsTest : public testing::Test {
 protected:
  static constexpr cli::ReadChoices keepsOthers = {.overscan = cli::Overscan::keep, .others = cli::OtherChannels::keep};

  std::filesystem::path file() const { return folder_ / "a.exr"; }

  /// Writes a.exr.
  /// @param rows  how many of its rows are written; the others are missing
  void write(Imf::Header header, const std::vector<Channel>& channels, int rows) const {
    const Imath::Box2i window = header.dataWindow();
    const auto pixels = static_cast<std::size_t>(window.max.x - window.min.x + 1) *
                        static_cast<std::size_t>(window.max.y - window.min.y + 1);
    std::vector<std::vector<uint32_t>> samples;
    samples.reserve(channels.size());
    Imf::FrameBuffer buffer;
    for (const Channel& channel : channels) {
      uint32_t sample = 0;
      if (channel.type == Imf::UINT) {
        sample = static_cast<uint32_t>(channel.value);
      } else if (channel.type == Imf::HALF) {
        const Imath::half number(channel.value);
        std::memcpy(&sample, &number, sizeof number);
      } else {
        std::memcpy(&sample, &channel.value, sizeof sample);
      }
      auto& plane = samples.emplace_back(pixels, sample);
      header.channels().insert(channel.name, Imf::Channel(channel.type, channel.sampling, channel.sampling));
      const auto across = static_cast<std::size_t>((window.max.x - window.min.x + 1) / channel.sampling);
      buffer.insert(channel.name, Imf::Slice::Make(channel.type, plane.data(), window, 4, 4 * across, channel.sampling,
                                                   channel.sampling));
    }
    Imf::OutputFile output(file().c_str(), header);
    output.setFrameBuffer(buffer);
    output.writePixels(rows);
  }

  /// A picture of 4 x 2 pixels.
  void write(const std::vector<Channel>& channels, int rows = 2) const { write(Imf::Header(4, 2), channels, rows); }

  std::string refusal(const cli::ReadChoices& choices = {}) const { return refusalOfIt(file(), choices); }

  vindrel::test::TemporaryFolder folder_;
};

Imf::Header windows(const Imath::Box2i& display, const Imath::Box2i& data) {
  return {display, data};
}

}  // namespace

TEST_F(ExrFormsTest, greyIsOneChannelOrLuminanceWithAlphaWhateverElseThereIs) {
  write({{"depth.v", 0.25F}});
  PF_PixelFloat pixel = cli::readPicture(file()).at<PF_PixelFloat>(3, 1);
  EXPECT_EQ(pixel.red, 0.25F);
  EXPECT_EQ(pixel.green, 0.25F);
  EXPECT_EQ(pixel.blue, 0.25F);
  EXPECT_EQ(pixel.alpha, 1.0F);
  write({{"Y", 0.25F}, {"A", 0.5F}, {"Z", 9}});
  pixel = cli::readPicture(file()).at<PF_PixelFloat>(3, 1);
  EXPECT_EQ(pixel.red, 0.5F) << "divided by its alpha";
  EXPECT_EQ(pixel.blue, 0.5F);
  EXPECT_EQ(pixel.alpha, 0.5F);
  write({{"Y", 0.25F}, {"Z", 9}});
  EXPECT_EQ(cli::readPicture(file()).at<PF_PixelFloat>(0, 0).green, 0.25F);
  write({{"A", 0.5F}});
  pixel = cli::readPicture(file()).at<PF_PixelFloat>(0, 0);
  EXPECT_EQ(pixel.red, 0.5F) << "alone it is a picture like any other";
  EXPECT_EQ(pixel.alpha, 1.0F);
}

TEST_F(ExrFormsTest, channelsThatMakeNoPictureAreNamed) {
  const auto text = [](const std::string& names) {
    return "it has the channels " + names + "; grey and RGB, each with or without alpha, can be read";
  };
  const std::vector<std::pair<std::vector<Channel>, std::string>> cases = {
      {{{"R", 1}, {"G", 1}, {"A", 1}}, "A, G, R"},
      {{{"R", 1}, {"B", 1}}, "B, R"},
      {{{"G", 1}, {"B", 1}}, "B, G"},
      {{{"Y", 1}, {"RY", 0, Imf::HALF, 2}, {"BY", 0, Imf::HALF, 2}}, "BY, RY, Y"},
      {{{"Y", 1}, {"BY", 0}}, "BY, Y"},
      {{{"Y", 1}, {"R", 0}}, "R, Y"},
      {{{"Y", 1}, {"G", 0}}, "G, Y"},
      {{{"Y", 1}, {"B", 0}}, "B, Y"}};
  for (const auto& [channels, names] : cases) {
    write(channels);
    EXPECT_EQ(refusal(), text(names));
  }
}

TEST_F(ExrFormsTest, colorsThatAreNoFloatsOrNotOfEveryPixelAreRefused) {
  write({{"R", 1}, {"G", 1, Imf::UINT}, {"B", 1}});
  EXPECT_EQ(refusal(), "it has pixels of 32-bit whole numbers; 8-bit, 16-bit and float pixels can be read");
  write({{"R", 1, Imf::HALF, 2}, {"G", 1}, {"B", 1}});
  EXPECT_EQ(refusal(), "it has channels of fewer samples than pixels, which can't be read");
}

TEST_F(ExrFormsTest, aPictureIsHalfOnlyWhenAllItsColorsAre) {
  write({{"R", 1, Imf::HALF}, {"G", 1, Imf::HALF}, {"B", 1, Imf::HALF}, {"Z", 1}});
  EXPECT_TRUE(cli::readPictureAndFacts(file(), {}).facts->half);
  write({{"R", 1, Imf::HALF}, {"G", 1}, {"B", 1, Imf::HALF}});
  EXPECT_FALSE(cli::readPictureAndFacts(file(), {}).facts->half);
}

TEST_F(ExrFormsTest, tilesWithAndWithoutLevelsAreRead) {
  ImageSpec spec(40, 24, 3, TypeDesc::FLOAT);
  spec.tile_width = 16;
  spec.tile_height = 8;
  std::vector<float> values(static_cast<std::size_t>(40) * 24 * 3);
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<float>(i);
  writeForeign<float>(file(), spec, values);
  const Image image = cli::readPicture(file());
  ASSERT_EQ(image.width(), 40);
  for (const auto& [x, y] : {std::pair{0, 0}, std::pair{39, 23}, std::pair{16, 7}, std::pair{15, 8}}) {
    EXPECT_EQ(image.at<PF_PixelFloat>(x, y).green, static_cast<float>((y * 40 + x) * 3 + 1));
  }
  // A tiled file is written as rows again.
  const cli::FilePicture whole = cli::readPictureAndFacts(file(), {});
  cli::writePicture(folder_ / "b.exr", whole.image, {}, whole.facts.get());
  EXPECT_EQ(foreignSpec(folder_ / "b.exr").tile_width, 0);
}

TEST_F(ExrFormsTest, ofSeveralPartsTheFirstIsRead) {
  const auto output = OIIO::ImageOutput::create(file().string());
  ASSERT_TRUE(output);
  ImageSpec specs[2] = {ImageSpec(2, 1, 3, TypeDesc::FLOAT), ImageSpec(3, 3, 3, TypeDesc::FLOAT)};
  specs[0].full_width = specs[0].full_height = 3;
  specs[0].attribute("oiio:subimagename", "first");
  specs[1].attribute("oiio:subimagename", "second");
  ASSERT_TRUE(output->open(file().string(), 2, specs)) << output->geterror();
  const std::vector<float> first = {1, 2, 3, 4, 5, 6};
  const std::vector<float> second(27, 9.0F);
  ASSERT_TRUE(output->write_image(TypeDesc::FLOAT, first.data()));
  ASSERT_TRUE(output->open(file().string(), specs[1], OIIO::ImageOutput::AppendSubimage));
  ASSERT_TRUE(output->write_image(TypeDesc::FLOAT, second.data()));
  ASSERT_TRUE(output->close());
  const Image image = cli::readPicture(file());
  EXPECT_EQ(image.at<PF_PixelFloat>(1, 0).red, 4.0F);
}

TEST_F(ExrFormsTest, rowsThatWereNeverWrittenMakeItACutFile) {
  Imf::Header header(4, 2);
  header.compression() = Imf::NO_COMPRESSION;
  write(header, {{"Y", 1}}, 1);
  EXPECT_EQ(refusal(), "can't read it: the file is cut");
}

TEST_F(ExrFormsTest, anythingShorterThanAHeaderIsCut) {
  write({{"Y", 1}});
  const std::string whole = folder_.read("a.exr");
  for (const std::size_t size : {4U, 8U, 9U, 12U, 24U, 30U}) {
    folder_.write("a.exr", whole.substr(0, size));
    EXPECT_EQ(refusal(), "can't read it: the file is cut") << size;
  }
}

TEST_F(ExrFormsTest, headersThatTheLibraryRefusesAreRefusedInItsWordsOnOneLine) {
  write({{"Y", 1}});
  std::string whole = folder_.read("a.exr");
  const std::string attribute("compression\0compression\0\1\0\0\0", 28);
  const std::size_t at = whole.find(attribute);
  ASSERT_NE(at, std::string::npos);
  whole[at + attribute.size()] = 99;
  folder_.write("a.exr", whole);
  const std::string text = refusal();
  EXPECT_TRUE(text.starts_with("can't read it: ")) << text;
  EXPECT_GT(text.size(), sizeof "can't read it: ") << "the reason is missing";
  EXPECT_EQ(text.find('\n'), std::string::npos);
  EXPECT_NE(text.back(), '.');
}

TEST_F(ExrFormsTest, tilesOfNoSizePromiseNothing) {
  ImageSpec spec(16, 16, 3, TypeDesc::FLOAT);
  spec.tile_width = 16;
  spec.tile_height = 16;
  writeForeign<float>(file(), spec, std::vector<float>(768, 1.0F));
  std::string whole = folder_.read("a.exr");
  const std::string attribute("tiles\0tiledesc\0\x9\0\0\0", 19);
  const std::size_t at = whole.find(attribute);
  ASSERT_NE(at, std::string::npos);
  whole.replace(at + attribute.size(), 8, std::string("\0\0\0\0\x10\0\0\0", 8));
  folder_.write("a.exr", whole);
  EXPECT_TRUE(refusal().starts_with("can't read it: "));
}

// ---- windows

TEST_F(ExrFormsTest, whatLiesTooFarOffTheImageIsRefused) {
  const std::string message = "it stores pixels too far off its image; at most 30000 x 30000 can be rendered";
  const Imath::Box2i display({0, 0}, {9, 9});
  for (const Imath::Box2i& data : {Imath::Box2i({70000, 0}, {70000, 0}), Imath::Box2i({0, -70000}, {0, -70000})}) {
    write(windows(display, data), {{"Y", 1}}, 1);
    EXPECT_EQ(refusal(), message);
    EXPECT_EQ(refusal(keepsOthers), message);
  }
  // These can be left out, or kept on an image of more than the host can take.
  for (const Imath::Box2i& data : {Imath::Box2i({40000, 0}, {40000, 0}), Imath::Box2i({0, -40000}, {0, -40000})}) {
    write(windows(display, data), {{"Y", 1}}, 1);
    EXPECT_EQ(refusal(), "accepted");
    EXPECT_EQ(refusal(keepsOthers), message);
  }
}

TEST_F(ExrFormsTest, aStoredPartThatIsFarLargerThanTheImageIsRefusedAsWhatItIs) {
  const std::string message = "it stores pixels too far off its image; at most 30000 x 30000 can be rendered";
  for (const Imath::Box2i& data : {Imath::Box2i({0, 0}, {60000, 0}), Imath::Box2i({0, 0}, {0, 60000})}) {
    write(windows(Imath::Box2i({0, 0}, {9, 9}), data), {{"Y", 1}}, data.max.y + 1);
    EXPECT_EQ(refusal(), message);
  }
  write(windows(Imath::Box2i({0, 0}, {9, 30000}), Imath::Box2i({0, 0}, {0, 0})), {{"Y", 1}}, 1);
  EXPECT_EQ(refusal(), "it is 10 x 30001 pixels; at most 30000 x 30000 can be rendered");
}

TEST_F(ExrFormsTest, ofAStoredPartBesideTheImageNothingIsLeft) {
  write(windows(Imath::Box2i({0, 0}, {1, 1}), Imath::Box2i({5, -3}, {6, 8})), {{"Y", 1}}, 12);
  const Image image = cli::readPicture(file());
  ASSERT_EQ(image.width(), 2);
  for (const auto& [x, y] : {std::pair{0, 0}, std::pair{1, 1}}) {
    EXPECT_EQ(image.at<PF_PixelFloat>(x, y).alpha, 0.0F);
  }
}

// ---- what an EXR tells beside its pixels

TEST_F(ExrFormsTest, densityAndNotesGoToOtherFormats) {
  Imf::Header header(4, 2);
  header.pixelAspectRatio() = 2.0F;
  Imf::addXDensity(header, 150.0F);
  Imf::addComments(header, "a shot");
  Imf::addOwner(header, "nobody");
  header.insert("Artist", Imf::StringAttribute(""));
  write(header, {{"Y", 1}}, 2);
  const cli::FilePicture picture = cli::readPictureAndFacts(file(), keepsOthers);
  cli::writePicture(folder_ / "b.tif", picture.image, {}, picture.facts.get());
  const ImageSpec back = foreignSpec(folder_ / "b.tif");
  EXPECT_NEAR(back.get_float_attribute("XResolution"), 150.0F, 1e-3F);
  EXPECT_NEAR(back.get_float_attribute("YResolution"), 300.0F, 1e-3F);
  EXPECT_EQ(back.get_string_attribute("ImageDescription"), "a shot");
  EXPECT_EQ(back.get_string_attribute("Copyright"), "nobody");
  EXPECT_EQ(back.find_attribute("Artist"), nullptr) << "an empty note is none";
}

TEST_F(ExrFormsTest, aDensityOfNothingIsNone) {
  Imf::Header header(4, 2);
  Imf::addXDensity(header, 0.0F);
  write(header, {{"Y", 1}}, 2);
  EXPECT_FALSE(cli::readPictureAndFacts(file(), keepsOthers).facts->density.has_value());
}

TEST_F(ExrFormsTest, channelsOfFewerSamplesStayUnlessDotsReachBeyondTheStoredPart) {
  write(windows(Imath::Box2i({0, 0}, {7, 7}), Imath::Box2i({2, 2}, {5, 5})), {{"Y", 1}, {"Z", 7, Imf::FLOAT, 2}}, 4);
  cli::FilePicture picture = cli::readPictureAndFacts(file(), keepsOthers);
  cli::writePicture(folder_ / "b.exr", picture.image, {}, picture.facts.get());
  const Imf::InputFile back((folder_ / "b.exr").c_str());
  const Imf::Channel* const kept = back.header().channels().findChannel("Z");
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(kept->xSampling, 2);

  picture.image.at<PF_PixelFloat>(7, 3) = {1, 1, 1, 1};
  try {
    cli::writePicture(folder_ / "c.exr", picture.image, {}, picture.facts.get());
    ADD_FAILURE() << "written";
  } catch (const cli::UserError& error) {
    EXPECT_EQ(std::string(error.what()),
              "can't write '" + (folder_ / "c.exr").string() +
                  "': dots reach beyond the stored part, where its channel 'Z' of fewer samples than pixels can't "
                  "follow; --other-channels drop leaves it out");
  }
  EXPECT_FALSE(std::filesystem::exists(folder_ / "c.exr"));
  // Without that channel the dot can be written.
  const cli::FilePicture without =
      cli::readPictureAndFacts(file(), {.overscan = cli::Overscan::keep, .others = cli::OtherChannels::leave});
  cli::writePicture(folder_ / "c.exr", picture.image, {}, without.facts.get());
  EXPECT_EQ(foreignSpec(folder_ / "c.exr").width, 6) << "columns 2 to 7";
}

TEST_F(ExrFormsTest, lightUnderAlphaZeroComesBackOnlyInsideThePartThatIsWritten) {
  // Light without cover left of the image and on it; the image alone is written, so that only one has a place.
  write(windows(Imath::Box2i({0, 0}, {3, 1}), Imath::Box2i({-2, -1}, {5, 2})), {{"R", 3}, {"G", 2}, {"B", 1}, {"A", 0}},
        4);
  const cli::FilePicture picture = cli::readPictureAndFacts(file(), {});
  cli::writePicture(folder_ / "b.exr", picture.image, {}, picture.facts.get());
  const ImageSpec back = foreignSpec(folder_ / "b.exr");
  EXPECT_EQ(back.width, 4);
  EXPECT_EQ(back.height, 2);
  const std::vector<float> samples = readForeign<float>(folder_ / "b.exr", TypeDesc::FLOAT);
  ASSERT_EQ(samples.size(), 32U);
  for (std::size_t i = 0; i < samples.size(); i += 4) {
    EXPECT_EQ((std::vector<float>(samples.begin() + static_cast<std::ptrdiff_t>(i),
                                  samples.begin() + static_cast<std::ptrdiff_t>(i) + 4)),
              (std::vector<float>{3, 2, 1, 0}));
  }
}
