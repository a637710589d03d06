#include "cli/LabelText.h"

#include <stb/stb_easy_font.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace cli {
namespace {

constexpr int32_t scale = 2;  ///< pixels to a unit of the font

/// As the font's library gives a corner of a rectangle.
struct Corner {
  float x;
  float y;
  float z;
  std::array<uint8_t, 4> color;
};
using Quad = std::array<Corner, 4>;

std::string plainLetters(const std::string& text) {
  std::string plain;
  for (const char letter : text) {
    const auto code = static_cast<unsigned char>(letter);
    if ((code & 0xC0U) == 0x80U) continue;  // the rest of a letter that was told by its first byte
    plain += code >= 32 && code < 127 ? letter : '?';
  }
  return plain;
}

}  // namespace

int32_t labelWidth(const std::string& text) {
  std::string plain = plainLetters(text);
  return scale * stb_easy_font_width(plain.data());
}

void drawLabel(standin::Image& picture, int32_t x, int32_t y, const std::string& text, PF_Pixel color) {
  std::string plain = plainLetters(text);
  constexpr std::size_t mostQuadsOfALetter = 24;
  std::vector<Quad> quads(plain.size() * mostQuadsOfALetter + 1);
  const int32_t count =
      stb_easy_font_print(0, 0, plain.data(), nullptr, quads.data(), static_cast<int>(quads.size() * sizeof(Quad)));
  quads.resize(static_cast<std::size_t>(std::max(count, 0)));
  for (const Quad& quad : quads) {
    const auto place = [](float units) { return static_cast<int32_t>(std::lround(units * scale)); };
    for (int32_t row = place(quad[0].y); row < place(quad[2].y); ++row) {
      for (int32_t column = place(quad[0].x); column < place(quad[2].x); ++column) {
        const int32_t toX = x + column;
        const int32_t toY = y + row;
        if (toX < 0 || toY < 0 || toX >= picture.width() || toY >= picture.height()) continue;
        picture.at<PF_Pixel>(toX, toY) = color;
      }
    }
  }
}

}  // namespace cli
