/// What comes of reading a picture: why it is refused, and what a pixel of it is.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "cli/ImageFile.h"
#include "cli/UserError.h"

/// The complaint; "accepted" when there is none.
inline std::string refusalToRead(const std::filesystem::path& file, const cli::ReadChoices& choices = {}) {
  try {
    cli::readPictureAndFacts(file, choices);
  } catch (const cli::UserError& error) {
    return error.what();
  }
  return "accepted";
}

/// The complaint with "it" where it names the file.
inline std::string refusalOfIt(const std::filesystem::path& file, const cli::ReadChoices& choices = {}) {
  const std::string text = refusalToRead(file, choices);
  const std::string name = "'" + file.string() + "'";
  const std::size_t at = text.find(name);
  return at == std::string::npos ? text : text.substr(0, at) + "it" + text.substr(at + name.size());
}

inline void expectPixel(const PF_Pixel& pixel, int red, int green, int blue, int alpha = 255) {
  EXPECT_EQ(pixel.red, red);
  EXPECT_EQ(pixel.green, green);
  EXPECT_EQ(pixel.blue, blue);
  EXPECT_EQ(pixel.alpha, alpha);
}
