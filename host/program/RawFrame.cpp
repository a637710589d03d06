#include "host/program/RawFrame.h"

#include <bit>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>

namespace standin {

namespace {

static_assert(std::endian::native == std::endian::little, "pixels are written as they lie in memory");

constexpr const char* kWord = "VINDREL-RAW";
constexpr int32_t kMostPixels = 30000;  // along a side, as for worlds
constexpr size_t kMostLetters = 64;     // of the first line

std::filesystem::path pathOf(const std::string& utf8) {
  return {reinterpret_cast<const char8_t*>(utf8.c_str())};
}

std::optional<Depth> depthOfNumber(int32_t bits) {
  for (const Depth depth : kAllDepths) {
    if (static_cast<int32_t>(depth) == bits) return depth;
  }
  return std::nullopt;
}

size_t bytesOfRow(const Image& image) {
  return static_cast<size_t>(image.width()) * static_cast<size_t>(pixelBytes(image.depth()));
}

}  // namespace

Image readRawFrame(const std::string& path) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(pathOf(path), ignored)) throw std::runtime_error("there is no frame " + path);
  std::ifstream file(pathOf(path), std::ios::binary);
  std::string line;
  for (char letter = 0; line.size() < kMostLetters && file.get(letter) && letter != '\n';) line += letter;
  std::istringstream words(line);
  std::string word;
  int32_t version = 0;
  int32_t width = 0;
  int32_t height = 0;
  int32_t bits = 0;
  words >> word >> version >> width >> height >> bits;
  const auto depth = depthOfNumber(bits);
  if (!words || word != kWord || version != 1 || !depth) {
    throw std::runtime_error(path + " does not begin as a raw frame does: " + kWord + " 1 WIDTH HEIGHT DEPTH");
  }
  if (width < 1 || height < 1 || width > kMostPixels || height > kMostPixels) {
    throw std::runtime_error(path + " is of " + std::to_string(width) + " x " + std::to_string(height) +
                             " pixels; 1 to " + std::to_string(kMostPixels) + " are possible");
  }
  // The size is looked at before memory is taken for what the line promises.
  const auto start = static_cast<uintmax_t>(file.tellg());
  const uintmax_t promised = uintmax_t{static_cast<uint32_t>(width)} * static_cast<uint32_t>(height) *
                             static_cast<uint32_t>(pixelBytes(*depth));
  if (std::filesystem::file_size(pathOf(path)) != start + promised) {
    throw std::runtime_error(path + " does not hold the pixels that its first line tells");
  }
  Image image(*depth, width, height);
  for (int32_t y = 0; y < height; ++y) {
    file.read(reinterpret_cast<char*>(image.rowStart(y)), static_cast<std::streamsize>(bytesOfRow(image)));
  }
  if (!file) throw std::runtime_error(path + " can't be read to its end");
  return image;
}

void writeRawFrame(const std::string& path, const Image& image) {
  const std::filesystem::path target = pathOf(path);
  std::filesystem::path beside = target;
  beside += ".part";
  std::ofstream file(beside, std::ios::binary | std::ios::trunc);
  file << kWord << " 1 " << image.width() << ' ' << image.height() << ' ' << static_cast<int32_t>(image.depth())
       << '\n';
  for (int32_t y = 0; y < image.height(); ++y) {
    file.write(reinterpret_cast<const char*>(image.rowStart(y)), static_cast<std::streamsize>(bytesOfRow(image)));
  }
  file.close();
  std::error_code error;
  if (file) std::filesystem::rename(beside, target, error);
  if (!file || error) {
    std::filesystem::remove(beside, error);
    throw std::runtime_error("the frame " + path + " can't be written");
  }
}

}  // namespace standin
