#include "tests/golden/GoldenPicture.h"

#include <stb_image.h>
#include <tinyexr.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace golden {
namespace {

using standin::Depth;
using standin::Image;

/// Copies red, green, blue, alpha as files have them into the host's order.
template <class Pixel, class Channel, class Convert>
void fill(Image& image, const Channel* channels, Convert convert) {
  for (int32_t y = 0; y < image.height(); ++y) {
    Pixel* row = image.row<Pixel>(y);
    for (int32_t x = 0; x < image.width(); ++x, channels += 4) {
      row[x].red = convert(channels[0]);
      row[x].green = convert(channels[1]);
      row[x].blue = convert(channels[2]);
      row[x].alpha = convert(channels[3]);
    }
  }
}

[[noreturn]] void unreadable(const std::filesystem::path& file, const char* why) {
  throw std::runtime_error(file.string() + ": " + why);
}

Image readPng8(const std::filesystem::path& file) {
  int width = 0;
  int height = 0;
  int channels = 0;
  const std::unique_ptr<stbi_uc, void (*)(void*)> pixels(
      stbi_load(file.string().c_str(), &width, &height, &channels, 4), stbi_image_free);
  if (!pixels) {
    unreadable(file, stbi_failure_reason());
  }
  Image image(Depth::k8, width, height);
  fill<PF_Pixel>(image, pixels.get(), [](stbi_uc channel) { return channel; });
  return image;
}

Image readPng16(const std::filesystem::path& file) {
  int width = 0;
  int height = 0;
  int channels = 0;
  if (!stbi_is_16_bit(file.string().c_str())) {
    unreadable(file, "is missing or has not 16 bits");
  }
  const std::unique_ptr<stbi_us, void (*)(void*)> pixels(
      stbi_load_16(file.string().c_str(), &width, &height, &channels, 4), stbi_image_free);
  if (!pixels) {
    unreadable(file, stbi_failure_reason());
  }
  Image image(Depth::k16, width, height);
  fill<PF_Pixel16>(image, pixels.get(), gather16);
  return image;
}

Image readExr(const std::filesystem::path& file) {
  float* raw = nullptr;
  int width = 0;
  int height = 0;
  const char* why = nullptr;
  if (LoadEXR(&raw, &width, &height, file.string().c_str(), &why) != TINYEXR_SUCCESS) {
    const std::string reason = why != nullptr ? why : "cannot be read";
    FreeEXRErrorMessage(why);
    unreadable(file, reason.c_str());
  }
  const std::unique_ptr<float, void (*)(void*)> pixels(raw, std::free);
  Image image(Depth::k32, width, height);
  fill<PF_PixelFloat>(image, pixels.get(), [](float channel) { return channel; });
  return image;
}

template <class Pixel>
Difference compareAs(const Image& expected, const Image& actual, double tolerance) {
  Difference difference;
  std::ostringstream text;
  for (int32_t y = 0; y < expected.height(); ++y) {
    for (int32_t x = 0; x < expected.width(); ++x) {
      const Pixel& wanted = expected.at<Pixel>(x, y);
      const Pixel& got = actual.at<Pixel>(x, y);
      const double want[4] = {double(wanted.alpha), double(wanted.red), double(wanted.green), double(wanted.blue)};
      const double have[4] = {double(got.alpha), double(got.red), double(got.green), double(got.blue)};
      double largest = 0.0;
      for (int channel = 0; channel < 4; ++channel) {
        const double distance = std::abs(want[channel] - have[channel]);
        // What is not a number differs from everything but what is no number either.
        largest = std::isnan(distance) && !(std::isnan(want[channel]) && std::isnan(have[channel]))
                      ? HUGE_VAL
                      : std::max(largest, std::isnan(distance) ? 0.0 : distance);
      }
      if (largest <= tolerance) {
        continue;
      }
      if (difference.pixels++ == 0) {
        difference.firstX = x;
        difference.firstY = y;
        text << "first at column " << x << ", row " << y << ": expected ARGB " << want[0] << ' ' << want[1] << ' '
             << want[2] << ' ' << want[3] << ", got " << have[0] << ' ' << have[1] << ' ' << have[2] << ' ' << have[3];
      }
      difference.largest = std::max(difference.largest, largest);
    }
  }
  if (difference.pixels != 0) {
    text << "; " << difference.pixels << " pixels differ, by " << difference.largest << " at the most";
  }
  difference.text = text.str();
  return difference;
}

}  // namespace

std::string fileName(Depth depth) {
  return depth == Depth::k8 ? "8.png" : depth == Depth::k16 ? "16.png" : "32.exr";
}

uint16_t spread16(uint16_t channel) {
  return channel >= 32768 ? uint16_t{65535} : static_cast<uint16_t>((channel * 65535u + 16384u) / 32768u);
}

uint16_t gather16(uint16_t channel) {
  return static_cast<uint16_t>((channel * 32768u + 32767u) / 65535u);
}

Image readInput(const std::filesystem::path& file, Depth depth) {
  return readPng8(file).converted(depth);
}

Image readGolden(const std::filesystem::path& file, Depth depth) {
  return depth == Depth::k8 ? readPng8(file) : depth == Depth::k16 ? readPng16(file) : readExr(file);
}

Difference compare(const Image& expected, const Image& actual, double floatTolerance) {
  if (expected.depth() != actual.depth() || expected.width() != actual.width() ||
      expected.height() != actual.height()) {
    Difference difference;
    difference.pixels = int64_t{actual.width()} * actual.height();
    difference.text = "expected " + std::to_string(expected.width()) + " x " + std::to_string(expected.height()) +
                      " pixels, got " + std::to_string(actual.width()) + " x " + std::to_string(actual.height());
    return difference;
  }
  return withPixelOf(expected.depth(), [&](auto pixel) {
    using Pixel = decltype(pixel);
    return compareAs<Pixel>(expected, actual, expected.depth() == Depth::k32 ? floatTolerance : 0.0);
  });
}

}  // namespace golden
