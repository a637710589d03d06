/// Files written and read with the image library alone, so that what is tested rests on nothing of ours.
#pragma once

#include <OpenImageIO/imageio.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

template <class Channel>
void writeForeign(const std::filesystem::path& file, const OIIO::ImageSpec& layout,
                  const std::vector<Channel>& channels) {
  const auto output = OIIO::ImageOutput::create(file.string());
  ASSERT_TRUE(output);
  ASSERT_TRUE(output->open(file.string(), layout)) << output->geterror();
  ASSERT_TRUE(output->write_image(OIIO::BaseTypeFromC<Channel>::value, channels.data())) << output->geterror();
  ASSERT_TRUE(output->close());
}

/// All channels of a file as the library gives them, straight where the file is.
template <class Channel>
std::vector<Channel> readForeign(const std::filesystem::path& file, const OIIO::TypeDesc& expectedFormat) {
  OIIO::ImageSpec wishes;
  wishes.attribute("oiio:UnassociatedAlpha", 1);
  const auto input = OIIO::ImageInput::open(file.string(), &wishes);
  if (!input) return {};
  EXPECT_EQ(input->spec().format, expectedFormat);
  std::vector<Channel> channels(input->spec().image_pixels() * static_cast<std::size_t>(input->spec().nchannels));
  EXPECT_TRUE(input->read_image(0, 0, 0, -1, OIIO::BaseTypeFromC<Channel>::value, channels.data()));
  return channels;
}

/// The header of a file; empty when it can't be opened.
inline OIIO::ImageSpec foreignSpec(const std::filesystem::path& file) {
  const auto input = OIIO::ImageInput::open(file.string());
  return input ? input->spec() : OIIO::ImageSpec();
}
